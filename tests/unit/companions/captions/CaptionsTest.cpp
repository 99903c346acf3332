// The captions of the functions.
#include "captions/Captions.h"

#include <gtest/gtest.h>

#include <set>

#include "FenwynFunctions.h"

namespace captiontest {

using captions::captionOf;

TEST(Captions, EveryFunctionHasItsOwnInEveryLanguage) {
    ASSERT_GE(captions::languages().size(), 2U);
    for (const LANGID language : captions::languages()) {
        std::set<std::wstring> seen;
        for (const fenwyn::Function& function : fenwyn::kFunctions) {
            const std::wstring caption = captionOf(function.name, language);
            EXPECT_FALSE(caption.empty()) << function.name << " in " << language;
            EXPECT_TRUE(seen.insert(caption).second) << function.name << " in " << language;
        }
    }
}

TEST(Captions, AreInTheLanguageThatComesNearest) {
    EXPECT_EQ(captionOf(L"Brightness", MAKELANGID(LANG_FRENCH, SUBLANG_FRENCH_CANADIAN)), L"Luminosit\x00E9");
    EXPECT_EQ(captionOf(L"Brightness", MAKELANGID(LANG_JAPANESE, SUBLANG_JAPANESE_JAPAN)), L"\x660E\x308B\x3055");
    EXPECT_EQ(captionOf(L"Brightness", MAKELANGID(LANG_WELSH, SUBLANG_WELSH_UNITED_KINGDOM)), L"Brightness");
}

TEST(Captions, UnknownFunctionsHaveNone) {
    EXPECT_TRUE(captionOf(L"Toaster", LANG_ENGLISH).empty());
    EXPECT_TRUE(captionOf(L"", LANG_ENGLISH).empty());
}

}  // namespace captiontest
