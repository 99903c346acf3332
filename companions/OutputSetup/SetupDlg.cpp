#include "SetupDlg.h"

#include <algorithm>

#include "Favourites.h"
#include "OutputSetup.h"
#include "SetupIds.h"
#include "Texts.h"
#include "common/DialogFont.h"

namespace setup {
namespace {

// A copy of the system's dialog class under the template's name.
bool registerDialogClass(const wchar_t* name) {
    WNDCLASSW description{};
    if (::GetClassInfoW(nullptr, L"#32770", &description) == FALSE) {
        return false;
    }
    description.hInstance = ::GetModuleHandleW(nullptr);
    description.lpszClassName = name;
    return ::RegisterClassW(&description) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

HICON programIcon(int widthMetric, int heightMetric) {
    return static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1), IMAGE_ICON,
                                           ::GetSystemMetrics(widthMetric), ::GetSystemMetrics(heightMetric),
                                           LR_SHARED));
}

}  // namespace

void setColumns(HWND list, std::initializer_list<Column> columns) {
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    RECT client{};
    ::GetClientRect(list, &client);
    int index = 0;
    for (const Column& column : columns) {
        std::wstring title = text(column.text);
        LVCOLUMNW entry{};
        entry.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        entry.pszText = title.data();
        entry.cx = ::MulDiv(client.right, column.percent, 100);
        entry.iSubItem = index;
        ListView_InsertColumn(list, index++, &entry);
    }
    // The last one takes the remaining space.
    ListView_SetColumnWidth(list, index - 1, LVSCW_AUTOSIZE_USEHEADER);
}

namespace {

std::wstring cellText(HWND list, int row, int column) {
    wchar_t buffer[260] = L"";
    ListView_GetItemText(list, row, column, buffer, static_cast<int>(std::size(buffer)));
    return buffer;
}

bool shows(HWND list, const Rows& rows) {
    if (ListView_GetItemCount(list) != static_cast<int>(rows.size())) {
        return false;
    }
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t column = 0; column < rows[row].size(); ++column) {
            if (cellText(list, static_cast<int>(row), static_cast<int>(column)) != rows[row][column]) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

void setRows(HWND list, const Rows& rows) {
    if (shows(list, rows)) {
        return;
    }
    const int selected = selectedRow(list);
    ListView_DeleteAllItems(list);
    int row = 0;
    for (const std::vector<std::wstring>& cells : rows) {
        LVITEMW item{};
        item.iItem = row;
        ListView_InsertItem(list, &item);
        for (std::size_t column = 0; column < cells.size(); ++column) {
            ListView_SetItemText(list, row, static_cast<int>(column), const_cast<wchar_t*>(cells[column].c_str()));
        }
        ++row;
    }
    if (selected >= 0 && row > 0) {
        selectRow(list, std::min(selected, row - 1));
    }
}

int selectedRow(HWND list) {
    return ListView_GetNextItem(list, -1, LVNI_SELECTED);
}

void selectRow(HWND list, int row) {
    ListView_SetItemState(list, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(list, row, FALSE);
}

const MessageMap& CSetupDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CSetupDlg::OnControl>(WM_COMMAND),
        onEvent<&CSetupDlg::OnClose>(WM_CLOSE),
        onEvent<&CSetupDlg::OnClose>(OUTPUT_SETUP_MESSAGE_CLOSE),
        onEvent<&CSetupDlg::OnDisplayChange>(WM_DISPLAYCHANGE),
        onMessage<&CSetupDlg::OnActivate>(WM_ACTIVATE),
    };
    static const MessageMap kMap{&CDialog::messageMap(), kEntries};
    return kMap;
}

bool CSetupDlg::open() {
    if (!registerDialogClass(m_pszClass) || !Create(nullptr)) {
        return false;
    }
    ::SendMessageW(m_hWnd, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(programIcon(SM_CXICON, SM_CYICON)));
    ::SendMessageW(m_hWnd, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(programIcon(SM_CXSMICON, SM_CYSMICON)));
    ::ShowWindow(m_hWnd, SW_SHOW);
    ::SetForegroundWindow(m_hWnd);
    return true;
}

bool CSetupDlg::OnInitDialog() {
    const LOGFONTW font = m_surroundings.font();
    m_font.reset(::CreateFontIndirectW(&font));
    if (m_font) {
        common::setDialogFont(m_hWnd, m_font.get());
    }
    return true;
}

void CSetupDlg::setTexts(std::initializer_list<ControlText> texts) const {
    for (const ControlText& row : texts) {
        ::SetWindowTextW(row.control == 0 ? m_hWnd : control(row.control), text(row.text).c_str());
    }
}

void CSetupDlg::prepareDisplayList() const {
    setColumns(control(IDC_DISPLAYS),
               {{IDS_COLUMN_DISPLAY, 45}, {IDS_COLUMN_CONNECTOR, 28}, {IDS_COLUMN_RESOLUTION, 27}});
}

void CSetupDlg::showDisplays() {
    m_vecDisplays = m_surroundings.displays();
    Rows rows;
    for (const Display& display : m_vecDisplays) {
        rows.push_back(
            {std::to_wstring(rows.size() + 1) + L". " + display.name, display.connector,
             resolutionText(display.place.right - display.place.left, display.place.bottom - display.place.top)});
    }
    setRows(control(IDC_DISPLAYS), rows);
}

void CSetupDlg::onControl(UINT id, UINT /*code*/) {
    if (id == IDCANCEL) {
        DestroyWindow();
    }
}

void CSetupDlg::tellStoreError(LSTATUS error) const {
    switch (error) {
        case ERROR_SUCCESS:
            return;
        case ERROR_INSUFFICIENT_BUFFER:
            return tell(text(IDS_ERROR_FULL));
        case ERROR_NOT_FOUND:
            return tell(text(IDS_ERROR_CHANGED));
        default:
            return tell(text(IDS_ERROR_STORE, systemErrorText(static_cast<DWORD>(error))));
    }
}

LRESULT CSetupDlg::OnControl(WPARAM wParam, LPARAM /*lParam*/) {
    onControl(LOWORD(wParam), HIWORD(wParam));
    return 0;
}

void CSetupDlg::OnDisplayChange() {
    showDisplays();
    Default();
}

LRESULT CSetupDlg::OnActivate(WPARAM wParam, LPARAM /*lParam*/) {
    const bool active = LOWORD(wParam) != WA_INACTIVE;
    const LRESULT result = Default();  // the focus first: keys may be on their way
    if (active && m_bLeft && isWindow()) {
        showDisplays();
    }
    m_bLeft = !active;
    return result;
}

}  // namespace setup
