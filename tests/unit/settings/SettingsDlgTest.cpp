#include "SettingsDlg.h"

#include <algorithm>

#include "Allowed.h"
#include "ChangeFile.h"
#include "Pages.h"
#include "SettingsWindow.h"

namespace settings {
namespace {

class Window : public SettingsWindow {};

constexpr std::size_t kBehaviour = 2;  // the number of the page

}  // namespace

TEST_F(Window, TurnsThePagesByKeysInBothDirections) {
    open();
    const auto turn = [&](WPARAM key, bool shift) {
        BYTE keys[256] = {};
        keys[VK_CONTROL] = 0x80;
        keys[VK_SHIFT] = shift ? 0x80 : 0;
        ::SetKeyboardState(keys);
        MSG message{m_pWindow->m_hWnd, WM_KEYDOWN, key, 0, 0, {}};
        EXPECT_TRUE(m_pWindow->PreTranslateMessage(message));
        BYTE none[256] = {};
        ::SetKeyboardState(none);
    };
    EXPECT_EQ(m_pWindow->selected(), 0U);
    turn(VK_TAB, false);
    EXPECT_EQ(m_pWindow->selected(), 1U);
    turn(VK_TAB, true);
    turn(VK_TAB, true);
    EXPECT_EQ(m_pWindow->selected(), pages().size() - 1);
    turn(VK_NEXT, false);
    EXPECT_EQ(m_pWindow->selected(), 0U);
    for (std::size_t i = 0; i < pages().size(); ++i) {
        EXPECT_EQ(m_pWindow->page(i).isVisible(), i == 0) << i;
    }
}

TEST_F(Window, APageThatIsNotShownStaysHiddenWhenEverythingIsLoadedAnew) {
    open();
    // What is wrong with it takes room, so that the page Behaviour is laid out anew.
    giveText(Root::Machine, regpath::kConfigKey, L"AutoHideDelayTime", L"soon");
    m_model.setNumber(value(L"HideCaption"), 1);
    press(IDS_APPLY);
    for (std::size_t i = 1; i < pages().size(); ++i) {
        EXPECT_FALSE(m_pWindow->page(i).isVisible()) << i;
    }
}

TEST_F(Window, ApplyIsThereOnlyForChangesAndNamesTheRightsThatItTakes) {
    m_store.machineMayBeWritten = false;
    open();
    EXPECT_FALSE(isEnabled(IDS_APPLY));
    m_model.setText(value(L"Language"), L"de");
    EXPECT_TRUE(isEnabled(IDS_APPLY));
    EXPECT_EQ(words(control(IDS_APPLY)), text(IDS_APPLY));
    m_model.setNumber(value(L"HideCaption"), 1);
    EXPECT_EQ(words(control(IDS_APPLY)), text(IDS_APPLY_FOR_ALL));
    press(IDS_APPLY);
    EXPECT_EQ(m_elevated.size(), 1U);
    EXPECT_FALSE(isEnabled(IDS_APPLY));
    EXPECT_TRUE(m_told.empty());
    EXPECT_TRUE(m_pWindow->isWindow());
}

TEST_F(Window, RefusedRightsAreToldInWordsAndNothingIsLost) {
    m_store.machineMayBeWritten = false;
    m_elevatedResult = ERROR_CANCELLED;
    open();
    m_model.setNumber(value(L"HideCaption"), 1);
    press(IDOK);
    EXPECT_EQ(m_told, std::vector<std::wstring>{text(IDS_ERROR_REFUSED)});
    ASSERT_TRUE(m_pWindow->isWindow());
    EXPECT_TRUE(isEnabled(IDS_APPLY));
}

TEST_F(Window, OkSavesAndClosesAndCancelPutsBackAndCloses) {
    open();
    m_model.setNumber(value(L"HideCaption"), 1);
    press(IDOK);
    EXPECT_FALSE(m_pWindow->isWindow());
    EXPECT_EQ(number(Root::Machine, L"HideCaption"), 1U);
    open();
    m_model.setNumber(value(L"Position"), 1);
    press(IDCANCEL);
    EXPECT_FALSE(m_pWindow->isWindow());
    EXPECT_FALSE(number(Root::User, L"Position"));
}

TEST_F(Window, ExportsEverythingAndTakesItOverAgain) {
    m_file = (m_folder / L"all.fenwyn").wstring();
    give(Root::Machine, L"AutoHideDelayTime", 1234);
    open();
    press(IDS_EXPORT);
    give(Root::Machine, L"AutoHideDelayTime", 1);
    press(IDS_IMPORT);
    EXPECT_EQ(m_model.read(value(L"AutoHideDelayTime")).number, 1234U);
    ASSERT_EQ(m_told.size(), 1U) << "that it was taken over";
    press(IDOK);
    EXPECT_EQ(number(Root::Machine, L"AutoHideDelayTime"), 1234U);
}

TEST_F(Window, AnImportOfGarbageIsToldAndChangesNothing) {
    m_file = (m_folder / L"bad.fenwyn").wstring();
    open();
    const int writes = m_store.writes;
    for (const wchar_t* words :
         {L"MZ", L"Fenwyn settings 1\r\n[User\\Fenwyn\\Config]\r\nPosition=number:1\r\nPosition=number:1\r\n",
          L"Fenwyn settings 1\r\n[User\\Fenwyn\\Config]\r\nPosition=number:1\r\nHideCaption=number:1\r\n",
          L"Fenwyn settings 1\r\n[User\\Fenwyn\\Config]\r\nPosition=number:1\r\n[Machine\\Other]\r\nA=text:b\r\n"}) {
        ASSERT_EQ(writeTextFile(*m_file, words), ERROR_SUCCESS);
        m_told.clear();
        press(IDS_IMPORT);
        EXPECT_EQ(m_told.size(), 1U);
        EXPECT_EQ(m_store.writes, writes);
        EXPECT_FALSE(m_model.isChanged());
    }
    m_file = (m_folder / L"none.fenwyn").wstring();
    m_told.clear();
    press(IDS_IMPORT);
    EXPECT_EQ(m_told.size(), 1U);
    m_file = std::nullopt;
    press(IDS_IMPORT);
    press(IDS_EXPORT);
    EXPECT_EQ(m_told.size(), 1U) << "no file was chosen";
}

TEST_F(Window, ANumberThatCannotBeIsNotTaken) {
    open();
    constexpr int kHoverDelay = IDC_FIRST_ROW + 6 * 7 + 1;
    const HWND field = ::GetDlgItem(m_pWindow->page(kBehaviour).m_hWnd, kHoverDelay);
    ::SendMessageW(field, EM_SETSEL, 0, -1);
    for (const wchar_t digit : std::wstring(L"70000")) {
        ::SendMessageW(field, WM_CHAR, digit, 0);
    }
    press(IDOK);
    ASSERT_TRUE(m_pWindow->isWindow());
    EXPECT_EQ(m_told, std::vector<std::wstring>{text(IDS_ERROR_RANGE, {L"0", L"60000"})});
    EXPECT_EQ(m_pWindow->selected(), kBehaviour) << "where the number is";
    EXPECT_EQ(number(Root::User, L"MouseEnterIdle"), 7000U) << "what could be was seen at once";
    press(IDCANCEL);
    EXPECT_FALSE(number(Root::User, L"MouseEnterIdle"));
}

TEST_F(Window, WithoutALanguageOfTheUserThatOfTheMachineIsShown) {
    giveText(Root::Machine, regpath::kProgramKey, L"Language", L"de");
    open();
    const auto count = static_cast<LRESULT>(languageNames().size()) + 1;
    HWND box = ::GetWindow(m_pWindow->page(kBehaviour).m_hWnd, GW_CHILD);
    while (box != nullptr && ::SendMessageW(box, CB_GETCOUNT, 0, 0) != count) {
        box = ::GetWindow(box, GW_HWNDNEXT);
    }
    ASSERT_NE(box, nullptr);
    const LRESULT german = ::SendMessageW(box, CB_GETCURSEL, 0, 0);
    EXPECT_NE(german, 0);
    const auto chooseItem = [&](WPARAM index) {
        ::SendMessageW(box, CB_SETCURSEL, index, 0);
        m_pWindow->page(kBehaviour).onControl(static_cast<UINT>(::GetDlgCtrlID(box)), CBN_SELCHANGE);
    };
    chooseItem(0);
    EXPECT_EQ(::SendMessageW(box, CB_GETCURSEL, 0, 0), german) << "it stays in force";
    EXPECT_FALSE(isEnabled(IDS_APPLY));
    chooseItem(1);
    EXPECT_EQ(::SendMessageW(box, CB_GETCURSEL, 0, 0), 1);
    EXPECT_TRUE(isEnabled(IDS_APPLY));
}

TEST_F(Window, TheRemedyForACardWithoutAKeyLeadsToItsRowOnThePageKeys) {
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;Lock;");
    support::TempFolder::write(m_folder / L"Plugin.dll", "x");
    for (const wchar_t* name : {L"Mute", L"Lock"}) {
        giveText(Root::Machine, std::wstring(regpath::kHotkeyKey) + L"\\" + name, regpath::kFuncDll,
                 (m_folder / L"Plugin.dll").wstring());
    }
    open();
    ListView_SetItemState(::GetDlgItem(m_pWindow->page(0).m_hWnd, IDC_CARDS), 1, LVIS_SELECTED, LVIS_SELECTED);
    m_pWindow->page(0).onControl(IDC_CARD_REMEDY, BN_CLICKED);
    EXPECT_EQ(m_pWindow->selected(), 1U);
    EXPECT_EQ(ListView_GetNextItem(::GetDlgItem(m_pWindow->page(1).m_hWnd, IDC_KEYS_LIST), -1, LVNI_SELECTED), 1);
}

TEST_F(Window, TakesTheScaleOfTheScreenThatItIsMovedTo) {
    open();
    RECT before{};
    ::GetClientRect(m_pWindow->m_hWnd, &before);
    m_nDpi = 192;
    RECT place{10, 20, 1000, 1000};
    ::SendMessageW(m_pWindow->m_hWnd, WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&place));
    RECT after{};
    ::GetClientRect(m_pWindow->m_hWnd, &after);
    EXPECT_NEAR(after.right, 2 * before.right, before.right / 8);
    EXPECT_NEAR(after.bottom, 2 * before.bottom, before.bottom / 8);
    EXPECT_EQ(m_pWindow->windowRect().left, 10);
    LOGFONTW font{};
    ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(control(IDOK), WM_GETFONT, 0, 0)), sizeof font, &font);
    EXPECT_EQ(font.lfHeight, fontAt(192).lfHeight);
}

}  // namespace settings
