// What a start learns from what the last run left behind.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "Logic/Faults/FaultHandler.h"
#include "Logic/Faults/Succession.h"
#include "support/TempFolder.h"

namespace {

using faults::faultLeftIn;
using faults::Phase;
using faults::Reason;
using faults::Section;

// A run that ended without a word during a call.
Section cutOff(Phase phase = Phase::InUse) {
    Section left{};
    left.running = TRUE;
    left.startTick = 1000;
    left.startTime = 500'000'000;
    left.calls[3].thread = 17;
    left.calls[3].plugin = 2;
    left.calls[3].phase = phase;
    left.calls[3].since = 3000;
    std::strcpy(left.calls[3].name, "SelectItem");
    std::wcscpy(left.plugin[2].path, L"C:\\x\\A.dll");
    std::wcscpy(left.plugin[2].function, L"Mute");
    return left;
}

constexpr ULONGLONG kLater = 100000;  // ticks: the machine has been on since

TEST(LeftBehind, EndDuringACallIsThePluginsFault) {
    const auto fault = faultLeftIn(cutOff(), kLater);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->plugin, L"C:\\x\\A.dll");
    EXPECT_EQ(fault->function, L"Mute");
    EXPECT_EQ(fault->exportName, L"SelectItem");
    EXPECT_EQ(fault->reason, L"the process ended");
    EXPECT_EQ(fault->time, 500'000'000U + 2000U * 10'000U);
    EXPECT_FALSE(fault->setAside);
}

TEST(LeftBehind, EndDuringTheInitialisationIsEnough) {
    EXPECT_TRUE(faultLeftIn(cutOff(Phase::Initialising), kLater)->setAside);
}

TEST(LeftBehind, OrderlyEndAndEndOutsideOfCallsAreNobodysFault) {
    Section left = cutOff();
    left.running = FALSE;
    EXPECT_FALSE(faultLeftIn(left, kLater));
    left.fault.reason = Reason::Exception;
    left.fault.known = TRUE;
    EXPECT_FALSE(faultLeftIn(left, kLater)) << "also not a fault that was noticed";
    left = cutOff();
    left.calls[3].thread = 0;
    EXPECT_FALSE(faultLeftIn(left, kLater));
    EXPECT_FALSE(faultLeftIn(Section{}, kLater));
}

TEST(LeftBehind, MachineThatWasSwitchedOffIsNobodysFault) {
    EXPECT_FALSE(faultLeftIn(cutOff(), 999));
}

TEST(LeftBehind, NoticedFaultIsNamedWithItsReason) {
    Section left = cutOff();
    left.fault.reason = Reason::Exception;
    left.fault.code = EXCEPTION_ACCESS_VIOLATION;
    left.fault.known = TRUE;
    left.fault.time = 77;
    left.fault.call = left.calls[3];
    left.fault.plugin = left.plugin[2];
    const auto fault = faultLeftIn(left, 0);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->reason, L"an access violation (0xC0000005)");
    EXPECT_EQ(fault->time, 77U);
    EXPECT_FALSE(fault->setAside);
    left.fault.reason = Reason::Hang;
    EXPECT_TRUE(faultLeftIn(left, 0)->setAside) << "a hang is enough by itself";
    left.fault.known = FALSE;
    EXPECT_FALSE(faultLeftIn(left, 0)) << "no plug-in is to blame";
}

TEST(LeftBehind, NonsenseInTheFileIsHarmless) {
    Section left{};
    std::memset(&left, 0x7F, sizeof(left));
    static_cast<void>(faultLeftIn(left, kLater));
    left.fault.reason = Reason::None;
    left.running = TRUE;
    static_cast<void>(faultLeftIn(left, ~0ULL));
}

TEST(FaultFiles, OnlyTheLastThreeAreKept) {
    const support::TempFolder folder;
    for (const char* const name : {"1", "2", "3", "4", "5"}) {
        for (const char* const extension : {".dmp", ".txt"}) {
            support::TempFolder::write(folder / (std::string("fault-2024010") + name + "-000000" + extension), "x");
        }
    }
    support::TempFolder::write(folder / L"log.txt", "x");
    faults::pruneFaultFiles((folder / L"").wstring());
    for (const char* const extension : {".dmp", ".txt"}) {
        EXPECT_FALSE(std::filesystem::exists(folder / (std::string("fault-20240102-000000") + extension)));
        EXPECT_TRUE(std::filesystem::exists(folder / (std::string("fault-20240103-000000") + extension)));
        EXPECT_TRUE(std::filesystem::exists(folder / (std::string("fault-20240105-000000") + extension)));
    }
    EXPECT_TRUE(std::filesystem::exists(folder / L"log.txt"));
}

TEST(FaultWords, NameWhatHappened) {
    wchar_t text[faults::kNameChars];
    faults::describeFault(Reason::Exception, EXCEPTION_STACK_OVERFLOW, text, faults::kNameChars);
    EXPECT_STREQ(text, L"a stack overflow (0xC00000FD)");
    faults::describeFault(Reason::Exception, 0x1234, text, faults::kNameChars);
    EXPECT_STREQ(text, L"an exception (0x00001234)");
    faults::describeFault(Reason::Hang, 0, text, faults::kNameChars);
    EXPECT_STREQ(text, L"a call that did not return");
}

}  // namespace
