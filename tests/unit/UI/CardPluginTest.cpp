// Cards with plug-ins that are missing, incomplete or fail: nothing stays loaded, open or on screen.
#include <memory>

#include "UI/Doubles.h"
#include "UI/ItemDlg/ItemsFixture.h"
#include "common/PictureStore.h"
#include "support/LeakCheck.h"

namespace cards {
namespace {

using instr::ExportId;
using instr::InstrumentedPlugin;
using items::shown;
using Lines = std::vector<std::wstring>;

constexpr DWORD kSecondKey = 0x3C;

class CardPlugin : public items::ItemTest {
 protected:
    static HRESULT initialize(CBlackCard& card, const std::wstring& library, const wchar_t* function = L"Mute") {
        return card.initialize(function, {kKey}, L"Fn+F1", library.c_str());
    }
    [[nodiscard]] static bool loaded(const std::wstring& name) {
        return ::GetModuleHandleW(InstrumentedPlugin::pathOf(name).c_str()) != nullptr;
    }
};

TEST_F(CardPlugin, IsLoadedAndAsked) {
    CBlackCard& card = addCard(L"Mute", {kKey});
    EXPECT_EQ(m_plugin.count(instr::InitializeHotkeyDllId), 1);
    EXPECT_NE(card.getImage(), nullptr);
    EXPECT_TRUE(card.isHotkeyDesired(kKey));
    EXPECT_EQ(card.getCaption(), L"Caption");
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 0);
}

TEST_F(CardPlugin, UnknownFunctionFails) {
    CBlackCard card(&m_room.strip(), m_room.placement());
    EXPECT_EQ(initialize(card, m_plugin.path(), L"Toaster"), E_POINTER);
    EXPECT_TRUE(logged(L"[ERR] (CBlackCard::initialize): Error Code: 0x80004003"));
    EXPECT_EQ(initialize(card, m_plugin.path(), nullptr), E_POINTER);
    EXPECT_EQ(m_plugin->callCount, 0);
}

TEST_F(CardPlugin, MissingLibraryMeansNotSupported) {
    CBlackCard card(&m_room.strip(), m_room.placement());
    EXPECT_EQ(initialize(card, L"C:\\no\\such.dll"), E_FAIL);
    EXPECT_TRUE(logged(L"[INF] (CFuncX::isFuncSupported): Hotkey Fn+F1 is not supported."));
    EXPECT_TRUE(logged(L"[ERR] (CBlackCard::initialize): Error Code: 0x80004005"));
    EXPECT_EQ(BlackCardSeam::function(card), nullptr);
}

TEST_F(CardPlugin, NoPathMeansNotSupported) {
    CBlackCard card(&m_room.strip(), m_room.placement());
    EXPECT_EQ(card.initialize(L"Mute", {kKey}, L"", nullptr), E_FAIL);
    EXPECT_EQ(card.initialize(L"Mute", {}, L"", L""), E_FAIL);
}

TEST_F(CardPlugin, UnsupportedFunctionIsEndedAndUnloaded) {
    m_plugin->exports[instr::InitializeHotkeyDllId].result = 1;
    CBlackCard card(&m_room.strip(), m_room.placement());
    EXPECT_EQ(initialize(card, m_plugin.path()), E_FAIL);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
    EXPECT_FALSE(m_plugin.heldByOthers());
}

TEST_F(CardPlugin, MissingPictureEndsAndUnloadsToo) {
    m_room.withoutPictures();
    CBlackCard card(&m_room.strip(), m_room.placement());
    EXPECT_EQ(initialize(card, m_plugin.path()), E_POINTER);
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
    EXPECT_FALSE(m_plugin.heldByOthers());
}

TEST_F(CardPlugin, LibraryWithoutItsFirstExportIsUnloaded) {
    CBlackCard card(&m_room.strip(), m_room.placement());
    EXPECT_EQ(initialize(card, InstrumentedPlugin::pathOf(L"InstrNoInitializeHotkeyDll")), E_FAIL);
    EXPECT_FALSE(loaded(L"InstrNoInitializeHotkeyDll"));
}

TEST_F(CardPlugin, DeletedCardEndsItsPlugInOnce) {
    {
        CBlackCard card(&m_room.strip(), m_room.placement());
        ASSERT_EQ(initialize(card, m_plugin.path()), S_OK);
    }
    EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), 1);
    EXPECT_FALSE(m_plugin.heldByOthers());
}

TEST_F(CardPlugin, RealPressesMoveTheRoundItems) {
    m_plugin->info = 7;
    m_plugin->currentItem = 1;
    CBlackCard& card = addCard(L"Zoom", {kKey});
    const auto enlarged = [&] {
        std::string state;
        for (CQrdItem* item : BlackCardSeam::items(card)) {
            state += CircleItemSeam::enlarged(dynamic_cast<CCircleItemDlg&>(*item)) ? '1' : '0';
        }
        return state;
    };
    for (const char* expected : {"010", "001", "100", "010"}) {
        ASSERT_EQ(card.notifyHotkey(kKey, FALSE), S_OK);
        EXPECT_EQ(enlarged(), expected);
    }
    EXPECT_EQ(card.notifyHotkey(0, TRUE), S_OK);
    ASSERT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId)[0].arguments[0], 1);
}

// What the first press selects on cards without all of their function's items, and what a release passes on.
struct PartialMask {
    const wchar_t* function;
    ULONG mask;
    LONG current;
    std::string selected;  // after each of three presses
    LONG handedOn;         // by releasing the modifier then
    const wchar_t* note;   // null: the function's own choice names an item
};

TEST_F(CardPlugin, CardsWithoutAllItemsAreWorkedWithKeys) {
    for (const PartialMask& row : {
             PartialMask{L"Zoom", 5, 0, "010", 0, nullptr},
             PartialMask{L"Zoom", 5, 1, "101", 1, nullptr},  // the position, which here is the item of another state
             PartialMask{L"Zoom", 5, 2, "101", 1, L"There is no item 2: item 1 is selected."},
             PartialMask{L"Zoom", 6, 2, "101", 1, L"There is no item 2: item 1 is selected."},
             PartialMask{L"Zoom", 4, 2, "000", 0, L"There is no item 2: item 0 is selected."},
             PartialMask{L"Zoom", 1, 1, "000", 0, L"There is no item 1: item 0 is selected."},
             PartialMask{L"Zoom", 7, 9, "012", 2, L"There is no item 9: item 0 is selected."},
             PartialMask{L"KBB", 6, 1, "010", 0, L"There is no item 2: item 0 is selected."},
             PartialMask{L"KBB", 6, 2, "101", 1, nullptr},
             PartialMask{L"KBB", 5, 0x000F0001, "010", 0, L"There is no item 2: item 0 is selected."},
             PartialMask{L"KBB", 4, 2, "000", 0, L"There is no item 1: item 0 is selected."},
             PartialMask{L"KBB", 3, 0x000F0005, "010", 0, L"There is no item 5: item 0 is selected."},
         }) {
        SCOPED_TRACE(testing::PrintToString(row.function) + " " + std::to_string(row.mask) + " at " +
                     std::to_string(row.current));
        m_plugin.reset();
        m_plugin->info = row.mask;
        m_plugin->currentItem = row.current;
        CBlackCard& card = addCard(row.function, {kKey});
        m_log.clear();
        std::string selected;
        for (int press = 0; press < 3; ++press) {
            EXPECT_EQ(card.notifyHotkey(kKey, FALSE), S_OK);
            selected += std::to_string(BlackCardSeam::selected(card));
            int index = 0;
            for (CQrdItem* item : BlackCardSeam::items(card)) {
                EXPECT_EQ(CircleItemSeam::enlarged(dynamic_cast<CCircleItemDlg&>(*item)),
                          index++ == BlackCardSeam::selected(card));
            }
        }
        EXPECT_EQ(selected, row.selected);
        std::vector<std::wstring> notes = m_log.lines();
        std::erase_if(notes, [](const std::wstring& line) { return line.find(L"There is no item") == line.npos; });
        EXPECT_EQ(notes, row.note == nullptr
                             ? Lines{}
                             : Lines{L"[INF] (CBlackCard::handleHotkeyFirstTime): " + std::wstring(row.note)});
        EXPECT_EQ(card.notifyHotkey(0, TRUE), S_OK);
        ASSERT_EQ(m_plugin.count(instr::SelectItemId), 1);
        EXPECT_EQ(m_plugin.calls(instr::SelectItemId)[0].arguments[0], row.handedOn);
        MainDlgSeam::cards(m_room.strip()).clear();
    }
}

TEST_F(CardPlugin, CardWithoutAnyItemSelectsNone) {
    m_plugin->info = 0;
    CBlackCard& card = addCard(L"Zoom", {kKey});
    EXPECT_TRUE(FAILED(card.notifyHotkey(kKey, FALSE)));
    EXPECT_EQ(BlackCardSeam::selected(card), -1);
}

// An unknown state of a function with fixed items is the plug-in's mistake: nothing is selected instead.
TEST_F(CardPlugin, FunctionsOfFixedItemsGetNoSubstitute) {
    m_plugin->currentItem = 5;
    CBlackCard& card = addCard(L"NumericOverlay", {kKey});
    EXPECT_EQ(card.notifyHotkey(kKey, FALSE), E_FAIL);
    EXPECT_EQ(BlackCardSeam::selected(card), -1);
}

TEST_F(CardPlugin, PictureFollowsTheState) {
    m_plugin->currentItem = 1;
    CBlackCard& card = addCard(L"CursorOverlay", {kKey});
    const auto picture = [&card] { return dynamic_cast<StoredImage&>(*card.getImage()).master().id(); };
    const std::size_t off = picture();
    EXPECT_EQ(picture(), off);
    m_plugin->currentItem = 0;
    const std::size_t on = picture();
    EXPECT_NE(on, off);
    EXPECT_EQ(picture(), on);
    m_room.withoutPictures();
    m_plugin->currentItem = 1;
    EXPECT_EQ(picture(), on) << "a failed load keeps the picture";
}

TEST_F(CardPlugin, ErrorNoticeIsPlacedByItsSize) {
    m_plugin->exports[instr::GetDisplayItemInfoId].result = -1;
    CBlackCard& card = addCard(L"Wireless", {kKey});
    EXPECT_EQ(card.notifyHotkey(kKey, FALSE), S_OK);
    ASSERT_EQ(BlackCardSeam::items(card).size(), 1U);
    const CQrdItem& notice = *BlackCardSeam::items(card)[0];
    EXPECT_TRUE(shown(notice.windowHandle()));
    const RECT place = support::windowRect(notice.windowHandle());
    EXPECT_EQ(place.right - place.left, notice.width());
    EXPECT_EQ(place.bottom - place.top, notice.height());
    EXPECT_NEAR((place.left + place.right) / 2, 300 + 48, 1);
    EXPECT_EQ(card.notifyHotkey(0, TRUE), S_OK);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
}

// ---------------------------------------------------------------------------------------------------------------------

struct Fault {
    const wchar_t* function;
    ExportId failing;
};
void PrintTo(const Fault& fault, std::ostream* out) {
    *out << std::string(fault.function, fault.function + ::wcslen(fault.function)) << " with "
         << instr::kExportNames[fault.failing] << " failing";
}

class CardFaults : public CardPlugin, public testing::WithParamInterface<Fault> {
 protected:
    // One whole use of a card; the number of presses that failed.
    int use(const std::wstring& library) {
        CBlackCard card(&m_room.strip(), m_room.placement());
        if (FAILED(card.initialize(GetParam().function, codes(), L"Fn+F1", library.c_str()))) {
            return -1;
        }
        card.setCardRect({0, 0, 96, 112});
        int failures = 0;
        for (int i = 0; i < 4; ++i) {
            failures += FAILED(card.notifyHotkey(kKey, FALSE)) ? 1 : 0;
            static_cast<void>(card.getImage());
        }
        static_cast<void>(card.notifyHotkey(0, TRUE));
        static_cast<void>(card.hideLargeCardDlg());
        support::pump();
        return failures;
    }
    [[nodiscard]] static std::vector<DWORD> codes() {
        return std::wstring(GetParam().function) == L"Brightness" ? std::vector<DWORD>{kKey, kSecondKey}
                                                                  : std::vector<DWORD>{kKey};
    }
    void prepare(instr::Control& control) const {
        control.info = std::wstring(GetParam().function) == L"Brightness" ? 10 : 3;
        control.currentItem = 1;
    }
};

TEST_P(CardFaults, LeaveNothingBehind) {
    const std::size_t windows = support::threadWindows();
    for (const LONG result : {-1L, 1L}) {
        m_plugin.reset();
        prepare(m_plugin.control());
        m_plugin->exports[GetParam().failing].result = result;
        use(m_plugin.path());
        EXPECT_EQ(m_plugin.count(instr::FinalizeHotkeyDllId), m_plugin.count(instr::InitializeHotkeyDllId));
        EXPECT_EQ(support::threadWindows(), windows);
    }
    EXPECT_FALSE(m_plugin.heldByOthers());
}

TEST_P(CardFaults, NorDoesAMissingExport) {
    const std::size_t windows = support::threadWindows();
    const std::string missing = instr::kExportNames[GetParam().failing];
    const std::wstring name = L"InstrNo" + std::wstring(missing.begin(), missing.end());
    InstrumentedPlugin plugin(name);
    ASSERT_TRUE(plugin.loaded());
    prepare(plugin.control());
    use(plugin.path());
    EXPECT_EQ(support::threadWindows(), windows);
    EXPECT_FALSE(plugin.heldByOthers());
}

std::vector<Fault> faults() {
    std::vector<Fault> all;
    for (const wchar_t* function : {L"Mute", L"Lock", L"Zoom", L"KBB", L"ODD", L"CursorOverlay", L"PowerPlan",
                                    L"Wireless", L"Brightness", L"Output"}) {
        for (const ExportId id :
             {instr::InitializeHotkeyDllId, instr::GetDisplayItemInfoId, instr::GetCurrentItemId, instr::SelectItemId,
              instr::FocusItemId, instr::IsDualBrtCtrlId, instr::GetCustomItemTextId, instr::FinalizeHotkeyDllId}) {
            all.push_back({function, id});
        }
    }
    return all;
}
INSTANTIATE_TEST_SUITE_P(All, CardFaults, testing::ValuesIn(faults()));

// Invalid out values count as failures too.
TEST_F(CardPlugin, NonsenseValuesAreHarmless) {
    const std::size_t windows = support::threadWindows();
    for (const wchar_t* function :
         {L"Mute", L"Zoom", L"KBB", L"ODD", L"NumericOverlay", L"PowerPlan", L"Wireless", L"Brightness", L"Output"}) {
        for (const ULONG info : {0UL, 0x80000000UL, 0xFFFFFFFFUL}) {
            for (const LONG current : {-1L, 99L, static_cast<LONG>(0x80000000UL)}) {
                m_plugin->info = info;
                m_plugin->info2 = 0;
                m_plugin->currentItem = current;
                CBlackCard card(&m_room.strip(), m_room.placement());
                const bool brightness = std::wstring(function) == L"Brightness";
                ASSERT_EQ(card.initialize(function,
                                          brightness ? std::vector<DWORD>{kKey, kSecondKey} : std::vector<DWORD>{kKey},
                                          L"", m_plugin.path().c_str()),
                          S_OK);
                card.setCardRect({0, 0, 96, 112});
                for (int i = 0; i < 3; ++i) {
                    static_cast<void>(card.notifyHotkey(kKey, FALSE));
                }
                static_cast<void>(card.notifyHotkey(0, TRUE));
            }
        }
        m_log.clear();
    }
    EXPECT_EQ(support::threadWindows(), windows);
    EXPECT_FALSE(m_plugin.heldByOthers());
}

TEST_F(CardPlugin, ManyUsesLeakNothing) {
    CBlackCard& card = addCard(L"Mute", {kKey});
    const auto use = [&](int turn) {
        ASSERT_EQ(card.notifyHotkey(kKey, FALSE), S_OK);
        ASSERT_EQ(card.notifyHotkey(kKey, FALSE), S_OK);
        if (turn % 10 == 0) {
            support::pump();  // paints
        }
        ASSERT_EQ(card.notifyHotkey(0, TRUE), S_OK);
        m_log.clear();
    };
    constexpr int kUses = 120;
    testsupport::expectNoLeak(20, kUses, use);
    const auto heap = testsupport::heapBytes();
    for (int turn = 0; turn < kUses; ++turn) {
        use(turn);
    }
    support::pump();
    EXPECT_LT(testsupport::heapBytes(), heap + kUses * 100) << "less than a hundred bytes for each use";
}

TEST_F(CardPlugin, ThousandCardsLeakNothing) {
    testsupport::expectNoLeak(20, 1000, [this](int turn) {
        CBlackCard card(&m_room.strip(), m_room.placement());
        ASSERT_EQ(initialize(card, m_plugin.path()), S_OK);
        card.setCardRect({0, 0, 96, 112});
        if (turn % 10 == 0) {
            ASSERT_EQ(card.notifyHotkey(kKey, FALSE), S_OK);
            support::pump();
        }
        m_log.clear();
    });
}

}  // namespace
}  // namespace cards
