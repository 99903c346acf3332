// The page Buttons, with injected keys and a simulated person.
#include "KeyNames.h"
#include "KeyTable.h"
#include "PageRoom.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "ZelHotkey.h"
#include "common/StartByShell.h"

namespace settings {
namespace {

using companions::pressKey;

class ButtonsPage : public PageRoom {
 protected:
    void SetUp() override {
        PageRoom::SetUp();
        give(Root::Machine, kProgrammable, 1);
        giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;");
        const std::wstring mute = std::wstring(regpath::kHotkeyKey) + L"\\Mute";
        give(Root::Machine, ZEL_VALUE_CODE, 0x3B, mute.c_str());
        setCustomKey(m_model, 0x42, L"calc.exe", L"/x");
        ASSERT_EQ(m_model.apply(), Applied::Done);
        ASSERT_TRUE(companions::CFocusWindow::instance().prepare());
        open(&makeButtonsPage);
    }
    void ask(WORD key) {
        press(IDS_BUTTONS_PRESS);
        pressKey(key);
    }
};

TEST_F(ButtonsPage, ListsKeysAndShowsTheSelectedOne) {
    ASSERT_EQ(ListView_GetItemCount(control(IDC_BUTTONS_LIST)), 1);
    EXPECT_FALSE(enabled(IDS_BUTTONS_REMOVE) || enabled(IDS_BUTTONS_SET) || enabled(IDS_BUTTONS_TRY));
    ListView_SetItemState(control(IDC_BUTTONS_LIST), 0, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(words(IDC_BUTTONS_KEY), keyWithModifier(0x42));
    EXPECT_EQ(words(IDC_BUTTONS_PROGRAM), L"calc.exe");
    EXPECT_EQ(words(IDC_BUTTONS_PARAMETERS), L"/x");
    EXPECT_TRUE(enabled(IDS_BUTTONS_REMOVE) && enabled(IDS_BUTTONS_TRY));
    EXPECT_FALSE(enabled(IDS_BUTTONS_SET)) << "nothing has changed";
}

TEST_F(ButtonsPage, PressedKeyGetsAProgram) {
    ask(VK_F1);
    ASSERT_TRUE(says(IDC_BUTTONS_SAID, text(IDS_BUTTONS_INSTEAD, {L"Mute"})));
    EXPECT_FALSE(enabled(IDS_BUTTONS_SET)) << "an empty program cannot be saved";
    type(IDC_BUTTONS_PROGRAM, L"  ");
    EXPECT_FALSE(enabled(IDS_BUTTONS_SET));
    type(IDC_BUTTONS_PROGRAM, L"http://example.org/");
    ASSERT_TRUE(enabled(IDS_BUTTONS_SET));
    press(IDS_BUTTONS_SET);
    EXPECT_EQ(ListView_GetItemCount(control(IDC_BUTTONS_LIST)), 2);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(customKeys(m_model).size(), 2U);
}

TEST_F(ButtonsPage, KeyThatHasAProgramIsChangedAndNotTakenTwice) {
    type(IDC_BUTTONS_PROGRAM, L"other.exe");
    ask(VK_F8);
    ASSERT_TRUE(says(IDC_BUTTONS_SAID, text(IDS_BUTTONS_CHANGES)));
    EXPECT_EQ(words(IDC_BUTTONS_PROGRAM), L"calc.exe");
    type(IDC_BUTTONS_PROGRAM, L"other.exe");
    press(IDS_BUTTONS_SET);
    const auto keys = customKeys(m_model);
    ASSERT_EQ(keys.size(), 1U);
    EXPECT_EQ(keys[0].program, L"other.exe");
    press(IDS_BUTTONS_REMOVE);
    EXPECT_TRUE(customKeys(m_model).empty());
    EXPECT_EQ(ListView_GetItemCount(control(IDC_BUTTONS_LIST)), 0);
}

TEST_F(ButtonsPage, KeysThatCannotBeCustomisedAreRefused) {
    ask(VK_LEFT);
    EXPECT_TRUE(says(IDC_BUTTONS_SAID, text(IDS_BUTTONS_WRONG_KEY)));
    EXPECT_EQ(words(IDC_BUTTONS_KEY), text(IDS_KEYS_NONE));
}

TEST_F(ButtonsPage, NothingLongerThanTheShellTakesCanBeTyped) {
    ::SendMessageW(control(IDC_BUTTONS_PROGRAM), EM_REPLACESEL, FALSE,
                   reinterpret_cast<LPARAM>(std::wstring(2000, L'a').c_str()));
    EXPECT_EQ(static_cast<std::size_t>(::GetWindowTextLengthW(control(IDC_BUTTONS_PROGRAM))), common::kMostFileChars);
}

TEST_F(ButtonsPage, ChosenFileIsTheProgram) {
    m_chosenFile = L"C:\\a b.exe";
    press(IDS_BUTTONS_BROWSE);
    EXPECT_EQ(words(IDC_BUTTONS_PROGRAM), L"C:\\a b.exe");
}

TEST_F(ButtonsPage, TrialThatFailsIsTold) {
    type(IDC_BUTTONS_PROGRAM, L"C:\\no such program.exe");
    press(IDS_BUTTONS_TRY);
    ASSERT_EQ(m_told.size(), 1U);
    EXPECT_NE(m_told[0].find(L"no such program"), std::wstring::npos);
}

TEST_F(ButtonsPage, SwitchedOffKeysSaySoAndASwitchTakesARestart) {
    ::SendMessageW(control(IDS_PROGRAMMABLE), BM_SETCHECK, BST_UNCHECKED, 0);
    press(IDS_PROGRAMMABLE);
    EXPECT_FALSE(areKeysProgrammable(m_model));
    ask(VK_F9);
    type(IDC_BUTTONS_PROGRAM, L"a.exe");
    ASSERT_TRUE(companions::waitUntil([this] { return enabled(IDS_BUTTONS_SET); }));
    press(IDS_BUTTONS_SET);
    EXPECT_EQ(words(IDC_BUTTONS_SAID), text(IDS_BUTTONS_SWITCHED_OFF));
    m_bRuns = true;
    const int announced = m_nAnnouncements;
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_nRestarts, 1);
    EXPECT_EQ(m_nAnnouncements, announced + 1);
}

}  // namespace
}  // namespace settings
