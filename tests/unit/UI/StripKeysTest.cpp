// The strip and the keys: the effect of each event, the order of effects, and the timers.
#include <algorithm>

#include "AppFixture.h"

namespace {

using namespace apptest;

class StripKeysTest : public ShellTest {
 protected:
    StripKeysTest() { addThreeCards(); }
    [[nodiscard]] UINT autoHide() const { return system_double::timer(stripWindow(), 1); }
    [[nodiscard]] std::size_t notified() const {
        return timesLogged(L"[TRC] (CBlackCard::notifyHotkey): ENTER CBlackCard::notifyHotkey");
    }
};

TEST_F(StripKeysTest, KeyOpensTheCardOfItsFunctionAndHidesTheStrip) {
    showStrip();
    EXPECT_EQ(key(kLockKey, kMake), S_OK);
    EXPECT_FALSE(stripShown());
    EXPECT_FALSE(largeShown(0));
    EXPECT_TRUE(largeShown(1));
    EXPECT_EQ(notified(), 3U) << "every card hears of it";
}

TEST_F(StripKeysTest, KeyClosesTheLargeCardsOfOtherFunctionsOnly) {
    EXPECT_EQ(key(kLockKey, kMake), S_OK);
    EXPECT_EQ(key(kLockKey, kMake), S_OK);
    EXPECT_TRUE(largeShown(1)) << "a hidden strip that is hidden again takes nothing along";
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_TRUE(largeShown(0));
    EXPECT_FALSE(largeShown(1));
    EXPECT_FALSE(card(1).hasValidSelection());
}

TEST_F(StripKeysTest, KeyThatNoCardAcceptsReachesNoCard) {
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    showStrip();
    ASSERT_TRUE(largeShown(0));
    m_log.clear();
    EXPECT_EQ(key(0x57, kMake), E_FAIL);
    EXPECT_TRUE(stripShown());
    EXPECT_TRUE(largeShown(0));
    EXPECT_EQ(notified(), 0U);
    EXPECT_EQ(errors(), std::vector<std::wstring>{L"[ERR] (CZelMainDlg::handleHotkey): Error Code: 0x80004005"});
}

TEST_F(StripKeysTest, CardWithoutAFunctionAcceptsNoKey) {
    BlackCardSeam::function(card(0)).reset();
    EXPECT_EQ(key(kMuteKey, kMake), E_FAIL);
    EXPECT_TRUE(logged(L"[ERR] (CBlackCard::isHotkeyDesired): Error Code: 0x0"));
    EXPECT_EQ(key(kLockKey, kMake), S_OK);
}

TEST_F(StripKeysTest, KeyOfTwoFunctionsOpensBoth) {
    addCard(L"Zoom", {kMuteKey, 0x57});
    layOut();
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_TRUE(largeShown(0));
    EXPECT_TRUE(largeShown(3));
    EXPECT_EQ(key(0x57, kMake), S_OK);
    EXPECT_FALSE(largeShown(0));
    EXPECT_TRUE(largeShown(3));
}

TEST_F(StripKeysTest, EveryEventDisarmsTheHeldKey) {
    for (const DWORD code : {kModifier, kMuteKey, DWORD{0x57}}) {
        for (const BOOL isBreak : {kMake, kBreak}) {
            ::SetTimer(stripWindow(), 20, 3000, nullptr);
            key(code, isBreak);
            EXPECT_EQ(system_double::timer(stripWindow(), 20), 0U);
        }
    }
}

TEST_F(StripKeysTest, MessageCarriesCodeAndBreakFlagAndAnswersWithTheStatus) {
    EXPECT_EQ(::SendMessageW(stripWindow(), WM_USER + 101, kModifier, 0), S_OK);
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(::SendMessageW(stripWindow(), WM_USER + 101, kModifier, 1), S_OK);
    EXPECT_FALSE(stripShown());
    EXPECT_EQ(static_cast<HRESULT>(::SendMessageW(stripWindow(), WM_USER + 101, 0x57, 0)), E_FAIL);
}

TEST_F(StripKeysTest, ModifiersReleaseAppliesTheSelection) {
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_EQ(key(kMuteKey, kBreak), S_OK);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
    EXPECT_EQ(key(kModifier, kBreak), S_OK);
    ASSERT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_EQ(m_plugin.calls(instr::SelectItemId)[0].arguments[0], 1) << "the other than the current one";
    EXPECT_FALSE(largeShown(0));
}

TEST_F(StripKeysTest, KeyThatNeedsNoModifierTakesTheCardsOverFromTheMouse) {
    constexpr DWORD kAloneKey = 0x1E020;
    addCard(L"Zoom", {kAloneKey});
    layOut();
    theApp.mouseOperating() = TRUE;
    EXPECT_EQ(key(kAloneKey, kMake), S_OK);
    EXPECT_TRUE(largeShown(3));
    EXPECT_FALSE(stripShown());
    EXPECT_EQ(key(kAloneKey, kBreak), S_OK);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
    EXPECT_EQ(key(kModifier, kBreak), S_OK) << "without a make before";
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
    EXPECT_FALSE(largeShown(3));
}

TEST_F(StripKeysTest, KeyWithTheModifierLeavesTheCardsToTheMouse) {
    theApp.mouseOperating() = TRUE;
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    key(kModifier, kBreak);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 0);
    EXPECT_TRUE(largeShown(0));
}

class CustomisedKey : public StripKeysTest {
 protected:
    CustomisedKey() {
        config().bProgrammable = 1;
        customise(kMuteKey, L"C:\\no\\such\\program.exe");
        listFunction(L"Mute", {kMuteKey, 0x44});
        EXPECT_EQ(strip().initialize(), S_OK);
        layOut();
        m_log.clear();
    }
};

TEST_F(CustomisedKey, StartsItsProgramAndNoCardSeesIt) {
    showStrip();
    const HRESULT status = key(kMuteKey, kMake);
    EXPECT_GT(status, 0) << "the shell's small error number";
    EXPECT_LE(status, 32);
    EXPECT_TRUE(logged(L"[INF] (CCustomHotkey::handleHotkey): File:C:\\no\\such\\program.exe, param:."));
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(notified(), 0U);
}

TEST_F(CustomisedKey, BreakIsNothing) {
    EXPECT_EQ(key(kMuteKey, kBreak), S_FALSE);
    EXPECT_EQ(notified(), 0U);
    EXPECT_FALSE(logged(L"[INF] (CCustomHotkey::handleHotkey): File:C:\\no\\such\\program.exe, param:."));
}

TEST_F(CustomisedKey, CountsOnlyWhileProgrammable) {
    config().bProgrammable = 0;
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_TRUE(largeShown(0));
}

TEST_F(StripKeysTest, ModifierShowsAndHidesTheStrip) {
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(key(kModifier, kBreak), S_OK);
    EXPECT_FALSE(stripShown());
}

TEST_F(StripKeysTest, ModifierLeavesTheFocusWhereItIs) {
    const HWND other = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 900, 500, 50, 50, nullptr, nullptr,
                                         nullptr, nullptr);
    ::SetActiveWindow(other);
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(::GetActiveWindow(), other);
    EXPECT_EQ(key(kModifier, kBreak), S_OK);
    EXPECT_EQ(::GetActiveWindow(), other);
    ::DestroyWindow(other);
}

TEST_F(StripKeysTest, IgnoredModifierReachesNoCard) {
    config().bIgnoreFnKey = 1;
    m_room.setMouseOperating(true);
    EXPECT_EQ(key(kModifier, kMake), E_NOTIMPL);
    EXPECT_FALSE(stripShown());
    EXPECT_EQ(notified(), 0U);
    EXPECT_TRUE(ZelMainSeam::mouseOperating()) << "not even the mouse's flag is touched";
    EXPECT_TRUE(logged(L"[ERR] (CZelMainDlg::handleHotkey): Error Code: 0x80004001"));
}

TEST_F(StripKeysTest, ModifiersMakeEndsTheWorkWithTheMouse) {
    m_room.setMouseOperating(true);
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_FALSE(ZelMainSeam::mouseOperating());
}

TEST_F(StripKeysTest, ModifiersReleaseLeavesTheStripToTheMouse) {
    showStrip();
    m_room.setMouseOperating(true);
    EXPECT_EQ(key(kModifier, kBreak), E_NOTIMPL);
    EXPECT_TRUE(stripShown());
    EXPECT_EQ(notified(), 0U);
}

TEST_F(StripKeysTest, HiddenMainDialogNeverShows) {
    config().bHideMainDlg = 1;
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_FALSE(stripShown());
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_TRUE(largeShown(0));
}

TEST_F(StripKeysTest, ModifierLeavesACardInUseAlone) {
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    ASSERT_TRUE(card(0).hasValidSelection());
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_FALSE(stripShown());
    EXPECT_TRUE(largeShown(0));
}

TEST_F(StripKeysTest, ModifierRepaintsAStripThatIsThere) {
    showStrip();
    pump();
    ASSERT_FALSE(::GetUpdateRect(stripWindow(), nullptr, FALSE));
    m_log.clear();
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_TRUE(::GetUpdateRect(stripWindow(), nullptr, FALSE));
    EXPECT_TRUE(entered({L"CZelMainApp::showMainDlg"}).empty());
}

TEST_F(StripKeysTest, ModifierWithoutAHoverStripFails) {
    ZelMainSeam::hoverStrip().reset();
    EXPECT_EQ(key(kModifier, kMake), E_FAIL);
    EXPECT_EQ(notified(), 0U);
}

TEST_F(StripKeysTest, BreakArmsTheAutomaticHidingAndAMakeDisarmsIt) {
    config().bAutoHide = 1;
    config().uAutoHideDelayTime = 1234;
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_EQ(autoHide(), 0U);
    EXPECT_EQ(key(kModifier, kBreak), S_OK);
    EXPECT_EQ(autoHide(), 1234U);
    EXPECT_TRUE(logged(L"[TRC] (CZelMainDlg::_autoHide): set timer to hide QRD after 1234 milliseconds."));
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_EQ(autoHide(), 0U) << "the modifier's make disarms it as well";
    EXPECT_EQ(key(kModifier, kBreak), S_OK);
    EXPECT_EQ(autoHide(), 1234U);
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_EQ(autoHide(), 0U);
    EXPECT_EQ(key(kMuteKey, kBreak), S_OK);
    EXPECT_EQ(autoHide(), 1234U);
}

TEST_F(StripKeysTest, NothingHidesAutomaticallyUnlessAsked) {
    EXPECT_EQ(key(kModifier, kMake), S_OK);
    EXPECT_EQ(key(kModifier, kBreak), S_OK);
    EXPECT_EQ(autoHide(), 0U);
}

TEST_F(StripKeysTest, AutomaticHidingAppliesTheSelection) {
    config().bAutoHide = 1;
    config().bIgnoreFnKey = 1;
    config().uAutoHideDelayTime = 20;
    EXPECT_EQ(key(kMuteKey, kMake), S_OK);
    EXPECT_EQ(key(kMuteKey, kBreak), S_OK);
    EXPECT_TRUE(pumpUntil([this] { return m_plugin.count(instr::SelectItemId) > 0; }));
    EXPECT_FALSE(largeShown(0));
    EXPECT_EQ(autoHide(), 0U);
    EXPECT_EQ(m_plugin.count(instr::SelectItemId), 1);
}

TEST_F(StripKeysTest, SecondStartsTimerHidesTheStripOnce) {
    showStrip();
    ::SetTimer(stripWindow(), 10, 20, nullptr);
    EXPECT_TRUE(pumpUntil([this] { return !stripShown(); }));
    EXPECT_EQ(system_double::timer(stripWindow(), 10), 0U);
}

}  // namespace
