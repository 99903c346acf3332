#include "SettingsDlg.h"

#include <uxtheme.h>

#include <algorithm>

#include "Allowed.h"
#include "ChangeFile.h"
#include "FenwynFunctions.h"
#include "Model.h"
#include "Pages.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "common/DialogFont.h"

namespace settings {
namespace {

// A copy of the system's dialog class under the template's name.
bool registerDialogClass() {
    WNDCLASSW description{};
    if (::GetClassInfoW(nullptr, L"#32770", &description) == FALSE) {
        return false;
    }
    description.hInstance = ::GetModuleHandleW(nullptr);
    description.lpszClassName = SETTINGS_WINDOW_CLASS;
    return ::RegisterClassW(&description) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

// The background of a page is that of its tab. The library stays loaded: it belongs to every window with controls.
void paintAsTab(HWND page) {
    const HMODULE library = ::GetModuleHandleW(L"uxtheme.dll");
    const auto paint = reinterpret_cast<decltype(&::EnableThemeDialogTexture)>(
        reinterpret_cast<void*>(::GetProcAddress(library, "EnableThemeDialogTexture")));
    if (library != nullptr && paint != nullptr) {
        paint(page, ETDT_ENABLETAB);
    }
}

HICON programIcon(int widthMetric, int heightMetric) {
    return static_cast<HICON>(::LoadImageW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1), IMAGE_ICON,
                                           ::GetSystemMetrics(widthMetric), ::GetSystemMetrics(heightMetric),
                                           LR_SHARED));
}

RECT placeIn(HWND dialog, HWND control) {
    RECT place{};
    ::GetWindowRect(control, &place);
    ::MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

FileQuestion settingsFile(UINT title, bool save) {
    constexpr wchar_t kPattern[] = L"\0*.fenwyn\0";
    return {text(title), text(IDS_FILE_KIND) + std::wstring(kPattern, std::size(kPattern) - 1), L"fenwyn", save};
}

}  // namespace

CSettingsDlg::CSettingsDlg(CModel& model, const Surroundings& surroundings)
    : CDialog(IDD_SETTINGS), m_model(model), m_surroundings(surroundings) {}

CSettingsDlg::~CSettingsDlg() = default;

const MessageMap& CSettingsDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CSettingsDlg::OnControl>(WM_COMMAND),
        onMessage<&CSettingsDlg::OnNotify>(WM_NOTIFY),
        onMessage<&CSettingsDlg::OnDpiChanged>(WM_DPICHANGED),
        onMessage<&CSettingsDlg::OnGoTo>(kMsgGoTo),
        onEvent<&CSettingsDlg::OnClose>(WM_CLOSE),
    };
    static const MessageMap kMap{&CDialog::messageMap(), kEntries};
    return kMap;
}

bool CSettingsDlg::open() {
    if (!registerDialogClass() || !Create(nullptr)) {
        return false;
    }
    if (m_vecPages.size() != pages().size()) {
        DestroyWindow();
        return false;
    }
    ::SendMessageW(m_hWnd, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(programIcon(SM_CXICON, SM_CYICON)));
    ::SendMessageW(m_hWnd, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(programIcon(SM_CXSMICON, SM_CYSMICON)));
    ::ShowWindow(m_hWnd, SW_SHOW);
    ::SetForegroundWindow(m_hWnd);
    return true;
}

bool CSettingsDlg::OnInitDialog() {
    common::leaveScalingToDialog(m_hWnd);
    _setFont(common::dpiOf(m_hWnd));
    ::SetWindowTextW(m_hWnd, text(IDS_PROGRAM).c_str());
    setControlTexts(m_hWnd);
    if (!_createPages()) {
        return true;
    }
    _placePages();
    m_model.watch([this] { _showButtons(); });
    _loadPages();
    select(0);
    _showButtons();
    return false;  // the page has the focus
}

bool CSettingsDlg::_createPages() {
    for (const PageEntry& entry : pages()) {
        std::wstring title = text(entry.title);
        TCITEMW tab{};
        tab.mask = TCIF_TEXT;
        tab.pszText = title.data();
        TabCtrl_InsertItem(_control(IDC_TABS), static_cast<int>(m_vecPages.size()), &tab);
        std::unique_ptr<CPage> page = entry.make(m_model, m_surroundings);
        if (!page->Create(m_hWnd)) {
            return false;
        }
        common::leaveScalingToDialog(page->m_hWnd);
        common::setDialogFont(page->m_hWnd, m_font.get());
        setControlTexts(page->m_hWnd);
        paintAsTab(page->m_hWnd);
        m_vecPages.push_back(std::move(page));
    }
    return true;
}

// In front of the tabs, and first in the order of the Tab key.
void CSettingsDlg::_placePages() const {
    RECT area = placeIn(m_hWnd, _control(IDC_TABS));
    ::SendMessageW(_control(IDC_TABS), TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    for (const auto& page : m_vecPages) {
        ::SetWindowPos(page->m_hWnd, HWND_TOP, area.left, area.top, area.right - area.left, area.bottom - area.top,
                       SWP_NOACTIVATE);
        page->scaleChanged();
    }
}

void CSettingsDlg::_loadPages() const {
    for (const auto& page : m_vecPages) {
        page->load();
    }
}

bool CSettingsDlg::_storePages() {
    for (std::size_t i = 0; i < m_vecPages.size(); ++i) {
        if (!m_vecPages[i]->store()) {
            select(i);
            return false;
        }
    }
    return true;
}

void CSettingsDlg::select(std::size_t page) {
    _show(page);
    const HWND first = ::GetNextDlgTabItem(m_vecPages[page]->m_hWnd, nullptr, FALSE);
    ::SetFocus(first != nullptr ? first : _control(IDC_TABS));
}

void CSettingsDlg::_show(std::size_t page) {
    m_uSelected = page;
    TabCtrl_SetCurSel(_control(IDC_TABS), static_cast<int>(page));
    for (std::size_t i = 0; i < m_vecPages.size(); ++i) {
        m_vecPages[i]->setShown(i == page);
    }
}

void CSettingsDlg::_turn(int by) {
    const std::size_t count = m_vecPages.size();
    select((m_uSelected + count + static_cast<std::size_t>(by)) % count);
}

bool CSettingsDlg::PreTranslateMessage(MSG& message) {
    if (message.message == WM_KEYDOWN && ::GetKeyState(VK_CONTROL) < 0) {
        switch (message.wParam) {
            case VK_TAB:
                _turn(::GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
                return true;
            case VK_NEXT:
                _turn(1);
                return true;
            case VK_PRIOR:
                _turn(-1);
                return true;
            default:
                break;
        }
    }
    return CDialog::PreTranslateMessage(message);
}

LRESULT CSettingsDlg::OnControl(WPARAM wParam, LPARAM lParam) {
    // Enter presses the button of a page that has the focus, and the system tells the window.
    const HWND from = reinterpret_cast<HWND>(lParam);
    for (const auto& page : m_vecPages) {
        if (from != nullptr && ::IsChild(page->m_hWnd, from) != FALSE) {
            ::SendMessageW(::GetParent(from), WM_COMMAND, wParam, lParam);
            return 0;
        }
    }
    if (HIWORD(wParam) == BN_CLICKED) {
        _press(LOWORD(wParam));
    }
    return 0;
}

void CSettingsDlg::_press(UINT id) {
    switch (id) {
        case IDOK:
            if (_apply()) {
                DestroyWindow();
            }
            break;
        case IDCANCEL:
            _cancel();
            break;
        case IDS_APPLY:
            static_cast<void>(_apply());
            break;
        case IDS_EXPORT:
            _export();
            break;
        case IDS_IMPORT:
            _import();
            break;
        default:
            break;
    }
}

void CSettingsDlg::_export() {
    if (!_storePages()) {
        return;
    }
    const auto file = m_surroundings.chooseFile(m_hWnd, settingsFile(IDS_EXPORT_TITLE, true));
    if (!file) {
        return;
    }
    if (const LSTATUS error = writeTextFile(*file, fileText(m_model.everything())); error != ERROR_SUCCESS) {
        m_surroundings.tell(m_hWnd, text(IDS_ERROR_FILE, {systemErrorText(static_cast<DWORD>(error))}));
    }
}

// Everything is checked before anything changes.
void CSettingsDlg::_import() {
    const auto file = m_surroundings.chooseFile(m_hWnd, settingsFile(IDS_IMPORT_TITLE, false));
    std::wstring words;
    if (!file) {
        return;
    }
    if (const LSTATUS error = readTextFile(*file, words); error != ERROR_SUCCESS) {
        return m_surroundings.tell(m_hWnd, text(IDS_ERROR_FILE, {systemErrorText(static_cast<DWORD>(error))}));
    }
    std::size_t line = 0;
    const std::optional<Changes> changes = parseFile(words, line);
    if (!changes) {
        return m_surroundings.tell(m_hWnd, text(IDS_ERROR_LINE, {std::to_wstring(line)}));
    }
    const auto wrong =
        std::ranges::find_if(*changes, [](const auto& change) { return !isAllowed(change.first, change.second); });
    if (wrong != changes->end()) {
        return m_surroundings.tell(m_hWnd, text(IDS_ERROR_ALLOWED, {fileText({*wrong})}));
    }
    m_model.takeOver(*changes);
    _loadPages();
    m_surroundings.tell(m_hWnd, text(IDS_IMPORTED, {std::to_wstring(changes->size())}));
}

LRESULT CSettingsDlg::OnNotify(WPARAM /*wParam*/, LPARAM lParam) {
    const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
    if (header.idFrom == IDC_TABS && header.code == TCN_SELCHANGE) {
        _show(static_cast<std::size_t>(TabCtrl_GetCurSel(header.hwndFrom)));  // the tabs keep the focus
        return 0;
    }
    return Default();
}

LRESULT CSettingsDlg::OnGoTo(WPARAM wParam, LPARAM lParam) {
    const auto found = std::ranges::find(pages(), static_cast<UINT>(wParam), &PageEntry::title);
    if (found != pages().end()) {
        select(static_cast<std::size_t>(found - pages().begin()));
        if (const auto function = static_cast<std::size_t>(lParam); function < std::size(fenwyn::kFunctions)) {
            m_vecPages[m_uSelected]->showCard(fenwyn::kFunctions[function]);
        }
    }
    return 0;
}

LRESULT CSettingsDlg::OnDpiChanged(WPARAM wParam, LPARAM lParam) {
    const common::UniqueFont old(m_font.release());
    const LOGFONTW font = m_surroundings.font(LOWORD(wParam));
    m_font.reset(::CreateFontIndirectW(&font));
    common::changeDialogFont(m_hWnd, old.get(), m_font.get());
    const auto& place = *reinterpret_cast<const RECT*>(lParam);
    ::SetWindowPos(m_hWnd, nullptr, place.left, place.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    for (const auto& page : m_vecPages) {
        common::changeDialogFont(page->m_hWnd, old.get(), m_font.get());
    }
    _placePages();
    return 0;
}

void CSettingsDlg::_setFont(UINT dpi) {
    const LOGFONTW font = m_surroundings.font(dpi);
    m_font.reset(::CreateFontIndirectW(&font));
    common::setDialogFont(m_hWnd, m_font.get());
}

bool CSettingsDlg::_apply() {
    if (!_storePages()) {
        return false;
    }
    const Applied applied = m_model.apply();
    _loadPages();
    _showButtons();
    switch (applied) {
        case Applied::Done:
            return true;
        case Applied::Refused:
            m_surroundings.tell(m_hWnd, text(IDS_ERROR_REFUSED));
            return false;
        case Applied::Failed:
            m_surroundings.tell(
                m_hWnd, text(IDS_ERROR_WRITE, {systemErrorText(static_cast<DWORD>(m_model.lastError()))}));
            return false;
        case Applied::NotRestarted:
            m_surroundings.tell(m_hWnd, text(IDS_ERROR_RESTART));
            return true;
    }
    return false;
}

void CSettingsDlg::_cancel() {
    ::ShowWindow(m_hWnd, SW_HIDE);  // putting back may wait for Fenwyn
    m_model.cancel();
    DestroyWindow();
}

void CSettingsDlg::_showButtons() const {
    const bool rights = m_model.needsRights();
    // A button that is switched off must not keep the focus.
    if (!m_model.isChanged() && ::GetFocus() == _control(IDS_APPLY)) {
        ::SendMessageW(m_hWnd, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(_control(IDOK)), TRUE);
    }
    ::EnableWindow(_control(IDS_APPLY), m_model.isChanged());
    ::SetWindowTextW(_control(IDS_APPLY), text(rights ? IDS_APPLY_FOR_ALL : IDS_APPLY).c_str());
    for (const int button : {IDOK, IDS_APPLY}) {
        ::SendMessageW(_control(button), BCM_SETSHIELD, 0, rights ? TRUE : FALSE);
    }
}

}  // namespace settings
