// The exports of the simulated plug-ins when memory runs out, compiled into this program so that it controls the
// allocations: no exception leaves them, and the caller gets a failure.
#define FENWYN_PLUGIN
#include <gtest/gtest.h>

#include <functional>

#include "FenwynPlugin.h"
#include "Functions.h"
#include "plugin/Plugin.h"
#include "plugins/simulated/Sandbox.h"
#include "support/FailingAllocation.h"

namespace {

using support::FailingAllocation;
using Extent = support::FailingAllocation::Extent;

const sim::Function* g_pRow = nullptr;

}  // namespace

// In the shipped libraries this is a constant.
const sim::Function& sim::self() noexcept {
    return *g_pRow;
}

namespace {

void* WINAPI allocateNothing(LONG) {
    return nullptr;
}

class PluginExportMemory : public testing::TestWithParam<Extent> {
 protected:
    static void serve(const wchar_t* function) { g_pRow = sim::findFunction(function); }

    // Calls the export while each of its allocations fails.
    void expectFailures(const char* name, const std::function<LONG()>& call) {
        LONG result = 0;
        bool failed = false;
        const long failures = support::forEachFailure(
            GetParam(), [&] { result = call(); },
            [&] {
                EXPECT_LE(result, 0) << name << ": only negative results fail for every export";
                failed |= result < 0;
            });
        EXPECT_GT(failures, 0) << name;
        EXPECT_TRUE(failed) << name;
        EXPECT_EQ(call(), FENWYN_OK) << name << ", with memory";
    }

    plugintest::Sandbox m_sandbox;
};

TEST_P(PluginExportMemory, OfTheExportsOfEveryFunction) {
    serve(L"Mute");
    ULONG info = 0;
    ULONG info2 = 0;
    LONG item = 0;
    expectFailures("InitializeHotkeyDll", [] { return InitializeHotkeyDll(0, nullptr); });
    expectFailures("GetDisplayItemInfo", [&] { return GetDisplayItemInfo(&info, &info2, nullptr); });
    expectFailures("GetCurrentItem", [&] { return GetCurrentItem(&item, nullptr); });
    expectFailures("SelectItem", [] { return SelectItem(1, nullptr); });
    expectFailures("FinalizeHotkeyDll", [] { return FinalizeHotkeyDll(); });
}

TEST_P(PluginExportMemory, OfBrightnessAndPowerPlan) {
    serve(L"Brightness");
    BYTE dual = 0;
    expectFailures("FocusItem", [] { return FocusItem(3, nullptr); });
    expectFailures("IsDualBrtCtrl", [&] { return IsDualBrtCtrl(&dual); });
    serve(L"PowerPlan");
    expectFailures("GetCustomItemText", [] {
        BSTR text = nullptr;
        const LONG result = GetCustomItemText(0, &text, nullptr);
        SysFreeString(text);
        return result;
    });
}

TEST_P(PluginExportMemory, OfTheDisplayOutputWithFavourites) {
    serve(L"Output_2");
    LONG count = 0;
    LONG mode = 0;
    WCHAR* text = nullptr;
    ULONG records = 0;
    ULONGLONG place = 0;
    ULONG flags = 0;
    expectFailures("FnF5_InitializeHotkeyDll", [] { return FnF5_InitializeHotkeyDll(0, nullptr, &allocateNothing); });
    expectFailures("FnF5_GetDisplayItemCount", [&] { return FnF5_GetDisplayItemCount(&count, nullptr); });
    ASSERT_GT(count, 0);
    expectFailures("FnF5_GetDisplayItemInfo",
                   [&] { return FnF5_GetDisplayItemInfo(0, &mode, &text, &records, &place, &flags, nullptr); });
    expectFailures("FnF5_SetCurrentForPanic", [] { return FnF5_SetCurrentForPanic(); });
}

INSTANTIATE_TEST_SUITE_P(Extents, PluginExportMemory, testing::Values(Extent::Once, Extent::FromThereOn));

}  // namespace
