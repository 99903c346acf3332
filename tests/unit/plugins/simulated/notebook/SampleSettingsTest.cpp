#include "SampleSettings.h"

#include <gtest/gtest.h>

#include "Functions.h"
#include "captions/Captions.h"
#include "common/Handle.h"
#include "plugins/simulated/Sandbox.h"

namespace plugintest {
namespace {

constexpr wchar_t kFolder[] = L"C:\\Program Files\\Fenwyn";
constexpr wchar_t kProduct[] = L"SOFTWARE\\KESTOVA\\Fenwyn";
constexpr wchar_t kHotKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn\\HotKey";
constexpr wchar_t kConfig[] = L"SOFTWARE\\KESTOVA\\Fenwyn\\Config";

std::wstring text(const std::wstring& key, const wchar_t* value) {
    wchar_t buffer[512];
    DWORD bytes = sizeof buffer;
    return RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), value, RRF_RT_REG_SZ, nullptr, buffer, &bytes) == ERROR_SUCCESS
               ? std::wstring(buffer)
               : L"(none)";
}

DWORD number(const std::wstring& key, const wchar_t* value) {
    DWORD result = 0xFFFFFFFF;
    DWORD bytes = sizeof result;
    RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), value, RRF_RT_REG_DWORD, nullptr, &result, &bytes);
    return result;
}

void setNumber(const std::wstring& key, const wchar_t* value, DWORD data) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), value, REG_DWORD, &data, sizeof data);
}

bool keyExists(const std::wstring& path) {
    common::UniqueRegKey key;
    return RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, key.put()) == ERROR_SUCCESS;
}

class SampleSettings : public testing::Test {
 protected:
    static LSTATUS add(bool all, LANGID language = LANG_ENGLISH) {
        return sim::registerSample(HKEY_LOCAL_MACHINE, kFolder, all, language);
    }
    static LSTATUS remove() { return sim::unregisterSample(HKEY_LOCAL_MACHINE, kFolder); }

    Sandbox m_sandbox;
};

TEST_F(SampleSettings, FunctionListEndsEachNameAndLeavesTheOlderOutputOut) {
    ASSERT_EQ(add(false), ERROR_SUCCESS);
    EXPECT_EQ(text(kHotKey, L"FuncList"),
              L"Mute;Lock;PowerPlan;Sleep;Output_2;Brightness;Wireless;Touchpad;CursorOverlay;NumericOverlay;"
              L"Hibernate;Zoom;KBB;ODD;");
    EXPECT_FALSE(keyExists(std::wstring(kHotKey) + L"\\Output"));
    ASSERT_EQ(add(true), ERROR_SUCCESS);
    EXPECT_TRUE(text(kHotKey, L"FuncList").ends_with(L"ODD;Output;"));
    EXPECT_EQ(text(std::wstring(kHotKey) + L"\\Output", L"Caption"), L"Older output");
}

TEST_F(SampleSettings, EachFunctionGetsCaptionCodesAndTheAbsolutePathOfItsPlugin) {
    ASSERT_EQ(add(false), ERROR_SUCCESS);
    const std::wstring key = std::wstring(kHotKey) + L"\\Brightness";
    EXPECT_EQ(text(key, L"Caption"), L"Brightness");
    EXPECT_EQ(text(key, L"FuncDll"), L"C:\\Program Files\\Fenwyn\\plugins\\SimBrightness.dll");
    BYTE codes[16];
    DWORD bytes = sizeof codes;
    ASSERT_EQ(RegGetValueW(HKEY_LOCAL_MACHINE, key.c_str(), L"Code", RRF_RT_REG_BINARY, nullptr, codes, &bytes),
              ERROR_SUCCESS);
    const std::vector<BYTE> expected{0x40, 0, 0, 0, 0x41, 0, 0, 0};
    EXPECT_EQ(std::vector<BYTE>(codes, codes + bytes), expected);
    EXPECT_EQ(text(kProduct, L"InstallPath"), kFolder);
    EXPECT_EQ(text(kProduct, L"DisplaySource"), L"C:\\Program Files\\Fenwyn\\plugins\\SimDisplays.dll");
}

TEST_F(SampleSettings, CaptionsAreInTheLanguageThatIsAskedFor) {
    const std::wstring key = std::wstring(kHotKey) + L"\\Brightness";
    ASSERT_EQ(add(false, LANG_GERMAN), ERROR_SUCCESS);
    EXPECT_EQ(text(key, L"Caption"), L"Helligkeit");
    ASSERT_EQ(add(false, LANG_ENGLISH), ERROR_SUCCESS);
    EXPECT_EQ(text(key, L"Caption"), L"Brightness");
}

TEST_F(SampleSettings, SampleIsKnownAndRemovedInEveryLanguage) {
    ASSERT_GE(captions::languages().size(), 2U);
    for (const LANGID language : captions::languages()) {
        ASSERT_EQ(add(false, language), ERROR_SUCCESS);
        EXPECT_EQ(sim::listState(HKEY_LOCAL_MACHINE, kFolder), sim::ListState::Sample);
        ASSERT_EQ(remove(), ERROR_SUCCESS);
        EXPECT_FALSE(keyExists(L"SOFTWARE\\KESTOVA"));
    }
}

TEST_F(SampleSettings, ConfigurationValueOfTheUserStays) {
    setNumber(kConfig, L"EnableHover", 0);
    ASSERT_EQ(add(false), ERROR_SUCCESS);
    EXPECT_EQ(number(kConfig, L"EnableHover"), 0U);
    EXPECT_EQ(number(kConfig, L"MouseEnterIdle"), 500U);
}

TEST_F(SampleSettings, ListThatSomebodyChangedIsToldFromTheSample) {
    EXPECT_EQ(sim::listState(HKEY_LOCAL_MACHINE, kFolder), sim::ListState::None);
    ASSERT_EQ(add(false), ERROR_SUCCESS);
    EXPECT_EQ(sim::listState(HKEY_LOCAL_MACHINE, kFolder), sim::ListState::Sample);
    ASSERT_EQ(add(true), ERROR_SUCCESS);
    EXPECT_EQ(sim::listState(HKEY_LOCAL_MACHINE, kFolder), sim::ListState::WholeSample);
    setNumber(kConfig, L"MouseEnterIdle", 900);
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kProduct, L"InstallPath");
    EXPECT_EQ(sim::listState(HKEY_LOCAL_MACHINE, kFolder), sim::ListState::WholeSample) << "settings are no list";
    const wchar_t other[] = L"C:\\Mine.dll";
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, (std::wstring(kHotKey) + L"\\Mute").c_str(), L"FuncDll", REG_SZ, other,
                    sizeof other);
    EXPECT_EQ(sim::listState(HKEY_LOCAL_MACHINE, kFolder), sim::ListState::Other);
}

TEST_F(SampleSettings, RemovingLeavesNothingBehind) {
    ASSERT_EQ(add(true), ERROR_SUCCESS);
    ASSERT_EQ(remove(), ERROR_SUCCESS);
    EXPECT_FALSE(keyExists(L"SOFTWARE\\KESTOVA"));
    EXPECT_EQ(remove(), ERROR_SUCCESS);
}

TEST_F(SampleSettings, RemovingKeepsWhatOthersWroteOrChanged) {
    ASSERT_EQ(add(false), ERROR_SUCCESS);
    setNumber(kConfig, L"Position", 1);
    setNumber(kConfig, L"MouseEnterIdle", 900);
    setNumber(std::wstring(kHotKey) + L"\\Mute", L"Extra", 1);
    ASSERT_EQ(remove(), ERROR_SUCCESS);
    EXPECT_EQ(number(kConfig, L"Position"), 1U);
    EXPECT_EQ(number(kConfig, L"MouseEnterIdle"), 900U);
    EXPECT_EQ(number(kConfig, L"EnableHover"), 0xFFFFFFFF);
    EXPECT_EQ(number(std::wstring(kHotKey) + L"\\Mute", L"Extra"), 1U);
    EXPECT_EQ(text(std::wstring(kHotKey) + L"\\Mute", L"FuncDll"), L"(none)");
    EXPECT_FALSE(keyExists(std::wstring(kHotKey) + L"\\Zoom"));
}

TEST_F(SampleSettings, RegistryThatRefusesIsReported) {
    common::UniqueRegKey closed;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"closed", 0, nullptr, 0, KEY_READ, nullptr, closed.put(), nullptr),
              ERROR_SUCCESS);
    const HKEY invalid = closed.get();
    closed.reset();
    EXPECT_NE(sim::registerSample(invalid, kFolder, false, LANG_ENGLISH), ERROR_SUCCESS);
}

}  // namespace
}  // namespace plugintest
