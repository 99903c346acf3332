// Plug-ins that run a message loop inside an export: what arrives there must not destroy cards, items and libraries in
// use.
#include "UI/InUseFixture.h"

namespace {

using namespace apptest;

using CardsInUseTest = InUseTest;

TEST_F(CardsInUseTest, RebuildDuringAChoiceComesAfterIt) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kMuteKey, kMake);
    const CBlackCard* before = &card(0);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    m_log.clear();
    postRebuild();
    send(kModifier, kBreak);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_LT(at(L"The cards are in use: they are built anew later."), last());
    EXPECT_EQ(at(L"ENTER CZelMainDlg::createBlackCards"), last()) << "not while the choice is applied";
    EXPECT_EQ(&card(0), before);
    forgetPumping();
    pump();
    EXPECT_LT(at(L"LEAVE CZelMainDlg::handleHotkey"), at(L"ENTER CZelMainDlg::createBlackCards"));
    EXPECT_LT(at(L"LEAVE CZelMainDlg::createBlackCards"), last());
    EXPECT_EQ(cardCount(), 3U);
}

TEST_F(CardsInUseTest, RebuildWhileCardsAreBuiltMakesNoCardTwice) {
    ASSERT_TRUE(start());
    m_plugin->exports[instr::InitializeHotkeyDllId].pumps = TRUE;
    m_plugin->counts[instr::InitializeHotkeyDllId] = 0;
    postRebuild();
    EXPECT_EQ(theApp.refreshCards(TRUE), S_OK);
    EXPECT_EQ(cardCount(), 3U);
    forgetPumping();
    pump();
    EXPECT_EQ(cardCount(), 3U);
    EXPECT_EQ(m_plugin.count(instr::InitializeHotkeyDllId), 6) << "three cards, twice, one after the other";
}

TEST_F(CardsInUseTest, KeysDuringAChoiceAreHandledAfterItInTheirOrder) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kMuteKey, kMake);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    m_log.clear();
    post(kModifier, kMake);
    post(kLockKey, kMake);
    send(kModifier, kBreak);
    EXPECT_LT(at(L"The cards are in use: hotkey 0x0 waits."), at(L"The cards are in use: hotkey 0x3c waits."));
    EXPECT_LT(at(L"The cards are in use: hotkey 0x3c waits."), last());
    EXPECT_EQ(entered({L"CZelMainDlg::handleHotkey"}).size(), 1U);
    forgetPumping();
    // Before the strip is notified that the cards are free: waiting keys are handled first, and once.
    send(kLockKey, kBreak);
    EXPECT_EQ(entered({L"CZelMainDlg::handleHotkey"}).size(), 4U);
    pump();
    EXPECT_EQ(entered({L"CZelMainDlg::handleHotkey"}).size(), 4U);
    EXPECT_TRUE(shown(BlackCardSeam::largeCard(card(1))->m_hWnd)) << "the last key's card is enlarged";
    EXPECT_TRUE(card(1).hasValidSelection());
}

TEST_F(CardsInUseTest, KeyThatComesWhileTheWaitingOnesAreHandledComesBehindAllThatCameBefore) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kMuteKey, kMake);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    for (const auto& [code, isBreak] : {std::pair{kModifier, kMake}, {kMuteKey, kMake}, {kModifier, kBreak}}) {
        post(code, isBreak);
    }
    send(kModifier, kBreak);  // the plug-in takes those three
    m_log.clear();
    post(kOtherUnusedKey, kMake);  // and this one, when the last of the three reaches it
    send(kUnusedKey, kMake);
    pump();
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 2);
    EXPECT_LT(at(L"The cards are in use: hotkey 0x51 waits."), last());
    EXPECT_LT(at(L"File:C:\\no\\such\\program.exe, param:."), at(L"File:C:\\no\\such\\other.exe, param:."));
    EXPECT_LT(at(L"File:C:\\no\\such\\other.exe, param:."), last());
}

TEST_F(CardsInUseTest, KeyThatArrivesEndsTheWatchOverTheHeldOneAtOnce) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kMuteKey, kMake);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    UINT period = 1;
    const Meanwhile armed([] { ::SetTimer(stripWindow(), kTimerPanic, 3000, nullptr); });
    post(kMuteKey, kBreak);
    const Meanwhile after([&] { period = system_double::timer(stripWindow(), kTimerPanic); });
    send(kModifier, kBreak);
    ASSERT_TRUE(after.ran());
    EXPECT_EQ(period, 0U) << "not only when the waiting event is handled";
}

TEST_F(CardsInUseTest, KeyThatWasLetGoBeforeItIsHandledIsNotWatched) {
    listFunction(L"Output", {kSleepKey});
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kMuteKey, kMake);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    post(kModifier, kMake);
    post(kSleepKey, kMake);
    post(kSleepKey, kBreak);
    send(kModifier, kBreak);
    ASSERT_LT(at(L"The cards are in use: hotkey 0x3d waits."), last());
    forgetPumping();
    // The press is handled now; its release waits behind it.
    m_plugin->exports[instr::GetDisplayItemInfoId].pumps = TRUE;
    UINT period = 1;
    const Meanwhile inside([&] { period = system_double::timer(stripWindow(), kTimerPanic); });
    pump();
    EXPECT_TRUE(inside.ran());
    EXPECT_EQ(period, 0U);
    forgetPumping();
    send(kSleepKey, kMake);
    EXPECT_NE(system_double::timer(stripWindow(), kTimerPanic), 0U) << "one that is held is";
    ::KillTimer(stripWindow(), kTimerPanic);
}

TEST_F(CardsInUseTest, RebuildDuringTheVeryFirstStartIsNotLost) {
    m_plugin->exports[instr::InitializeHotkeyDllId].pumps = TRUE;
    const Meanwhile order([] { postRebuild(); });
    ASSERT_TRUE(start());
    ASSERT_TRUE(order.ran());
    ASSERT_EQ(m_plugin.count(instr::InitializeHotkeyDllId), 3);
    forgetPumping();
    pump();
    EXPECT_EQ(m_plugin.count(instr::InitializeHotkeyDllId), 6) << "three cards, twice";
    EXPECT_EQ(cardCount(), 3U);
}

TEST_F(CardsInUseTest, CardThatIsToGoWhileThePluginIsAskedForItsItemsIsNotShown) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    m_plugin->exports[instr::GetDisplayItemInfoId].pumps = TRUE;
    ::PostMessageW(ZelMainSeam::frame()->m_hWnd, kMsgHideStrip, 1, 0);
    send(kMuteKey, kMake);
    EXPECT_FALSE(shown(BlackCardSeam::largeCard(card(0))->m_hWnd));
    EXPECT_FALSE(shown(BlackCardSeam::items(card(0)).front()->windowHandle()));
    EXPECT_TRUE(BlackCardSeam::firstTime(card(0)));
    send(kModifier, kBreak);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0) << "nobody saw what would be applied";
    forgetPumping();
    send(kModifier, kMake);
    send(kMuteKey, kMake);
    EXPECT_TRUE(shown(BlackCardSeam::largeCard(card(0))->m_hWnd));
    EXPECT_FALSE(BlackCardSeam::firstTime(card(0)));
}

TEST_F(CardsInUseTest, SliderThatIsDraggedOutlivesTheKeysThatArriveInThePlugin) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kBrighterKey, kMake);
    const HWND item = slider().windowHandle();
    m_plugin->exports[instr::FocusItemId].pumps = TRUE;
    post(kModifier, kBreak);
    post(kModifier, kMake);
    post(kBrighterKey, kMake);  // a first press creates the items again
    ::SendMessageW(item, WM_HSCROLL, MAKEWPARAM(TB_THUMBTRACK, 0),
                   reinterpret_cast<LPARAM>(::GetWindow(item, GW_CHILD)));
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 1);
    EXPECT_EQ(slider().windowHandle(), item);
    EXPECT_TRUE(::IsWindow(item));
    forgetPumping();
    pump();
    EXPECT_FALSE(::IsWindow(item)) << "now it is replaced";
    EXPECT_TRUE(card(2).hasValidSelection());
}

TEST_F(CardsInUseTest, SliderThatAKeyStepsOutlivesTheRebuildThatArrivesInThePlugin) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kBrighterKey, kMake);
    const HWND item = slider().windowHandle();
    m_plugin->exports[instr::FocusItemId].pumps = TRUE;
    postRebuild();
    send(kBrighterKey, kMake);
    EXPECT_EQ(m_plugin.count(instr::FocusItemId), 1);
    EXPECT_TRUE(::IsWindow(item));
    forgetPumping();
    pump();
    EXPECT_FALSE(::IsWindow(item));
    EXPECT_EQ(cardCount(), 3U);
}

TEST_F(CardsInUseTest, EndThatArrivesInAPluginEndsTheProgramAllTheSame) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kMuteKey, kMake);
    m_plugin->exports[instr::SelectItemId].pumps = TRUE;
    ::PostMessageW(ZelMainSeam::frame()->m_hWnd, WM_CLOSE, 0, 0);
    send(kModifier, kBreak);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_EQ(theApp.m_pMainWnd, nullptr) << "which is what the message loop ends on";
}

}  // namespace
