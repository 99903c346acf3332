// Lock, Sleep and Hibernate.
#include <gtest/gtest.h>

#include "common/Handle.h"
#include "functions/Lock.h"
#include "functions/Sleep.h"
#include "plugins/windows/Waiting.h"
#include "system/fake/FakePower.h"

namespace win {
namespace {

class Lock : public testing::Test {
 protected:
    std::shared_ptr<LockState> m_pState = std::make_shared<LockState>();
    CLock m_function{std::make_unique<CFakeLock>(m_pState)};
};

TEST_F(Lock, IsOfferedUnlessAPolicyForbidsIt) {
    EXPECT_EQ(m_function.initialize(), L"");
    m_pState->bForbidden = true;
    EXPECT_EQ(m_function.initialize(), L"A policy forbids locking this computer.");
}

TEST_F(Lock, ItemZeroLocksAndItemOneDoesNothing) {
    EXPECT_TRUE(m_function.select(0));
    EXPECT_EQ(m_pState->nLocks, 1);
    EXPECT_TRUE(m_function.select(1));
    EXPECT_FALSE(m_function.select(2));
    EXPECT_EQ(m_pState->nLocks, 1);
    m_pState->bRefuses = true;
    EXPECT_FALSE(m_function.select(0));
}

TEST(RealLock, PolicyOfTheUserForbidsIt) {
    constexpr wchar_t kScratch[] = L"SOFTWARE\\KESTOVA\\Fenwyn Test\\Policy";
    common::UniqueRegKey hUser;
    ASSERT_EQ(
        ::RegCreateKeyExW(HKEY_CURRENT_USER, kScratch, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, hUser.put(), nullptr),
        ERROR_SUCCESS);
    ASSERT_EQ(::RegOverridePredefKey(HKEY_CURRENT_USER, hUser.get()), ERROR_SUCCESS);
    const auto pLock = makeWindowsLock();
    const bool bBefore = pLock->forbidden();
    constexpr DWORD kOne = 1;
    ::RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Policies\\System",
                      L"DisableLockWorkstation", REG_DWORD, &kOne, sizeof(kOne));
    const bool bAfter = pLock->forbidden();
    ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    hUser.reset();
    ::RegDeleteTreeW(HKEY_CURRENT_USER, kScratch);
    ::RegDeleteKeyW(HKEY_CURRENT_USER, L"SOFTWARE\\KESTOVA\\Fenwyn Test");  // only if it contains nothing else
    EXPECT_FALSE(bBefore);
    EXPECT_TRUE(bAfter);
}

struct SleepRow {
    SleepAbilities abilities;
    SleepWay way;
};

TEST(SleepWays, ModernStandbyIsNeverToldToStandBy) {
    constexpr SleepRow kRows[] = {
        {{false, false, true, true}, SleepWay::None},
        {{true, false, false, false}, SleepWay::Standby},
        {{false, true, true, true}, SleepWay::DisplayOff},
        {{true, true, true, true}, SleepWay::DisplayOff},
    };
    for (const SleepRow& row : kRows) {
        EXPECT_EQ(sleepWay(row.abilities), row.way);
    }
}

class Suspended : public testing::Test {
 protected:
    std::shared_ptr<CFakeSuspend> m_pSuspend = std::make_shared<CFakeSuspend>();
};

TEST_F(Suspended, SleepStandsByOnItsOwnThread) {
    m_pSuspend->able->bStandby = true;
    CSleep function(m_pSuspend);
    EXPECT_EQ(function.initialize(), L"");
    EXPECT_TRUE(function.select(1));
    EXPECT_FALSE(function.select(2));
    EXPECT_TRUE(function.select(0));
    EXPECT_TRUE(soon([&] { return m_pSuspend->nSleeps == 1; }));
    EXPECT_EQ(m_pSuspend->nDisplaysOff + m_pSuspend->nHibernations, 0);
}

TEST_F(Suspended, SleepSwitchesTheDisplayOffOnModernStandby) {
    m_pSuspend->able->bModernStandby = true;
    CSleep function(m_pSuspend);
    EXPECT_EQ(function.initialize(), L"");
    EXPECT_TRUE(function.select(0));
    EXPECT_TRUE(soon([&] { return m_pSuspend->nDisplaysOff == 1; }));
    EXPECT_EQ(m_pSuspend->nSleeps + m_pSuspend->nHibernations, 0);
}

TEST_F(Suspended, SleepSaysWhyItIsNotOffered) {
    CSleep function(m_pSuspend);
    EXPECT_EQ(function.initialize(), L"This computer has none of the sleeping states S1 to S3, and no modern standby.");
    EXPECT_FALSE(function.select(0));
    m_pSuspend->able.reset();
    EXPECT_EQ(function.initialize(), L"The system does not tell which sleeping states this computer has.");
}

TEST_F(Suspended, HibernateNeedsItsStateAndItsFile) {
    CHibernate function(m_pSuspend);
    EXPECT_EQ(function.initialize(), L"This computer cannot hibernate (it has no state S4).");
    m_pSuspend->able->bHibernation = true;
    EXPECT_EQ(function.initialize(), L"Hibernation is switched off: there is no hibernation file.");
    m_pSuspend->able->bHibernationFile = true;
    EXPECT_EQ(function.initialize(), L"");
    m_pSuspend->able.reset();
    EXPECT_NE(function.initialize(), L"");
}

TEST_F(Suspended, HibernateHibernates) {
    CHibernate function(m_pSuspend);
    EXPECT_TRUE(function.select(1));
    EXPECT_TRUE(function.select(0));
    EXPECT_TRUE(soon([&] { return m_pSuspend->nHibernations == 1; }));
    EXPECT_EQ(m_pSuspend->nSleeps + m_pSuspend->nDisplaysOff, 0);
}

// The call returns after the resume, perhaps hours later; the program may end before that.
TEST_F(Suspended, EndDoesNotWaitForTheResume) {
    const common::UniqueHandle hWakeUp(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    m_pSuspend->hWakeUp = hWakeUp.get();
    auto pFunction = std::make_unique<CHibernate>(m_pSuspend);
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_TRUE(pFunction->select(0));
    EXPECT_LT(::GetTickCount64() - start, 500U);
    ASSERT_TRUE(soon([&] { return m_pSuspend->nHibernations == 1; }));
    const ULONGLONG end = ::GetTickCount64();
    pFunction.reset();
    EXPECT_LT(::GetTickCount64() - end, 1000U);
    ::SetEvent(hWakeUp.get());
    EXPECT_TRUE(soon([&] { return m_pSuspend.use_count() == 1; }));
}

}  // namespace
}  // namespace win
