// What the output function with favourites offers.
#include <gmock/gmock.h>

#include <random>

#include "Logic/FuncX/Output2Fixture.h"
#include "Logic/FuncX/OutputRules.h"
#include "UI/ItemDlg/FxOutputItemDlg.h"
#include "common/ResourceFunc.h"
#include "support/AppSeams.h"

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class Output2List : public Output2Test {
 protected:
    [[nodiscard]] int workWidth() const { return m_placement.workWidth(); }
    // Entries without a plug-in behind them.
    void setEntries(const std::vector<bool>& custom, LONG lCurrent) {
        auto& entries = FxOutput2Seam::entries(m_function);
        entries.clear();
        for (const bool bCustom : custom) {
            auto pInfo = std::make_unique<FnF5ItemInfo>();
            pInfo->dwIndex = static_cast<DWORD>(entries.size());
            pInfo->dwCustom = bCustom ? FENWYN_ENTRY_CUSTOM : 0;
            entries.push_back(std::move(pInfo));
        }
        m_plugin->currentItem = lCurrent;
        ASSERT_EQ(m_function.getCurrentItem(), S_OK);
        FxOutput2Seam::filtered(m_function) = lCurrent;
        m_log.clear();
    }
};

constexpr wchar_t kInitLine[] = L"[ERR] (CFxOutput_2::initItems): Error Code: 0x80004005";

}  // namespace

TEST_F(Output2List, HasItsPicturesAndDescription) {
    EXPECT_EQ(m_function.getSmallPngID(), 221U);
    EXPECT_EQ(m_function.getLargePngID(), 220U);
    EXPECT_EQ(m_function.getDesc(), loadResString(301));
}

TEST_F(Output2List, LoadsThePluginWithTheAllocationCallback) {
    const auto calls = m_plugin.calls();
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].exportId, instr::FnF5_InitializeHotkeyDllId);
    EXPECT_EQ(calls[0].arguments[0], 0);
    EXPECT_EQ(calls[0].arguments[1], 0);
    EXPECT_EQ(m_plugin->allocate, &fnf5::allocate);
    EXPECT_TRUE(logged(L"[INF] (CFxOutput_2::initHotkeyDll): Dll path:" + m_plugin.path()));
    EXPECT_TRUE(m_function.isFuncSupported());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Output2List, TheInstallFolderHasToBeKnown) {
    m_function.finalize();
    support::RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, regpath::kProgramKey, regpath::kInstallPath);
    EXPECT_EQ(init(L"InstrPlugin"), static_cast<HRESULT>(0x80070002));
    support::RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, regpath::kProgramKey);
    EXPECT_EQ(init(L"InstrPlugin"), static_cast<HRESULT>(0x80070002));
    EXPECT_EQ(timesLogged(L"[ERR] (CFxOutput_2::initHotkeyDll): Error Code: 0x80070002"), 2U);
    EXPECT_EQ(m_plugin.count(instr::FnF5_InitializeHotkeyDllId), 1);
}

TEST_F(Output2List, TheInstallFolderStandsBesideTheListInForce) {
    m_function.finalize();
    support::RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, regpath::kProgramKey);
    support::RegistryRoom::setText(HKEY_CURRENT_USER, regpath::kHotkeyKey, regpath::kFuncList, L"Output_2;");
    EXPECT_EQ(init(L"InstrPlugin"), static_cast<HRESULT>(0x80070002));
    m_function.finalize();
    support::RegistryRoom::setText(HKEY_CURRENT_USER, regpath::kProgramKey, regpath::kInstallPath, L"C:\\Own");
    EXPECT_EQ(init(L"InstrPlugin"), S_OK);
}

TEST_F(Output2List, MissingLibraryOrInitializeIsTheSystemsError) {
    m_function.finalize();
    EXPECT_EQ(m_function.initHotkeyDll(L"C:\\nowhere\\missing.dll"), static_cast<HRESULT>(0x8007007E));
    m_function.finalize();
    EXPECT_EQ(init(L"InstrNoFnF5_InitializeHotkeyDll"), static_cast<HRESULT>(0x8007007F));
    EXPECT_EQ(::GetModuleHandleW(L"InstrNoFnF5_InitializeHotkeyDll.dll"), nullptr);
    EXPECT_TRUE(logged(L"[ERR] (CFxOutput_2::initHotkeyDll): Error Code: 0x8007007f"));
}

TEST_F(Output2List, UnsupportedIsNoFailureOfLoading) {
    m_function.finalize();
    m_plugin->exports[instr::FnF5_InitializeHotkeyDllId].result = 1;
    std::wstring(L"There is one screen only.").copy(m_plugin->reason, instr::kMaxText - 1);
    EXPECT_EQ(init(L"InstrPlugin"), S_OK);
    EXPECT_FALSE(m_function.isFuncSupported());
    EXPECT_THAT(m_log.lines(), testing::Contains(testing::EndsWith(L" has no card: There is one screen only.")));
}

TEST_F(Output2List, EntriesBecomeItemsInPluginOrder) {
    instr::setEntry(entry(0), 0);
    instr::setEntry(entry(1), 3, FENWYN_ENTRY_CUSTOM | FENWYN_ENTRY_SHOW_RESOLUTION, L"Meeting room");
    instr::setEntry(entry(2), 2, FENWYN_ENTRY_NEEDS_SETUP);
    instr::setEntry(entry(3), 9);
    m_log.clear();
    ASSERT_EQ(build(4, 1), S_OK);
    EXPECT_THAT(m_items.views(),
                ElementsAre(ItemView{loadResString(302), 223, 222}, ItemView{L"Meeting room", 259, 258},
                            ItemView{loadResString(303), 231, 230}, ItemView{loadResString(307), 293, 292}));
    for (std::size_t i = 0; i < m_items.size(); ++i) {
        EXPECT_NE(dynamic_cast<CFxOutputItemDlg*>(m_items[i]), nullptr);
    }
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), S_OK);
    EXPECT_EQ(lItem, 1);
    EXPECT_EQ(m_function.getCurrentStatus(), L"Meeting room");
    EXPECT_TRUE(logged(L"[TRC] (CFxOutput_2::initItems): ENTER CFxOutput_2::initItems"));
    EXPECT_TRUE(logged(L"[INF] (CFxOutput_2::getItemCount): Available items count is:4."));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Output2List, EntriesKeepWhatThePluginSaidOfThem) {
    instr::setEntry(entry(0), 4, 0xFFFFFFFF, L"All");
    instr::addRecord(entry(0), L"HDMI 1", 0, 1920, 1080);
    ASSERT_EQ(build(1, 0), S_OK);
    const FnF5ItemInfo& info = *FxOutput2Seam::entries(m_function).at(0);
    EXPECT_EQ(info.lMode, 4);
    EXPECT_EQ(info.dwCustom, 0x2U);
    EXPECT_EQ(info.dwShowResolution, 0x10U);
    EXPECT_EQ(info.dwNeedsSetup, 0x8U);
    EXPECT_EQ(info.dwRecordCount, 1U);
    EXPECT_EQ(info.ullRecords, reinterpret_cast<ULONG_PTR>(entry(0).records));
    EXPECT_EQ(m_plugin.calls(instr::FnF5_GetDisplayItemInfoId).at(0).arguments[1], -1);  // the mode is preset
}

TEST_F(Output2List, ACustomEntryWithoutTextIsEmptyAndATextOfABuiltInOneIsNotShown) {
    instr::setEntry(entry(0), 0, FENWYN_ENTRY_CUSTOM);
    instr::setEntry(entry(1), 3, 0, L"not to be seen");
    ASSERT_EQ(build(2, 0), S_OK);
    EXPECT_EQ(m_items.views()[0].text, L"");
    EXPECT_EQ(m_items.views()[1].text, loadResString(304));
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxOutput_2::getAvailableItems): ASSERT( NULL != pszItemText )"));
}

TEST_F(Output2List, NothingIsLeakedOverManyRebuilds) {
    for (std::size_t i = 0; i < 6; ++i) {
        instr::setEntry(entry(i), static_cast<LONG>(i), i % 2 != 0 ? FENWYN_ENTRY_CUSTOM : 0, L"Text");
    }
    m_plugin->currentItem = 2;
    ASSERT_EQ(m_function.getCurrentItem(), S_OK);
    constexpr int kRebuilds = 10000;
    for (int i = 0; i < kRebuilds; ++i) {
        // Some lists fail half-way: beyond its entries the plug-in refuses.
        const LONG lCount = i % 10 == 0 ? 100 : 6;
        ASSERT_EQ(FxOutput2Seam::read(m_function, lCount), lCount == 6 ? S_OK : E_FAIL);
    }
    EXPECT_GE(m_plugin->allocations, 6 * kRebuilds);
    EXPECT_EQ(fnf5::outstandingBlocks(), m_lBlocksBefore);
}

TEST_F(Output2List, ATextOfARefusedEntryIsFreedToo) {
    instr::setEntry(entry(0), 0, FENWYN_ENTRY_CUSTOM, L"handed out all the same");
    m_plugin->exports[instr::FnF5_GetDisplayItemInfoId].result = 1;
    EXPECT_EQ(build(1, 0), E_FAIL);
    EXPECT_EQ(m_plugin->allocations, 1);
    EXPECT_EQ(fnf5::outstandingBlocks(), m_lBlocksBefore);
}

TEST_F(Output2List, TheCallbackHandsOutNothingForNonsense) {
    for (const LONG lSize : std::initializer_list<LONG>{0, -1, LONG_MIN}) {
        EXPECT_EQ(fnf5::allocate(lSize), nullptr);
    }
    void* const pBlock = fnf5::allocate(8);
    ASSERT_NE(pBlock, nullptr);
    EXPECT_NE(::HeapValidate(::GetProcessHeap(), 0, pBlock), FALSE);
    EXPECT_EQ(fnf5::outstandingBlocks(), m_lBlocksBefore + 1);
    fnf5::release(pBlock);
    fnf5::release(nullptr);
}

TEST_F(Output2List, ATextWithoutEndStopsAtItsBlock) {
    auto* const pText = static_cast<wchar_t*>(fnf5::allocate(10));
    ASSERT_NE(pText, nullptr);
    std::wstring(L"abcde").copy(pText, 5);
    EXPECT_EQ(fnf5::textOf(fnf5::UniqueText(pText)).str(), L"abcde");
    EXPECT_EQ(fnf5::textOf(fnf5::UniqueText()).str(), L"");
}

TEST_F(Output2List, CountsBelowOneGiveNoItems) {
    for (const LONG lCount : std::initializer_list<LONG>{0, -1, LONG_MIN}) {
        EXPECT_EQ(build(lCount, 0), S_OK);
        EXPECT_EQ(m_items.size(), 0U);
    }
    EXPECT_EQ(m_plugin.count(instr::FnF5_GetDisplayItemInfoId), 0);
}

TEST_F(Output2List, AnAbsurdCountStopsAtTheFirstIndexThatFails) {
    EXPECT_EQ(build(0x7FFFFFFF, 0), E_FAIL);
    EXPECT_EQ(m_plugin.count(instr::FnF5_GetDisplayItemInfoId), static_cast<LONG>(instr::kMaxEntries) + 1);
    EXPECT_THAT(indices(), IsEmpty());
    EXPECT_TRUE(logged(L"[ERR] (CFxOutput_2::getAvailableItems): Error Code: 0x80004005"));
    EXPECT_TRUE(logged(kInitLine));
}

TEST_F(Output2List, AnAbsurdNumberOfRecordsIsNotRead) {
    instr::setEntry(entry(0), 4);
    instr::addRecord(entry(0), std::wstring(FENWYN_CONNECTOR_CHARS, L'X'), 0, 1, 1);  // no terminator
    entry(0).recordCount = 0x80000000;
    instr::setEntry(entry(1), 4);
    entry(1).recordCount = 3;
    entry(1).recordsInstead = 0x10;  // no memory there
    EXPECT_EQ(build(2, 0), S_OK);
    EXPECT_EQ(m_items.size(), 2U);
}

// Like a library's data: a page that was written to, and one that was not yet.
TEST_F(Output2List, RecordsThatLieOnPagesOfTwoKindsAreAllThere) {
    constexpr std::size_t kPage = 0x1000;
    auto* const pages =
        static_cast<BYTE*>(::VirtualAlloc(nullptr, 2 * kPage, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    ASSERT_NE(pages, nullptr);
    auto* const records = reinterpret_cast<FenwynDisplayRecord*>(pages + kPage) - 1;
    for (int i = 0; i < 3; ++i) {
        std::wstring(L"LCD").copy(records[i].szConnector, FENWYN_CONNECTOR_CHARS - 1);
    }
    DWORD before = 0;
    ASSERT_TRUE(::VirtualProtect(pages + kPage, kPage, PAGE_READONLY, &before));
    instr::setEntry(entry(0), 4);
    entry(0).recordCount = 3;
    entry(0).recordsInstead = reinterpret_cast<std::uintptr_t>(records);
    ASSERT_EQ(build(1, 0), S_OK);
    const auto& item = dynamic_cast<const CFxOutputItemDlg&>(*m_items.vec().front());
    EXPECT_EQ(OutputPreviewSeam::rows(*FxOutputItemSeam::preview(item)).size(), 3U);
    m_items.clear();
    ::VirtualFree(pages, 0, MEM_RELEASE);
}

TEST_F(Output2List, EveryFailureCleansTheItems) {
    instr::setEntry(entry(0), 0);
    for (const instr::ExportId id :
         {instr::FnF5_GetDisplayItemCountId, instr::GetCurrentItemId, instr::FnF5_GetDisplayItemInfoId}) {
        ASSERT_EQ(build(1, 0), S_OK);
        m_plugin->exports[id].result = 1;
        EXPECT_EQ(m_function.initItems(m_items.vec()), E_FAIL);
        EXPECT_EQ(m_items.size(), 1U);
        EXPECT_EQ(m_items.alive(), 0U);
        m_plugin->exports[id].result = 0;
    }
    EXPECT_EQ(timesLogged(kInitLine), 3U);
    ASSERT_EQ(build(1, 0), S_OK);
    withoutPictures();
    EXPECT_TRUE(FAILED(m_function.initItems(m_items.vec())));
    EXPECT_EQ(m_items.alive(), 0U);
}

TEST_F(Output2List, MissingListExportsAreTheSystemsError) {
    constexpr HRESULT kNoProcedure = static_cast<HRESULT>(0x8007007F);
    m_function.finalize();
    ASSERT_EQ(init(L"InstrNoFnF5_GetDisplayItemCount"), S_OK);
    EXPECT_EQ(m_function.initItems(m_items.vec()), kNoProcedure);
    m_function.finalize();
    EXPECT_TRUE(logged(L"[ERR] (CFxOutput_2::getItemCount): Error Code: 0x8007007f"));
    ASSERT_EQ(init(L"InstrNoFnF5_GetDisplayItemInfo"), S_OK);
    setEntries({false, true}, 0);
    EXPECT_EQ(FxOutput2Seam::read(m_function, 1), kNoProcedure);
    EXPECT_THAT(indices(), IsEmpty());
    EXPECT_TRUE(logged(L"[ERR] (CFxOutput_2::getAvailableItems): Error Code: 0x8007007f"));
}

TEST_F(Output2List, WithoutALibraryEveryListFails) {
    m_function.finalize();
    EXPECT_TRUE(FAILED(m_function.initItems(m_items.vec())));
    EXPECT_TRUE(FAILED(FxOutput2Seam::read(m_function, 1)));
}

TEST_F(Output2List, FavouritesThatDoNotFitAreLeftOut) {
    const auto fitting = static_cast<LONG>(workWidth() / outputrules::kItemPitch);
    const LONG lCount = fitting + 3;
    for (LONG i = 0; i < lCount; ++i) {
        instr::setEntry(entry(static_cast<std::size_t>(i)), 0, i < 2 ? 0 : FENWYN_ENTRY_CUSTOM, L"Favourite");
    }
    ASSERT_EQ(build(lCount, lCount - 2), S_OK);
    EXPECT_EQ(m_items.size(), static_cast<std::size_t>(fitting));
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), S_OK);
    EXPECT_EQ(lItem, fitting - 1);
    EXPECT_EQ(indices().back(), static_cast<DWORD>(lCount - 2));
    EXPECT_TRUE(
        logged(L"[INF] (CFxOutput_2::getItemCount): Maximal items count is " + std::to_wstring(fitting) + L":"));
    EXPECT_TRUE(logged(L"[TRC] (CFxOutput_2::filterFavItems): ENTER CFxOutput_2::filterFavItems"));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Output2List, FilteringWalksBackAndKeepsTheCurrentEntry) {
    setEntries({false, false, false, false, true, true, true, true}, 7);
    EXPECT_EQ(FxOutput2Seam::filter(m_function, 6), S_OK);
    EXPECT_THAT(indices(), ElementsAre(0, 1, 2, 3, 4, 7));
    EXPECT_EQ(FxOutput2Seam::filtered(m_function), 5);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(Output2List, BuiltInEntriesStayHoweverManyTheyAre) {
    setEntries({false, false, false}, 0);
    EXPECT_EQ(FxOutput2Seam::filter(m_function, 2), S_OK);
    EXPECT_THAT(indices(), ElementsAre(0, 1, 2));
    EXPECT_THAT(
        errors(),
        ElementsAre(L"[ERR] (CFxOutput_2::filterFavItems): ASSERT( m_vecAvailableItems.size() <= uMaxItemCnt )"));
}

TEST_F(Output2List, NullEntriesStay) {
    setEntries({true, true, true}, -1);
    FxOutput2Seam::entries(m_function)[2].reset();
    EXPECT_EQ(FxOutput2Seam::filter(m_function, 1), S_OK);
    EXPECT_THAT(indices(), ElementsAre(MAXDWORD));
}

TEST_F(Output2List, FilteringNothingFails) {
    setEntries({}, 0);
    EXPECT_EQ(FxOutput2Seam::filter(m_function, 2), E_FAIL);
    EXPECT_THAT(errors(), ElementsAre(L"[ERR] (CFxOutput_2::filterFavItems): Error Code: 0x80004005"));
}

TEST_F(Output2List, AFilteredPlaceThatDiffersBeforehandIsAnAssertionOnly) {
    setEntries({true, true, true}, 0);
    FxOutput2Seam::filtered(m_function) = 2;
    EXPECT_EQ(FxOutput2Seam::filter(m_function, 2), S_OK);
    EXPECT_THAT(indices(), ElementsAre(0, 1));
    EXPECT_EQ(FxOutput2Seam::filtered(m_function), 2);  // not beyond the removed position
    EXPECT_THAT(
        errors(),
        ElementsAre(L"[ERR] (CFxOutput_2::filterFavItems): ASSERT( m_lCurrentItemFiltered == m_lCurrentItem )"));
}

TEST_F(Output2List, TheCurrentEntryKeepsItsPlaceInEveryFiltering) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int run = 0; run < 300; ++run) {
        const std::size_t count = 1 + random() % 20;
        const auto lCurrent = static_cast<LONG>(random() % count);
        std::vector<bool> custom;
        for (std::size_t i = 0; i < count; ++i) {
            custom.push_back(random() % 2 == 0);
        }
        setEntries(custom, lCurrent);
        ASSERT_EQ(FxOutput2Seam::filter(m_function, random() % 22), S_OK);
        const auto left = indices();
        const auto place = static_cast<std::size_t>(FxOutput2Seam::filtered(m_function));
        ASSERT_LT(place, left.size());
        ASSERT_EQ(left[place], static_cast<DWORD>(lCurrent)) << "run " << run;
    }
}

TEST_F(Output2List, NoDefaultAndNoStatusWithoutACurrentEntry) {
    LONG lItem = 77;
    EXPECT_EQ(m_function.getDefaultSelectItem(lItem), E_FAIL);
    EXPECT_EQ(lItem, 77);
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    EXPECT_THAT(
        errors(),
        ElementsAre(
            L"[ERR] (CFxOutput_2::getDefaultSelectItem): ASSERT( INVALID_CURRENT_ITEM != m_lCurrentItemFiltered )",
            L"[ERR] (CFxOutput_2::getCurrentStatus): ASSERT( INVALID_CURRENT_ITEM != m_lCurrentItem )"));
}

TEST_F(Output2List, ACurrentIndexBeyondTheListLeavesNoOldStatus) {
    instr::setEntry(entry(0), FENWYN_MODE_INTERNAL);
    instr::setEntry(entry(1), FENWYN_MODE_CLONE);
    ASSERT_EQ(build(2, 1), S_OK);
    EXPECT_EQ(m_function.getCurrentStatus(), loadResString(304));
    ASSERT_EQ(build(2, 5), S_OK);
    EXPECT_EQ(m_function.getCurrentStatus(), L"");
    ASSERT_EQ(build(2, 0), S_OK);
    EXPECT_EQ(m_function.getCurrentStatus(), loadResString(302));
    m_plugin->exports[instr::FnF5_GetDisplayItemInfoId].result = 1;
    EXPECT_EQ(build(2, 0), E_FAIL);
    EXPECT_EQ(m_function.getCurrentStatus(), L"") << "there is no list to have a state";
}

TEST_F(Output2List, EveryModeHasADefaultName) {
    const UINT names[] = {302, 303, 303, 304, 305, 305, 305, 305, 306, 307, 308};
    for (LONG lMode = 0; lMode <= 10; ++lMode) {
        EXPECT_EQ(FxOutput2Seam::defaultName(lMode), loadResString(names[lMode])) << lMode;
    }
    EXPECT_THAT(errors(), IsEmpty());
    for (const LONG lMode : std::initializer_list<LONG>{11, -1, 0x7FFFFFFF}) {
        EXPECT_EQ(FxOutput2Seam::defaultName(lMode), L"");
    }
    EXPECT_EQ(timesLogged(L"[ERR] (CFxOutput_2::getDefaultItemName): ASSERT( !\"Wrong icon type!\" )"), 3U);
}

TEST_F(Output2List, PicturesFollowModeFavouriteAndSetup) {
    // Large pictures: favourite, built-in with setup, built-in without; the small one is the next number.
    const UINT large[][3] = {{252, 222, 222}, {254, 226, 224}, {256, 230, 228}, {258, 234, 232},
                             {260, 238, 236}, {262, 242, 240}, {264, 246, 244}, {266, 250, 248},
                             {290, 290, 290}, {292, 292, 292}, {294, 294, 294}};
    for (LONG lMode = 0; lMode <= 10; ++lMode) {
        for (int kind = 0; kind < 4; ++kind) {
            const DWORD dwCustom = kind < 2 ? 2 : 0;
            const DWORD dwNeedsSetup = kind % 2 == 0 ? 8 : 0;
            UINT uSmall = 0;
            UINT uLarge = 0;
            EXPECT_EQ(FxOutput2Seam::imageIds(lMode, dwCustom, dwNeedsSetup, &uSmall, &uLarge), S_OK);
            EXPECT_EQ(uLarge, large[lMode][kind < 2 ? 0 : kind - 1]) << lMode << " " << kind;
            EXPECT_EQ(uSmall, uLarge + 1);
        }
    }
}

TEST_F(Output2List, UnknownModesLeaveThePicturesAlone) {
    for (const LONG lMode : std::initializer_list<LONG>{11, -1}) {
        UINT uSmall = 1;
        UINT uLarge = 2;
        EXPECT_EQ(FxOutput2Seam::imageIds(lMode, 0, 0, &uSmall, &uLarge), S_OK);
        EXPECT_EQ(uSmall, 1U);
        EXPECT_EQ(uLarge, 2U);
        EXPECT_EQ(FxOutput2Seam::imageIds(lMode, 0, 0, nullptr, &uLarge), E_POINTER);
        EXPECT_EQ(FxOutput2Seam::imageIds(lMode, 0, 0, &uSmall, nullptr), E_POINTER);
    }
    EXPECT_EQ(timesLogged(L"[ERR] (CFxOutput_2::getImageIDInRes): ASSERT( puIdSmallIcon && puIdLargeIcon )"), 4U);
}

TEST_F(Output2List, AnEntryWithoutAPictureFailsTheList) {
    instr::setEntry(entry(0), 11);
    EXPECT_TRUE(FAILED(build(1, 0)));
    EXPECT_EQ(m_items.alive(), 0U);
}

}  // namespace functest
