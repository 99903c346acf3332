#include <windows.h>

#include <wtsapi32.h>

#include <array>
#include <atomic>
#include <exception>
#include <memory>

#include "keyboard/LibraryThread.h"
#include "system/Overlay.h"
#include "system/OverlayShare.h"

namespace win {

namespace {

constexpr DWORD kStartWaitMs = 25;  // until a thread has its hook: usually one
constexpr DWORD kEndWaitMs = 25;    // for a thread that ends
constexpr DWORD kUpsWaitMs = 500;   // for one that has keys to lift
constexpr wchar_t kWindowClass[] = L"FenwynOverlayWnd";

bool isDown(int nVirtualKey) {
    return (static_cast<unsigned short>(::GetAsyncKeyState(nVirtualKey)) & 0x8000U) != 0;
}

bool isHeld(WORD wScan) {
    const UINT uVirtualKey = ::MapVirtualKeyW(wScan, MAPVK_VSC_TO_VK);
    return uVirtualKey != 0 && isDown(static_cast<int>(uVirtualKey));
}

bool modifierIsDown() {
    constexpr std::array<int, 4> kModifiers{VK_CONTROL, VK_MENU, VK_LWIN, VK_RWIN};
    for (const int nKey : kModifiers) {
        if (isDown(nKey)) {
            return true;
        }
    }
    return false;
}

void send(const COverlayKeys::Output& output) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = output.wVirtualKey;
    input.ki.wScan = output.key.wScan;
    input.ki.dwFlags = (output.key.bExtended ? KEYEVENTF_EXTENDEDKEY : 0U) | (output.bUp ? KEYEVENTF_KEYUP : 0U);
    ::SendInput(1, &input, sizeof(input));
}

// One active overlay: its hook, and the window that receives log-off and lock. Created, used and destroyed on the
// hook's thread.
class CHookRoom {
 public:
    // `rHolds` becomes true while a key is down that the overlay has to lift.
    CHookRoom(OverlayKind kind, COverlayShare& rShare, std::atomic<bool>& rHolds)
        : m_kind(kind), m_rShare(rShare), m_rHolds(rHolds), m_keys(kind, &isHeld) {
        s_pRoom = this;  // before the window, whose first messages may come while it is made
        m_hWnd = _makeWindow();
        ::WTSRegisterSessionNotification(m_hWnd.get(), NOTIFY_FOR_THIS_SESSION);
    }
    ~CHookRoom() {
        _end();
        ::WTSUnRegisterSessionNotification(m_hWnd.get());
        m_hWnd.reset();
        ::UnregisterClassW(kWindowClass, _library());
        s_pRoom = nullptr;
    }
    CHookRoom(const CHookRoom&) = delete;
    CHookRoom& operator=(const CHookRoom&) = delete;

    // The hook of the calling thread; it does nothing while there is no overlay.
    [[nodiscard]] static common::UniqueHook makeHook() {
        return common::UniqueHook(::SetWindowsHookExW(WH_KEYBOARD_LL, &CHookRoom::_hookProcedure, _library(), 0));
    }

    // Handles messages until another overlay is on and every key that this one held is up, or until the event.
    void run(HANDLE hEnd) {
        const std::array<HANDLE, 2> events{hEnd, m_rShare.changed(m_kind)};
        while (!_isOver() && ::MsgWaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE,
                                                         INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
            MSG message;
            while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                ::DispatchMessageW(&message);
            }
        }
    }

 private:
    // Gives the keys back once the overlay is no longer on.
    [[nodiscard]] bool _isOver() {
        if (m_rShare.mine(m_kind)) {
            return false;
        }
        _end();
        return !m_keys.drains();
    }

    void _end() {
        for (const COverlayKeys::Output& up : m_keys.end()) {
            send(up);
        }
        m_rHolds = false;
    }

    // Whether the key is hidden from all others. The substitute is sent here rather than later, because following keys
    // must not overtake it.
    [[nodiscard]] bool _handle(const KBDLLHOOKSTRUCT& key) {
        if ((key.flags & LLKHF_INJECTED) != 0) {
            return false;
        }
        if (!m_rShare.mine(m_kind)) {
            _end();
            ::SetEvent(m_rShare.changed(m_kind));
        }
        const ScanKey scan{static_cast<WORD>(key.scanCode), (key.flags & LLKHF_EXTENDED) != 0};
        const COverlayKeys::Answer answer = m_keys.handle(scan, (key.flags & LLKHF_UP) != 0, modifierIsDown());
        if (answer.output) {
            m_rHolds = m_rHolds || !answer.output->bUp;
            send(*answer.output);
            m_rHolds = m_keys.holds();
        }
        return answer.bSwallow;
    }

    static LRESULT CALLBACK _hookProcedure(int nCode, WPARAM wParam, LPARAM lParam) noexcept {
        CHookRoom* const pRoom = s_pRoom;
        if (nCode == HC_ACTION && pRoom != nullptr &&
            pRoom->_handle(*reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam))) {
            return 1;
        }
        return ::CallNextHookEx(nullptr, nCode, wParam, lParam);
    }

    static LRESULT CALLBACK _windowProcedure(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) noexcept {
        const bool bLeaves = uMessage == WM_ENDSESSION
                                 ? wParam != FALSE
                                 : uMessage == WM_WTSSESSION_CHANGE &&
                                       (wParam == WTS_SESSION_LOCK || wParam == WTS_SESSION_LOGOFF ||
                                        wParam == WTS_CONSOLE_DISCONNECT || wParam == WTS_REMOTE_DISCONNECT);
        if (CHookRoom* const pRoom = s_pRoom; bLeaves && pRoom != nullptr) {
            pRoom->m_rShare.end(pRoom->m_kind);
        }
        return ::DefWindowProcW(hWnd, uMessage, wParam, lParam);
    }

    static HINSTANCE _library() {
        HMODULE hModule = nullptr;
        ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                             reinterpret_cast<const wchar_t*>(reinterpret_cast<void*>(&CHookRoom::_hookProcedure)),
                             &hModule);
        return hModule;
    }

    // Never visible, but top-level, because only such windows are notified of the end of the session.
    static common::UniqueWindow _makeWindow() {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = &CHookRoom::_windowProcedure;
        windowClass.hInstance = _library();
        windowClass.lpszClassName = kWindowClass;
        ::RegisterClassW(&windowClass);
        return common::UniqueWindow(::CreateWindowExW(WS_EX_TOOLWINDOW, kWindowClass, L"", WS_POPUP, 0, 0, 0, 0,
                                                      nullptr, nullptr, windowClass.hInstance, nullptr));
    }

    // For the hook's callback.
    static inline std::atomic<CHookRoom*> s_pRoom = nullptr;

    const OverlayKind m_kind;
    COverlayShare& m_rShare;
    std::atomic<bool>& m_rHolds;
    COverlayKeys m_keys;
    common::UniqueWindow m_hWnd;
};

// Shared by the hook's thread and the overlay's owner.
struct HookState {
    COverlayShare share;
    common::UniqueHandle hStarted{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    common::UniqueHandle hEnd{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    keyboard::CLibraryThread thread;
    std::atomic<bool> bHooked = false;
    std::atomic<bool> bHolds = false;  // a key is down that the hook's thread has to lift
};

// The right to have a hook. The hook's callback has no argument, so that one thread of the library has it at a time.
class CTurn {
 public:
    // Waits for the thread before, whose overlay has been told to end: here, because their owner has no time for it.
    CTurn() {
        const ULONGLONG ullEnd = ::GetTickCount64() + kUpsWaitMs;
        while (!(m_bMine = ::TryAcquireSRWLockExclusive(&s_lock) != FALSE) && ::GetTickCount64() < ullEnd) {
            ::Sleep(1);
        }
    }
    ~CTurn() {
        if (m_bMine) {
            ::ReleaseSRWLockExclusive(&s_lock);
        }
    }
    CTurn(const CTurn&) = delete;
    CTurn& operator=(const CTurn&) = delete;

    // False: that thread hangs.
    [[nodiscard]] bool mine() const { return m_bMine; }

 private:
    static inline SRWLOCK s_lock = SRWLOCK_INIT;

    bool m_bMine = false;
};

void runHook(HookState& rState, OverlayKind kind) {
    const CTurn turn;
    const common::UniqueHook hHook = turn.mine() ? CHookRoom::makeHook() : common::UniqueHook();
    rState.bHooked = static_cast<bool>(hHook);
    if (!hHook) {
        rState.share.end(kind);
    }
    // The user waits for the hook; the first window of a thread takes its time.
    ::SetEvent(rState.hStarted.get());
    if (hHook) {
        // It ends after the overlay went off, and must not touch the share then: a new one may be on already.
        CHookRoom(kind, rState.share, rState.bHolds).run(rState.hEnd.get());
    }
}

class CKeyboardOverlay final : public IOverlay {
 public:
    explicit CKeyboardOverlay(OverlayKind kind) : m_kind(kind) {}
    ~CKeyboardOverlay() override {
        if (m_share.valid() && m_share.mine(m_kind)) {
            m_share.end(m_kind);
        }
        if (m_pState != nullptr) {
            ::SetEvent(m_pState->hEnd.get());
            // The keys that it holds must be lifted before the process ends. Without any, it needs nobody to wait.
            static_cast<void>(m_pState->thread.wait(kEndWaitMs) ||
                              (m_pState->bHolds && m_pState->thread.wait(kUpsWaitMs)));
        }
    }

    bool isOn() override { return m_share.valid() && m_share.current() == m_kind; }

    bool turn(bool bOn) override {
        if (!m_share.valid()) {
            return false;
        }
        if (isOn() == bOn) {
            return true;
        }
        if (!bOn) {
            m_share.end(m_kind);
            return true;
        }
        return _begin();
    }

 private:
    [[nodiscard]] bool _begin() {
        const auto pState = std::make_shared<HookState>();
        if (!pState->share.valid()) {
            return false;
        }
        if (m_pState != nullptr) {
            ::SetEvent(m_pState->hEnd.get());
        }
        m_pState = pState;
        m_share.take(m_kind);
        if (FAILED(pState->thread.start([pState, kind = m_kind] { runHook(*pState, kind); }))) {
            m_share.end(m_kind);
            return false;
        }
        // On a busy machine the hook comes a moment later. A thread that gets none takes the overlay off itself.
        return ::WaitForSingleObject(pState->hStarted.get(), kStartWaitMs) != WAIT_OBJECT_0 || pState->bHooked;
    }

    const OverlayKind m_kind;
    COverlayShare m_share;
    std::shared_ptr<HookState> m_pState;
};

}  // namespace

std::unique_ptr<IOverlay> makeKeyboardOverlay(OverlayKind kind) {
    return std::make_unique<CKeyboardOverlay>(kind);
}

}  // namespace win
