// Plug-ins that answer nonsense, through cards that are opened, stepped through and applied.
#include "Data/ZelConfig.h"
#include "Fuzz.h"
#include "plugins/InstrumentedPlugin.h"
#include "support/AppRoom.h"
#include "support/AppSeams.h"
#include "support/RegistryRoom.h"

namespace {

using fuzz::CRandom;

constexpr DWORD kKey = 0x3B;
constexpr DWORD kOtherKey = 0x3C;
constexpr const wchar_t* kFunctions[] = {L"Mute",   L"Lock",     L"PowerPlan",  L"Sleep",         L"Hibernate",
                                         L"Output", L"Output_2", L"Brightness", L"Wireless",      L"Touchpad",
                                         L"Zoom",   L"KBB",      L"ODD",        L"CursorOverlay", L"NumericOverlay"};

void copy(const std::wstring& text, wchar_t (&target)[instr::kMaxText]) {
    target[text.copy(target, instr::kMaxText - 1)] = L'\0';
}

// Addresses of nothing, of little, and of something else.
ULONGLONG address(CRandom& random) {
    static constexpr ULONGLONG kAddresses[] = {1,     0xFFFF,    0x7FFE0FFF, 0x7FFFFFFFFFFF, 0x8000000000000000,
                                               ~0ULL, ~0ULL - 50};
    static std::vector<FenwynDisplayRecord> records(3);
    switch (random.below(3)) {
        case 0:
            return random.oneOf(kAddresses);
        case 1:
            return reinterpret_cast<ULONG_PTR>(records.data()) + random.below(7);
        default:
            return 0;
    }
}

void answerNonsense(CRandom& random, instr::Control& control) {
    for (instr::Behaviour& behaviour : control.exports) {
        behaviour.result = random.oneIn(6) ? static_cast<LONG>(random.number()) : 0;
    }
    control.exports[instr::InitializeHotkeyDllId].result = 0;
    control.exports[instr::FnF5_InitializeHotkeyDllId].result = 0;
    control.info = random.number();
    control.info2 = random.number();
    control.currentItem = static_cast<LONG>(random.oneIn(2) ? random.below(8) : random.number());
    control.dual = static_cast<BYTE>(random.number());
    control.dualAsLong = random.oneIn(2);
    control.itemCount = static_cast<LONG>(random.oneIn(2) ? random.below(20) : random.number());
    control.nullPlanText = random.oneIn(4);
    control.textsOfOwnHeap = random.oneIn(8);
    control.followSelection = random.oneIn(2);
    control.writesOnFailure = random.oneIn(2);
    copy(random.text(instr::kMaxText), control.reason);
    for (auto& plan : control.plans) {
        copy(random.text(instr::kMaxText), plan);
    }
    for (instr::Entry& entry : control.entries) {
        instr::setEntry(entry, static_cast<LONG>(random.oneIn(2) ? random.below(14) : random.number()), random.number(),
                        random.text(instr::kMaxText));
        entry.recordCount = random.oneIn(3) ? random.number() : random.below(5);
        entry.recordsInstead = address(random);
        for (FenwynDisplayRecord& record : entry.records) {
            record = {};
            const std::wstring name = random.oneIn(2) ? L"HDMI " + random.text(30) : random.text(40);
            name.copy(record.szConnector, FENWYN_CONNECTOR_CHARS);
            record.uDisplayIndex = random.number();
            record.uWidth = random.number();
            record.uHeight = random.number();
        }
    }
}

TEST(PluginFuzz, AnswersOfEveryExport) {
    const support::RegistryRoom registry;
    ASSERT_TRUE(registry.redirected());
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, L"SOFTWARE\\KESTOVA\\Fenwyn", L"InstallPath", L"C:\\none");
    support::RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, L"SOFTWARE\\KESTOVA\\Fenwyn\\HotKey");
    const instr::InstrumentedPlugin plugin;
    ASSERT_TRUE(plugin.loaded());
    support::AppRoom room;
    fuzz::run(4,
              [&](CRandom& random) {
                  plugin.reset();
                  answerNonsense(random, plugin.control());
                  room.config().bAlwaysShowItemsCaption = random.oneIn(2);
                  CBlackCard& card = room.addCard();
                  std::vector<DWORD> codes{kKey, kOtherKey};
                  if (SUCCEEDED(card.initialize(random.oneOf(kFunctions), codes, L"Caption", plugin.path().c_str()))) {
                      static_cast<void>(theApp.refreshCards(FALSE));
                      static_cast<void>(theApp.showMainDlg(TRUE, TRUE));
                      support::pump();
                      for (unsigned n = 1 + random.below(3); n > 0; --n) {
                          answerNonsense(random, plugin.control());
                          static_cast<void>(room.strip().handleHotkey(random.oneIn(4) ? kOtherKey : kKey, FALSE));
                          support::pump();
                      }
                      static_cast<void>(room.strip().handleHotkey(0, TRUE));
                      support::pump();
                  }
                  static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
                  MainDlgSeam::cards(room.strip()).clear();
                  support::pump();
              },
              {L"instrplugin.dll"});
}

}  // namespace
