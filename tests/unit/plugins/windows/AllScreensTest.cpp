#include "functions/AllScreens.h"

#include <gtest/gtest.h>

#include "ScreenBrightness.h"
#include "functions/Brightness.h"
#include "plugins/windows/Waiting.h"
#include "support/RegistryRoom.h"
#include "system/fake/FakeBacklight.h"
#include "system/fake/FakeExternalScreens.h"

namespace win {
namespace {

class AllScreens : public testing::Test {
 protected:
    AllScreens() { m_pBuiltIn->levels = {0, 50, 100}; }

    std::shared_ptr<CFakeBacklight> m_pBuiltIn = std::make_shared<CFakeBacklight>();
    std::shared_ptr<CFakeExternalScreens> m_pExternal = std::make_shared<CFakeExternalScreens>();
    WakeTime m_time{1000, 0};
    CAllScreens m_screens{m_pBuiltIn, m_pExternal, [this] { return m_time; }};
};

TEST_F(AllScreens, WithABuiltInScreenItsBrightnessCountsAndNoOtherIsAsked) {
    m_pExternal->put(L"desk", 20);
    const std::optional<Backlight> state = m_screens.read();
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nPercent, 50);
    EXPECT_EQ(m_pExternal->asked(), 0);
}

TEST_F(AllScreens, TheAllowedOnesFollowTheBuiltInOne) {
    m_pExternal->put(L"desk", 20);
    m_pExternal->put(L"wall", 30);
    ASSERT_TRUE(m_screens.read());
    m_screens.set(80);
    EXPECT_EQ(m_pBuiltIn->nPercent, 80);
    EXPECT_TRUE(
        soon([this] { return m_pExternal->percentOf(L"desk") == 80 && m_pExternal->percentOf(L"wall") == 80; }));
}

TEST_F(AllScreens, WithoutABuiltInOneTheFirstThatAnswersCounts) {
    m_pBuiltIn->bThere = false;
    EXPECT_FALSE(m_screens.read());
    m_pExternal->put(L"a", std::nullopt);
    m_pExternal->put(L"b", 40);
    const std::optional<Backlight> state = m_screens.read();
    ASSERT_TRUE(state);
    EXPECT_EQ(state->nPercent, 40);
    EXPECT_EQ(percentOf(7, state->levels), 70);
    m_screens.set(70);
    EXPECT_EQ(m_pExternal->percentOf(L"b"), 70) << "set before the call returns: it is read again right after it";
    EXPECT_EQ(m_pBuiltIn->nSets, 0);
}

TEST_F(AllScreens, OneThatFailedIsLeftAloneUntilThePauseIsOver) {
    m_pBuiltIn->bThere = false;
    m_pExternal->put(L"desk", std::nullopt);
    EXPECT_FALSE(m_screens.read());
    EXPECT_EQ(m_pExternal->asked(), 1);
    m_time.ullNow += CPatientScreens::kPauseMs - 1;
    m_pExternal->put(L"desk", 40);
    EXPECT_FALSE(m_screens.read());
    m_screens.set(50);
    EXPECT_EQ(m_pExternal->asked(), 0);
    m_time.ullNow += 1;
    EXPECT_TRUE(m_screens.read());
    EXPECT_EQ(m_pExternal->asked(), 1);
}

TEST_F(AllScreens, OneThatFailedIsAskedAgainAfterTheMachinesSleep) {
    m_pBuiltIn->bThere = false;
    m_pExternal->put(L"desk", std::nullopt);
    m_screens.set(50);
    EXPECT_EQ(m_pExternal->asked(), 1);
    m_time.ullNow += 5000;
    m_time.ullAsleep += 3000;
    m_pExternal->put(L"desk", 40);
    EXPECT_TRUE(m_screens.read());
}

// Of a card without a built-in screen: the function as a whole.
TEST_F(AllScreens, AnAllowedExternalScreenMakesBrightnessAFunction) {
    m_pBuiltIn->bThere = false;
    m_pExternal->put(L"desk", 40);
    CBrightness function(std::make_shared<CAllScreens>(m_pBuiltIn, m_pExternal));
    EXPECT_EQ(function.initialize(), L"");
    EXPECT_EQ(function.currentItem(), 4);
    EXPECT_TRUE(function.select(9));
    EXPECT_TRUE(soon([this] { return m_pExternal->percentOf(L"desk") == 90; }));
}

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
