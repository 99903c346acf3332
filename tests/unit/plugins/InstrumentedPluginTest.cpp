// The tests' own plug-in and stand-ins: the behaviour that other tests rely on.
#include "plugins/InstrumentedPlugin.h"

#include <gtest/gtest.h>

#include "plugins/siblings/StandIn.h"
#include "plugins/simulated/Sandbox.h"

namespace plugintest {
namespace {

using instr::InstrumentedPlugin;

template <typename Function>
Function find(const std::wstring& path, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(path.c_str()), name)));
}

TEST(InstrumentedPlugin, EachVariantLacksExactlyItsExport) {
    for (const char* const missing : instr::kExportNames) {
        const InstrumentedPlugin plugin(L"InstrNo" + std::wstring(missing, missing + strlen(missing)));
        ASSERT_TRUE(plugin.loaded()) << missing;
        for (const char* const name : instr::kExportNames) {
            EXPECT_EQ(find<FARPROC>(plugin.path(), name) == nullptr, name == missing) << missing << " " << name;
        }
    }
}

TEST(InstrumentedPlugin, RemembersArgumentsResultsAndThread) {
    const InstrumentedPlugin plugin;
    plugin->exports[instr::SelectItemId].result = 9;
    ULONG reserved = 0;
    EXPECT_EQ(find<FenwynSelectItem>(plugin.path(), FENWYN_SELECT_ITEM)(4, &reserved), 9);
    const auto calls = plugin.calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].exportId, instr::SelectItemId);
    EXPECT_EQ(calls[0].arguments[0], 4);
    EXPECT_EQ(calls[0].result, 9);
    EXPECT_EQ(calls[0].threadId, GetCurrentThreadId());
}

TEST(InstrumentedPlugin, InitialStateComesFromTheRegistry) {
    const Sandbox sandbox;
    const wchar_t* const key = L"SOFTWARE\\KESTOVA\\Fenwyn Test\\Plugin\\InstrPlugin";
    const DWORD item = 7;
    const std::wstring text = L"Desk";
    RegSetKeyValueW(HKEY_CURRENT_USER, key, L"CurrentItem", REG_DWORD, &item, sizeof item);
    RegSetKeyValueW(HKEY_CURRENT_USER, key, L"SelectItem.Result", REG_DWORD, &item, sizeof item);
    RegSetKeyValueW(HKEY_CURRENT_USER, key, L"Entry3.Text", REG_SZ, text.c_str(), 10);
    RegSetKeyValueW(HKEY_CURRENT_USER, key, L"RecordFile", REG_SZ, sandbox.recordFile().c_str(),
                    static_cast<DWORD>(2 * sandbox.recordFile().size() + 2));
    const InstrumentedPlugin plugin;
    EXPECT_EQ(plugin->currentItem, 7);
    EXPECT_EQ(plugin->exports[instr::SelectItemId].result, 7);
    EXPECT_STREQ(plugin->entries[3].text, L"Desk");
    EXPECT_TRUE(plugin->entries[3].hasText);
    ULONG reserved = 0;
    find<FenwynSelectItem>(plugin.path(), FENWYN_SELECT_ITEM)(2, &reserved);
    ASSERT_EQ(sandbox.record().size(), 1U);
    EXPECT_EQ(sandbox.record()[0][2], "SelectItem");
    EXPECT_EQ(sandbox.record()[0][4], "7");
}

TEST(InstrumentedPlugin, KnowsWhetherOthersHoldTheLibrary) {
    InstrumentedPlugin plugin;
    const common::UniqueModule other(LoadLibraryW(plugin.path().c_str()));
    EXPECT_TRUE(plugin.heldByOthers());
    InstrumentedPlugin alone(L"InstrNoFocusItem");
    EXPECT_FALSE(alone.heldByOthers());
}

TEST(SiblingStandIns, RecordTheirCallsAndFailWhenTold) {
    const Sandbox sandbox;
    const DWORD failure = 5;
    RegSetKeyValueW(HKEY_CURRENT_USER, L"SOFTWARE\\KESTOVA\\Fenwyn Test\\Sibling\\ZelMain", L"Start.Result", REG_DWORD,
                    &failure, sizeof failure);
    const std::wstring path = InstrumentedPlugin::pathOf(L"siblings\\ZelMain");
    const common::UniqueModule library(LoadLibraryW(path.c_str()));
    ASSERT_TRUE(library);
    const standin::Control& control = *find<standin::GetControl>(path, "StandInControl")();
    using Start = LONG(WINAPI*)(standin::HotkeyCallback, standin::ConfigCallback);
    EXPECT_EQ(find<Start>(path, "Start")(nullptr, nullptr), 5);
    EXPECT_EQ(find<LONG(WINAPI*)()>(path, "Stop")(), 0);
    EXPECT_EQ(control.start.calls, 1);
    EXPECT_EQ(control.stop.calls, 1);
}

TEST(SiblingStandIns, EachVariantLacksItsExport) {
    const std::pair<const wchar_t*, const char*> rows[] = {{L"ZelMain", "Start"},
                                                           {L"ZelMain", "EnableHotkey"},
                                                           {L"ZelMain", "Stop"},
                                                           {L"ZelEvnt", "CancelQueryEvent"},
                                                           {L"PrtHook", "InstallHook"}};
    for (const auto& [library, missing] : rows) {
        const std::wstring variant = InstrumentedPlugin::pathOf(
            L"siblings\\no-" + std::wstring(missing, missing + strlen(missing)) + L"\\" + library);
        const common::UniqueModule module(LoadLibraryW(variant.c_str()));
        ASSERT_TRUE(module) << missing;
        EXPECT_EQ(GetProcAddress(module.get(), missing), nullptr) << missing;
        EXPECT_NE(GetProcAddress(module.get(), "StandInControl"), nullptr) << missing;
    }
}

}  // namespace
}  // namespace plugintest
