// Shared by the tests of the application and its strips: a private registry, the log, stand-ins, and either the parts
// of the application created one by one (ShellTest) or a complete start-up (StartTest).
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "Siblings.h"
#include "SystemDouble.h"
#include "plugins/InstrumentedPlugin.h"
#include "support/AppRoom.h"
#include "support/AppSeams.h"
#include "support/LogCapture.h"
#include "support/RegistryRoom.h"

inline bool operator==(const RECT& a, const RECT& b) {
    return ::EqualRect(&a, &b) != FALSE;
}
inline void PrintTo(const RECT& rect, std::ostream* out) {
    *out << '(' << rect.left << ", " << rect.top << ")-(" << rect.right << ", " << rect.bottom << ')';
}

namespace apptest {

using support::pump;
using support::pumpUntil;
using support::windowRect;

inline constexpr DWORD kMuteKey = 0x3B;
inline constexpr DWORD kLockKey = 0x3C;
inline constexpr DWORD kSleepKey = 0x3D;
inline constexpr DWORD kModifier = 0;
inline constexpr BOOL kMake = FALSE;
inline constexpr BOOL kBreak = TRUE;

inline bool shown(HWND window) {
    return ::IsWindowVisible(window) != FALSE;
}

// Registry, log and the doubles of the system.
class LogTest : public testing::Test {
 protected:
    LogTest();

    [[nodiscard]] std::size_t timesLogged(const std::wstring& line) const;
    [[nodiscard]] bool logged(const std::wstring& line) const { return timesLogged(line) > 0; }
    // In order.
    [[nodiscard]] std::vector<std::wstring> errors() const;
    // The names of entered functions that begin with one of these, in order.
    [[nodiscard]] std::vector<std::wstring> entered(const std::vector<std::wstring>& beginnings) const;

    // One function of the list with the instrumented plug-in; the order of the calls is that of the list.
    void listFunction(const std::wstring& name, const std::vector<DWORD>& codes);
    static void setConfig(const wchar_t* name, DWORD value);
    // A key that the user assigned to another program, as the button utility writes it.
    static void customise(DWORD code, const std::wstring& file);

    support::RegistryRoom m_registry;
    support::LogCapture m_log;
    instr::InstrumentedPlugin m_plugin;
    std::wstring m_list;
};

// The strips without a start-up; the frame if a test asks for it.
class ShellTest : public LogTest {
 protected:
    ShellTest();
    ~ShellTest() override;

    CBlackCard& addCard(const wchar_t* function, const std::vector<DWORD>& codes);
    // Mute, Lock and Sleep, laid out.
    void addThreeCards();
    void layOut() { EXPECT_EQ(MainDlgSeam::place(strip()), S_OK); }

    [[nodiscard]] CZelMainDlg& strip() const { return m_room.strip(); }
    [[nodiscard]] CZelHideDlg& hover() const { return *ZelMainSeam::hoverStrip(); }
    [[nodiscard]] HWND stripWindow() const { return m_room.stripWindow(); }
    [[nodiscard]] HWND hoverWindow() const { return m_room.hoverWindow(); }
    [[nodiscard]] QrdConfig& config() const { return m_room.config(); }
    [[nodiscard]] CBlackCard& card(std::size_t index) const { return *MainDlgSeam::cards(strip())[index]; }
    HWND makeFrame();

    void showStrip();
    [[nodiscard]] bool stripShown() const { return shown(stripWindow()); }
    [[nodiscard]] bool hoverShown() const { return shown(hoverWindow()); }
    [[nodiscard]] bool largeShown(std::size_t index) const;
    HRESULT key(DWORD code, BOOL isBreak) { return strip().handleHotkey(code, isBreak); }

    support::AppRoom m_room;
};

// Complete start-ups in this process.
class StartTest : public LogTest {
 protected:
    StartTest();
    ~StartTest() override;

    // InitInstance with that command line and the settings in the registry.
    bool start(const wchar_t* commandLine = L"");
    void end();

    [[nodiscard]] static HWND stripWindow() { return ZelMainSeam::strip()->m_hWnd; }
    [[nodiscard]] static HWND hoverWindow() { return ZelMainSeam::hoverStrip()->m_hWnd; }
    [[nodiscard]] static standin::Control& hotkeyLibrary() { return siblings::control(L"ZelMain.dll"); }

    bool m_started = false;
    std::size_t m_windows;
};

// Counts the messages of one number that a window of this thread receives.
class MessageCounter {
 public:
    MessageCounter(const wchar_t* className, const wchar_t* title, UINT message);
    ~MessageCounter();
    MessageCounter(const MessageCounter&) = delete;
    MessageCounter& operator=(const MessageCounter&) = delete;

    [[nodiscard]] HWND window() const { return m_hWnd; }
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] const std::vector<MSG>& messages() const { return m_messages; }

 private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    std::wstring m_className;
    UINT m_message;
    HWND m_hWnd = nullptr;
    int m_count = 0;
    std::vector<MSG> m_messages;
};

}  // namespace apptest
