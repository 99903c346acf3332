// The texts of all languages.
#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <set>

#include "LanguageTexts.h"
#include "SetupIds.h"
#include "Texts.h"

namespace {

constexpr WORD kLanguages[] = {TEXT_LANGUAGES};

constexpr std::pair<UINT, UINT> kRanges[] = {
    {IDS_PROGRAM, IDS_ASK_DELETE}, {IDS_MODE, IDS_MODE_OTHER}, {IDS_ERROR_COMMAND_LINE, IDS_ERROR_SOURCE}};

template <typename Check>
void forEachId(Check check) {
    for (const auto& [first, last] : kRanges) {
        for (UINT id = first; id <= last; ++id) {
            check(id);
        }
    }
}

wchar_t mnemonic(const std::wstring& text) {
    const std::size_t mark = text.find(L'&');
    return mark == std::wstring::npos ? L'\0' : static_cast<wchar_t>(std::towlower(text[mark + 1]));
}

}  // namespace

TEST(Texts, ExistInEveryLanguage) {
    ASSERT_GT(std::size(kLanguages), 1U);
    for (const WORD language : kLanguages) {
        forEachId([&](UINT id) { EXPECT_FALSE(textOf(id, language).empty()) << id << " in " << language; });
    }
}

TEST(Texts, TakeTheSameArgumentsInEveryLanguage) {
    const auto takesOne = [](UINT id, WORD language) { return textOf(id, language).find(L"%1") != std::wstring::npos; };
    for (const WORD language : kLanguages) {
        forEachId([&](UINT id) {
            EXPECT_EQ(takesOne(id, language), takesOne(id, kLanguages[0])) << id << " in " << language;
        });
    }
}

TEST(Texts, NoLetterIsPromisedTwiceInAWindow) {
    const std::initializer_list<UINT> windows[] = {
        {IDS_MODES_LABEL, IDS_DISPLAYS_LABEL, IDS_APPLY},
        {IDS_NAME_LABEL, IDS_DISPLAYS_LABEL, IDS_SAVE},
        {IDS_DISPLAYS_LABEL, IDS_FAVOURITES_LABEL, IDS_RENAME, IDS_DELETE},
    };
    for (const WORD language : kLanguages) {
        for (const auto& window : windows) {
            std::set<wchar_t> letters;
            for (const UINT id : window) {
                EXPECT_NE(mnemonic(textOf(id, language)), L'\0') << id;
                EXPECT_TRUE(letters.insert(mnemonic(textOf(id, language))).second) << id;
            }
        }
    }
}

TEST(Texts, ArgumentsAreFilledInOnce) {
    EXPECT_NE(setup::text(IDS_ASK_DELETE, L"%1 desk").find(L"%1 desk"), std::wstring::npos);
    EXPECT_EQ(setup::text(IDS_CLOSE, L"ignored"), setup::text(IDS_CLOSE));
    EXPECT_TRUE(setup::text(999).empty());
}

TEST(Texts, EveryArrangementHasAName) {
    std::set<std::wstring> names;
    for (LONG mode = -2; mode < 20; ++mode) {
        EXPECT_FALSE(setup::modeText(mode).empty()) << mode;
        EXPECT_TRUE(names.insert(setup::modeText(mode)).second) << mode;
    }
}

TEST(Texts, SystemErrorsHaveWordsOrAtLeastANumber) {
    EXPECT_NE(setup::systemErrorText(ERROR_ACCESS_DENIED).find(L"5"), std::wstring::npos);
    EXPECT_NE(setup::systemErrorText(0xDEADBEEF).find(std::to_wstring(0xDEADBEEF)), std::wstring::npos);
}
