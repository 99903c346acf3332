// What is remembered of plug-ins that ended the program.
#include <gtest/gtest.h>

#include "Data/FaultMemory.h"
#include "Logic/Faults/PluginGate.h"
#include "support/LogCapture.h"
#include "support/RegistryRoom.h"

namespace {

constexpr wchar_t kPath[] = L"C:\\Program Files\\x\\A.dll";
constexpr ULONGLONG kNoon = 133'000'000'000'000'000;

class FaultMemory : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }

    // Whether the plug-in is set aside after it.
    static bool fault(ULONGLONG ullTime, bool bEnough = false, const wchar_t* pszPath = kPath) {
        fenwyn::PluginFault fault{pszPath, L"Mute", L"SelectItem", L"abort()", L"", ullTime, bEnough};
        CFaultMemory::remember(fault);
        return fault.setAside;
    }

    support::RegistryRoom m_room;
    support::LogCapture m_log{3};
};

TEST_F(FaultMemory, TwoFaultsWithinTenMinutesSetAPluginAside) {
    EXPECT_FALSE(fault(kNoon));
    EXPECT_TRUE(fault(kNoon + kFaultMemory - 1));
}

TEST_F(FaultMemory, TwoFaultsFurtherApartDoNot) {
    EXPECT_FALSE(fault(kNoon));
    EXPECT_FALSE(fault(kNoon + kFaultMemory));
    EXPECT_FALSE(fault(kNoon - kFaultMemory)) << "the clock was set back";
}

TEST_F(FaultMemory, EveryPluginHasItsOwn) {
    EXPECT_FALSE(fault(kNoon));
    EXPECT_FALSE(fault(kNoon, false, L"C:\\x\\B.dll"));
    EXPECT_EQ(fenwyn::readFaults().size(), 2U);
}

TEST_F(FaultMemory, OneFaultAtTheStartIsEnough) {
    EXPECT_TRUE(fault(kNoon, true));
    EXPECT_TRUE(fault(kNoon + 2 * kFaultMemory)) << "it stays set aside";
}

TEST_F(FaultMemory, TellsWhenWhereAndWhy) {
    EXPECT_TRUE(fault(kNoon, true));
    fenwyn::PluginFault found;
    ASSERT_TRUE(CFaultMemory::isSetAside(L"c:\\program files\\X\\a.dll", found)) << "whatever the case of its letters";
    EXPECT_EQ(found.function, L"Mute");
    EXPECT_EQ(found.exportName, L"SelectItem");
    EXPECT_EQ(found.reason, L"abort()");
    EXPECT_EQ(found.when.size(), 19U);
    EXPECT_EQ(found.time, kNoon);
    EXPECT_FALSE(CFaultMemory::isSetAside(L"C:\\other.dll", found));
}

TEST_F(FaultMemory, ForgivenPluginsMayBeLoadedAgain) {
    EXPECT_TRUE(fault(kNoon, true));
    EXPECT_FALSE(faults::mayLoad(kPath));
    ASSERT_EQ(m_log.errors().size(), 1U);
    EXPECT_NE(m_log.errors()[0].find(L"is set aside since"), std::wstring::npos);
    EXPECT_EQ(fenwyn::forgiveFaults(), ERROR_SUCCESS);
    EXPECT_TRUE(faults::mayLoad(kPath));
    EXPECT_TRUE(fenwyn::readFaults().empty());
    EXPECT_EQ(fenwyn::forgiveFaults(), ERROR_SUCCESS) << "there is nothing left to forgive";
}

TEST_F(FaultMemory, RegistryThatRefusesCostsOnlyALine) {
    m_room.refuseWrites();
    EXPECT_FALSE(fault(kNoon));
    EXPECT_EQ(m_log.errors().size(), 1U);
}

TEST_F(FaultMemory, LongPathIsKnownByItsEnd) {
    const std::wstring strPath = L"C:\\" + std::wstring(300, L'x') + L"\\A.dll";
    EXPECT_TRUE(fault(kNoon, true, strPath.c_str()));
    fenwyn::PluginFault found;
    EXPECT_TRUE(CFaultMemory::isSetAside(strPath, found));
}

}  // namespace
