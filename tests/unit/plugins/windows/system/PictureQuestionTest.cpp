// The question's window, real, with real keys; its texts; and where the arrangement before is kept.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "common/Handle.h"
#include "common/UiLanguage.h"
#include "plugins/windows/Waiting.h"
#include "question/QuestionIds.h"
#include "support/RegistryRoom.h"
#include "system/LastGood.h"
#include "system/PictureQuestion.h"

namespace win {
namespace {

using Event = IPictureQuestion::Event;

constexpr wchar_t kTitle[] = L"Keep this picture?";

HWND window(const wchar_t* pszTitle = kTitle) {
    return ::FindWindowW(L"#32770", pszTitle);
}

std::wstring textOf(HWND hWnd) {
    wchar_t buffer[200] = {};
    ::GetWindowTextW(hWnd, buffer, 200);
    return buffer;
}

class PictureQuestion : public testing::Test {
 protected:
    // Waits for the answer while `deed` is done on another thread.
    Event answerTo(const std::function<void(HWND)>& deed) {
        std::thread doer([&deed] {
            EXPECT_TRUE(soon([] { return window() != nullptr; }));
            deed(window());
        });
        const Event event = m_pQuestion->wait(m_hWake.get());
        doer.join();
        return event;
    }

    std::unique_ptr<IPictureQuestion> m_pQuestion = makeWindowsPictureQuestion();
    common::UniqueHandle m_hWake{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
};

TEST_F(PictureQuestion, IsAnsweredByItsButtons) {
    ASSERT_TRUE(m_pQuestion->ask());
    EXPECT_EQ(answerTo([](HWND hWnd) { ::PostMessageW(::GetDlgItem(hWnd, IDOK), BM_CLICK, 0, 0); }), Event::Keep);
    EXPECT_EQ(window(), nullptr);
    ASSERT_TRUE(m_pQuestion->ask());
    EXPECT_EQ(answerTo([](HWND hWnd) { ::PostMessageW(::GetDlgItem(hWnd, IDCANCEL), BM_CLICK, 0, 0); }), Event::GoBack);
}

// Somebody who sees nothing tries Enter, the space bar and Esc.
TEST_F(PictureQuestion, KeysThatPeopleTryInTheDarkGoBack) {
    for (const WPARAM wKey : {WPARAM{VK_RETURN}, WPARAM{VK_SPACE}, WPARAM{VK_ESCAPE}}) {
        ASSERT_TRUE(m_pQuestion->ask());
        const HWND hBack = ::GetDlgItem(window(), IDCANCEL);
        EXPECT_EQ(::GetFocus(), hBack);
        ::PostMessageW(hBack, WM_KEYDOWN, wKey, 0);
        ::PostMessageW(hBack, WM_KEYUP, wKey, static_cast<LPARAM>(0xC0000001));
        EXPECT_EQ(m_pQuestion->wait(m_hWake.get()), Event::GoBack) << wKey;
    }
}

TEST_F(PictureQuestion, EscapeWorksWhereverTheFocusIs) {
    ASSERT_TRUE(m_pQuestion->ask());
    EXPECT_EQ(::RegisterHotKey(nullptr, 77, 0, VK_ESCAPE), FALSE) << "the question has it";
    EXPECT_EQ(answerTo([](HWND hWnd) { ::PostMessageW(hWnd, WM_HOTKEY, 1, MAKELPARAM(0, VK_ESCAPE)); }), Event::GoBack);
    EXPECT_NE(::RegisterHotKey(nullptr, 77, 0, VK_ESCAPE), FALSE) << "and gives it back";
    ::UnregisterHotKey(nullptr, 77);
}

TEST_F(PictureQuestion, KeepIsReachedWithKeys) {
    ASSERT_TRUE(m_pQuestion->ask());
    const HWND hBack = ::GetDlgItem(window(), IDCANCEL);
    ::PostMessageW(hBack, WM_KEYDOWN, VK_TAB, 0);
    std::thread presser([] {
        EXPECT_TRUE(soon([] {
            GUITHREADINFO info{};
            info.cbSize = sizeof(info);
            return ::GetGUIThreadInfo(::GetWindowThreadProcessId(window(), nullptr), &info) != FALSE &&
                   info.hwndFocus == ::GetDlgItem(window(), IDOK);
        }));
        ::PostMessageW(::GetDlgItem(window(), IDOK), WM_KEYDOWN, VK_RETURN, 0);
    });
    EXPECT_EQ(m_pQuestion->wait(m_hWake.get()), Event::Keep);
    presser.join();
}

// A key that is pressed twice answers one question only.
TEST_F(PictureQuestion, KeysForAnEarlierQuestionDoNotAnswerTheNext) {
    ASSERT_TRUE(m_pQuestion->ask());
    for (int i = 0; i < 2; ++i) {
        INPUT press[2]{};
        for (INPUT& rInput : press) {
            rInput.type = INPUT_KEYBOARD;
            rInput.ki.wVk = 'K';
        }
        press[1].ki.dwFlags = KEYEVENTF_KEYUP;
        ASSERT_EQ(::SendInput(2, press, sizeof(INPUT)), 2U);
    }
    ASSERT_EQ(m_pQuestion->wait(m_hWake.get()), Event::Keep);
    ASSERT_TRUE(m_pQuestion->ask());
    EXPECT_EQ(answerTo([this](HWND hWnd) {
                  for (int i = 0; i < 20; ++i) {
                      ::SendMessageW(hWnd, WM_NULL, 0, 0);
                  }
                  ::SetEvent(m_hWake.get());
              }),
              Event::Woken);
}

TEST_F(PictureQuestion, LostPowerAndTheEndOfTheSessionGoBack) {
    struct Row {
        UINT uMessage;
        WPARAM wParam;
    };
    for (const Row& row : {Row{WM_POWERBROADCAST, PBT_APMSUSPEND}, Row{WM_ENDSESSION, TRUE}}) {
        ASSERT_TRUE(m_pQuestion->ask());
        EXPECT_EQ(answerTo([&row](HWND hWnd) { ::PostMessageW(hWnd, row.uMessage, row.wParam, 0); }), Event::GoBack);
    }
    ASSERT_TRUE(m_pQuestion->ask());
    EXPECT_EQ(answerTo([this](HWND hWnd) {
                  // A session that does not end after all, and power that is still there.
                  ::SendMessageW(hWnd, WM_ENDSESSION, FALSE, 0);
                  ::SendMessageW(hWnd, WM_POWERBROADCAST, PBT_APMPOWERSTATUSCHANGE, 0);
                  ::SetEvent(m_hWake.get());
              }),
              Event::Woken);
}

TEST_F(PictureQuestion, CountsDownInWordsAndInItsBar) {
    ASSERT_TRUE(m_pQuestion->ask());
    EXPECT_EQ(textOf(::GetDlgItem(window(), IDC_REMAINING)), L"It goes back by itself in 15 seconds.");
    EXPECT_NE(::IsWindowVisible(::GetDlgItem(window(), IDC_BAR)), FALSE);
    EXPECT_EQ(answerTo([this](HWND hWnd) {
                  EXPECT_TRUE(soon([hWnd] {
                      return textOf(::GetDlgItem(hWnd, IDC_REMAINING)) == L"It goes back by itself in 13 seconds.";
                  }));
                  ::SetEvent(m_hWake.get());
              }),
              Event::Woken);
    EXPECT_NE(window(), nullptr) << "whoever wakes the thread does not close the question";
    m_pQuestion->close();
    EXPECT_EQ(window(), nullptr);
}

TEST_F(PictureQuestion, LiesInTheMiddleOfThePrimaryScreenAndStaysThere) {
    ASSERT_TRUE(m_pQuestion->ask());
    const auto offset = [] {
        RECT place{};
        RECT area{};
        ::GetWindowRect(window(), &place);
        ::SystemParametersInfoW(SPI_GETWORKAREA, 0, &area, 0);
        return std::abs(place.left + place.right - area.left - area.right) +
               std::abs(place.top + place.bottom - area.top - area.bottom);
    };
    EXPECT_LE(offset(), 4);
    ::SetWindowPos(window(), nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    EXPECT_GT(offset(), 100);
    ::SendMessageW(window(), WM_DISPLAYCHANGE, 0, 0);
    EXPECT_LE(offset(), 4);
    EXPECT_NE(::GetWindowLongPtrW(window(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
}

TEST_F(PictureQuestion, AFailureIsToldWithoutAQuestion) {
    constexpr wchar_t kFailed[] = L"The displays could not be set up like this";
    const auto detail = [&kFailed] {
        wchar_t text[200] = L"";
        ::GetDlgItemTextW(window(kFailed), IDC_REMAINING, text, ARRAYSIZE(text));
        return std::wstring(text);
    };
    m_pQuestion->tellFailure(false);
    ASSERT_NE(window(kFailed), nullptr);
    EXPECT_EQ(detail(), L"");
    m_pQuestion->tellFailure(true);
    ASSERT_NE(window(kFailed), nullptr);
    EXPECT_EQ(detail(), L"They are as they were before.");
    EXPECT_EQ(::IsWindowVisible(::GetDlgItem(window(kFailed), IDOK)), FALSE);
    std::thread closer([this, &kFailed] {
        ::PostMessageW(window(kFailed), WM_CLOSE, 0, 0);
        EXPECT_TRUE(soon([&kFailed] { return window(kFailed) == nullptr; }));
        ::SetEvent(m_hWake.get());
    });
    EXPECT_EQ(m_pQuestion->wait(m_hWake.get()), Event::Woken) << "nothing was asked";
    closer.join();
}

TEST(PictureQuestionTexts, ExistInEveryLanguage) {
    ASSERT_TRUE(makeWindowsPictureQuestion()->ask()) << "the template is there";
    const std::vector<LANGID> languages = common::languagesOfText(nullptr, IDS_KEEP_QUESTION);
    ASSERT_GE(languages.size(), 2U);
    const auto ampersands = [](const std::wstring& text) { return std::ranges::count(text, L'&'); };
    for (UINT uId = IDS_KEEP_QUESTION; uId <= IDS_CLOSE; ++uId) {
        const std::wstring english = common::textIn(nullptr, uId, languages.front());
        for (const LANGID language : languages) {
            const std::wstring text = common::textIn(nullptr, uId, language);
            EXPECT_FALSE(text.empty()) << uId << " in " << language;
            EXPECT_EQ(text.find(L"%1") == std::wstring::npos, english.find(L"%1") == std::wstring::npos) << uId;
            EXPECT_EQ(ampersands(text), ampersands(english)) << uId << " in " << language;
        }
    }
}

TEST(LastGoodArrangement, IsKeptUntilItIsSettled) {
    const support::RegistryRoom registry;
    ASSERT_TRUE(registry.redirected());
    const Layout desk{{L"\\\\?\\DISPLAY#A 1", {0, 0, 1000, 800}}, {L"\\\\?\\DISPLAY#B", {-1600, 5, 0, 905}}};
    const std::unique_ptr<ILastGood> pOne = makeWindowsLastGood();
    const std::unique_ptr<ILastGood> pOther = makeWindowsLastGood();
    EXPECT_FALSE(pOne->load());
    EXPECT_FALSE(pOne->wasLeftUnsettled());
    pOne->save(desk);
    EXPECT_EQ(pOther->load(), desk);
    EXPECT_FALSE(pOther->wasLeftUnsettled()) << "somebody is asking";
    pOne->settle();
    EXPECT_FALSE(pOther->wasLeftUnsettled());
    EXPECT_EQ(pOther->load(), desk);
}

TEST(LastGoodArrangement, IsLeftUnsettledByAnEndWithoutNotice) {
    const support::RegistryRoom registry;
    ASSERT_TRUE(registry.redirected());
    const Layout desk{{L"a", {0, 0, 1000, 800}}};
    makeWindowsLastGood()->save(desk);
    const std::unique_ptr<ILastGood> pNext = makeWindowsLastGood();
    EXPECT_TRUE(pNext->wasLeftUnsettled());
    EXPECT_EQ(pNext->load(), desk);
    pNext->settle();
    EXPECT_FALSE(pNext->wasLeftUnsettled());
}

TEST(LastGoodArrangement, ThatMakesNoSenseCountsAsNone) {
    const support::RegistryRoom registry;
    ASSERT_TRUE(registry.redirected());
    constexpr wchar_t kTexts[] = L"0 0 many 800 a\0";
    ::RegSetKeyValueW(HKEY_CURRENT_USER, L"SOFTWARE\\KESTOVA\\Fenwyn\\Displays", L"LastGood", REG_MULTI_SZ, kTexts,
                      sizeof(kTexts));
    EXPECT_FALSE(makeWindowsLastGood()->load());
}

}  // namespace
}  // namespace win
