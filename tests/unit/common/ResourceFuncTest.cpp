#include "common/ResourceFunc.h"

#include <gmock/gmock.h>

#include <array>

#include "Rendering.h"
#include "common/Handle.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"
#include "support/ResourceCounters.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr WORD kGoodPicture = 1;
constexpr WORD kNoPicture = 2;
constexpr WORD kNoBytes = 3;
constexpr WORD kCutPicture = 4;
constexpr WORD kOtherType = 5;
constexpr WORD kMissing = 999;

constexpr wchar_t kPointerLine[] = L"[ERR] (getImageFromRes): Error Code: 0x80004003";

class ImageResourceTest : public testing::Test {
 protected:
    ImageResourceTest() { EXPECT_TRUE(m_library) << "rendering_test_art.dll lies beside the test program"; }

    HRESULT load(WORD id, std::unique_ptr<Gdiplus::Image>& image, const wchar_t* type = kPngResourceType) {
        return getImageFromRes(m_library.get(), id, type, image);
    }

    support::LogCapture m_log;
    common::UniqueModule m_library{::LoadLibraryW(L"rendering_test_art.dll")};
};

TEST_F(ImageResourceTest, LoadsAPicture) {
    std::unique_ptr<Gdiplus::Image> image;
    ASSERT_EQ(load(kGoodPicture, image), S_OK);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->GetLastStatus(), Gdiplus::Ok);
    EXPECT_EQ(image->GetWidth(), 3U);
    EXPECT_EQ(image->GetHeight(), 2U);
    EXPECT_THAT(m_log.lines(), IsEmpty());
}

TEST_F(ImageResourceTest, WithoutMemoryForThePictureItIsMissing) {
    HRESULT status = S_OK;
    std::unique_ptr<Gdiplus::Image> image;
    const long failures = support::forEachFailure(
        support::FailingAllocation::Extent::Once, [&] { status = load(kGoodPicture, image); },
        [&] {
            EXPECT_EQ(status, image != nullptr ? S_OK : E_POINTER);
            EXPECT_EQ(m_log.errors().empty(), image != nullptr);
            m_log.clear();
            image.reset();
        });
    EXPECT_GE(failures, 1);
    EXPECT_EQ(status, S_OK) << "with memory";
}

TEST_F(ImageResourceTest, APictureOutlivesItsLibrary) {
    std::unique_ptr<Gdiplus::Image> image;
    ASSERT_EQ(load(kGoodPicture, image), S_OK);
    m_library.reset();
    const rendering::Canvas canvas(3, 2);
    Gdiplus::Graphics graphics(canvas.dc());
    ASSERT_EQ(graphics.DrawImage(image.get(), Gdiplus::Rect(0, 0, 3, 2)), Gdiplus::Ok);
    EXPECT_EQ(canvas.at(1, 0), 0xFFFF0000U);
    EXPECT_EQ(canvas.at(1, 1), 0x80000080U);
}

TEST_F(ImageResourceTest, ALatePictureIsDecodedWhenItIsAskedFor) {
    LateImage image;
    EXPECT_EQ(image.get(), nullptr) << "there is none yet";
    ASSERT_EQ(getImageFromRes(m_library.get(), kCutPicture, kPngResourceType, image), S_OK);
    ASSERT_NE(image.get(), nullptr);
    EXPECT_NE(image.get()->GetLastStatus(), Gdiplus::Ok) << "as one that is decoded at once";
    ASSERT_EQ(getImageFromRes(m_library.get(), kGoodPicture, kPngResourceType, image), S_OK);
    m_library.reset();
    Gdiplus::Image* const decoded = image.get();
    ASSERT_NE(decoded, nullptr);
    EXPECT_EQ(decoded->GetWidth(), 3U);
    EXPECT_EQ(image.get(), decoded) << "once";
    EXPECT_THAT(m_log.lines(), IsEmpty());
}

TEST_F(ImageResourceTest, AMissingLatePictureIsReportedAndTouchesNothing) {
    LateImage image;
    ASSERT_EQ(getImageFromRes(m_library.get(), kGoodPicture, kPngResourceType, image), S_OK);
    const Gdiplus::Image* const before = image.get();
    EXPECT_EQ(getImageFromRes(m_library.get(), kMissing, kPngResourceType, image), E_POINTER);
    EXPECT_EQ(getImageFromRes(m_library.get(), kNoBytes, kPngResourceType, image), E_FAIL);
    EXPECT_EQ(image.get(), before);
    EXPECT_THAT(m_log.errors(), ElementsAre(kPointerLine, L"[ERR] (getImageFromRes): Error Code: 0x80004005"));
}

TEST_F(ImageResourceTest, WithoutMemoryALatePictureIsTriedAgain) {
    HRESULT status = S_OK;
    LateImage image;
    const long failures = support::forEachFailure(
        support::FailingAllocation::Extent::Once,
        [&] {
            status = getImageFromRes(m_library.get(), kGoodPicture, kPngResourceType, image);
            static_cast<void>(image.get());
        },
        [&] {
            // Without memory for its bytes there is nothing to decode.
            EXPECT_EQ(image.get() != nullptr, status == S_OK);
            EXPECT_TRUE(status == S_OK || status == E_POINTER);
            image = {};
        });
    EXPECT_GE(failures, 2);
}

TEST_F(ImageResourceTest, AMissingOneIsReportedAndTouchesNothing) {
    std::unique_ptr<Gdiplus::Image> image = rendering::plainImage(1, 1, 0xFFFFFFFFU);
    const Gdiplus::Image* const before = image.get();
    EXPECT_EQ(load(kMissing, image), E_POINTER);
    EXPECT_EQ(load(kOtherType, image), E_POINTER);
    EXPECT_EQ(load(kGoodPicture, image, L"TEXT"), E_POINTER);
    EXPECT_EQ(image.get(), before);
    EXPECT_THAT(m_log.errors(), ElementsAre(kPointerLine, kPointerLine, kPointerLine));
}

TEST_F(ImageResourceTest, ModulesWithoutPicturesAreAsIfTheyWereMissing) {
    std::unique_ptr<Gdiplus::Image> image;
    EXPECT_EQ(getImageFromRes(nullptr, kGoodPicture, kPngResourceType, image), E_POINTER);
    EXPECT_EQ(getImageFromRes(::GetModuleHandleW(L"kernel32.dll"), kGoodPicture, kPngResourceType, image), E_POINTER);
    EXPECT_EQ(image, nullptr);
}

TEST_F(ImageResourceTest, OneWithoutBytesIsAFailureOfItsOwn) {
    std::unique_ptr<Gdiplus::Image> image;
    EXPECT_EQ(load(kNoBytes, image), E_FAIL);
    EXPECT_EQ(image, nullptr);
    EXPECT_THAT(m_log.errors(), ElementsAre(L"[ERR] (getImageFromRes): Error Code: 0x80004005"));
}

TEST_F(ImageResourceTest, BytesThatAreNoPictureGiveAnImageThatSaysSo) {
    for (const WORD id : {kNoPicture, kCutPicture}) {
        std::unique_ptr<Gdiplus::Image> image;
        EXPECT_EQ(load(id, image), S_OK);
        ASSERT_NE(image, nullptr);
        EXPECT_NE(image->GetLastStatus(), Gdiplus::Ok) << id;
    }
    EXPECT_THAT(m_log.errors(), IsEmpty());
}

TEST_F(ImageResourceTest, LoadingLeavesNoMemoryBehind) {
    const auto loadAll = [this] {
        for (const WORD id : {kGoodPicture, kNoPicture, kNoBytes, kCutPicture, kMissing}) {
            std::unique_ptr<Gdiplus::Image> image;
            static_cast<void>(load(id, image));
        }
        m_log.clear();
    };
    for (int i = 0; i < 10; ++i) {
        loadAll();
    }
    const std::size_t before = testsupport::heapBytes();
    const std::size_t objects = testsupport::gdiHandles();
    constexpr std::size_t kRuns = 200;
    for (std::size_t i = 0; i < kRuns; ++i) {
        loadAll();
    }
    EXPECT_LT(testsupport::heapBytes(), before + kRuns * 20);
    EXPECT_EQ(testsupport::gdiHandles(), objects);
}

// ---- texts ----

TEST(LoadResString, LoadsTextsOfAnyLength) {
    for (const UINT length : {28U, 29U, 30U, 58U, 59U, 60U, 1000U}) {
        const std::wstring text = loadResString(length);
        ASSERT_EQ(text.size(), length);
        EXPECT_EQ(text[0], L'1');
        EXPECT_EQ(text[length - 1], L"0123456789"[length % 10]);
    }
    EXPECT_EQ(loadResString(1), L"A text");
}

TEST(LoadResString, MissingAndEmptyTextsAreEmpty) {
    EXPECT_EQ(loadResString(2), L"");
    EXPECT_EQ(loadResString(777), L"");
    EXPECT_EQ(loadResString(0), L"");
    EXPECT_EQ(loadResString(0xFFFFFFFFU), L"");
}

}  // namespace
