#include "CardList.h"

#include <algorithm>

#include "Allowed.h"
#include "CardPictures.h"
#include "FenwynFunctions.h"
#include "KeyTable.h"
#include "Notebook.h"
#include "PluginState.h"
#include "ZelHotkey.h"
#include "companions/include/PluginFaults.h"

namespace settings {
namespace {

using support::RegistryRoom;

class CardList : public Notebook {
 protected:
    void SetUp() override {
        Notebook::SetUp();
        support::TempFolder::write(m_folder / L"Plugin.dll", "x");
        give(L"Mute", 0x3B);
        give(L"Lock", 0x3C);
        give(L"Zoom", 0x39);
        giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;Lock;Zoom;");
    }
    void give(const wchar_t* name, DWORD code) const {
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, keyOf(name), regpath::kCode, code);
        giveText(Root::Machine, keyOf(name), regpath::kFuncDll, m_plugin);
        giveText(Root::Machine, keyOf(name), regpath::kCaption, std::wstring(name) + L"!");
    }
    static std::wstring keyOf(const wchar_t* name) { return std::wstring(regpath::kHotkeyKey) + L"\\" + name; }
    [[nodiscard]] std::wstring list() const {
        const Content content = m_model.content({Root::Machine, regpath::kHotkeyKey, regpath::kFuncList});
        return content ? textOf(*content) : L"(nothing)";
    }
    [[nodiscard]] std::size_t indexOf(const wchar_t* name) const {
        const std::vector<Card> all = cards(m_model);
        return static_cast<std::size_t>(std::ranges::find(all, std::wstring(name), &Card::name) - all.begin());
    }
    [[nodiscard]] CardReport report(const wchar_t* name, const std::optional<PluginAnswer>& answer = {}) const {
        return reportOf(cards(m_model)[indexOf(name)], answer);
    }

    const std::wstring m_plugin = (m_folder / L"Plugin.dll").wstring();
};

}  // namespace

TEST_F(CardList, ListedCardsComeFirstInTheirOrderAndAllOthersFollow) {
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Zoom;mute;Strange;Lost");
    const std::vector<Card> all = cards(m_model);
    EXPECT_EQ(all[0].name, L"Zoom");
    EXPECT_EQ(all[0].caption, L"Zoom!");
    EXPECT_EQ(all[0].codes, std::vector<DWORD>{0x39});
    EXPECT_EQ(all[1].name, L"mute") << "its own spelling";
    EXPECT_TRUE(all[1].isKnown);
    EXPECT_FALSE(all[2].isKnown);
    EXPECT_FALSE(all[3].isListed) << "a name without a semicolon is none";
    EXPECT_EQ(all.size(), std::size(fenwyn::kFunctions) + 1);
}

TEST_F(CardList, ACardIsSwitchedOffAndOnAgain) {
    switchCard(m_model, cards(m_model), indexOf(L"Lock"), false);
    EXPECT_EQ(list(), L"Mute;Zoom;");
    switchCard(m_model, cards(m_model), indexOf(L"Lock"), true);
    EXPECT_EQ(list(), L"Mute;Zoom;Lock;");
    EXPECT_EQ(cards(m_model)[indexOf(L"Lock")].plugin, m_plugin) << "what was set is kept";
    EXPECT_EQ(storedText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList), L"Mute;Lock;Zoom;") << "until Apply";
}

TEST_F(CardList, ANewCardGetsThePlugInThatComesWithFenwyn) {
    switchCard(m_model, cards(m_model), indexOf(L"Sleep"), true);
    EXPECT_EQ(list(), L"Mute;Lock;Zoom;Sleep;");
    const Card card = cards(m_model)[indexOf(L"Sleep")];
    EXPECT_TRUE(card.plugin.ends_with(L"\\plugins\\WinSleep.dll"));
    EXPECT_EQ(card.caption, L"Sleep") << "in the language of the machine";
    EXPECT_TRUE(m_model.content({Root::Machine, regpath::kProgramKey, regpath::kInstallPath}));
    for (const auto& [place, content] : m_model.pending()) {
        EXPECT_TRUE(isAllowed(place, content));
    }
}

TEST_F(CardList, CardsAreMoved) {
    moveCard(m_model, cards(m_model), 0, 2);
    EXPECT_EQ(list(), L"Lock;Zoom;Mute;");
    moveCard(m_model, cards(m_model), 2, 1);
    EXPECT_EQ(list(), L"Lock;Mute;Zoom;");
    moveCard(m_model, cards(m_model), 1, 0);
    EXPECT_EQ(list(), L"Mute;Lock;Zoom;");
    EXPECT_FALSE(m_model.isChanged()) << "as it was";
}

TEST_F(CardList, AFunctionThatIsListedTwiceStaysSo) {
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;Lock;Mute;");
    moveCard(m_model, cards(m_model), 1, 0);
    EXPECT_EQ(list(), L"Lock;Mute;Mute;");
}

TEST_F(CardList, SaysWhyACardIsMissing) {
    EXPECT_EQ(report(L"Sleep").state, CardState::Off);
    EXPECT_EQ(report(L"Mute").state, CardState::Asking);
    EXPECT_EQ(report(L"Mute", PluginAnswer{PluginAnswer::Outcome::Offered, {}}).state, CardState::Shown);
    const CardReport declined = report(L"Mute", PluginAnswer{PluginAnswer::Outcome::Declined, L"No sound card."});
    EXPECT_EQ(declined.state, CardState::Declined);
    EXPECT_EQ(declined.why, L"No sound card.");
    EXPECT_EQ(report(L"Mute", PluginAnswer{PluginAnswer::Outcome::Faulty, L"x"}).state, CardState::Faulty);
    EXPECT_EQ(report(L"Mute", PluginAnswer{}).state, CardState::NotAsked);

    setPlugin(m_model, cards(m_model)[0], L"C:\\nowhere\\a.dll");
    EXPECT_EQ(report(L"Mute").state, CardState::FileMissing);
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, keyOf(L"Lock"), regpath::kFuncDll);
    EXPECT_EQ(report(L"Lock").state, CardState::NoPlugin);
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, keyOf(L"Zoom"), regpath::kCode);
    EXPECT_EQ(report(L"Zoom").state, CardState::NoKey);
    giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Strange;");
    EXPECT_EQ(report(L"Strange").state, CardState::Unknown);
}

// As Fenwyn decides it: a card with one key left is shown, and without the switch every key opens its card.
TEST_F(CardList, ACardWhoseKeysAllStartProgramsIsMissing) {
    setFunctionCodes(m_model, L"Mute", {0x3B, 0x3D});
    setCustomKey(m_model, 0x3B, L"notepad.exe", L"");
    setKeysProgrammable(m_model, true);
    EXPECT_EQ(report(L"Mute").state, CardState::Asking) << "the other key opens it";
    setCustomKey(m_model, 0x3D, L"notepad.exe", L"");
    EXPECT_EQ(report(L"Mute").state, CardState::StartsPrograms);
    EXPECT_EQ(report(L"Lock").state, CardState::Asking);
    setKeysProgrammable(m_model, false);
    EXPECT_EQ(report(L"Mute").state, CardState::Asking);
    setKeysProgrammable(m_model, true);
    setFunctionCodes(m_model, L"Mute", {0x3B, 0x3B + ZEL_CODE_ALONE});
    EXPECT_EQ(report(L"Mute").state, CardState::Asking) << "without the modifier no key can be customised";
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, keyOf(L"Zoom"), regpath::kCode);
    EXPECT_EQ(report(L"Zoom").state, CardState::NoKey);
}

TEST_F(CardList, APlugInThatIsSetAsideIsToldWithTimeAndReasonAndForgiven) {
    const std::wstring key = fenwyn::faultKeyOf(m_plugin);
    RegistryRoom::setText(HKEY_CURRENT_USER, key, FENWYN_VALUE_FAULT_EXPORT, L"SelectItem");
    RegistryRoom::setText(HKEY_CURRENT_USER, key, FENWYN_VALUE_FAULT_REASON, L"it crashed");
    RegistryRoom::setText(HKEY_CURRENT_USER, key, FENWYN_VALUE_FAULT_WHEN, L"2024-05-31 14:03:07");
    RegistryRoom::setDword(HKEY_CURRENT_USER, key, FENWYN_VALUE_SET_ASIDE, 1);
    const CardReport aside = report(L"Mute");
    EXPECT_EQ(aside.state, CardState::SetAside);
    EXPECT_EQ(aside.why, L"SelectItem: it crashed");
    EXPECT_EQ(aside.when, L"2024-05-31 14:03:07");
    EXPECT_EQ(forgivePlugin(m_plugin), ERROR_SUCCESS);
    EXPECT_EQ(report(L"Mute").state, CardState::Asking);
}

TEST(PluginAnswers, AreReadFromTheLinesOfTheCheck) {
    using Outcome = PluginAnswer::Outcome;
    EXPECT_EQ(parseAnswer(L"outcome=offered\n").outcome, Outcome::Offered);
    const PluginAnswer declined = parseAnswer(L"outcome=declined\r\nwhy=There is no drive.\r\n");
    EXPECT_EQ(declined.outcome, Outcome::Declined);
    EXPECT_EQ(declined.why, L"There is no drive.");
    EXPECT_EQ(parseAnswer(L"outcome=faulty\nwhy=x\n").outcome, Outcome::Faulty);
    EXPECT_EQ(parseAnswer(L"").outcome, Outcome::NotAsked);
    EXPECT_EQ(parseAnswer(L"outcome=offered and more\n").outcome, Outcome::NotAsked);
}

TEST(PluginQuestions, AreAskedOnceEachAndAnsweredLater) {
    std::atomic<int> asked{0};
    const common::UniqueHandle answered(::CreateSemaphoreW(nullptr, 0, 10, nullptr));
    CPluginQuestions questions(
        [&](const std::wstring&, const std::wstring& plugin) {
            ++asked;
            return PluginAnswer{PluginAnswer::Outcome::Declined, plugin};
        },
        [&] { ::ReleaseSemaphore(answered.get(), 1, nullptr); });
    EXPECT_FALSE(questions.answerOf(L"Mute", L"a.dll"));
    EXPECT_FALSE(questions.answerOf(L"Lock", L"b.dll"));
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(::WaitForSingleObject(answered.get(), 10000), WAIT_OBJECT_0);
    }
    EXPECT_EQ(questions.answerOf(L"Mute", L"a.dll")->why, L"a.dll");
    EXPECT_EQ(questions.answerOf(L"Lock", L"b.dll")->why, L"b.dll");
    EXPECT_EQ(asked, 2);
    questions.forget();
    EXPECT_FALSE(questions.answerOf(L"Mute", L"a.dll"));
    ASSERT_EQ(::WaitForSingleObject(answered.get(), 10000), WAIT_OBJECT_0);
    EXPECT_EQ(asked, 3);
}

TEST(PluginQuestions, NobodyWaitsForAPlugInThatHangs) {
    const auto go = std::make_shared<common::UniqueHandle>(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const auto begun = std::make_shared<common::UniqueHandle>(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const auto done = std::make_shared<common::UniqueHandle>(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::atomic<int> told{0};
    {
        CPluginQuestions questions(
            [go, begun, done](const std::wstring&, const std::wstring&) {
                ::SetEvent(begun->get());
                ::WaitForSingleObject(go->get(), 10000);
                ::SetEvent(done->get());
                return PluginAnswer{};
            },
            [&told] { ++told; });
        EXPECT_FALSE(questions.answerOf(L"Mute", L"a.dll"));
        EXPECT_EQ(::WaitForSingleObject(begun->get(), 10000), WAIT_OBJECT_0);
    }
    ::SetEvent(go->get());
    EXPECT_EQ(::WaitForSingleObject(done->get(), 10000), WAIT_OBJECT_0);
    EXPECT_EQ(told, 0) << "after the end of the page";
}

TEST(CardPictures, EveryFunctionHasOne) {
    for (const fenwyn::Function& function : fenwyn::kFunctions) {
        EXPECT_GE(cardPictureOf(function.name), 0) << testing::PrintToString(std::wstring(function.name));
    }
    EXPECT_EQ(cardPictureOf(L"Strange"), -1);
    const UniqueImageList images = cardPictures({36, 24});
    EXPECT_EQ(::ImageList_GetImageCount(images.get()), static_cast<int>(std::size(fenwyn::kFunctions)))
        << "without the library of pictures too";
}

}  // namespace settings
