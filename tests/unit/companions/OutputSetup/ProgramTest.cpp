// The program itself, as the display-output function starts it: its windows are found from outside, by their class.
#include <gtest/gtest.h>

#include <windows.h>

#include <functional>
#include <string>

#include "common/Handle.h"

namespace {

constexpr DWORD kDeadlineMs = 20'000;

bool poll(const std::function<bool()>& condition) {
    const ULONGLONG end = ::GetTickCount64() + kDeadlineMs;
    while (!condition()) {
        if (::GetTickCount64() > end) {
            return false;
        }
        ::Sleep(10);
    }
    return true;
}

// A running program; ended with the test if it has not ended itself.
class Program {
 public:
    explicit Program(const std::wstring& arguments) {
        std::wstring line = L"\"" OUTPUTSETUP_PROGRAM L"\" " + arguments;
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        PROCESS_INFORMATION info{};
        if (::CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &info) !=
            FALSE) {
            m_process.reset(info.hProcess);
            ::CloseHandle(info.hThread);
        }
    }
    ~Program() {
        if (isRunning()) {
            ::TerminateProcess(m_process.get(), 99);
        }
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    [[nodiscard]] bool started() const { return static_cast<bool>(m_process); }
    [[nodiscard]] bool isRunning() const {
        return started() && ::WaitForSingleObject(m_process.get(), 0) == WAIT_TIMEOUT;
    }
    // 98 if it does not end.
    [[nodiscard]] DWORD exitCode() const {
        DWORD code = 98;
        if (::WaitForSingleObject(m_process.get(), kDeadlineMs) == WAIT_OBJECT_0) {
            ::GetExitCodeProcess(m_process.get(), &code);
        }
        return code;
    }
    // A visible top-level window of the program of that class, once it exists.
    [[nodiscard]] HWND window(const wchar_t* className) const {
        HWND found = nullptr;
        poll([&] { return (found = find(className)) != nullptr || !isRunning(); });
        return found;
    }

 private:
    [[nodiscard]] HWND find(const wchar_t* className) const {
        for (HWND window = nullptr; (window = ::FindWindowExW(nullptr, window, className, nullptr)) != nullptr;) {
            DWORD process = 0;
            ::GetWindowThreadProcessId(window, &process);
            if (process == ::GetProcessId(m_process.get()) && ::IsWindowVisible(window) != FALSE) {
                return window;
            }
        }
        return nullptr;
    }

    common::UniqueHandle m_process;
};

int countWindows(const wchar_t* className) {
    int count = 0;
    for (HWND window = nullptr; (window = ::FindWindowExW(nullptr, window, className, nullptr)) != nullptr;) {
        ++count;
    }
    return count;
}

struct Start {
    const wchar_t* arguments;
    const wchar_t* className;
};

constexpr const wchar_t* kDialogClass = L"#32770";

}  // namespace

class ProgramWindow : public testing::TestWithParam<Start> {};

TEST_P(ProgramWindow, OpensAndClosesOnThePostedMessage) {
    const Program program(GetParam().arguments);
    ASSERT_TRUE(program.started());
    const HWND window = program.window(GetParam().className);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(::FindWindowW(GetParam().className, nullptr), window);
    ::PostMessageW(window, 0x0465, 0, 0);
    EXPECT_EQ(program.exitCode(), 0U);
}

TEST_P(ProgramWindow, SecondStartBringsTheFirstToTheFrontAndEnds) {
    const Program first(GetParam().arguments);
    const HWND window = first.window(GetParam().className);
    ASSERT_NE(window, nullptr);
    ::ShowWindow(window, SW_SHOWMINNOACTIVE);
    ASSERT_TRUE(poll([&] { return ::IsIconic(window) != FALSE; }));
    const Program second(GetParam().arguments);
    EXPECT_EQ(second.exitCode(), 0U);
    EXPECT_TRUE(poll([&] { return ::IsIconic(window) == FALSE; }));
    EXPECT_TRUE(poll([&] { return ::GetForegroundWindow() == window; }));
    EXPECT_EQ(countWindows(GetParam().className), 1);
    EXPECT_TRUE(first.isRunning());
    ::PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(first.exitCode(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Windows, ProgramWindow,
                         testing::Values(Start{L"\\OutputConf 131078", L"_DCWNDCLS_OUTPUT_"},
                                         Start{L"\\Save", L"_DCWNDCLS_SAVE_"},
                                         Start{L"\\Config", L"_DCWNDCLS_CONFIG_"}));

TEST(Program, TwoStartsAtTheSameTimeMakeOneWindow) {
    const Program first(L"\\Config");
    const Program second(L"\\Config");
    HWND window = nullptr;
    ASSERT_TRUE(poll([&] {
        window = ::FindWindowW(L"_DCWNDCLS_CONFIG_", nullptr);
        return window != nullptr && first.isRunning() != second.isRunning();
    }));
    EXPECT_EQ(countWindows(L"_DCWNDCLS_CONFIG_"), 1);
    ::PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(first.exitCode(), 0U);
    EXPECT_EQ(second.exitCode(), 0U);
}

TEST(Program, DifferentWindowsLiveBesideEachOther) {
    const Program save(L"\\Save");
    const Program config(L"\\Config");
    const HWND saveWindow = save.window(L"_DCWNDCLS_SAVE_");
    const HWND configWindow = config.window(L"_DCWNDCLS_CONFIG_");
    EXPECT_NE(saveWindow, nullptr);
    EXPECT_NE(configWindow, nullptr);
    ::PostMessageW(saveWindow, WM_CLOSE, 0, 0);
    ::PostMessageW(configWindow, WM_CLOSE, 0, 0);
    EXPECT_EQ(save.exitCode(), 0U);
    EXPECT_EQ(config.exitCode(), 0U);
}

TEST(Program, BadCommandLineShowsAMessageAndEndsWithOne) {
    for (const wchar_t* arguments : {L"", L"\\Nonsense", L"\\OutputConf 0"}) {
        const Program program(arguments);
        const HWND message = program.window(kDialogClass);
        ASSERT_NE(message, nullptr) << arguments;
        EXPECT_TRUE(program.isRunning());
        ::PostMessageW(message, WM_COMMAND, IDOK, 0);
        EXPECT_EQ(program.exitCode(), 1U) << arguments;
    }
}
