#include "SaveDlg.h"

#include "Favourites.h"
#include "NameMessage.h"
#include "OutputSetup.h"
#include "SetupIds.h"
#include "Texts.h"

namespace setup {

CSaveDlg::CSaveDlg(const Surroundings& surroundings) : CSetupDlg(IDD_SAVE, OUTPUT_SETUP_CLASS_SAVE, surroundings) {}

bool CSaveDlg::OnInitDialog() {
    CSetupDlg::OnInitDialog();
    setTexts({{0, IDS_SAVE_TITLE},
              {IDC_NAME_LABEL, IDS_NAME_LABEL},
              {IDC_DISPLAYS_LABEL, IDS_DISPLAYS_LABEL},
              {IDOK, IDS_SAVE},
              {IDCANCEL, IDS_CANCEL}});
    prepareDisplayList();
    showDisplays();
    ::SendMessageW(control(IDC_NAME), EM_LIMITTEXT, favourites::kMostTextChars, 0);
    ::SetWindowTextW(control(IDC_NAME), proposeName(text(IDS_NAME_STEM), favourites::load()).c_str());
    return true;
}

void CSaveDlg::showDisplays() {
    CSetupDlg::showDisplays();
    ::SetWindowTextW(control(IDC_ARRANGEMENT),
                     text(IDS_PRESENT_ARRANGEMENT, modeText(arrangementOf(m_vecDisplays))).c_str());
}

void CSaveDlg::onControl(UINT id, UINT code) {
    if (id == IDOK) {
        _save();
    } else {
        CSetupDlg::onControl(id, code);
    }
}

// Closes the window if the favourite was stored.
void CSaveDlg::_save() {
    const std::wstring name = cleanName(controlText(control(IDC_NAME)));
    if (const UINT message = nameMessage(judgeName(name, favourites::load(), kNewFavourite)); message != 0) {
        _askForAnotherName(message);
        return;
    }
    if (m_vecDisplays.empty()) {
        tell(text(IDS_ERROR_NO_DISPLAY));
        return;
    }
    if (const LSTATUS error = addFavourite(favouriteOf(name, m_vecDisplays)); error != ERROR_SUCCESS) {
        tellStoreError(error);
        return;
    }
    DestroyWindow();
}

void CSaveDlg::_askForAnotherName(UINT message) {
    tell(text(message));
    ::SetFocus(control(IDC_NAME));
    ::SendMessageW(control(IDC_NAME), EM_SETSEL, 0, -1);
}

}  // namespace setup
