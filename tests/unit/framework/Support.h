// Shared by the tests of the framework: a plain window class, and a window whose handlers are defined in the test.
#pragma once

#include <gtest/gtest.h>

#include <framework/Dialog.h>
#include <framework/FrameWnd.h>
#include <framework/WinApp.h>
#include <framework/Wnd.h>

#include <functional>
#include <map>
#include <utility>

namespace test {

inline constexpr const wchar_t* kClassName = L"FrameworkTestWindow";
// A message that only the tests send.
inline constexpr UINT kProbe = WM_USER + 1;
inline constexpr RECT kPlace{20, 20, 220, 120};

// Registers the plain class once.
inline void registerClass() {
    WNDCLASSEXW description{};
    description.cbSize = sizeof(description);
    description.lpfnWndProc = &::DefWindowProcW;
    description.hInstance = ::GetModuleHandleW(nullptr);
    description.lpszClassName = kClassName;
    ::RegisterClassExW(&description);
}

// Removes a WM_QUIT from the queue; false if there is none.
inline bool takeQuit() {
    MSG message{};
    return ::PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != FALSE;
}

inline UINT threadWindows() {
    UINT count = 0;
    ::EnumThreadWindows(
        ::GetCurrentThreadId(),
        [](HWND window, LPARAM result) -> BOOL {
            wchar_t name[64] = {};
            ::GetClassNameW(window, name, 64);
            *reinterpret_cast<UINT*>(result) += ::lstrcmpW(name, L"IME") == 0 ? 0U : 1U;
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&count));
    return count;
}

// A window object whose handlers are defined in the test. It counts living objects, and fills its memory with garbage
// when it is deleted, so that any later use crashes.
template <typename Base>
class Scripted : public Base {
 public:
    // Handles one message; calls passOn() for the default processing. May delete the object.
    using Handler = std::function<LRESULT(Scripted&)>;

    template <typename... Arguments>
    explicit Scripted(Arguments... arguments) : Base(arguments...) {
        ++s_nAlive;
    }
    ~Scripted() override { --s_nAlive; }

    static void* operator new(std::size_t size) { return ::operator new(size); }
    static void operator delete(void* memory, std::size_t size) {
        auto* bytes = static_cast<volatile unsigned char*>(memory);
        for (std::size_t i = 0; i < size; ++i) {
            bytes[i] = 0xDD;
        }
        ::operator delete(memory);
    }

    void on(UINT message, Handler handler) { m_mapScript[message] = std::move(handler); }
    LRESULT passOn() { return Base::Default(); }

    std::function<void()> m_fnPostNcDestroy;
    inline static int s_nAlive = 0;

 protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        const auto found = m_mapScript.find(message);
        if (found == m_mapScript.end()) {
            return Base::WindowProc(message, wParam, lParam);
        }
        const Handler handler = found->second;  // a copy: the handler may delete the object and this table with it
        return handler(*this);
    }
    void PostNcDestroy() override {
        if (const std::function<void()> last = m_fnPostNcDestroy; last) {
            last();
        }
    }

 private:
    std::map<UINT, Handler> m_mapScript;
};

using ScriptedWnd = Scripted<CWnd>;

inline bool create(CWnd& window, HWND parent = nullptr) {
    registerClass();
    const DWORD style = parent == nullptr || parent == HWND_MESSAGE ? WS_POPUP : WS_CHILD;
    return window.CreateEx(0, kClassName, L"", style, kPlace, parent, nullptr);
}

}  // namespace test
