#include <gmock/gmock.h>

#include "Logic/FuncX/FuncXUseCircleItem.h"
#include "Logic/FuncX/FunctionFixture.h"
#include "UI/ItemDlg/QrdItem.h"
#include "support/DependentPlugin.h"
#include "support/FailingAllocation.h"

namespace functest {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr HRESULT kModuleNotFound = static_cast<HRESULT>(0x8007007E);

// The base without additions.
class CPlainFunction final : public CFuncXUseCircleItem {
 public:
    using CFuncXUseCircleItem::addCircleItem;
    using CFuncXUseCircleItem::CFuncXUseCircleItem;

    UINT getSmallPngID() override { return 0; }
    UINT getLargePngID() override { return 0; }
    std::wstring getDesc() const override { return {}; }
    HRESULT initItems(std::vector<CQrdItem*>&) override { return S_OK; }
    HRESULT getDefaultSelectItem(LONG&) override { return S_OK; }

    LONG currentItem() const { return m_lCurrentItem; }
    bool loaded() const { return static_cast<bool>(m_hFuncDll); }
    using CFuncX::cleanItems;
    using CFuncX::expandPath;
    using CFuncX::textOnce;
};

class FunctionBase : public FunctionTest {
 protected:
    HRESULT init(const std::wstring& strPlugin = L"InstrPlugin") {
        return m_function.initHotkeyDll(instr::InstrumentedPlugin::pathOf(strPlugin).c_str());
    }

    CPlainFunction m_function{{kCode, 0x44}, L"Plain"};
};

}  // namespace

TEST_F(FunctionBase, StartsWithoutLibraryStateOrSupport) {
    EXPECT_FALSE(m_function.loaded());
    EXPECT_FALSE(m_function.isFuncSupported());
    EXPECT_EQ(m_function.currentItem(), INVALID_CURRENT_ITEM);
    EXPECT_EQ(m_function.getCaption(), L"Plain");
    EXPECT_FALSE(m_function.needRefreshSmallPng());
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(FunctionBase, NoHotkeyCodeIsAnAssertionOnly) {
    const CPlainFunction function({}, L"Keyless");
    EXPECT_TRUE(logged(L"[ERR] (CFuncX::CFuncX): ASSERT( !vecHotkeyCodes.empty() )"));
    EXPECT_FALSE(function.containsHotkeyCode(kCode));
}

TEST_F(FunctionBase, OwnsExactlyItsCodes) {
    EXPECT_TRUE(m_function.containsHotkeyCode(kCode));
    EXPECT_TRUE(m_function.containsHotkeyCode(0x44));
    EXPECT_FALSE(m_function.containsHotkeyCode(0));
    EXPECT_FALSE(m_function.containsHotkeyCode(0x3C));
}

TEST_F(FunctionBase, LoadsItsPluginAndAsksItOnce) {
    EXPECT_EQ(init(), S_OK);
    const auto calls = m_plugin.calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].exportId, instr::InitializeHotkeyDllId);
    EXPECT_EQ(calls[0].arguments[0], 0);
    EXPECT_EQ(calls[0].arguments[1], 0);
    EXPECT_TRUE(m_function.isFuncSupported());
    EXPECT_TRUE(logged(L"[INF] (CFuncX::isFuncSupported): Hotkey Plain is supported."));
    EXPECT_TRUE(logged(L"[INF] (CFuncX::initHotkeyDll): Dll path:" + m_plugin.path()));
    EXPECT_THAT(errors(), IsEmpty());
    m_function.finalize();
}

TEST_F(FunctionBase, UnsupportedIsNoFailureOfLoading) {
    for (const LONG lResult : std::initializer_list<LONG>{1, -1}) {
        m_plugin->exports[instr::InitializeHotkeyDllId].result = lResult;
        EXPECT_EQ(init(), S_OK);
        EXPECT_FALSE(m_function.isFuncSupported());
        EXPECT_TRUE(m_function.loaded());
        m_function.finalize();
    }
    EXPECT_EQ(timesLogged(L"[INF] (CFuncX::isFuncSupported): Hotkey Plain is not supported."), 2U);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 2);
}

TEST_F(FunctionBase, WithoutInitializeTheLibraryIsUnloadedAgain) {
    EXPECT_EQ(init(L"InstrNoInitializeHotkeyDll"), E_POINTER);
    EXPECT_FALSE(m_function.loaded());
    EXPECT_EQ(::GetModuleHandleW(L"InstrNoInitializeHotkeyDll.dll"), nullptr);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFuncX::initHotkeyDll): Error Code: 0x80004003"));
    m_function.finalize();
}

TEST_F(FunctionBase, MissingLibraryGivesTheSystemsError) {
    EXPECT_EQ(m_function.initHotkeyDll(L"C:\\nowhere\\missing.dll"), kModuleNotFound);
    EXPECT_FALSE(m_function.loaded());
    EXPECT_FALSE(m_function.isFuncSupported());
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFuncX::initHotkeyDll): Error Code: 0x8007007e"));
    m_function.finalize();
    EXPECT_THAT(errors(), testing::SizeIs(1));
}

TEST_F(FunctionBase, PluginThatDeclinesIsAskedWhyAndTheAnswerLogged) {
    m_plugin->exports[instr::InitializeHotkeyDllId].result = 1;
    std::wstring(L"There is no device.").copy(m_plugin->reason, instr::kMaxText - 1);
    EXPECT_EQ(init(), S_OK);
    EXPECT_TRUE(logged(L"[INF] (CFuncX::logUnsupportedReason): Hotkey Plain has no card: There is no device."));
    const auto calls = m_plugin.calls(instr::GetUnsupportedReasonId);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].arguments[0], 0) << "the text is null before the call";
    EXPECT_EQ(calls[0].arguments[1], 0);
    EXPECT_THAT(errors(), IsEmpty());
    m_function.finalize();
}

TEST_F(FunctionBase, PluginThatDeclinesNeedNotSayWhy) {
    m_plugin->exports[instr::InitializeHotkeyDllId].result = 1;
    EXPECT_EQ(init(), S_OK) << "no text";
    m_function.finalize();
    std::wstring(L"Untold.").copy(m_plugin->reason, instr::kMaxText - 1);
    m_plugin->exports[instr::GetUnsupportedReasonId].result = 1;
    EXPECT_EQ(init(), S_OK) << "a text and a failure";
    m_function.finalize();
    EXPECT_THAT(m_log.lines(), testing::Not(Contains(testing::HasSubstr(L"has no card"))));

    const instr::InstrumentedPlugin silent(L"InstrNoGetUnsupportedReason");
    silent->exports[instr::InitializeHotkeyDllId].result = 1;
    EXPECT_EQ(init(L"InstrNoGetUnsupportedReason"), S_OK) << "no export";
    EXPECT_FALSE(m_function.isFuncSupported());
    EXPECT_THAT(errors(), IsEmpty());
    m_function.finalize();
}

TEST_F(FunctionBase, PluginThatServesIsNotAskedWhyNot) {
    EXPECT_EQ(init(), S_OK);
    EXPECT_EQ(m_plugin.count(instr::GetUnsupportedReasonId), 0);
    m_function.finalize();
}

TEST_F(FunctionBase, NullEmptyAndEndlessPathsAreMissingLibraries) {
    EXPECT_TRUE(FAILED(m_function.initHotkeyDll(nullptr)));
    EXPECT_TRUE(FAILED(m_function.initHotkeyDll(L"")));
    EXPECT_TRUE(FAILED(m_function.initHotkeyDll(std::wstring(100000, L'x').c_str())));
    EXPECT_FALSE(m_function.loaded());
}

TEST_F(FunctionBase, ARoundItemThatCannotBeAllocatedHasAStatus) {
    Items items;
    const std::wstring text(100, L'x');
    HRESULT status = S_OK;
    {
        const support::FailingAllocation failing(1);
        status = m_function.addCircleItem(text, 113, 112, items.vec());
    }
    EXPECT_EQ(status, E_OUTOFMEMORY);
    EXPECT_TRUE(items.vec().empty());
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFuncXUseCircleItem::addCircleItem): Error Code: 0x8007000e"));
}

TEST_F(FunctionBase, APluginFindsWhatItNeedsInItsOwnFolder) {
    const support::DependentPlugin plugin(support::DependentPlugin::Place::BesideThePlugin);
    EXPECT_EQ(m_function.initHotkeyDll(plugin.path().c_str()), S_OK);
    EXPECT_TRUE(m_function.isFuncSupported());
    m_function.finalize();
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(FunctionBase, WhatAPluginNeedsIsNotSoughtInTheCurrentFolderOrAlongPath) {
    using Place = support::DependentPlugin::Place;
    for (const Place place : {Place::InTheCurrentFolder, Place::AlongPath}) {
        const support::DependentPlugin plugin(place);
        EXPECT_EQ(m_function.initHotkeyDll(plugin.path().c_str()), kModuleNotFound) << static_cast<int>(place);
        EXPECT_FALSE(m_function.loaded());
        m_function.finalize();
    }
}

TEST_F(FunctionBase, EnvironmentReferencesInThePathAreExpanded) {
    const std::wstring strPath = m_plugin.path();
    const std::size_t slash = strPath.rfind(L'\\');
    ::SetEnvironmentVariableW(L"FENWYN_TEST_FOLDER", strPath.substr(0, slash).c_str());
    EXPECT_EQ(m_function.initHotkeyDll((L"%FENWYN_TEST_FOLDER%" + strPath.substr(slash)).c_str()), S_OK);
    EXPECT_TRUE(logged(L"[INF] (CFuncX::initHotkeyDll): Dll path:" + strPath));
    ::SetEnvironmentVariableW(L"FENWYN_TEST_FOLDER", nullptr);
    m_function.finalize();
}

TEST_F(FunctionBase, AnExpandedPathHasRoomFor259Characters) {
    ::SetEnvironmentVariableW(L"FENWYN_TEST_LONG", std::wstring(200, L'a').c_str());
    EXPECT_EQ(CPlainFunction::expandPath((L"%FENWYN_TEST_LONG%" + std::wstring(59, L'b')).c_str()).size(), 259U);
    EXPECT_EQ(CPlainFunction::expandPath((L"%FENWYN_TEST_LONG%" + std::wstring(60, L'b')).c_str()), L"");
    ::SetEnvironmentVariableW(L"FENWYN_TEST_LONG", nullptr);
}

TEST_F(FunctionBase, DisplayItemInfoIsZeroedHandedOutAndLogged) {
    ASSERT_EQ(init(), S_OK);
    m_plugin->info = 0xFFFFFFFF;
    m_plugin->info2 = 0x10;
    DWORD dwInfo = 5;
    DWORD dwInfo2 = 6;
    m_log.clear();
    EXPECT_EQ(m_function.getDisplayItemInfo(&dwInfo, &dwInfo2), S_OK);
    EXPECT_EQ(dwInfo, 0xFFFFFFFFU);
    EXPECT_EQ(dwInfo2, 0x10U);
    const auto calls = m_plugin.calls(instr::GetDisplayItemInfoId);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].arguments[0], 0);
    EXPECT_EQ(calls[0].arguments[1], 0);
    EXPECT_THAT(m_log.lines(),
                ElementsAre(L"[TRC] (CFuncX::getDisplayItemInfo): ENTER CFuncX::getDisplayItemInfo",
                            L"[INF] (CFuncX::getDisplayItemInfo): GetDisplayItemInfo returns -1(0xffffffff), "
                            L"16(0x00000010).",
                            L"[TRC] (CFuncX::getDisplayItemInfo): LEAVE CFuncX::getDisplayItemInfo"));
    m_function.finalize();
}

TEST_F(FunctionBase, DisplayItemInfoFailsOnNegativeResultsOnly) {
    ASSERT_EQ(init(), S_OK);
    DWORD dwInfo = 0;
    DWORD dwInfo2 = 0;
    m_plugin->exports[instr::GetDisplayItemInfoId].result = 1;
    EXPECT_EQ(m_function.getDisplayItemInfo(&dwInfo, &dwInfo2), S_OK);
    m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
    EXPECT_EQ(m_function.getDisplayItemInfo(&dwInfo, &dwInfo2), E_FAIL);
    EXPECT_EQ(timesLogged(L"[INF] (CFuncX::getDisplayItemInfo): GetDisplayItemInfo returns 3(0x00000003), "
                          L"0(0x00000000)."),
              2U);
    m_function.finalize();
}

TEST_F(FunctionBase, DisplayItemInfoWithoutExportOrLibrary) {
    DWORD dwInfo = 5;
    EXPECT_EQ(m_function.getDisplayItemInfo(&dwInfo, &dwInfo), E_HANDLE);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFuncX::getDisplayItemInfo): ASSERT( m_hFuncDll )"));
    m_log.clear();
    ASSERT_EQ(init(L"InstrNoGetDisplayItemInfo"), S_OK);
    EXPECT_EQ(m_function.getDisplayItemInfo(&dwInfo, &dwInfo), E_POINTER);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFuncX::getDisplayItemInfo): Error Code: 0x80004003"));
    EXPECT_EQ(dwInfo, 5U);
    m_function.finalize();
}

TEST_F(FunctionBase, CurrentItemIsWhatThePluginWrote) {
    ASSERT_EQ(init(), S_OK);
    m_plugin->currentItem = 7;
    m_log.clear();
    EXPECT_EQ(m_function.getCurrentItem(), S_OK);
    EXPECT_EQ(m_function.currentItem(), 7);
    EXPECT_THAT(m_log.lines(), ElementsAre(L"[TRC] (CFuncX::getCurrentItem): ENTER CFuncX::getCurrentItem",
                                           L"[INF] (CFuncX::getCurrentItem): Current item: 7.",
                                           L"[TRC] (CFuncX::getCurrentItem): LEAVE CFuncX::getCurrentItem"));
    m_function.finalize();
}

TEST_F(FunctionBase, CurrentItemFailsOnAnyOtherResultAndKeepsWhatWasWritten) {
    ASSERT_EQ(init(), S_OK);
    LONG lItem = 8;
    for (const LONG lResult : std::initializer_list<LONG>{1, -1}) {
        m_plugin->currentItem = ++lItem;
        m_plugin->exports[instr::GetCurrentItemId].result = lResult;
        EXPECT_EQ(m_function.getCurrentItem(), E_FAIL);
        EXPECT_EQ(m_function.currentItem(), lItem);
    }
    EXPECT_EQ(timesLogged(L"[ERR] (CFuncX::getCurrentItem): Error Code: 0x80004005"), 2U);
    m_function.finalize();
}

TEST_F(FunctionBase, CurrentItemWithoutExportOrLibrary) {
    EXPECT_EQ(m_function.getCurrentItem(), E_POINTER);
    ASSERT_EQ(init(L"InstrNoGetCurrentItem"), S_OK);
    EXPECT_EQ(m_function.getCurrentItem(), E_POINTER);
    EXPECT_EQ(timesLogged(L"[ERR] (CFuncX::getCurrentItem): Error Code: 0x80004003"), 2U);
    m_function.finalize();
}

TEST_F(FunctionBase, SelectItemHandsTheItemOnAndLeavesTheHideFlag) {
    ASSERT_EQ(init(), S_OK);
    for (const bool bBefore : {true, false}) {
        bool bHideCard = bBefore;
        EXPECT_EQ(m_function.selectItem(42, &bHideCard, 99), S_OK);
        EXPECT_EQ(bHideCard, bBefore);
    }
    EXPECT_EQ(m_function.selectItem(1, nullptr, 99), S_OK);
    const auto calls = m_plugin.calls(instr::SelectItemId);
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_EQ(calls[0].arguments[0], 42);
    EXPECT_EQ(calls[0].arguments[1], 0);
    EXPECT_EQ(timesLogged(L"[INF] (CFuncX::selectItem): Select item:42."), 2U);
    m_function.finalize();
}

TEST_F(FunctionBase, SelectItemFailsOnAnyOtherResultWithoutALine) {
    ASSERT_EQ(init(), S_OK);
    for (const LONG lResult : std::initializer_list<LONG>{1, -1}) {
        m_plugin->exports[instr::SelectItemId].result = lResult;
        EXPECT_EQ(m_function.selectItem(0, -1), E_FAIL);
    }
    EXPECT_THAT(errors(), IsEmpty());
    m_function.finalize();
}

TEST_F(FunctionBase, SelectItemWithoutExportOrLibrary) {
    ASSERT_EQ(init(L"InstrNoSelectItem"), S_OK);
    EXPECT_EQ(m_function.selectItem(0, -1), E_POINTER);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFuncX::selectItem): Error Code: 0x80004003"));
    m_function.finalize();
    m_log.clear();
    EXPECT_EQ(m_function.selectItem(0, -1), E_FAIL);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFuncX::selectItem): ASSERT( NULL != m_hFuncDll )"));
}

TEST_F(FunctionBase, FinalizeEndsThePluginOnceAndUnloadsIt) {
    ASSERT_EQ(init(), S_OK);
    m_log.clear();
    m_function.finalize();
    EXPECT_FALSE(m_function.loaded());
    EXPECT_THAT(m_log.lines(), ElementsAre(L"[TRC] (CFuncX::finalize): ENTER CFuncX::finalize",
                                           L"[TRC] (CFuncX::finalize): LEAVE CFuncX::finalize"));
    m_function.finalize();
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
    DWORD dwInfo = 0;
    EXPECT_EQ(m_function.getDisplayItemInfo(&dwInfo, &dwInfo), E_HANDLE);
    EXPECT_FALSE(m_plugin.heldByOthers());
}

TEST_F(FunctionBase, FinalizeWithoutTheExportUnloadsAllTheSame) {
    ASSERT_EQ(init(L"InstrNoFinalizeHotkeyDll"), S_OK);
    m_function.finalize();
    EXPECT_TRUE(logged(L"[ERR] (CFuncX::finalize): ASSERT( NULL != pfFinalize )"));
    EXPECT_EQ(::GetModuleHandleW(L"InstrNoFinalizeHotkeyDll.dll"), nullptr);
}

TEST_F(FunctionBase, DestructionDoesNotFinalize) {
    {
        CPlainFunction function({kCode}, L"Dropped");
        ASSERT_EQ(function.initHotkeyDll(m_plugin.path().c_str()), S_OK);
    }
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 0);
}

TEST_F(FunctionBase, CircleItemTakesTextAndPicturesInTheGivenOrder) {
    Items items;
    EXPECT_EQ(m_function.addCircleItem(L"A text", 113, 112, items.vec()), S_OK);
    EXPECT_THAT(items.views(), ElementsAre(ItemView{L"A text", 113, 112}));
    EXPECT_TRUE(::IsWindow(items[0]->windowHandle()));
    EXPECT_EQ(::GetParent(items[0]->windowHandle()), nullptr);
}

TEST_F(FunctionBase, CircleItemWithoutPictureIsNotAppended) {
    Items items;
    const HRESULT status = m_function.addCircleItem(L"A text", 65000, 112, items.vec());
    EXPECT_TRUE(FAILED(status));
    EXPECT_EQ(items.size(), 0U);
    wchar_t line[128];
    ::swprintf(line, std::size(line), L"[ERR] (CFuncXUseCircleItem::addCircleItem): Error Code: 0x%x",
               static_cast<unsigned>(status));
    EXPECT_TRUE(logged(line));
}

TEST_F(FunctionBase, CleanedItemsLeaveNullEntries) {
    Items items;
    ASSERT_EQ(m_function.addCircleItem(L"A", 113, 112, items.vec()), S_OK);
    items.vec().push_back(nullptr);
    ASSERT_EQ(m_function.addCircleItem(L"B", 113, 112, items.vec()), S_OK);
    const HWND hWnd = items[0]->windowHandle();
    CPlainFunction::cleanItems(items.vec());
    EXPECT_EQ(items.size(), 3U);
    EXPECT_EQ(items.alive(), 0U);
    EXPECT_FALSE(::IsWindow(hWnd));
}

}  // namespace functest
