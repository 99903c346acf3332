// Plug-ins that run a message loop inside an export, and the messages that arrive in it.
#pragma once

#include <commctrl.h>

#include <algorithm>
#include <functional>

#include "AppFixture.h"
#include "Logic/HbqNotify.h"

namespace apptest {

inline constexpr DWORD kDimmerKey = 0x41;
inline constexpr DWORD kBrighterKey = 0x42;
inline constexpr DWORD kUnusedKey = 0x50;
inline constexpr DWORD kOtherUnusedKey = 0x51;

// Runs a function in the message loop that takes the next message of its window.
class Meanwhile {
 public:
    explicit Meanwhile(std::function<void()> function) : m_function(std::move(function)) {
        m_hWnd = ::CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        ::SetWindowLongPtrW(m_hWnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        ::SetWindowLongPtrW(m_hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Meanwhile::procedure));
        ::PostMessageW(m_hWnd, WM_APP, 0, 0);
    }
    ~Meanwhile() { ::DestroyWindow(m_hWnd); }
    Meanwhile(const Meanwhile&) = delete;
    Meanwhile& operator=(const Meanwhile&) = delete;

    [[nodiscard]] bool ran() const { return m_bRan; }

 private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != WM_APP) {
            return ::DefWindowProcW(window, message, wParam, lParam);
        }
        auto& self = *reinterpret_cast<Meanwhile*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
        self.m_bRan = true;
        self.m_function();
        return 0;
    }

    std::function<void()> m_function;
    HWND m_hWnd;
    bool m_bRan = false;
};

// Mute, Lock and Brightness, and two keys that the user assigned to programs that do not exist.
class InUseTest : public StartTest {
 protected:
    InUseTest() {
        listFunction(L"Brightness", {kDimmerKey, kBrighterKey});
        setConfig(L"Programmable", 1);
        customise(kUnusedKey, L"C:\\no\\such\\program.exe");
        customise(kOtherUnusedKey, L"C:\\no\\such\\other.exe");
    }

    ~InUseTest() override { forgetPumping(); }

    void forgetPumping() {
        for (instr::Behaviour& behaviour : m_plugin->exports) {
            behaviour.pumps = FALSE;
        }
    }

    static void post(DWORD code, BOOL isBreak) {
        ::PostMessageW(stripWindow(), kMsgHotkey, code, static_cast<LPARAM>(isBreak));
    }
    static void postRebuild() { ::PostMessageW(ZelMainSeam::frame()->m_hWnd, hbqNotifyMessage(), 0, 0); }
    static void send(DWORD code, BOOL isBreak) {
        ::SendMessageW(stripWindow(), kMsgHotkey, code, static_cast<LPARAM>(isBreak));
    }
    static CBlackCard& card(std::size_t index) { return *MainDlgSeam::cards(*ZelMainSeam::strip())[index]; }
    static std::size_t cardCount() { return MainDlgSeam::cards(*ZelMainSeam::strip()).size(); }
    static CSliderItemDlg& slider() { return dynamic_cast<CSliderItemDlg&>(*BlackCardSeam::items(card(2)).front()); }

    // The position of a line in the log; the end if there is none.
    [[nodiscard]] std::size_t at(const std::wstring& ending) const {
        const std::vector<std::wstring> lines = m_log.lines();
        const auto found = std::find_if(lines.begin(), lines.end(),
                                        [&ending](const std::wstring& line) { return line.ends_with(ending); });
        return static_cast<std::size_t>(found - lines.begin());
    }
    [[nodiscard]] std::size_t last() const { return m_log.lines().size(); }
};

}  // namespace apptest
