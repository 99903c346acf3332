#include <gtest/gtest.h>

#include "functions/PowerPlanFunction.h"
#include "plugins/windows/Waiting.h"
#include "system/fake/FakeOfferMemory.h"
#include "system/fake/FakePowerPlans.h"

namespace win {
namespace {

constexpr GUID kHigh = {0x8C5E7FDA, 0xE8BF, 0x4A96, {0x9A, 0x85, 0xA6, 0xE2, 0x3A, 0x8C, 0x63, 0x5C}};
constexpr GUID kBalanced = {0x381B4222, 0xF694, 0x41F0, {0x96, 0x85, 0xFF, 0x5B, 0xB2, 0x60, 0xDF, 0x2E}};
constexpr GUID kSaver = {0xA1841308, 0x3541, 0x4FAB, {0xBC, 0x81, 0xF7, 0x15, 0x56, 0xF2, 0x0B, 0x4A}};

constexpr GUID ownPlan(unsigned number) {
    return {number, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
}

PowerPlan plan(const GUID& rId, const wchar_t* pszName) {
    return {rId, pszName};
}

std::wstring nameAt(const PlanItems& rItems, std::size_t item) {
    return rItems.plans[item] ? rItems.plans[item]->name : L"-";
}

TEST(PlanItems, KnownPlansHaveTheItemsWithTheirPictures) {
    const PlanItems items =
        arrangePlans({plan(kBalanced, L"Ausbalanciert"), plan(kHigh, L"Schnell"), plan(kSaver, L"Sparsam")}, kSaver);
    EXPECT_EQ(nameAt(items, 0), L"Schnell");
    EXPECT_EQ(nameAt(items, 1), L"Ausbalanciert");
    EXPECT_EQ(nameAt(items, 2), L"Sparsam");
    EXPECT_EQ(items.mask(), 0x7U);
    EXPECT_EQ(items.active, 2);
}

TEST(PlanItems, AnActivePlanOfTheUsersOwnComesBeforeOtherOwnPlans) {
    const PlanItems items = arrangePlans({plan(ownPlan(1), L"one"), plan(kHigh, L"high"), plan(kBalanced, L"balanced"),
                                          plan(kSaver, L"saver"), plan(ownPlan(2), L"two")},
                                         ownPlan(2));
    EXPECT_EQ(nameAt(items, 3), L"two");
    EXPECT_EQ(items.mask(), 0xFU);
    EXPECT_EQ(items.active, 3);
}

TEST(PlanItems, OwnPlansFillWhatIsFree) {
    const PlanItems items =
        arrangePlans({plan(ownPlan(1), L"one"), plan(ownPlan(2), L"two"), plan(kBalanced, L"balanced"),
                      plan(ownPlan(3), L"three"), plan(ownPlan(4), L"four")},
                     kBalanced);
    EXPECT_EQ(nameAt(items, 3), L"one");
    EXPECT_EQ(nameAt(items, 0), L"two");
    EXPECT_EQ(nameAt(items, 1), L"balanced");
    EXPECT_EQ(nameAt(items, 2), L"three");
    EXPECT_EQ(items.active, 1);
}

TEST(PlanItems, WithoutAnActivePlanNoneIsCurrent) {
    EXPECT_EQ(arrangePlans({plan(kHigh, L"high")}, std::nullopt).active, std::nullopt);
    EXPECT_EQ(arrangePlans({plan(kHigh, L"high")}, ownPlan(9)).active, std::nullopt);
    EXPECT_EQ(arrangePlans({}, kHigh).mask(), 0U);
}

class PowerPlans : public testing::Test {
 protected:
    std::shared_ptr<CFakePowerPlans> m_pSystem = std::make_shared<CFakePowerPlans>();
    CPowerPlan m_function{m_pSystem};
};

TEST_F(PowerPlans, AreOfferedWhenThereAreTwo) {
    m_pSystem->set({plan(kHigh, L"high")}, kHigh);
    EXPECT_EQ(m_function.initialize(), L"There are not two power plans to choose between.");
    CPowerPlan second(m_pSystem);
    m_pSystem->set({plan(kHigh, L"high"), plan(kSaver, L"saver")}, kHigh);
    EXPECT_EQ(second.initialize(), L"");
    EXPECT_EQ(second.items(), 0x5U);
    EXPECT_EQ(second.currentItem(), 0);
    EXPECT_EQ(second.itemText(2), L"saver");
    EXPECT_EQ(second.itemText(1), std::nullopt);
    EXPECT_EQ(second.itemText(4), std::nullopt);
}

// Once there were two plans; now there is none of which the card could show an item.
TEST_F(PowerPlans, WithoutOneNoItemsAreMadeUp) {
    m_pSystem->set({}, std::nullopt);
    m_function.remember(std::make_shared<CFakeOfferMemory>(CFakeOfferMemory::Yes));
    static_cast<void>(m_function.initialize());
    EXPECT_EQ(m_function.items(), std::nullopt);
    EXPECT_EQ(m_function.currentItem(), std::nullopt);
}

TEST_F(PowerPlans, AChoiceIsCurrentAtOnceAndTrueLater) {
    m_pSystem->set({plan(kHigh, L"high"), plan(kSaver, L"saver")}, kHigh);
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_TRUE(m_function.select(2));
    EXPECT_EQ(m_function.currentItem(), 2);
    EXPECT_TRUE(soon([&] { return ::IsEqualGUID(*m_pSystem->active(), kSaver) != FALSE; }));
    EXPECT_FALSE(m_function.select(1)) << "not there";
    EXPECT_FALSE(m_function.select(-1));
    EXPECT_FALSE(m_function.select(4));
}

TEST_F(PowerPlans, ARefusedChoiceIsNotCurrent) {
    m_pSystem->set({plan(kHigh, L"high"), plan(kSaver, L"saver")}, kHigh, true);
    ASSERT_EQ(m_function.initialize(), L"");
    EXPECT_TRUE(m_function.select(2));
    EXPECT_TRUE(soon([&] { return m_function.currentItem() == 0; }));
}

TEST_F(PowerPlans, ChangesMadeElsewhereShowAtTheNextOpening) {
    m_pSystem->set({plan(kHigh, L"high"), plan(kSaver, L"saver")}, kHigh);
    ASSERT_EQ(m_function.initialize(), L"");
    m_pSystem->set({plan(kHigh, L"high"), plan(kSaver, L"saver")}, kSaver);
    (void)m_function.items();
    EXPECT_TRUE(soon([&] { return m_function.currentItem() == 2; }));
}

}  // namespace
}  // namespace win
