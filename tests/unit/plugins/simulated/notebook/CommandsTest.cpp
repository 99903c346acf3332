#include "Commands.h"

#include <gtest/gtest.h>

#include <thread>

#include "SampleSettings.h"
#include "Session.h"
#include "State.h"
#include "ZelHotkey.h"
#include "captions/Captions.h"
#include "common/Handle.h"
#include "common/UiLanguage.h"
#include "plugins/simulated/Sandbox.h"

namespace plugintest {
namespace {

class Commands : public testing::Test {
 protected:
    sim::ExitCode run(const std::vector<std::wstring>& arguments) {
        m_strAnswer.clear();
        return sim::runCommand(arguments, m_strAnswer);
    }

    // Empty if there is none.
    static std::wstring text(const std::wstring& key, const wchar_t* name) {
        wchar_t found[512] = L"";
        DWORD bytes = sizeof found;
        RegGetValueW(HKEY_LOCAL_MACHINE, (ZEL_REG_HOTKEY + key).c_str(), name, RRF_RT_REG_SZ, nullptr, found, &bytes);
        return found;
    }
    static std::wstring list() { return text({}, ZEL_VALUE_FUNC_LIST); }
    static void setList(const std::wstring& names) {
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, names);
    }
    // 0 if there is none.
    static DWORD code(const std::wstring& function) {
        DWORD number = 0;
        DWORD bytes = sizeof number;
        RegGetValueW(HKEY_LOCAL_MACHINE, (ZEL_REG_HOTKEY L"\\" + function).c_str(), ZEL_VALUE_CODE,
                     RRF_RT_REG_DWORD | RRF_RT_REG_BINARY, nullptr, &number, &bytes);
        return number;
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
                                                {L"/offer", L"Mute"},
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
    EXPECT_EQ(run({L"/register", L"/keep"}), sim::kDone);
    EXPECT_TRUE(list().starts_with(L"Mute;Lock;")) << "there was none";
    setList(L"Mute;");
    EXPECT_EQ(run({L"/register", L"/keep"}), sim::kDone);
    EXPECT_EQ(list(), L"Mute;");
    EXPECT_NE(m_strAnswer.find(L"stays as it is"), std::wstring::npos);
    EXPECT_EQ(run({L"/register"}), sim::kDone);
    EXPECT_TRUE(list().starts_with(L"Mute;Lock;"));
}

TEST_F(Commands, OfferAddsItsFunctionAloneToAListThatSomebodyChanged) {
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", sim::kCaptionValue, L"Quiet!");
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", ZEL_VALUE_CODE, 0x3C);
    setList(L"Mute;");
    EXPECT_EQ(run({L"/offer", L"Touchpad", L"Z:\\mine.dll"}), sim::kDone);
    EXPECT_EQ(list(), L"Mute;Touchpad;");
    EXPECT_EQ(code(L"Touchpad"), 0x43U);
    EXPECT_EQ(text(L"\\Touchpad", sim::kCaptionValue), captions::captionOf(L"Touchpad", common::wantedLanguage()));
    EXPECT_EQ(text(L"\\Touchpad", ZEL_VALUE_FUNC_DLL), L"Z:\\mine.dll");
    EXPECT_EQ(text(L"\\Mute", sim::kCaptionValue), L"Quiet!");
    EXPECT_EQ(code(L"Mute"), 0x3CU);
    EXPECT_TRUE(text(L"\\Mute", ZEL_VALUE_FUNC_DLL).empty());
    EXPECT_EQ(code(L"Lock"), 0U) << "no other function";
}

TEST_F(Commands, OfferKeepsTheKeysAndTheCaptionOfAFunctionThatHasThem) {
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", sim::kCaptionValue, L"Quiet!");
    support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", ZEL_VALUE_CODE, 0x3C);
    for (const wchar_t* const names : {L"Lock;", L"Lock;Mute;", L"mute;Lock;"}) {
        setList(names);
        EXPECT_EQ(run({L"/offer", L"mute", L"Z:\\mine.dll"}), sim::kDone);
        EXPECT_EQ(list(), std::wstring(names) == L"Lock;" ? L"Lock;Mute;" : names);
        EXPECT_EQ(text(L"\\Mute", sim::kCaptionValue), L"Quiet!");
        EXPECT_EQ(code(L"Mute"), 0x3CU);
        EXPECT_EQ(text(L"\\Mute", ZEL_VALUE_FUNC_DLL), L"Z:\\mine.dll");
    }
}

TEST_F(Commands, OfferFindsOnlyWholeNamesThatEndWithASemicolon) {
    for (const auto& [names, after] :
         std::vector<std::pair<std::wstring, std::wstring>>{{L"", L"Output;"},
                                                            {L"Output_2;", L"Output_2;Output;"},
                                                            {L"Lock;Output", L"Lock;Output;Output"},
                                                            {L"Lock;Mute", L"Lock;Output;Mute"}}) {
        setList(names);
        EXPECT_EQ(run({L"/offer", L"Output", L"Z:\\mine.dll"}), sim::kDone);
        EXPECT_EQ(list(), after);
    }
}

TEST_F(Commands, OfferOfAFunctionThatThereIsNotChangesNothing) {
    EXPECT_EQ(run({L"/offer", L"Touchpat", L"Z:\\mine.dll"}), sim::kWrongUse);
    EXPECT_NE(m_strAnswer.find(L"no function \"Touchpat\""), std::wstring::npos);
    EXPECT_NE(m_strAnswer.find(L" Touchpad "), std::wstring::npos);
    EXPECT_EQ(sim::listState(HKEY_LOCAL_MACHINE, sim::programFolder()), sim::ListState::None);
    setList(L"Mute;");
    EXPECT_EQ(run({L"/offer", L"Touchpat", L"Z:\\mine.dll"}), sim::kWrongUse);
    EXPECT_EQ(list(), L"Mute;");
}

TEST_F(Commands, OfferWritesTheSampleOnlyWhereThereIsNoList) {
    EXPECT_EQ(run({L"/offer", L"Output", L"Z:\\mine.dll"}), sim::kDone);
    EXPECT_TRUE(list().starts_with(L"Mute;Lock;"));
    EXPECT_TRUE(list().ends_with(L";Output;"));
    EXPECT_EQ(code(L"Output"), 0x19U);
}

TEST_F(Commands, RegisterBringsASampleOfAnotherLanguageUpToDateAsWholeAsItIs) {
    ASSERT_EQ(sim::registerSample(HKEY_LOCAL_MACHINE, sim::programFolder(), true, LANG_GERMAN), ERROR_SUCCESS);
    EXPECT_EQ(run({L"/register", L"/keep"}), sim::kDone);
    EXPECT_TRUE(m_strAnswer.empty());
    wchar_t caption[64] = L"";
    DWORD bytes = sizeof caption;
    RegGetValueW(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Output", sim::kCaptionValue, RRF_RT_REG_SZ, nullptr, caption,
                 &bytes);
    EXPECT_EQ(caption, captions::captionOf(L"Output", common::wantedLanguage()));
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
