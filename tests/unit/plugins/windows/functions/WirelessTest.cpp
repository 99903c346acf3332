#include "functions/Wireless.h"

#include <gtest/gtest.h>

#include "plugins/windows/Sleeping.h"
#include "plugins/windows/Waiting.h"
#include "system/fake/FakeRadios.h"

namespace win {
namespace {

constexpr ULONG kCancel = 0x4000;
constexpr ULONG kAllOn = 0x1000;
constexpr ULONG kAllOff = 0x2000;

constexpr Radio wlan(bool bOn, bool bSwitchable = true) {
    return {RadioKind::Wlan, bOn, bSwitchable};
}
constexpr Radio bluetooth(bool bOn, bool bSwitchable = true) {
    return {RadioKind::Bluetooth, bOn, bSwitchable};
}

TEST(RadioStates, OfferTheChangeThatEachRadioCanMake) {
    EXPECT_EQ(offeredStates({wlan(true)}), 0x1 | kCancel);
    EXPECT_EQ(offeredStates({wlan(false)}), 0x2 | kCancel);
    EXPECT_EQ(offeredStates({bluetooth(true)}), 0x4 | kCancel);
    EXPECT_EQ(offeredStates({bluetooth(false)}), 0x8 | kCancel);
    EXPECT_EQ(offeredStates({}), kCancel);
}

TEST(RadioStates, OfferAllAtOnceWhereSomethingWouldChange) {
    EXPECT_EQ(offeredStates({wlan(true), bluetooth(true)}), 0x5 | kAllOff | kCancel);
    EXPECT_EQ(offeredStates({wlan(false), bluetooth(false)}), 0xA | kAllOn | kCancel);
    EXPECT_EQ(offeredStates({wlan(true), bluetooth(false)}), 0x9 | kAllOn | kAllOff | kCancel);
}

TEST(RadioStates, LeaveOutARadioThatASwitchKeepsOff) {
    EXPECT_EQ(offeredStates({wlan(false, false), bluetooth(true)}), 0x4 | kCancel);
    const auto after = afterState({wlan(false, false), bluetooth(true), wlan(true)}, 13);
    ASSERT_TRUE(after);
    EXPECT_FALSE((*after)[0].bOn);
    EXPECT_FALSE((*after)[1].bOn);
    EXPECT_FALSE((*after)[2].bOn);
}

TEST(RadioStates, AChoiceChangesItsRadioOnly) {
    const auto after = afterState({wlan(true), bluetooth(true)}, 0);
    ASSERT_TRUE(after);
    EXPECT_FALSE((*after)[0].bOn);
    EXPECT_TRUE((*after)[1].bOn);
    EXPECT_FALSE(afterState({wlan(true)}, 1)) << "it is on already";
    EXPECT_FALSE(afterState({wlan(true)}, 12));
    EXPECT_FALSE(afterState({wlan(true)}, 15));
    EXPECT_FALSE(afterState({wlan(true)}, -1));
    EXPECT_TRUE(afterState({wlan(true)}, 14));
}

TEST(Wireless, IsOfferedWhenThereIsARadio) {
    CWireless with(std::make_shared<CFakeRadios>(RadioList{wlan(true)}));
    EXPECT_EQ(with.initialize(), L"");
    EXPECT_EQ(with.items(), 0x4001U);
    CWireless without(std::make_shared<CFakeRadios>(RadioList{}));
    EXPECT_EQ(without.initialize(), L"There is no radio that the system lets programs switch.");
}

TEST(Wireless, ShowsItsNoticeWhileNothingCanBeSwitched) {
    CWireless function(std::make_shared<CFakeRadios>(RadioList{wlan(false, false)}));
    EXPECT_EQ(function.initialize(), L"");
    EXPECT_EQ(function.items(), std::nullopt);
}

TEST(Wireless, AChoiceCountsAtOnceAndIsMade) {
    const auto pRadios = std::make_shared<CFakeRadios>(RadioList{wlan(true), bluetooth(false)});
    CWireless function(pRadios);
    ASSERT_EQ(function.initialize(), L"");
    EXPECT_TRUE(function.select(0));
    EXPECT_EQ(function.items(), 0xAU | kAllOn | kCancel);
    EXPECT_TRUE(soon([&] { return !pRadios->radios()[0].bOn; }));
    EXPECT_FALSE(pRadios->radios()[1].bOn);
    EXPECT_TRUE(function.select(14));
    EXPECT_FALSE(function.select(0)) << "no longer offered";
}

TEST(Wireless, ARadioThatRefusesIsOfferedAgain) {
    const auto pRadios = std::make_shared<CFakeRadios>(RadioList{wlan(true)});
    CWireless function(pRadios);
    ASSERT_EQ(function.initialize(), L"");
    pRadios->refuse();
    EXPECT_TRUE(function.select(0));
    EXPECT_TRUE(soon([&] { return function.items() == 0x4001U; }));
}

TEST(Wireless, OpensWithAChangeThatWasMadeElsewhere) {
    const auto pRadios = std::make_shared<CFakeRadios>(RadioList{wlan(true)});
    pRadios->dwReadMs = 5;
    CWireless function(pRadios);
    ASSERT_EQ(function.initialize(), L"");
    EXPECT_TRUE(someTime([&](int nTry) {
        const bool bOn = nTry % 2 != 0;
        const ULONG uStates = (bOn ? 0x1U : 0x2U) | kCancel;
        pRadios->put({wlan(bOn)});
        const bool bAtOnce = function.items() == uStates;
        return soon([&] { return function.items() == uStates; }) && bAtOnce;
    }));
}

// A radio that was switched off by the machine's own switch meanwhile.
TEST(Wireless, IsReadAfterTheMachinesSleepBeforeTheCardOpens) {
    const auto pRadios = std::make_shared<CFakeRadios>(RadioList{wlan(true)});
    CWireless function(pRadios);
    ASSERT_EQ(function.initialize(), L"");
    for (const WPARAM news : kResumes) {
        const bool bOn = !pRadios->radios()[0].bOn;
        pRadios->put({wlan(bOn)});
        wakeUp(news);
        // A choice goes by what is known without a look at the machine.
        EXPECT_TRUE(soon([&] { return function.select(bOn ? 0 : 1); })) << news;
        EXPECT_TRUE(soon([&] { return pRadios->radios()[0].bOn != bOn; }));
    }
}

}  // namespace
}  // namespace win
