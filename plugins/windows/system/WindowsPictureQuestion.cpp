#include <windows.h>

#include <array>
#include <optional>
#include <string>

#include "common/Handle.h"
#include "common/UiLanguage.h"
#include "keyboard/OwnModule.h"
#include "question/QuestionIds.h"
#include "system/PictureQuestion.h"

namespace win {

namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kTimerMs = 100;
constexpr DWORD kQuestionMs = kQuestionSeconds * 1000;
constexpr int kEscapeKey = 1;
constexpr int kHeadlinePercent = 150;  // of the other texts' size

std::wstring text(UINT uId) {
    return common::textOf(keyboard::ownModule(), uId);
}

std::wstring remainingText(DWORD dwSeconds) {
    if (dwSeconds == 1) {
        return text(IDS_REMAINING_ONE);
    }
    std::wstring words = text(IDS_REMAINING);
    if (const std::size_t mark = words.find(L"%1"); mark != std::wstring::npos) {
        words.replace(mark, 2, std::to_wstring(dwSeconds));
    }
    return words;
}

bool onBattery() {
    SYSTEM_POWER_STATUS status{};
    return ::GetSystemPowerStatus(&status) != FALSE && status.ACLineStatus == 0;
}

class CWindowsPictureQuestion final : public IPictureQuestion {
 public:
    ~CWindowsPictureQuestion() override { _close(); }
    CWindowsPictureQuestion() = default;
    CWindowsPictureQuestion(const CWindowsPictureQuestion&) = delete;
    CWindowsPictureQuestion& operator=(const CWindowsPictureQuestion&) = delete;

    bool ask() override { return _open(true); }
    void tellFailure(bool bAsBefore) override {
        m_bAsBefore = bAsBefore;
        _open(false);
    }
    void close() override { _close(); }

    Event wait(HANDLE hWake) override {
        for (;;) {
            if (m_answer) {
                const Event event = *m_answer;
                const bool bQuestion = m_bQuestion;
                _close();
                if (bQuestion) {
                    return event;
                }
            }
            const DWORD dwResult = m_hWnd ? ::MsgWaitForMultipleObjects(1, &hWake, FALSE, INFINITE, QS_ALLINPUT)
                                          : ::WaitForSingleObject(hWake, INFINITE);
            if (dwResult == WAIT_OBJECT_0) {
                return Event::Woken;
            }
            _handleMessages();
        }
    }

 private:
    bool _open(bool bQuestion) {
        _close();
        _dropInput();
        m_bQuestion = bQuestion;
        m_bBattery = onBattery();
        m_ullEnd = ::GetTickCount64() + kQuestionMs;
        m_dwSeconds = kQuestionSeconds;
        m_hBefore = ::GetForegroundWindow();
        m_hWnd.reset(::CreateDialogParamW(keyboard::ownModule(), MAKEINTRESOURCEW(IDD_PICTURE_QUESTION), nullptr,
                                          &CWindowsPictureQuestion::_procedure, reinterpret_cast<LPARAM>(this)));
        if (!m_hWnd) {
            return false;
        }
        ::SetTimer(m_hWnd.get(), kTimer, kTimerMs, nullptr);
        // Whoever sees no picture does not know where the focus is: the key works wherever it is.
        ::RegisterHotKey(m_hWnd.get(), kEscapeKey, MOD_NOREPEAT, VK_ESCAPE);
        ::ShowWindow(m_hWnd.get(), SW_SHOW);
        ::SetForegroundWindow(m_hWnd.get());
        return true;
    }

    void _close() {
        m_answer.reset();
        if (!m_hWnd) {
            return;
        }
        ::UnregisterHotKey(m_hWnd.get(), kEscapeKey);
        if (::GetForegroundWindow() == m_hWnd.get()) {
            ::SetForegroundWindow(m_hBefore);
        }
        m_hWnd.reset();
        m_hHeadlineFont.reset();
    }

    // Keys that were pressed for an earlier question must not answer the next one: the system keeps them for whichever
    // window of the thread has the focus when they are fetched.
    static void _dropInput() {
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_INPUT) != FALSE) {
        }
    }

    void _handleMessages() {
        MSG message;
        while (!m_answer && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (!m_hWnd || !::IsDialogMessageW(m_hWnd.get(), &message)) {
                ::TranslateMessage(&message);
                ::DispatchMessageW(&message);
            }
        }
    }

    static INT_PTR CALLBACK _procedure(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) noexcept {
        if (uMessage == WM_INITDIALOG) {
            ::SetWindowLongPtrW(hWnd, DWLP_USER, lParam);
        }
        auto* const pQuestion = reinterpret_cast<CWindowsPictureQuestion*>(::GetWindowLongPtrW(hWnd, DWLP_USER));
        try {
            return pQuestion == nullptr ? FALSE : pQuestion->_handle(hWnd, uMessage, wParam, lParam);
        } catch (...) {
            // Memory has run out. Without a text, the countdown goes on all the same.
            return FALSE;
        }
    }

    INT_PTR _handle(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) {
        switch (uMessage) {
            case WM_INITDIALOG:
                _showTexts(hWnd);
                _center(hWnd);
                // Somebody who sees nothing may press any key, which must not keep that picture.
                ::SetFocus(::GetDlgItem(hWnd, IDCANCEL));
                return FALSE;
            case WM_COMMAND:
                if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) {
                    _answer(LOWORD(wParam) == IDOK ? Event::Keep : Event::GoBack);
                }
                return TRUE;
            case WM_HOTKEY:
            case WM_CLOSE:
                _answer(Event::GoBack);
                return TRUE;
            case WM_TIMER:
                _countDown(hWnd);
                return TRUE;
            case WM_DISPLAYCHANGE:
                _center(hWnd);
                return FALSE;
            case WM_POWERBROADCAST:
                _powerChanged(wParam);
                return FALSE;
            case WM_ENDSESSION:
                if (wParam != FALSE) {
                    _answer(Event::GoBack);
                }
                return FALSE;
            case WM_DRAWITEM:
                _drawBar(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
                return TRUE;
            case WM_CTLCOLORDLG:
            case WM_CTLCOLORSTATIC:
            case WM_CTLCOLORBTN:
                return _colors(reinterpret_cast<HDC>(wParam));
            default:
                return FALSE;
        }
    }

    void _answer(Event event) { m_answer = event; }

    void _showTexts(HWND hWnd) {
        const std::wstring headline = text(m_bQuestion ? IDS_KEEP_QUESTION : IDS_FAILED);
        ::SetWindowTextW(hWnd, headline.c_str());
        ::SetDlgItemTextW(hWnd, IDC_HEADLINE, headline.c_str());
        ::SetDlgItemTextW(hWnd, IDC_REMAINING,
                          (m_bQuestion   ? remainingText(m_dwSeconds)
                           : m_bAsBefore ? text(IDS_FAILED_DETAIL)
                                         : std::wstring())
                              .c_str());
        ::SetDlgItemTextW(hWnd, IDOK, text(IDS_KEEP).c_str());
        ::SetDlgItemTextW(hWnd, IDCANCEL, text(m_bQuestion ? IDS_GO_BACK : IDS_CLOSE).c_str());
        for (const int nOfQuestion : {IDOK, IDC_BAR}) {
            ::ShowWindow(::GetDlgItem(hWnd, nOfQuestion), m_bQuestion ? SW_SHOW : SW_HIDE);
        }
        LOGFONTW font{};
        if (::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(hWnd, WM_GETFONT, 0, 0)), sizeof(font), &font) != 0) {
            font.lfHeight = ::MulDiv(font.lfHeight, m_bQuestion ? kHeadlinePercent : 100, 100);
            font.lfWeight = FW_BOLD;
            m_hHeadlineFont.reset(::CreateFontIndirectW(&font));
            ::SendDlgItemMessageW(hWnd, IDC_HEADLINE, WM_SETFONT, reinterpret_cast<WPARAM>(m_hHeadlineFont.get()),
                                  FALSE);
        }
    }

    // In the middle of the primary screen, which is always one that is on.
    static void _center(HWND hWnd) {
        MONITORINFO monitor{};
        monitor.cbSize = sizeof(monitor);
        RECT place{};
        if (::GetMonitorInfoW(::MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY), &monitor) == FALSE ||
            ::GetWindowRect(hWnd, &place) == FALSE) {
            return;
        }
        const RECT& rArea = monitor.rcWork;
        ::SetWindowPos(hWnd, HWND_TOPMOST, (rArea.left + rArea.right - (place.right - place.left)) / 2,
                       (rArea.top + rArea.bottom - (place.bottom - place.top)) / 2, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
    }

    void _countDown(HWND hWnd) {
        const ULONGLONG ullNow = ::GetTickCount64();
        if (ullNow >= m_ullEnd) {
            _answer(Event::GoBack);
            return;
        }
        const auto dwSeconds = static_cast<DWORD>((m_ullEnd - ullNow + 999) / 1000);
        if (m_bQuestion && dwSeconds != m_dwSeconds) {
            m_dwSeconds = dwSeconds;
            ::SetDlgItemTextW(hWnd, IDC_REMAINING, remainingText(dwSeconds).c_str());
        }
        ::InvalidateRect(::GetDlgItem(hWnd, IDC_BAR), nullptr, FALSE);
    }

    // A suspended machine wakes up with the picture that was there before; and so does one that will soon be empty.
    void _powerChanged(WPARAM wEvent) {
        const bool bLost = wEvent == PBT_APMPOWERSTATUSCHANGE && !m_bBattery && onBattery();
        if (bLost || wEvent == PBT_APMSUSPEND) {
            _answer(Event::GoBack);
        }
    }

    void _drawBar(const DRAWITEMSTRUCT& item) const {
        const ULONGLONG ullNow = ::GetTickCount64();
        const int nLeft = ullNow >= m_ullEnd ? 0 : static_cast<int>(m_ullEnd - ullNow);
        RECT bar = item.rcItem;
        ::FillRect(item.hDC, &bar, ::GetSysColorBrush(COLOR_BTNFACE));
        bar.right = bar.left + ::MulDiv(bar.right - bar.left, nLeft, static_cast<int>(kQuestionMs));
        ::FillRect(item.hDC, &bar, ::GetSysColorBrush(COLOR_HIGHLIGHT));
    }

    // The colours of the system, whatever its theme or contrast.
    static INT_PTR _colors(HDC hDc) {
        ::SetTextColor(hDc, ::GetSysColor(COLOR_WINDOWTEXT));
        ::SetBkColor(hDc, ::GetSysColor(COLOR_WINDOW));
        return reinterpret_cast<INT_PTR>(::GetSysColorBrush(COLOR_WINDOW));
    }

    common::UniqueFont m_hHeadlineFont;  // goes after the window that shows it
    common::UniqueWindow m_hWnd;
    HWND m_hBefore = nullptr;  // had the focus
    bool m_bQuestion = false;  // or a note
    bool m_bAsBefore = false;  // says the note
    bool m_bBattery = false;   // when the question opened
    ULONGLONG m_ullEnd = 0;
    DWORD m_dwSeconds = 0;  // as shown
    std::optional<Event> m_answer;
};

}  // namespace

std::unique_ptr<IPictureQuestion> makeWindowsPictureQuestion() {
    return std::make_unique<CWindowsPictureQuestion>();
}

}  // namespace win
