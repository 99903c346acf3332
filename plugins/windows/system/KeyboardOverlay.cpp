#include <windows.h>

#include <wtsapi32.h>

#include <array>
#include <atomic>
#include <exception>
#include <memory>
#include <utility>

#include "keyboard/LibraryThread.h"
#include "system/Overlay.h"
#include "system/OverlayShare.h"

namespace win {

namespace {

constexpr DWORD kStartWaitMs = 25;  // until a thread has its hook: usually one
constexpr DWORD kEndWaitMs = 500;
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
    CHookRoom(OverlayKind kind, COverlayShare& rShare) : m_kind(kind), m_rShare(rShare), m_keys(kind, &isHeld) {
        s_pRoom = this;  // before the window, whose first messages may come while it is made
        m_hWnd = _makeWindow();
        ::WTSRegisterSessionNotification(m_hWnd.get(), NOTIFY_FOR_THIS_SESSION);
    }
    ~CHookRoom() {
        _end();
        ::WTSUnRegisterSessionNotification(m_hWnd.get());
        m_hWnd.reset();
        ::UnregisterClassW(kWindowClass, _library());
        CHookRoom* pThis = this;
        s_pRoom.compare_exchange_strong(pThis, nullptr);  // the next one may have begun, if this one took long
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
            send(*answer.output);
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

    // The hook's callback has no argument. There is one overlay at a time: the next thread begins after the last has
    // ended.
    static inline std::atomic<CHookRoom*> s_pRoom = nullptr;

    const OverlayKind m_kind;
    COverlayShare& m_rShare;
    COverlayKeys m_keys;
    common::UniqueWindow m_hWnd;
};

// Shared by the hook's thread and the overlay's owner.
struct HookState {
    COverlayShare share;
    common::UniqueHandle hStarted{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    common::UniqueHandle hEnd{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    keyboard::CLibraryThread thread;  // used by the owner and, after its end began, by the next overlay's thread
    std::atomic<bool> bHooked = false;
};

// `pBefore` is the overlay's earlier thread, which was told to end, or null. It is waited for here, because the owner
// has no time for it: there must be one hook at a time.
void runHook(HookState& rState, const HookState* pBefore, OverlayKind kind) {
    if (pBefore != nullptr) {
        static_cast<void>(pBefore->thread.wait(kEndWaitMs));  // a hanging one ends later
    }
    const common::UniqueHook hHook = CHookRoom::makeHook();
    rState.bHooked = static_cast<bool>(hHook);
    if (!hHook) {
        rState.share.end(kind);
    }
    // The user waits for the hook; the first window of a thread takes its time.
    ::SetEvent(rState.hStarted.get());
    if (hHook) {
        // It ends after the overlay went off, and must not touch the share then: a new one may be on already.
        CHookRoom(kind, rState.share).run(rState.hEnd.get());
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
            // The keys that it holds must be lifted before the process ends.
            static_cast<void>(m_pState->thread.wait(kEndWaitMs));
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
        const std::shared_ptr<HookState> pBefore = std::exchange(m_pState, pState);
        if (pBefore != nullptr) {
            ::SetEvent(pBefore->hEnd.get());
        }
        m_share.take(m_kind);
        if (FAILED(pState->thread.start([pState, pBefore, kind = m_kind] { runHook(*pState, pBefore.get(), kind); }))) {
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
