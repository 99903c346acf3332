#include "TrayWnd.h"

#include <windowsx.h>

#include "SettingsIds.h"
#include "Texts.h"
#include "Tray.h"

namespace settings {
namespace {

constexpr UINT kIconId = 1;

// The order of the menu. Fenwyn must run for some commands and must not for others.
enum class When { Always, Runs, RunsNot };
struct MenuItem {
    UINT text;  // and command; 0: a line
    When enabled;  // greyed otherwise
    When shown;
};
constexpr MenuItem kMenu[] = {
    {IDS_TRAY_SETTINGS, When::Always, When::Always},
    {IDS_TRAY_CARDS, When::Runs, When::Always},
    {0, When::Always, When::Always},
    {IDS_TRAY_START, When::Always, When::RunsNot},
    {IDS_TRAY_END, When::Always, When::Runs},
};

bool holds(When when, bool bRuns) noexcept {
    return when == When::Always || (when == When::Runs) == bRuns;
}

HMENU makeMenu(bool bRuns) {
    const HMENU menu = ::CreatePopupMenu();
    for (const MenuItem& item : kMenu) {
        if (!holds(item.shown, bRuns)) {
            continue;
        }
        if (item.text == 0) {
            ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
            continue;
        }
        const UINT flags = holds(item.enabled, bRuns) ? MF_STRING : MF_STRING | MF_GRAYED;
        ::AppendMenuW(menu, flags, item.text, text(item.text).c_str());
    }
    ::SetMenuDefaultItem(menu, IDS_TRAY_SETTINGS, FALSE);  // what a double click does
    return menu;
}

}  // namespace

const MessageMap& CTrayWnd::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CTrayWnd::OnIcon>(kMsgIcon),
        onMessage<&CTrayWnd::OnEndSession>(WM_ENDSESSION),
        onTimer<&CTrayWnd::OnTimer>(),
    };
    static const MessageMap kMap{&CWnd::messageMap(), kEntries};
    return kMap;
}

bool CTrayWnd::open(HINSTANCE instance) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = ::DefWindowProcW;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = kTrayClass;
    ::RegisterClassW(&windowClass);  // an existing class serves as well
    m_hIcon = static_cast<HICON>(::LoadImageW(instance, MAKEINTRESOURCEW(1), IMAGE_ICON,
                                              ::GetSystemMetrics(SM_CXSMICON), ::GetSystemMetrics(SM_CYSMICON),
                                              LR_SHARED));
    m_strTip = text(IDS_TRAY_TIP);
    m_uTaskbarCreated = ::RegisterWindowMessageW(L"TaskbarCreated");
    // Top-level, because message-only windows do not hear of a new shell.
    if (!CreateEx(WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE, kTrayClass, L"Fenwyn", WS_POPUP, RECT{}, nullptr, nullptr)) {
        return false;
    }
    // The shell has the user's rights, also where this process has more.
    ::ChangeWindowMessageFilterEx(m_hWnd, m_uTaskbarCreated, MSGFLT_ALLOW, nullptr);
    _addIcon();
    return true;
}

bool CTrayWnd::DestroyWindow() {
    if (m_hWnd == nullptr) {
        return false;
    }
    _releaseCards();
    NOTIFYICONDATAW data = _data();
    m_surroundings.notify(NIM_DELETE, data);
    return CWnd::DestroyWindow();
}

NOTIFYICONDATAW CTrayWnd::_data() const {
    NOTIFYICONDATAW data{};
    data.cbSize = sizeof data;
    data.hWnd = m_hWnd;
    data.uID = kIconId;
    data.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP | NIF_SHOWTIP;
    data.uCallbackMessage = kMsgIcon;
    data.hIcon = m_hIcon;
    data.uVersion = NOTIFYICON_VERSION_4;
    m_strTip.copy(data.szTip, std::size(data.szTip) - 1);
    return data;
}

// A busy shell may take an icon and say in time that it did not; then it has it already.
void CTrayWnd::_addIcon() {
    NOTIFYICONDATAW data = _data();
    if (!m_surroundings.notify(NIM_ADD, data) && !m_surroundings.notify(NIM_MODIFY, data)) {
        if (++m_nTries < kMostTries) {
            ::SetTimer(m_hWnd, kTimerRetry, kRetryMs, nullptr);
        }
        return;
    }
    m_nTries = 0;
    m_surroundings.notify(NIM_SETVERSION, data);
}

// The message of a new shell is known only at run time.
LRESULT CTrayWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != 0 && message == m_uTaskbarCreated) {
        m_nTries = 0;
        _addIcon();
        return 0;
    }
    return CWnd::WindowProc(message, wParam, lParam);
}

// As of version 4: the event in the low word of lParam, a point of the screen in wParam.
LRESULT CTrayWnd::OnIcon(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(lParam)) {
        case WM_CONTEXTMENU:  // also the keyboard's
            _showMenu({GET_X_LPARAM(wParam), GET_Y_LPARAM(wParam)});
            break;
        case NIN_KEYSELECT:
        case WM_LBUTTONDBLCLK:
            m_surroundings.openSettings();
            break;
        default:
            break;
    }
    return 0;
}

// The system ends the process after the answer.
LRESULT CTrayWnd::OnEndSession(WPARAM wParam, LPARAM /*lParam*/) {
    if (wParam != FALSE) {
        DestroyWindow();
    }
    return 0;
}

void CTrayWnd::_showMenu(POINT place) {
    if (m_bMenuOpen) {
        return;
    }
    m_bMenuOpen = true;
    ::SetTimer(m_hWnd, kTimerMenu, kMenuMs, nullptr);
    const HMENU menu = makeMenu(m_surroundings.isFenwynRunning());
    const UINT command = m_surroundings.choose(m_hWnd, menu, place);
    ::DestroyMenu(menu);
    ::KillTimer(m_hWnd, kTimerMenu);
    m_bMenuOpen = false;
    _do(command);
}

void CTrayWnd::_do(UINT command) {
    switch (command) {
        case IDS_TRAY_SETTINGS:
            m_surroundings.openSettings();
            break;
        case IDS_TRAY_CARDS:
            _showCards();
            break;
        case IDS_TRAY_START:
            m_surroundings.startFenwyn();
            break;
        case IDS_TRAY_END:
            m_surroundings.endFenwyn();
            break;
        default:
            break;
    }
}

void CTrayWnd::_showCards() {
    const CardsShown shown = m_surroundings.showCards();
    if (shown == CardsShown::Held) {
        m_bCardsHeld = true;
        ::SetTimer(m_hWnd, kTimerCards, kCardsMs, nullptr);
    }
}

void CTrayWnd::_releaseCards() {
    ::KillTimer(m_hWnd, kTimerCards);
    if (m_bCardsHeld) {
        m_bCardsHeld = false;
        m_surroundings.releaseCards();
    }
}

void CTrayWnd::OnTimer(UINT_PTR uId) {
    if (uId == kTimerCards) {
        _releaseCards();
    } else if (uId == kTimerRetry) {
        ::KillTimer(m_hWnd, kTimerRetry);
        _addIcon();
    } else if (uId == kTimerMenu && m_surroundings.endWanted()) {
        ::EndMenu();
    }
}

}  // namespace settings
