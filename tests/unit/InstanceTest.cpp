// One program per session: what a second start finds, logs and does.
#include "AppFixture.h"

namespace {

using namespace apptest;

constexpr wchar_t kMutex[] = L"_ZelMain_Mutex_";

class InstanceTest : public ShellTest {
 protected:
    ~InstanceTest() override { ZelMainSeam::mutex().reset(); }
};

TEST_F(InstanceTest, FirstOneHoldsTheMutex) {
    EXPECT_EQ(ZelMainSeam::checkMultiInstance(), S_OK);
    const common::UniqueHandle there(::OpenMutexW(SYNCHRONIZE, FALSE, kMutex));
    EXPECT_TRUE(there);
    EXPECT_TRUE(errors().empty());
}

TEST_F(InstanceTest, SecondOneSignalsTheFirstOnceAndEnds) {
    const common::UniqueHandle first(::CreateMutexW(nullptr, FALSE, kMutex));
    const MessageCounter frame(kFrameClass, kFrameTitle, WM_USER + 102);
    showStrip();
    ::SetForegroundWindow(hoverWindow());
    EXPECT_EQ(ZelMainSeam::checkMultiInstance(), E_FAIL);
    ASSERT_EQ(frame.count(), 1);
    EXPECT_EQ(frame.messages()[0].wParam, 0U);
    EXPECT_EQ(frame.messages()[0].lParam, 0);
    EXPECT_FALSE(ZelMainSeam::mutex());
    EXPECT_TRUE(logged(L"[INF] (CZelMainApp::checkMultiInstance): Mutex already exists."));
    EXPECT_FALSE(logged(L"[INF] (CZelMainApp::checkMultiInstance): Mutex really exists."));
    EXPECT_NE(::GetForegroundWindow(), stripWindow());
}

constexpr wchar_t kNeedToHide[] = L"[TRC] (CZelMainApp::_signalFirstInstance): Need to hide main UI when lost focus.";

TEST_F(InstanceTest, SecondOneGivesTheFocusToAVisibleStripThatHidesWithoutIt) {
    const common::UniqueHandle first(::CreateMutexW(nullptr, FALSE, kMutex));
    const MessageCounter frame(kFrameClass, kFrameTitle, WM_USER + 102);
    config().bHideMainUIWhenLostFocus = 1;
    showStrip();
    EXPECT_EQ(ZelMainSeam::checkMultiInstance(), E_FAIL);
    EXPECT_EQ(frame.count(), 1);
    EXPECT_EQ(::GetForegroundWindow(), stripWindow());
    EXPECT_TRUE(logged(kNeedToHide));
}

TEST_F(InstanceTest, SecondOneLeavesAHiddenStripAlone) {
    const common::UniqueHandle first(::CreateMutexW(nullptr, FALSE, kMutex));
    const MessageCounter frame(kFrameClass, kFrameTitle, WM_USER + 102);
    config().bHideMainUIWhenLostFocus = 1;
    EXPECT_EQ(ZelMainSeam::checkMultiInstance(), E_FAIL);
    EXPECT_NE(::GetForegroundWindow(), stripWindow());
    EXPECT_TRUE(logged(kNeedToHide));
}

TEST_F(InstanceTest, SecondOneTellsWhenThereIsNoStrip) {
    const common::UniqueHandle first(::CreateMutexW(nullptr, FALSE, kMutex));
    const MessageCounter frame(kFrameClass, kFrameTitle, WM_USER + 102);
    config().bHideMainUIWhenLostFocus = 1;
    ::DestroyWindow(stripWindow());
    EXPECT_EQ(ZelMainSeam::checkMultiInstance(), E_FAIL);
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::_signalFirstInstance): ASSERT( ::IsWindow(hWndQRDMainDlg) )"));
}

TEST_F(InstanceTest, SecondOneEndsWhileTheFirstIsStillStarting) {
    const common::UniqueHandle first(::CreateMutexW(nullptr, FALSE, kMutex));
    EXPECT_EQ(ZelMainSeam::checkMultiInstance(), E_FAIL);
    EXPECT_TRUE(logged(L"[INF] (CZelMainApp::checkMultiInstance): Mutex already exists."));
    EXPECT_TRUE(logged(L"[INF] (CZelMainApp::checkMultiInstance): Mutex really exists."));
    EXPECT_FALSE(ZelMainSeam::mutex());
}

TEST_F(InstanceTest, SecondOneTakesOverFromAFirstThatEndsMeanwhile) {
    common::UniqueHandle first(::CreateMutexW(nullptr, FALSE, kMutex));
    const common::UniqueHandle ending(::CreateThread(
        nullptr, 0,
        [](void* mutex) -> DWORD {
            ::Sleep(50);
            ::CloseHandle(mutex);
            return 0;
        },
        first.release(), 0, nullptr));
    EXPECT_EQ(ZelMainSeam::checkMultiInstance(), S_OK);
    EXPECT_TRUE(logged(L"[INF] (CZelMainApp::checkMultiInstance): Mutex already exists."));
    EXPECT_FALSE(logged(L"[INF] (CZelMainApp::checkMultiInstance): Mutex really exists."));
    EXPECT_TRUE(ZelMainSeam::mutex());
    ::WaitForSingleObject(ending.get(), INFINITE);
}

TEST_F(InstanceTest, NameTakenBySomethingElseIsAnError) {
    const common::UniqueHandle other(::CreateEventW(nullptr, FALSE, FALSE, kMutex));
    EXPECT_EQ(ZelMainSeam::checkMultiInstance(), E_POINTER);
    EXPECT_TRUE(logged(L"[ERR] (CZelMainApp::checkMultiInstance): Error Code: 0x80004003"));
}

}  // namespace
