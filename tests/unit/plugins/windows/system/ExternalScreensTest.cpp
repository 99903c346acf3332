#include "system/ExternalScreens.h"

#include <gtest/gtest.h>

#include "ScreenBrightness.h"
#include "common/Handle.h"
#include "plugins/windows/Waiting.h"
#include "support/RegistryRoom.h"

namespace win {
namespace {

// Real processes: a program that answers as the path tells it.
class RealExternalScreens : public testing::Test {
 protected:
    static std::shared_ptr<IExternalScreens> screens(DWORD dwPatienceMs = kDeadlineMs) {
        return makeWindowsExternalScreens(SCREEN_PROGRAM, dwPatienceMs);
    }
};

TEST_F(RealExternalScreens, AnswerByTheExitCodeOfAProcess) {
    EXPECT_EQ(screens()->read(L"\\\\?\\answers with 42"), 42);
    EXPECT_TRUE(screens()->set(L"\\\\?\\answers with 42", 70));
    EXPECT_FALSE(screens()->set(L"\\\\?\\answers with 42", 71)) << "it accepts 70 only";
    EXPECT_EQ(screens()->read(L"refuses"), std::nullopt);
    EXPECT_FALSE(screens()->set(L"refuses", 70));
    EXPECT_EQ(makeWindowsExternalScreens(L"C:\\none.exe", kDeadlineMs)->read(L"answers with 42"), std::nullopt);
}

TEST_F(RealExternalScreens, OneThatCrashesItsProcessHasFailed) {
    EXPECT_EQ(screens()->read(L"crashes"), std::nullopt);
}

TEST_F(RealExternalScreens, OneThatHangsIsGivenUpInTimeAndItsProcessEnded) {
    constexpr DWORD kPatienceMs = 300;
    const ULONGLONG start = ::GetTickCount64();
    EXPECT_EQ(screens(kPatienceMs)->read(L"hangs"), std::nullopt);
    EXPECT_GE(::GetTickCount64() - start, kPatienceMs);
    EXPECT_LT(::GetTickCount64() - start, 10000U);
    // The process holds this mutex as long as it lives.
    EXPECT_TRUE(soon([] {
        const common::UniqueHandle hHanging(::OpenMutexW(SYNCHRONIZE, FALSE, L"FenwynTestsHangingScreen"));
        return !hHanging;
    }));
}

TEST_F(RealExternalScreens, AreThoseThatTheUserAllows) {
    const support::RegistryRoom registry;
    ASSERT_TRUE(registry.redirected());
    EXPECT_TRUE(screens()->allowed().empty());
    const auto store = [](const wchar_t* path, DWORD dwType, const void* pValue, DWORD dwBytes) {
        ::RegSetKeyValueW(HKEY_CURRENT_USER, FENWYN_REG_ALLOWED_SCREENS, path, dwType, pValue, dwBytes);
    };
    const DWORD dwYes = 1;
    const DWORD dwNo = 0;
    store(L"\\\\?\\desk", REG_DWORD, &dwYes, sizeof(dwYes));
    store(L"\\\\?\\wall", REG_DWORD, &dwNo, sizeof(dwNo));
    store(L"\\\\?\\text", REG_SZ, L"a longer text", 28);
    EXPECT_EQ(screens()->allowed(), std::vector<std::wstring>{L"\\\\?\\desk"});
}

// The program that ships, on the system of the tests, which has no way to a screen.
TEST_F(RealExternalScreens, TheShippedProgramFailsQuietlyWhereTheSystemCannot) {
    const auto pScreens = makeWindowsExternalScreens(std::wstring(STAGE_DIR) + L"\\FenwynCheck.exe", kDeadlineMs);
    EXPECT_EQ(pScreens->read(L"\\\\?\\DISPLAY#none"), std::nullopt);
    EXPECT_FALSE(pScreens->set(L"\\\\?\\DISPLAY#none", 50));
}

TEST(WakeTime, GrowsWhileTheMachineIsAwake) {
    const WakeTime before = wakeTime();
    ::Sleep(60);
    const WakeTime after = wakeTime();
    EXPECT_GE(after.ullNow, before.ullNow + 40);
    EXPECT_LT(after.ullAsleep, before.ullAsleep + 1000) << "a machine that is awake does not sleep";
}

}  // namespace
}  // namespace win
