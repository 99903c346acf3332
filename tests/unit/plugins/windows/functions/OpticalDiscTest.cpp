#include "functions/OpticalDisc.h"

#include <gtest/gtest.h>

#include "plugins/windows/Waiting.h"
#include "system/fake/FakeDrives.h"

namespace win {
namespace {

TEST(OpticalDrives, AMountedImageIsNone) {
    EXPECT_EQ(realDrive({}), std::nullopt);
    EXPECT_EQ(realDrive({{L'E', true}}), std::nullopt);
    EXPECT_EQ(realDrive({{L'E', true}, {L'F', false}, {L'G', false}}), L'F');
}

class OpticalDisc : public testing::Test {
 protected:
    OpticalDisc() { m_pDrives->drives = {{L'E', true}, {L'F', false}}; }

    std::shared_ptr<CFakeDrives> m_pDrives = std::make_shared<CFakeDrives>();
    COpticalDisc m_function{m_pDrives};
};

TEST_F(OpticalDisc, OffersEjectQuietAndCancelButNoSwitch) {
    EXPECT_EQ(m_function.initialize(), L"");
    EXPECT_EQ(m_function.items(), 0x19U);
    EXPECT_EQ(m_function.currentItem(), 4);
}

TEST_F(OpticalDisc, SaysThatThereIsNoDrive) {
    m_pDrives->drives.pop_back();
    EXPECT_EQ(m_function.initialize(), L"There is no optical drive (mounted images are none).");
    EXPECT_FALSE(m_function.select(0));
}

TEST_F(OpticalDisc, DoesWhatIsChosenWithTheRealDrive) {
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_TRUE(m_function.select(4));
    EXPECT_TRUE(m_function.select(0));
    EXPECT_TRUE(soon([&] { return m_pDrives->done() == L"eF"; }));
    EXPECT_TRUE(m_function.select(3));
    EXPECT_TRUE(soon([&] { return m_pDrives->done() == L"eFqF"; }));
}

TEST_F(OpticalDisc, RefusesWhatItDoesNotOffer) {
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_FALSE(m_function.select(1));
    EXPECT_FALSE(m_function.select(2));
    EXPECT_FALSE(m_function.select(5));
    EXPECT_FALSE(m_function.select(-1));
    EXPECT_EQ(m_pDrives->done(), L"");
}

}  // namespace
}  // namespace win
