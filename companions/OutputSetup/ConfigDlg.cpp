#include "ConfigDlg.h"

#include "NameMessage.h"
#include "OutputSetup.h"
#include "SetupIds.h"
#include "Texts.h"

namespace setup {
namespace {

std::wstring connectorsOf(const favourites::Favourite& favourite) {
    std::wstring connectors;
    for (const FenwynDisplayRecord& record : favourite.displays) {
        connectors += (connectors.empty() ? L"" : L", ");
        connectors += record.szConnector;
    }
    return connectors;
}

}  // namespace

const MessageMap& CConfigDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CConfigDlg::OnNotify>(WM_NOTIFY),
    };
    static const MessageMap kMap{&CSetupDlg::messageMap(), kEntries};
    return kMap;
}

CConfigDlg::CConfigDlg(const Surroundings& surroundings)
    : CSetupDlg(IDD_CONFIG, OUTPUT_SETUP_CLASS_CONFIG, surroundings) {}

bool CConfigDlg::OnInitDialog() {
    CSetupDlg::OnInitDialog();
    setTexts({{0, IDS_CONFIG_TITLE},
              {IDC_DISPLAYS_LABEL, IDS_DISPLAYS_LABEL},
              {IDC_FAVOURITES_LABEL, IDS_FAVOURITES_LABEL},
              {IDC_RENAME, IDS_RENAME},
              {IDC_DELETE, IDS_DELETE},
              {IDCANCEL, IDS_CLOSE}});
    prepareDisplayList();
    showDisplays();
    setColumns(control(IDC_FAVOURITES),
               {{IDS_COLUMN_NAME, 26}, {IDS_COLUMN_ARRANGEMENT, 46}, {IDS_COLUMN_DISPLAYS, 28}});
    _showFavourites();
    selectRow(control(IDC_FAVOURITES), 0);
    ::SetFocus(control(IDC_FAVOURITES));  // what can be changed here
    return false;
}

void CConfigDlg::_showFavourites() {
    m_vecFavourites = favourites::load();
    Rows rows;
    for (const favourites::Favourite& favourite : m_vecFavourites) {
        rows.push_back({favourite.text, modeText(favourite.mode), connectorsOf(favourite)});
    }
    setRows(control(IDC_FAVOURITES), rows);
    _enableButtons();
}

// A disabled button must not keep the focus: it moves to the list.
void CConfigDlg::_enableButtons() const {
    const BOOL any = selectedRow(control(IDC_FAVOURITES)) >= 0 ? TRUE : FALSE;
    for (const int id : {IDC_RENAME, IDC_DELETE}) {
        if (any == FALSE && ::GetFocus() == control(id)) {
            ::SendMessageW(m_hWnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control(IDC_FAVOURITES)), TRUE);
        }
        ::EnableWindow(control(id), any);
    }
}

void CConfigDlg::onControl(UINT id, UINT code) {
    if (id == IDC_RENAME) {
        ::SetFocus(control(IDC_FAVOURITES));
        ListView_EditLabel(control(IDC_FAVOURITES), selectedRow(control(IDC_FAVOURITES)));
    } else if (id == IDC_DELETE) {
        _deleteSelected();
    } else {
        CSetupDlg::onControl(id, code);
    }
}

LRESULT CConfigDlg::OnNotify(WPARAM /*wParam*/, LPARAM lParam) {
    const auto* header = reinterpret_cast<const NMHDR*>(lParam);
    if (header == nullptr || header->hwndFrom != control(IDC_FAVOURITES)) {
        return Default();
    }
    switch (header->code) {
        case LVN_ITEMCHANGED:
            _enableButtons();
            return 0;
        case LVN_KEYDOWN:
            _onListKey(reinterpret_cast<const NMLVKEYDOWN*>(lParam)->wVKey);
            return 0;
        case LVN_ENDLABELEDITW: {
            const auto* edit = reinterpret_cast<const NMLVDISPINFOW*>(lParam);
            _rename(edit->item.iItem, edit->item.pszText);
            return FALSE;  // the list is filled again with what was really stored
        }
        default:
            return Default();
    }
}

void CConfigDlg::_onListKey(WORD key) {
    if (key == VK_F2) {
        onControl(IDC_RENAME, BN_CLICKED);
    } else if (key == VK_DELETE) {
        _deleteSelected();
    }
}

void CConfigDlg::_rename(int row, const wchar_t* typed) {
    if (typed == nullptr || row < 0 || static_cast<std::size_t>(row) >= m_vecFavourites.size()) {
        return;
    }
    const auto index = static_cast<std::size_t>(row);
    const std::wstring old = m_vecFavourites[index].text;
    const std::wstring name = cleanName(typed);
    if (name == old) {
        return;
    }
    if (const UINT message = nameMessage(judgeName(name, m_vecFavourites, index)); message != 0) {
        tell(text(message));
        return;
    }
    const LSTATUS error = renameFavourite(index, old, name);
    _showFavourites();
    tellStoreError(error);
}

void CConfigDlg::_deleteSelected() {
    const int row = selectedRow(control(IDC_FAVOURITES));
    if (row < 0 || static_cast<std::size_t>(row) >= m_vecFavourites.size()) {
        return;
    }
    const auto index = static_cast<std::size_t>(row);
    const std::wstring name = m_vecFavourites[index].text;
    // The window may be closed by another program while the question is open.
    if (!surroundings().ask(m_hWnd, text(IDS_ASK_DELETE, name)) || !isWindow()) {
        return;
    }
    const LSTATUS error = deleteFavourite(index, name);
    _showFavourites();
    tellStoreError(error);
}

}  // namespace setup
