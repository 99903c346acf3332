// Texts in the language of the user: which language that is, and where the texts come from.
#include "common/UiLanguage.h"

#include <gmock/gmock.h>

#include "companions/include/FenwynRegistry.h"
#include "support/RegistryRoom.h"

namespace {

using common::nearestLanguage;
using common::wantedLanguage;
using testing::UnorderedElementsAre;

constexpr LANGID kEnglish = 0x409;
constexpr LANGID kGerman = 0x407;
constexpr LANGID kBrazilian = 0x416;
constexpr UINT kSeveral = 2000;  // of TestStrings.rc
constexpr UINT kOnlyBrazilian = 2020;

class WantedLanguage : public testing::Test {
 protected:
    static void set(HKEY root, const std::wstring& name) {
        support::RegistryRoom::setText(root, FENWYN_REG_PRODUCT, FENWYN_VALUE_LANGUAGE, name);
    }
    support::RegistryRoom m_registry;
};

TEST_F(WantedLanguage, IsThatOfTheSystemWithoutASetting) {
    ASSERT_TRUE(m_registry.redirected());
    EXPECT_EQ(wantedLanguage(), ::GetUserDefaultUILanguage());
}

TEST_F(WantedLanguage, IsTheOneThatTheUserOrElseTheMachineNames) {
    ASSERT_TRUE(m_registry.redirected());
    set(HKEY_LOCAL_MACHINE, L"ja");
    EXPECT_EQ(PRIMARYLANGID(wantedLanguage()), LANG_JAPANESE);
    set(HKEY_CURRENT_USER, L"pt-BR");
    EXPECT_EQ(wantedLanguage(), kBrazilian);
    support::RegistryRoom::removeValue(HKEY_CURRENT_USER, FENWYN_REG_PRODUCT, FENWYN_VALUE_LANGUAGE);
    EXPECT_EQ(PRIMARYLANGID(wantedLanguage()), LANG_JAPANESE);
}

TEST_F(WantedLanguage, IgnoresNamesThatAreNone) {
    ASSERT_TRUE(m_registry.redirected());
    for (const wchar_t* const name : {L"", L"Klingon!", L"0",
                                      L"a name that is much longer than the names of languages are, "
                                      L"so that it does not fit, whatever it might mean"}) {
        set(HKEY_CURRENT_USER, name);
        EXPECT_EQ(wantedLanguage(), ::GetUserDefaultUILanguage()) << testing::PrintToString(name);
    }
    support::RegistryRoom::setDword(HKEY_CURRENT_USER, FENWYN_REG_PRODUCT, FENWYN_VALUE_LANGUAGE, kGerman);
    EXPECT_EQ(wantedLanguage(), ::GetUserDefaultUILanguage()) << "not a text";
}

TEST(NearestLanguage, IsItselfOrOneOfTheSameLanguageOrEnglish) {
    constexpr LANGID there[] = {kBrazilian, kEnglish, kGerman};
    EXPECT_EQ(nearestLanguage(there, kGerman), kGerman);
    EXPECT_EQ(nearestLanguage(there, LANG_GERMAN), kGerman) << "without a country";
    EXPECT_EQ(nearestLanguage(there, MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN_AUSTRIAN)), kGerman);
    EXPECT_EQ(nearestLanguage(there, MAKELANGID(LANG_PORTUGUESE, SUBLANG_PORTUGUESE)), kBrazilian);
    EXPECT_EQ(nearestLanguage(there, MAKELANGID(LANG_WELSH, SUBLANG_WELSH_UNITED_KINGDOM)), kEnglish);
}

TEST(NearestLanguage, IsTheFirstWhereThereIsNoEnglish) {
    constexpr LANGID there[] = {kBrazilian, kGerman};
    EXPECT_EQ(nearestLanguage(there, MAKELANGID(LANG_WELSH, SUBLANG_WELSH_UNITED_KINGDOM)), kBrazilian);
    EXPECT_EQ(nearestLanguage({}, kGerman), 0);
}

TEST(TextIn, ComesFromExactlyThatLanguage) {
    EXPECT_THAT(common::languagesOfText(nullptr, kSeveral), UnorderedElementsAre(kEnglish, kGerman, kBrazilian));
    EXPECT_EQ(common::textIn(nullptr, kSeveral, kEnglish), L"Text");
    EXPECT_EQ(common::textIn(nullptr, kSeveral, kGerman), L"Wort");
    EXPECT_EQ(common::textIn(nullptr, kSeveral, kBrazilian), L"Texto");
    EXPECT_EQ(common::textIn(nullptr, kOnlyBrazilian, kGerman), L"");
    EXPECT_EQ(common::textIn(nullptr, kSeveral + 1, kGerman), L"") << "a table without this one";
}

TEST(TextOf, IsThereWhateverTheLanguageIs) {
    EXPECT_EQ(common::textOf(nullptr, kOnlyBrazilian), L"Outro");
    EXPECT_EQ(common::textOf(nullptr, 3000), L"");
}

}  // namespace
