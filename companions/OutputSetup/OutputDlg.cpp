#include "OutputDlg.h"

#include "OutputSetup.h"
#include "SetupIds.h"
#include "Texts.h"

namespace setup {
const MessageMap& COutputDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&COutputDlg::OnRequest>(kRequestMessage),
    };
    static const MessageMap kMap{&CSetupDlg::messageMap(), kEntries};
    return kMap;
}

COutputDlg::COutputDlg(const Request& request, const Surroundings& surroundings)
    : CSetupDlg(IDD_OUTPUT, OUTPUT_SETUP_CLASS_OUTPUT, surroundings), m_request(request) {}

bool COutputDlg::OnInitDialog() {
    CSetupDlg::OnInitDialog();
    setTexts({{0, IDS_OUTPUT_TITLE},
              {IDC_MODES_LABEL, IDS_MODES_LABEL},
              {IDC_DISPLAYS_LABEL, IDS_DISPLAYS_LABEL},
              {IDOK, IDS_APPLY},
              {IDCANCEL, IDS_CANCEL}});
    prepareDisplayList();
    showDisplays();
    _showModes();
    return true;
}

// One line per arrangement of the mask; each line stores its arrangement.
void COutputDlg::_showModes() {
    const HWND list = control(IDC_MODES);
    ::SendMessageW(list, LB_RESETCONTENT, 0, 0);
    for (int mode = 0; mode < kMaskBits; ++mode) {
        if (((m_request.mask >> mode) & 1U) == 0) {
            continue;
        }
        const std::wstring name = modeText(mode);
        const LRESULT line = ::SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
        ::SendMessageW(list, LB_SETITEMDATA, static_cast<WPARAM>(line), mode);
        if (mode == m_request.mode) {
            ::SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(line), 0);
        }
    }
}

void COutputDlg::onControl(UINT id, UINT code) {
    const bool chosen = id == IDC_MODES && code == LBN_DBLCLK;
    if (id == IDOK || chosen) {
        _apply();
    } else {
        CSetupDlg::onControl(id, code);
    }
}

// Closes the window if the displays were set up as chosen.
void COutputDlg::_apply() {
    const LRESULT line = ::SendMessageW(control(IDC_MODES), LB_GETCURSEL, 0, 0);
    if (line == LB_ERR) {
        return;
    }
    const auto mode =
        static_cast<int>(::SendMessageW(control(IDC_MODES), LB_GETITEMDATA, static_cast<WPARAM>(line), 0));
    if (const LONG error = surroundings().apply(mode); error != ERROR_SUCCESS) {
        tell(error == ERROR_NOT_SUPPORTED ? text(IDS_ERROR_CANNOT_APPLY)
                                          : text(IDS_ERROR_APPLY, systemErrorText(static_cast<DWORD>(error))));
        return;
    }
    DestroyWindow();
}

// Any program can send this message, so invalid values are ignored.
LRESULT COutputDlg::OnRequest(WPARAM mask, LPARAM mode) {
    if (mode < 0 || mode >= kMaskBits || mask > 0xFFFF || ((mask >> mode) & 1U) == 0) {
        return FALSE;
    }
    m_request.mask = static_cast<unsigned>(mask);
    m_request.mode = static_cast<int>(mode);
    _showModes();
    return TRUE;
}

}  // namespace setup
