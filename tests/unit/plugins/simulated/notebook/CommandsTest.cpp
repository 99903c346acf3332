#include "Commands.h"

#include <gtest/gtest.h>

#include <thread>

#include "SampleSettings.h"
#include "Session.h"
#include "State.h"
#include "ZelHotkey.h"
#include "common/Handle.h"
#include "plugins/simulated/Sandbox.h"

namespace plugintest {
namespace {

class Commands : public testing::Test {
 protected:
    sim::ExitCode run(const std::vector<std::wstring>& arguments) {
        m_strAnswer.clear();
        return sim::runCommand(arguments, m_strAnswer);
    }

    Sandbox m_sandbox;
    std::wstring m_strAnswer;
};

TEST_F(Commands, UnknownOrIncompleteCommandTellsTheUse) {
    for (const std::vector<std::wstring>& arguments :
         std::vector<std::vector<std::wstring>>{{},
                                                {L"/nonsense"},
                                                {L"/set"},
                                                {L"/set", L"Mute", L"Item"},
                                                {L"/register", L"/some"},
                                                {L"/register", L"/all", L"/all"}}) {
        EXPECT_EQ(run(arguments), sim::kWrongUse);
        EXPECT_NE(m_strAnswer.find(L"/unregister"), std::wstring::npos);
    }
}

TEST_F(Commands, SetStoresNumbersAndTexts) {
    EXPECT_EQ(run({L"/set", L"Wireless", L"Items", L"0x7FFF"}), sim::kDone);
    EXPECT_EQ(sim::readNumber(L"Wireless", L"Items", 0), 0x7FFFU);
    EXPECT_EQ(run({L"/set", L"Mute", L"SelectItem.Result", L"-1"}), sim::kDone);
    EXPECT_EQ(sim::readNumber(L"Mute", L"SelectItem.Result", 0), 0xFFFFFFFF);
    EXPECT_EQ(run({L"/set", L"PowerPlan", L"Name0", L"3 speeds"}), sim::kDone);
    EXPECT_EQ(sim::readText(L"PowerPlan", L"Name0", {}), L"3 speeds");
    EXPECT_EQ(run({L"/set", L".", L"RecordFile", L"C:\\x.txt"}), sim::kDone);
    EXPECT_EQ(sim::readText({}, L"RecordFile", {}), L"C:\\x.txt");
}

TEST_F(Commands, SetRefusesAFunctionThatThereIsNot) {
    EXPECT_EQ(run({L"/set", L"Mut", L"Item", L"1"}), sim::kWrongUse);
    EXPECT_EQ(m_strAnswer, L"There is no function \"Mut\".\n");
}

TEST_F(Commands, StateTellsEveryFunction) {
    EXPECT_EQ(run({L"/set", L"Touchpad", L"Item", L"1"}), sim::kDone);
    EXPECT_EQ(run({L"/state"}), sim::kDone);
    EXPECT_NE(m_strAnswer.find(L"Touchpad\toff\n"), std::wstring::npos);
    EXPECT_NE(m_strAnswer.find(L"Output\tLCD\n"), std::wstring::npos);
}

TEST_F(Commands, RegisterKeepsAListThatSomebodyChanged) {
    const auto list = [] {
        wchar_t text[512] = L"";
        DWORD bytes = sizeof text;
        RegGetValueW(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, RRF_RT_REG_SZ, nullptr, text, &bytes);
        return std::wstring(text);
    };
    EXPECT_EQ(run({L"/register", L"/keep"}), sim::kDone);
    EXPECT_TRUE(list().starts_with(L"Mute;Lock;")) << "there was none";
    const wchar_t mine[] = L"Mute;";
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, REG_SZ, mine, sizeof mine);
    EXPECT_EQ(run({L"/register", L"/keep"}), sim::kDone);
    EXPECT_EQ(list(), L"Mute;");
    EXPECT_NE(m_strAnswer.find(L"stays as it is"), std::wstring::npos);
    EXPECT_EQ(run({L"/register"}), sim::kDone);
    EXPECT_TRUE(list().starts_with(L"Mute;Lock;"));
}

TEST_F(Commands, RegisterBringsASampleOfAnotherLanguageUpToDateAsWholeAsItIs) {
    ASSERT_EQ(sim::registerSample(HKEY_LOCAL_MACHINE, sim::programFolder(), true, sim::Language::German),
              ERROR_SUCCESS);
    EXPECT_EQ(run({L"/register", L"/keep"}), sim::kDone);
    EXPECT_TRUE(m_strAnswer.empty());
    wchar_t caption[64] = L"";
    DWORD bytes = sizeof caption;
    RegGetValueW(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Output", sim::kCaptionValue, RRF_RT_REG_SZ, nullptr, caption,
                 &bytes);
    EXPECT_EQ(caption, sim::word(L"Older output"));
    EXPECT_EQ(sim::listState(HKEY_LOCAL_MACHINE, sim::programFolder()), sim::ListState::WholeSample);
}

TEST_F(Commands, RegisterAndUnregisterWorkOnTheMachinesSettings) {
    EXPECT_EQ(run({L"/register", L"/all"}), sim::kDone);
    wchar_t path[MAX_PATH];
    DWORD bytes = sizeof path;
    ASSERT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\KESTOVA\\Fenwyn", L"InstallPath", RRF_RT_REG_SZ, nullptr,
                           path, &bytes),
              ERROR_SUCCESS);
    EXPECT_EQ(path, sim::programFolder());
    EXPECT_EQ(run({L"/unregister"}), sim::kDone);
    EXPECT_NE(RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\KESTOVA\\Fenwyn", L"InstallPath", RRF_RT_REG_SZ, nullptr,
                           path, &bytes),
              ERROR_SUCCESS);
}

// A program with Fenwyn's main window and end event, on a thread of its own.
class FakeFenwyn {
 public:
    explicit FakeFenwyn(bool obeys) : m_hEnd(CreateEventW(nullptr, TRUE, FALSE, ZEL_END_EVENT)) {
        m_thread = std::thread([this, obeys] {
            WNDCLASSW windowClass{};
            windowClass.lpfnWndProc = DefWindowProcW;
            windowClass.lpszClassName = L"ZelMainCls";
            RegisterClassW(&windowClass);
            const HWND window = CreateWindowW(L"ZelMainCls", L"", 0, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr);
            SetEvent(m_hReady.get());
            pumpUntil(obeys ? m_hEnd.get() : m_hStop.get());
            DestroyWindow(window);
            UnregisterClassW(L"ZelMainCls", nullptr);
        });
        WaitForSingleObject(m_hReady.get(), INFINITE);
    }
    ~FakeFenwyn() {
        SetEvent(m_hStop.get());
        SetEvent(m_hEnd.get());
        m_thread.join();
    }
    FakeFenwyn(const FakeFenwyn&) = delete;
    FakeFenwyn& operator=(const FakeFenwyn&) = delete;

 private:
    static void pumpUntil(HANDLE event) {
        while (MsgWaitForMultipleObjects(1, &event, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
                DispatchMessageW(&message);
            }
        }
    }

    common::UniqueHandle m_hEnd;
    common::UniqueHandle m_hReady{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    common::UniqueHandle m_hStop{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::thread m_thread;
};

TEST_F(Commands, EndWaitsUntilTheMainWindowIsGone) {
    const FakeFenwyn fenwyn(true);
    EXPECT_EQ(run({L"/end"}), sim::kDone);
    EXPECT_EQ(FindWindowW(L"ZelMainCls", nullptr), nullptr);
}

TEST_F(Commands, EndGivesUpOnAProgramThatDoesNotListen) {
    const FakeFenwyn fenwyn(false);
    const ULONGLONG start = GetTickCount64();
    EXPECT_FALSE(sim::endFenwyn(200));
    EXPECT_GE(GetTickCount64() - start, 190U);
}

TEST_F(Commands, EndOfNothingIsDoneAtOnce) {
    EXPECT_EQ(run({L"/end"}), sim::kDone);
}

}  // namespace
}  // namespace plugintest
