// The simulated notebook's words in both languages.
#include "Words.h"

#include <gtest/gtest.h>

#include "Functions.h"
#include "captions/Captions.h"

namespace plugintest {
namespace {

using sim::Language;

// A word that has no German counterpart stays English; only this one is the same in both.
bool isKnown(const std::wstring& english) {
    return english == L"normal" || sim::word(english, Language::German) != english;
}

TEST(Words, EveryItemHasAGermanWord) {
    for (const sim::Function& function : sim::kFunctions) {
        for (const wchar_t* const item : function.itemNames) {
            EXPECT_TRUE(item == nullptr || isKnown(item)) << function.name << ": " << item;
        }
    }
}

TEST(Words, EnglishCaptionsAreThoseOfTheFunctions) {
    for (const sim::Function& function : sim::kFunctions) {
        EXPECT_EQ(captions::captionOf(function.name, LANG_ENGLISH), function.caption);
    }
}

TEST(Words, AreThoseOfTheLanguage) {
    EXPECT_EQ(sim::word(L"Balanced", Language::English), L"Balanced");
    EXPECT_EQ(sim::word(L"Balanced", Language::German), L"Ausbalanciert");
    EXPECT_EQ(sim::word(L"right Alt", Language::German), L"Alt rechts");
    EXPECT_EQ(sim::word(L"right Windows key", Language::German), L"Windows-Taste rechts");
    EXPECT_EQ(sim::word(L"Caps Lock", Language::German), L"Feststelltaste");
    EXPECT_EQ(sim::word(L"menu key", Language::German), L"Menütaste");
}

TEST(Words, NamesOfThePersonStay) {
    EXPECT_EQ(sim::word(L"My plan", Language::German), L"My plan");
}

TEST(Words, ArgumentsAreFilledInOnce) {
    EXPECT_EQ(sim::word(L"level %1 of %2", {L"%2", L"10"}),
              sim::uiLanguage() == Language::German ? L"Stufe %2 von 10" : L"level %2 of 10");
    EXPECT_EQ(sim::word(L"%1 times", {}).front(), sim::word(L"%1 times")[2]) << "a missing one is empty";
    EXPECT_EQ(sim::word(L"100 %", {L"x"}), L"100 %");
}

}  // namespace
}  // namespace plugintest
