// Plug-ins that run a message loop of their own inside an export: what arrives there must not take away the cards,
// items and libraries that are at work.
#include <commctrl.h>

#include <algorithm>

#include "Logic/HbqNotify.h"
#include "app/AppFixture.h"

namespace {

using namespace apptest;

constexpr DWORD kDimmerKey = 0x41;
constexpr DWORD kBrighterKey = 0x42;
constexpr DWORD kUnusedKey = 0x50;

class CardsInUseTest : public StartTest {
 protected:
    CardsInUseTest() {
        listFunction(L"Brightness", {kDimmerKey, kBrighterKey});
        setConfig(L"Programmable", 1);
        customise(kUnusedKey, L"C:\\no\\such\\program.exe");
    }

    ~CardsInUseTest() override { forgetPumping(); }

    void forgetPumping() {
        for (instr::Behaviour& behaviour : m_plugin->exports) {
            behaviour.pumps = FALSE;
        }
    }

    static void post(DWORD code, BOOL isBreak) {
        ::PostMessageW(stripWindow(), kMsgHotkey, code, static_cast<LPARAM>(isBreak));
    }
    static void postRebuild() { ::PostMessageW(ZelMainSeam::frame()->m_hWnd, hbqNotifyMessage(), 0, 0); }
    static void send(DWORD code, BOOL isBreak) {
        ::SendMessageW(stripWindow(), kMsgHotkey, code, static_cast<LPARAM>(isBreak));
    }
    static CBlackCard& card(std::size_t index) { return *MainDlgSeam::cards(*ZelMainSeam::strip())[index]; }
    static std::size_t cardCount() { return MainDlgSeam::cards(*ZelMainSeam::strip()).size(); }
    static CSliderItemDlg& slider() { return dynamic_cast<CSliderItemDlg&>(*BlackCardSeam::items(card(2)).front()); }

    // The position of a line in the log; behind the last one when there is none.
    [[nodiscard]] std::size_t at(const std::wstring& ending) const {
        const std::vector<std::wstring> lines = m_log.lines();
        const auto found = std::find_if(lines.begin(), lines.end(),
                                        [&ending](const std::wstring& line) { return line.ends_with(ending); });
        return static_cast<std::size_t>(found - lines.begin());
    }
    [[nodiscard]] std::size_t last() const { return m_log.lines().size(); }
};

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
    // Before the strip hears that the cards are free: those that wait are handled first, and once.
    send(kLockKey, kBreak);
    EXPECT_EQ(entered({L"CZelMainDlg::handleHotkey"}).size(), 4U);
    pump();
    EXPECT_EQ(entered({L"CZelMainDlg::handleHotkey"}).size(), 4U);
    EXPECT_TRUE(shown(BlackCardSeam::largeCard(card(1))->m_hWnd)) << "the last key's card is enlarged";
    EXPECT_TRUE(card(1).hasValidSelection());
}

TEST_F(CardsInUseTest, SliderThatIsDraggedOutlivesTheKeysThatArriveInThePlugin) {
    ASSERT_TRUE(start());
    send(kModifier, kMake);
    send(kBrighterKey, kMake);
    const HWND item = slider().windowHandle();
    m_plugin->exports[instr::FocusItemId].pumps = TRUE;
    post(kModifier, kBreak);
    post(kModifier, kMake);
    post(kBrighterKey, kMake);  // a first press builds the items anew
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
