// The page Keys with real, injected keys.
#include "KeyNames.h"
#include "KeyTable.h"
#include "PageRoom.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "ZelHotkey.h"

namespace settings {
namespace {

using companions::pressKey;
using companions::sendKey;
using companions::waitUntil;
using Codes = std::vector<DWORD>;

constexpr UINT_PTR kPatience = 1;  // the page's timers
constexpr UINT_PTR kCancel = 2;

bool keysAreTried() {
    return static_cast<bool>(common::UniqueHandle(::OpenEventW(SYNCHRONIZE, FALSE, ZEL_KEY_TRIAL_EVENT)));
}

class KeysPage : public PageRoom {
 protected:
    void SetUp() override {
        PageRoom::SetUp();
        giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;Lock;");
        giveFunction(L"Mute", {0x3B});
        giveFunction(L"Lock", {0x3C, 0x10064});
        ASSERT_TRUE(m_window.prepare());
        open(&makeKeysPage);
    }

    static void giveFunction(const wchar_t* name, const Codes& codes) {
        const std::wstring key = std::wstring(regpath::kHotkeyKey) + L"\\" + name;
        support::RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, key, ZEL_VALUE_CODE, numbersData(codes).bytes);
    }
    [[nodiscard]] Codes codesOf(std::size_t function) const { return functionKeys(m_model).at(function).codes; }

    companions::CFocusWindow& m_window = companions::CFocusWindow::instance();
};

TEST_F(KeysPage, ListsEveryKeyOfEveryCard) {
    EXPECT_EQ(ListView_GetItemCount(control(IDC_KEYS_LIST)), 3);
    wchar_t cell[64] = L"";
    ListView_GetItemText(control(IDC_KEYS_LIST), 2, 1, cell, 64);
    EXPECT_EQ(cell, keyName(0x64)) << "without Fn";
    ListView_GetItemText(control(IDC_KEYS_LIST), 0, 1, cell, 64);
    EXPECT_EQ(cell, text(IDS_KEY_WITH_FN, {keyName(0x3B)}));
}

TEST_F(KeysPage, FieldHasANameForScreenReaders) {
    EXPECT_NE(words(IDC_KEYS_FIELD), L"");
    EXPECT_EQ(words(IDC_KEYS_FIELD).find(L'&'), std::wstring::npos);
}

TEST_F(KeysPage, PressedKeyIsDescribedAndCanBeUsed) {
    press(IDS_KEYS_ADD);
    EXPECT_TRUE(keysAreTried()) << "Fenwyn keeps quiet";
    EXPECT_FALSE(enabled(IDS_KEYS_USE_FN));
    pressKey(VK_F9);
    ASSERT_TRUE(says(IDC_KEYS_HEARD, L"0x43"));
    EXPECT_TRUE(waitUntil([] { return !keysAreTried(); })) << "it listens no longer";
    EXPECT_TRUE(enabled(IDS_KEYS_USE_FN) && enabled(IDS_KEYS_USE_ALONE));
    press(IDS_KEYS_USE_FN);
    EXPECT_EQ(codesOf(0), (Codes{0x3B, 0x43}));
    EXPECT_FALSE(enabled(IDS_KEYS_USE_FN));
    EXPECT_TRUE(m_window.keys().empty()) << "nobody else heard of the key";
}

TEST_F(KeysPage, KeysThatAreDownAlreadyGoUpForEverybody) {
    sendKey('D', true);
    ASSERT_TRUE(m_window.settle());
    press(IDS_KEYS_ADD);
    sendKey('D', true);  // it repeats
    sendKey('D', false);
    EXPECT_TRUE(waitUntil([this] { return m_window.keys() == std::vector<int>{'D', 'D', -'D'}; }));
    EXPECT_FALSE(enabled(IDS_KEYS_USE_FN));
    pressKey('D');
    EXPECT_TRUE(says(IDC_KEYS_HEARD, text(IDS_KEYS_TYPING))) << "pressed again";
}

TEST_F(KeysPage, KeyThatIsTakenIsNamedAndNotOffered) {
    press(IDS_KEYS_ADD);
    pressKey(VK_F2);
    ASSERT_TRUE(says(IDC_KEYS_HEARD, text(IDS_KEYS_TAKEN_FN, {L"Lock"})));
    EXPECT_FALSE(enabled(IDS_KEYS_USE_FN));
    EXPECT_TRUE(enabled(IDS_KEYS_USE_ALONE));
    press(IDS_KEYS_USE_ALONE);
    EXPECT_EQ(codesOf(0), (Codes{0x3B, 0x1003C}));
}

TEST_F(KeysPage, KeysForTypingAreOfferedWithFnOnly) {
    press(IDS_KEYS_ADD);
    pressKey('A');
    ASSERT_TRUE(says(IDC_KEYS_HEARD, text(IDS_KEYS_TYPING)));
    EXPECT_TRUE(enabled(IDS_KEYS_USE_FN));
    EXPECT_FALSE(enabled(IDS_KEYS_USE_ALONE));
}

TEST_F(KeysPage, FnItselfIsNoKeyForACardButMayBeHeld) {
    press(IDS_KEYS_ADD);
    pressKey(VK_RCONTROL);
    ASSERT_TRUE(says(IDC_KEYS_HEARD, text(IDS_KEYS_IS_FN)));
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F9);
    EXPECT_TRUE(says(IDC_KEYS_HEARD, L"0x43"));
    sendKey(VK_RCONTROL, false);
}

TEST_F(KeysPage, SaysPlainlyThatNothingArrived) {
    press(IDS_KEYS_ADD);
    timer(kPatience);
    EXPECT_EQ(words(IDC_KEYS_HEARD), text(IDS_KEYS_NOTHING));
    EXPECT_FALSE(keysAreTried());
}

TEST_F(KeysPage, EscOrAStartingFenwynEndTheQuestion) {
    press(IDS_KEYS_ADD);
    pressKey(VK_ESCAPE);
    EXPECT_TRUE(waitUntil([this] { return words(IDC_KEYS_HEARD).empty(); }));
    EXPECT_FALSE(keysAreTried());
    press(IDS_KEYS_ADD);
    const common::UniqueHandle query(::OpenEventW(EVENT_MODIFY_STATE, FALSE, ZEL_CANCEL_QUERY_EVENT));
    ASSERT_TRUE(query);
    ::SetEvent(query.get());
    timer(kCancel);
    EXPECT_FALSE(keysAreTried());
}

TEST_F(KeysPage, KeyIsRemovedUntilOneIsLeft) {
    EXPECT_FALSE(enabled(IDS_KEYS_REMOVE)) << "Mute has one";
    ListView_SetItemState(control(IDC_KEYS_LIST), 1, LVIS_SELECTED, LVIS_SELECTED);
    m_pPage->load();
    ASSERT_TRUE(enabled(IDS_KEYS_REMOVE));
    press(IDS_KEYS_REMOVE);
    EXPECT_EQ(codesOf(1), Codes{0x10064});
    EXPECT_FALSE(enabled(IDS_KEYS_REMOVE));
}

TEST_F(KeysPage, ModifierIsChosenOrPressed) {
    EXPECT_EQ(words(IDC_KEYS_MODIFIER), text(IDS_KEY_RIGHT_CTRL));
    press(IDS_KEYS_CHOOSE_FN);
    pressKey(VK_F24);
    EXPECT_TRUE(waitUntil([this] { return keyNumber(m_model, ZEL_VALUE_MODIFIER_KEY, 0) == VK_F24; }));
    EXPECT_EQ(words(IDC_KEYS_MODIFIER), L"F24");
    press(IDS_KEYS_CHOOSE_FN);
    pressKey(VK_SPACE);
    ASSERT_TRUE(says(IDC_KEYS_HEARD, text(IDS_KEYS_TYPING)));
    EXPECT_EQ(keyNumber(m_model, ZEL_VALUE_MODIFIER_KEY, 0), DWORD{VK_F24});
}

TEST_F(KeysPage, ImpossibleModifierIsShownAsWhatItIsAndStays) {
    setKeyNumber(m_model, ZEL_VALUE_MODIFIER_KEY, 0x1234);
    m_pPage->load();
    EXPECT_NE(words(IDC_KEYS_MODIFIER), text(IDS_KEY_RIGHT_CTRL));
    EXPECT_TRUE(m_pPage->store());
    EXPECT_EQ(keyNumber(m_model, ZEL_VALUE_MODIFIER_KEY, 0), 0x1234U);
}

TEST_F(KeysPage, DelayOutOfRangeIsNotTaken) {
    ::SetWindowTextW(control(IDC_KEYS_DELAY), L"70000");
    EXPECT_FALSE(m_pPage->store());
    EXPECT_EQ(m_told.size(), 1U);
    ::SetWindowTextW(control(IDC_KEYS_DELAY), L"500");
    EXPECT_TRUE(m_pPage->store());
    EXPECT_EQ(keyNumber(m_model, ZEL_VALUE_RELEASE_DELAY, 0), 500U);
}

TEST_F(KeysPage, FieldSaysWhatAKeyWouldDoAndSwallowsIt) {
    press(IDC_KEYS_FIELD, BN_SETFOCUS);
    EXPECT_TRUE(keysAreTried());
    sendKey(VK_RCONTROL, true);
    EXPECT_TRUE(says(IDC_KEYS_TRIED, text(IDS_KEYS_TRY_SHOWN)));
    sendKey(VK_F1, true);
    EXPECT_TRUE(says(IDC_KEYS_TRIED, L"Mute"));
    sendKey(VK_F1, false);
    pressKey(VK_F9);
    EXPECT_TRUE(says(IDC_KEYS_TRIED, text(IDS_KEYS_TRY_NOTHING, {keyWithModifier(0x43)})));
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(says(IDC_KEYS_TRIED, text(IDS_KEYS_TRY_APPLIED)));
    press(IDC_KEYS_FIELD, BN_KILLFOCUS);
    EXPECT_FALSE(keysAreTried());
    EXPECT_EQ(words(IDC_KEYS_TRIED), text(IDS_KEYS_TRY_IDLE));
    ASSERT_TRUE(m_window.settle());
    EXPECT_EQ(std::count(m_window.keys().begin(), m_window.keys().end(), VK_F1), 0);
}

TEST_F(KeysPage, FieldGoesByWhatIsNotAppliedYetAndByCustomisedKeys) {
    setFunctionCodes(m_model, L"Lock", {0x10064, 0x43});
    setCustomKey(m_model, 0x3B, L"calc.exe", L"");
    setKeysProgrammable(m_model, true);
    setKeyNumber(m_model, ZEL_VALUE_RELEASE_DELAY, 0);
    m_pPage->load();
    press(IDC_KEYS_FIELD, BN_SETFOCUS);
    sendKey(VK_RCONTROL, true);
    pressKey(VK_F9);
    EXPECT_TRUE(says(IDC_KEYS_TRIED, L"Lock"));
    pressKey(VK_F1);
    EXPECT_TRUE(says(IDC_KEYS_TRIED, L"calc.exe"));
    sendKey(VK_RCONTROL, false);
    EXPECT_TRUE(says(IDC_KEYS_TRIED, text(IDS_KEYS_TRY_APPLIED)));
}

}  // namespace
}  // namespace settings
