// What random inputs have found: the smallest input of each.
#include "Fuzz.h"
#include "OutputFavourites.h"
#include "common/GdiPlus.h"
#include "common/GdiPlusFunc.h"
#include "common/Handle.h"
#include "common/ResourceFunc.h"
#include "common/ShownText.h"
#include "common/UiLanguage.h"
#include "companions/include/FenwynRegistry.h"
#include "support/AppRoom.h"
#include "support/RegistryRoom.h"
#include "support/TempFolder.h"

namespace {

// Some systems never return from expanding an expandable text of an odd number of bytes.
TEST(Found, ExpandableTextOfOddSizeIsNoLanguage) {
    const support::RegistryRoom registry;
    ASSERT_TRUE(registry.redirected());
    const LANGID usual = common::wantedLanguage();
    const std::vector<BYTE> bytes(401, '%');
    support::RegistryRoom::set(HKEY_CURRENT_USER, FENWYN_REG_PRODUCT, FENWYN_VALUE_LANGUAGE, REG_EXPAND_SZ,
                               bytes.data(), bytes.size());
    EXPECT_EQ(common::wantedLanguage(), usual);
}

// The same for a list of displays that is no list: a text is not expanded before its type is looked at.
TEST(Found, ExpandableTextOfOddSizeIsNoFavourite) {
    const support::RegistryRoom registry;
    ASSERT_TRUE(registry.redirected());
    const std::wstring key = OUTPUT_SETUP_REG_FAVOURITES L"\\0";
    const std::wstring text = L"Desk";
    const DWORD mode = 0;
    support::RegistryRoom::set(HKEY_CURRENT_USER, key, OUTPUT_SETUP_VALUE_TEXT, REG_SZ, text.c_str(),
                               (text.size() + 1) * sizeof(wchar_t));
    support::RegistryRoom::set(HKEY_CURRENT_USER, key, OUTPUT_SETUP_VALUE_MODE, REG_DWORD, &mode, sizeof mode);
    const std::vector<BYTE> bytes(23299, '%');
    for (const wchar_t* const name :
         {OUTPUT_SETUP_VALUE_DISPLAYS, OUTPUT_SETUP_VALUE_MONITORS, OUTPUT_SETUP_VALUE_CORNERS}) {
        support::RegistryRoom::set(HKEY_CURRENT_USER, key, name, REG_EXPAND_SZ, bytes.data(), bytes.size());
    }
    EXPECT_TRUE(favourites::load().empty());
}

constexpr LANGID kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);

// A library with one resource of the id 1.
common::UniqueModule libraryWith(const std::wstring& file, const wchar_t* type, std::span<const BYTE> bytes) {
    EXPECT_TRUE(::CopyFileW(fuzz::libraryWithoutResources().c_str(), file.c_str(), FALSE));
    const HANDLE update = ::BeginUpdateResourceW(file.c_str(), TRUE);
    EXPECT_TRUE(::UpdateResourceW(update, type, MAKEINTRESOURCEW(1), kEnglish, const_cast<BYTE*>(bytes.data()),
                                  static_cast<DWORD>(bytes.size())));
    EXPECT_TRUE(::EndUpdateResourceW(update, FALSE));
    return common::UniqueModule(::LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
}

// A picture's part claimed a gigabyte, and the program read what stands that far behind it.
TEST(Found, PictureWithAPartThatIsTooLongIsNotReadBehindItsEnd) {
    GdiplusSession gdiplus;
    ASSERT_EQ(gdiplus.start(), S_OK);
    static constexpr BYTE kPicture[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n',                             //
                                        0,    0,   0,   13,  'I',  'H',  'D',  'R',  0,    0, 0, 1, 0, 0, 0, 1,  //
                                        8,    6,   0,   0,   0,    0x1F, 0x15, 0xC4, 0x89,                       //
                                        0x40, 0,   0,   0,   'I',  'D',  'A',  'T'};
    const support::TempFolder folder;
    const common::UniqueModule broken = libraryWith(folder / L"Broken.dll", L"PNG", kPicture);
    ASSERT_TRUE(broken);
    std::unique_ptr<Gdiplus::Image> image;
    ASSERT_EQ(getImageFromRes(broken.get(), 1, L"PNG", image), S_OK);
    EXPECT_NE(image, nullptr);
}

// A text's length pointed behind the table.
TEST(Found, TextsOfADamagedTableEndWithIt) {
    const support::TempFolder folder;
    static constexpr wchar_t kTable[] = {2, L'o', L'k', 0xFFFF, L'x'};
    const common::UniqueModule broken =
        libraryWith(folder / L"Broken.dll", RT_STRING, {reinterpret_cast<const BYTE*>(kTable), sizeof(kTable)});
    ASSERT_TRUE(broken);
    EXPECT_EQ(common::textIn(broken.get(), 0, kEnglish), L"ok");
    EXPECT_EQ(common::textIn(broken.get(), 1, kEnglish), L"x");
    EXPECT_EQ(common::textIn(broken.get(), 2, kEnglish), L"");
}

// A caption of half a million letters held the cards up for minutes.
TEST(Found, TextOfAMegabyteIsDrawnAsFarAsItIsShown) {
    GdiplusSession gdiplus;
    ASSERT_EQ(gdiplus.start(), S_OK);
    Gdiplus::Bitmap target(72, 16);
    Gdiplus::Graphics graphics(&target);
    const Gdiplus::Font font(L"Tahoma", 8);
    const std::wstring text(1U << 19U, L'W');
    const ULONGLONG begin = ::GetTickCount64();
    drawOutlineText(graphics, {0, 0, 72, 16}, text.c_str(), font, nullptr, 3.0, 0xFFFFFFFF, 0xFF000000);
    EXPECT_LE(::GetTickCount64() - begin, 5000U);
}

TEST(Found, ShownTextEndsWithAWholeLetterAtItsLimit) {
    const std::wstring pair = L"\xD83D\xDE00";
    const std::wstring before(common::kMostShownChars - 1, L'a');
    EXPECT_EQ(common::shownText((before + pair).c_str()), before);
    EXPECT_EQ(common::shownText((before.substr(1) + pair).c_str()), before.substr(1) + pair);
    EXPECT_EQ(common::shownText(L"abc", 2), L"ab");
    EXPECT_EQ(common::shownText(L"a\0c", 3), L"a");
}

}  // namespace
