// Libraries with broken pictures and texts.
#include "Fuzz.h"
#include "common/GdiPlus.h"
#include "common/Handle.h"
#include "common/ResourceFunc.h"
#include "common/UiLanguage.h"
#include "support/AppRoom.h"
#include "support/TempFolder.h"

namespace {

using fuzz::CRandom;

constexpr WORD kPictures = 12;
constexpr UINT kTexts = 32;

std::vector<BYTE> goodPicture() {
    const common::UniqueModule art(
        ::LoadLibraryExW(support::AppRoom::artPath().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
    const HRSRC resource = ::FindResourceW(art.get(), MAKEINTRESOURCEW(110), L"PNG");
    const auto* const bytes = static_cast<const BYTE*>(::LockResource(::LoadResource(art.get(), resource)));
    return {bytes, bytes + ::SizeofResource(art.get(), resource)};
}

// A picture with changed, missing or added bytes, or anything.
std::vector<BYTE> picture(CRandom& random, const std::vector<BYTE>& good) {
    if (random.oneIn(6)) {
        return random.bytes();
    }
    std::vector<BYTE> made = good;
    for (unsigned n = random.below(5); n > 0; --n) {
        // Most of what matters is at the beginning.
        const unsigned area = random.oneIn(2) ? 64 : static_cast<unsigned>(made.size());
        made[random.below(std::max(1U, area)) % made.size()] = static_cast<BYTE>(random.number());
    }
    if (random.oneIn(3)) {
        made.resize(1 + random.below(static_cast<unsigned>(made.size())));
    }
    return made;
}

// A table of texts, whose lengths may be wrong.
std::vector<BYTE> texts(CRandom& random) {
    std::vector<wchar_t> units;
    for (unsigned n = random.below(17); n > 0; --n) {
        const std::wstring text = random.text(30);
        units.push_back(static_cast<wchar_t>(random.oneIn(4) ? random.number() : text.size()));
        units.insert(units.end(), text.begin(), text.end());
    }
    const auto* const bytes = reinterpret_cast<const BYTE*>(units.data());
    std::vector<BYTE> made(bytes, bytes + units.size() * sizeof(wchar_t));
    made.resize(made.size() - std::min<std::size_t>(made.size(), random.below(3)));
    return made;
}

void put(HANDLE update, const wchar_t* type, WORD id, std::vector<BYTE> bytes) {
    bytes.resize(std::max<std::size_t>(bytes.size(), 1));  // no bytes would remove it
    ASSERT_TRUE(::UpdateResourceW(update, type, MAKEINTRESOURCEW(id), MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US),
                                  bytes.data(), static_cast<DWORD>(bytes.size())));
}

TEST(ArtFuzz, PicturesAndTexts) {
    GdiplusSession gdiplus;
    ASSERT_EQ(gdiplus.start(), S_OK);
    const support::TempFolder folder;
    const std::vector<BYTE> good = goodPicture();
    const std::wstring file = folder / L"Broken.dll";
    fuzz::run(10, [&](CRandom& random) {
        ASSERT_TRUE(::CopyFileW(fuzz::libraryWithoutResources().c_str(), file.c_str(), FALSE));
        const HANDLE update = ::BeginUpdateResourceW(file.c_str(), TRUE);
        for (WORD id = 1; id <= kPictures; ++id) {
            put(update, L"PNG", id, picture(random, good));
        }
        for (WORD table = 1; table <= kTexts / 16; ++table) {
            put(update, RT_STRING, table, texts(random));
        }
        ASSERT_TRUE(::EndUpdateResourceW(update, FALSE));
        const common::UniqueModule broken(::LoadLibraryExW(file.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
        ASSERT_TRUE(broken);
        for (WORD id = 0; id <= kPictures + 1; ++id) {
            std::unique_ptr<Gdiplus::Image> image;
            if (SUCCEEDED(getImageFromRes(broken.get(), id, L"PNG", image))) {
                ASSERT_NE(image, nullptr);
                Gdiplus::Bitmap target(16, 16);
                Gdiplus::Graphics graphics(&target);
                static_cast<void>(graphics.DrawImage(image.get(), 0, 0, 16, 16));
            }
        }
        for (UINT id = 0; id < kTexts + 16; ++id) {
            EXPECT_LE(common::textNear(broken.get(), id, LANG_ENGLISH).size(), 65535U);
        }
    });
}

}  // namespace
