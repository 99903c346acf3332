// Whether everything fits its place, in every language, at 96 and at 192 dpi.
#include <algorithm>

#include "FenwynFunctions.h"
#include "KeyField.h"
#include "Pages.h"
#include "SettingsWindow.h"
#include "captions/Captions.h"
#include "common/UiLanguage.h"

namespace settings {
namespace {

// The numbers of the pages.
constexpr std::size_t kCards = 0;
constexpr std::size_t kKeys = 1;
constexpr std::size_t kBehaviour = 2;
constexpr std::size_t kButtons = 3;
constexpr std::size_t kLog = 4;

constexpr UINT kLastState = IDS_CARD_STATE + 11;

// Texts, from the first to the last, and the control that shows one of them at a time.
struct Said {
    std::size_t page;
    int control;
    UINT first;
    UINT last;
};
constexpr Said kSaid[] = {
    {kCards, IDC_CARD_WHY, IDS_CARD_WHY, IDS_CARD_WHY + 4},
    // Those of the plug-ins themselves have any length.
    {kCards, IDC_CARD_WHY, IDS_CARD_WHY + 6, IDS_CARD_WHY + 6},
    {kCards, IDC_CARD_WHY, IDS_CARD_WHY + 9, IDS_CARD_WHY + 11},
    {kCards, IDC_CARD_REMEDY, IDS_CARD_REMEDY, IDS_CARD_REMEDY + 11},
    {kKeys, IDC_KEYS_HEARD, IDS_KEYS_PRESS, IDS_KEYS_OTHER_INPUT},
    {kKeys, IDC_KEYS_HEARD, IDS_KEYS_IS_FN, IDS_KEYS_USED},
    {kKeys, IDC_KEYS_TRIED, IDS_KEYS_TRY_IDLE, IDS_KEYS_TRY_LATCHED},
    {kButtons, IDC_BUTTONS_SAID, IDS_BUTTONS_ASK_KEY, IDS_BUTTONS_SWITCHED_OFF},
    {kButtons, IDC_BUTTONS_SAID, IDS_KEYS_NOTHING, IDS_KEYS_NOTHING},
    {kButtons, IDC_BUTTONS_SAID, IDS_KEYS_NO_HOOK, IDS_KEYS_NO_HOOK},
    {kLog, IDC_LOG_WHERE, IDS_LOG_WHERE, IDS_LOG_WHERE},
    {kLog, IDC_LOG_SAID, IDS_LOG_ASKING, IDS_LOG_REPORT_MISSING},
    {kLog, IDC_LOG_VERSION, IDS_LOG_VERSION, IDS_LOG_VERSION},
};
constexpr Said kHeadings[] = {
    {kCards, IDC_CARDS, IDS_COLUMN_CARD, IDS_COLUMN_STATE},
    {kKeys, IDC_KEYS_LIST, IDS_KEYS_COLUMN_CARD, IDS_KEYS_COLUMN_KEY},
    {kLog, IDC_LOG_FAULTS, IDS_LOG_COLUMN_PLUGIN, IDS_LOG_COLUMN_REASON},
};
constexpr Said kChoices[] = {
    {kKeys, IDC_KEYS_MODIFIER, IDS_KEY_RIGHT_CTRL, IDS_KEY_MENU},
    {kLog, IDC_LOG_LEVEL, IDS_LOG_LEVEL_0, IDS_LOG_LEVEL_3},
    {kLog, IDC_LOG_DESTINATION, IDS_LOG_DESTINATION_0, IDS_LOG_DESTINATION_4},
};

std::vector<HWND> childrenOf(HWND parent) {
    std::vector<HWND> children;
    for (HWND child = ::GetWindow(parent, GW_CHILD); child != nullptr; child = ::GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    return children;
}

SIZE measured(HWND control, const std::wstring& text, UINT format, LONG width) {
    const common::WindowDc dc(control);
    const common::SelectScope select(dc.get(), reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT extent{0, 0, width, 0};
    ::DrawTextW(dc.get(), text.c_str(), -1, &extent, DT_CALCRECT | format);
    return {extent.right, extent.bottom};
}

SIZE areaOf(HWND control) {
    RECT area{};
    ::GetClientRect(control, &area);
    return {area.right, area.bottom};
}

// With something of usual length in place of each argument.
std::wstring sample(std::wstring words) {
    constexpr const wchar_t* kArguments[] = {L"%1", L"%2", L"%3", L"%4"};
    constexpr const wchar_t* kWords[] = {L"Fn + F12", L"0x58", L"0x7B", L"0x58"};
    for (std::size_t i = 0; i < std::size(kArguments); ++i) {
        for (std::size_t at = words.find(kArguments[i]); at != std::wstring::npos; at = words.find(kArguments[i])) {
            words.replace(at, 2, kWords[i]);
        }
    }
    return words;
}

bool isOfClass(HWND control, const wchar_t* name) {
    wchar_t theirs[64] = L"";
    ::GetClassNameW(control, theirs, 64);
    return ::lstrcmpiW(theirs, name) == 0;
}

class WindowLayout : public SettingsWindow, public testing::WithParamInterface<int> {
 protected:
    void SetUp() override {
        SettingsWindow::SetUp();
        m_nDpi = GetParam();
        giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;");
        open();
    }
    [[nodiscard]] static int scaled(int pixels) { return ::MulDiv(pixels, GetParam(), USER_DEFAULT_SCREEN_DPI); }

    // A text of the table, whose width is given.
    static void expectWidth(HWND control, UINT id, LONG width) {
        for (const LANGID language : common::languagesOfText(nullptr, id)) {
            const std::wstring words = common::textIn(nullptr, id, language);
            EXPECT_LE(measured(control, words, DT_SINGLELINE, 0).cx, width) << testing::PrintToString(words);
        }
    }
    // As a button or a text of the page shows it.
    static void expectFits(HWND control, const std::wstring& words) {
        const SIZE area = areaOf(control);
        const auto style = static_cast<DWORD>(::GetWindowLongPtrW(control, GWL_STYLE));
        if (isOfClass(control, WC_BUTTONW)) {
            const int beside = (style & BS_TYPEMASK) == BS_AUTOCHECKBOX ? scaled(18) : scaled(8);
            EXPECT_LE(measured(control, words, DT_SINGLELINE, 0).cx + beside, area.cx) << testing::PrintToString(words);
            return;
        }
        const UINT prefix = (style & SS_NOPREFIX) != 0 ? DT_NOPREFIX : 0;
        const SIZE needed = measured(control, words, DT_WORDBREAK | prefix, area.cx);
        EXPECT_LE(needed.cy, area.cy + scaled(1)) << testing::PrintToString(words);
        EXPECT_LE(needed.cx, area.cx) << testing::PrintToString(words);
    }
    static void expectFits(HWND control, UINT id) {
        for (const LANGID language : common::languagesOfText(nullptr, id)) {
            expectFits(control, sample(common::textIn(nullptr, id, language)));
        }
    }
    // Controls have the number of their text.
    static void expectTextsOf(HWND dialog) {
        for (const HWND child : childrenOf(dialog)) {
            const auto id = static_cast<UINT>(::GetDlgCtrlID(child));
            if (isOfClass(child, WC_BUTTONW) || isOfClass(child, WC_STATICW)) {
                expectFits(child, id);
            }
        }
    }
};

}  // namespace

TEST_P(WindowLayout, EveryControlKeepsTheMarginOfItsPage) {
    constexpr int kMargin = 7;  // dialog units
    constexpr int kRounding = 2;
    for (std::size_t i = 0; i < pages().size(); ++i) {
        m_pWindow->select(i);
        const HWND page = m_pWindow->page(i).m_hWnd;
        const HWND first = ::GetWindow(page, GW_CHILD);  // the page itself keeps the font of its template
        const SIZE units = common::dialogUnitsOf(reinterpret_cast<HFONT>(::SendMessageW(first, WM_GETFONT, 0, 0)));
        RECT area{};
        ::GetClientRect(page, &area);
        ::InflateRect(&area, kRounding - ::MulDiv(kMargin, units.cx, 4), kRounding - ::MulDiv(kMargin, units.cy, 8));
        for (const HWND child : childrenOf(page)) {
            RECT place{};
            ::GetWindowRect(child, &place);
            ::MapWindowPoints(nullptr, page, reinterpret_cast<POINT*>(&place), 2);
            const int id = ::GetDlgCtrlID(child);
            if (::IsRectEmpty(&place) != FALSE) {
                continue;  // it has nothing to say
            }
            EXPECT_GE(place.left, area.left) << i << " " << id;
            EXPECT_LE(place.right, area.right) << i << " " << id;
            EXPECT_GE(place.top, area.top) << i << " " << id;
            if (i != kBehaviour) {  // which can be scrolled
                EXPECT_LE(place.bottom, area.bottom) << i << " " << id;
            }
        }
    }
}

// What the templates put there, in the place that they give it.
TEST_P(WindowLayout, EveryTextOfTheTemplatesFitsInEveryLanguage) {
    expectTextsOf(m_pWindow->m_hWnd);
    for (std::size_t i = 0; i < pages().size(); ++i) {
        expectTextsOf(m_pWindow->page(i).m_hWnd);
    }
    expectFits(control(IDS_APPLY), IDS_APPLY_FOR_ALL);
}

TEST_P(WindowLayout, EveryTextThatComesAndGoesFitsInEveryLanguage) {
    for (const Said& said : kSaid) {
        const HWND field = ::GetDlgItem(m_pWindow->page(said.page).m_hWnd, said.control);
        ASSERT_NE(field, nullptr) << said.control;
        for (UINT id = said.first; id <= said.last; ++id) {
            expectFits(field, id);
        }
    }
}

// The longest that the page Keys says of one key.
TEST_P(WindowLayout, WhatIsSaidOfAKeyFitsInEveryLanguage) {
    const HWND field = ::GetDlgItem(m_pWindow->page(kKeys).m_hWnd, IDC_KEYS_HEARD);
    for (const LANGID language : common::languagesOfText(nullptr, IDS_KEYS_HEARD)) {
        const auto words = [&](UINT id) { return sample(common::textIn(nullptr, id, language)); };
        expectFits(field, words(IDS_KEYS_HEARD) + L" " + words(IDS_KEYS_FROM) + L"\n" + words(IDS_KEYS_TAKEN_FN) +
                              L"\n" + words(IDS_KEYS_TAKEN_ALONE));
    }
}

TEST_P(WindowLayout, EveryChoiceAndEveryHeadingOfAListFitsInEveryLanguage) {
    for (const Said& list : kHeadings) {
        const HWND control = ::GetDlgItem(m_pWindow->page(list.page).m_hWnd, list.control);
        for (UINT id = list.first; id <= list.last; ++id) {
            const int width = ListView_GetColumnWidth(control, static_cast<int>(id - list.first));
            expectWidth(control, id, width - scaled(12));
        }
    }
    const HWND cards = ::GetDlgItem(m_pWindow->page(kCards).m_hWnd, IDC_CARDS);
    for (UINT id = IDS_CARD_STATE; id <= kLastState; ++id) {
        expectWidth(cards, id, ListView_GetColumnWidth(cards, 2) - scaled(12));
    }
    for (const Said& choice : kChoices) {
        const HWND box = ::GetDlgItem(m_pWindow->page(choice.page).m_hWnd, choice.control);
        for (UINT id = choice.first; id <= choice.last; ++id) {
            expectWidth(box, id, areaOf(box).cx - ::GetSystemMetrics(SM_CXVSCROLL) - scaled(8));
        }
    }
}

TEST_P(WindowLayout, ColumnsShareTheWholeWidthOfTheirList) {
    constexpr std::pair<std::size_t, int> kLists[] = {
        {kCards, IDC_CARDS}, {kKeys, IDC_KEYS_LIST}, {kButtons, IDC_BUTTONS_LIST}, {kLog, IDC_LOG_FAULTS}};
    for (const auto& [page, id] : kLists) {
        const HWND list = ::GetDlgItem(m_pWindow->page(page).m_hWnd, id);
        const int columns = Header_GetItemCount(ListView_GetHeader(list));
        int width = 0;
        for (int column = 0; column < columns; ++column) {
            width += ListView_GetColumnWidth(list, column);
        }
        EXPECT_EQ(width, areaOf(list).cx) << id;
    }
}

// With all functions in the list.
TEST_P(WindowLayout, EveryCaptionFitsTheFieldWhereKeysAreTriedOut) {
    const HWND field = ::GetDlgItem(m_pWindow->page(kKeys).m_hWnd, IDC_KEYS_FIELD);
    const RECT inner{1, 1, areaOf(field).cx - 1, areaOf(field).cy - 1};
    constexpr auto kCount = static_cast<int>(std::size(fenwyn::kFunctions));
    LONG width = inner.right;
    LONG height = inner.bottom;
    for (int i = 0; i < kCount; ++i) {
        const RECT box = boxOfCard(inner, kCount, i);
        width = std::min(width, box.right - box.left - 2 * kBesideCaption);
        height = std::min(height, box.bottom - box.top);
        EXPECT_GE(box.left, inner.left);
        EXPECT_LE(box.right, inner.right);
        EXPECT_LE(box.bottom, inner.bottom);
    }
    for (const fenwyn::Function& function : fenwyn::kFunctions) {
        for (const LANGID language : common::languagesOfText(nullptr, IDS_PROGRAM)) {
            const std::wstring caption = captions::captionOf(function.name, language);
            const SIZE needed = measured(field, caption, DT_SINGLELINE | DT_NOPREFIX, 0);
            EXPECT_LE(needed.cx, width) << testing::PrintToString(caption);
            EXPECT_LE(needed.cy, height + scaled(2)) << testing::PrintToString(caption);
        }
    }
}

// The sentences of this page take as many lines as they need.
TEST_P(WindowLayout, EveryNameOfASettingFitsInEveryLanguage) {
    const HWND page = m_pWindow->page(kBehaviour).m_hWnd;
    for (const Value& each : values()) {
        if (each.group == Group::Keys) {
            continue;  // these stand on the page Keys
        }
        const std::wstring label = text(each.label);
        const std::vector<HWND> children = childrenOf(page);
        const auto found = std::ranges::find_if(children, [&](HWND child) { return words(child) == label; });
        ASSERT_NE(found, children.end()) << testing::PrintToString(label);
        expectFits(*found, each.label);
    }
}

INSTANTIATE_TEST_SUITE_P(Dpi, WindowLayout, testing::Values(96, 192));

}  // namespace settings
