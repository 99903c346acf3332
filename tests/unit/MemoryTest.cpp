// Out of memory at every single allocation of a start, of a key press and of system messages: no exception leaves the
// program's borders (it would end this test program), nothing leaks, and the next attempt works.
#include "AppFixture.h"
#include "support/FailingAllocation.h"

namespace {

using namespace apptest;
using support::AllocationsSucceed;
using support::FailingAllocation;
using Extent = support::FailingAllocation::Extent;

class OutOfMemory : public StartTest, public testing::WithParamInterface<Extent> {
 protected:
    // Start, an empty message loop, and the end, through the program's own border.
    void wholeLife() const {
        {
            const AllocationsSucceed mine;
            CZelConfig::getQrdConfig() = QrdConfig();
            ::PostQuitMessage(0);
        }
        theApp.Main(::GetModuleHandleW(nullptr), L"");
    }
    void expectNothingLeft() {
        pump();
        EXPECT_EQ(ZelMainSeam::strip(), nullptr);
        EXPECT_EQ(ZelMainSeam::hoverStrip(), nullptr);
        EXPECT_FALSE(ZelMainSeam::pngDll());
        EXPECT_FALSE(ZelMainSeam::mutex());
        EXPECT_EQ(theApp.m_pMainWnd.load(), nullptr);
        EXPECT_EQ(support::threadWindows(), m_windows);
        EXPECT_FALSE(m_plugin.heldByOthers());
    }
    // Sends one message to a window while an allocation fails; then, with memory, runs `after`.
    template <typename After>
    long send(HWND window, UINT message, WPARAM wParam, LPARAM lParam, After after) {
        return support::forEachFailure(
            GetParam(), [&] { ::SendMessageW(window, message, wParam, lParam); },
            [&] {
                pump();
                after();
            });
    }
};

TEST_P(OutOfMemory, AStartFailsInGoodOrder) {
    int started = 0;
    const long failures = support::forEachFailure(
        GetParam(), [&] { wholeLife(); },
        [&] {
            started += logged(L"[TRC] (CZelMainApp::showMainDlg): ENTER CZelMainApp::showMainDlg") ? 1 : 0;
            expectNothingLeft();
            ::UnregisterClassW(kStripClass, ::GetModuleHandleW(nullptr));
            m_log.clear();
        });
    EXPECT_GT(failures, 20);
    EXPECT_GE(started, 1) << "with memory";
}

TEST_P(OutOfMemory, AKeyPressCostsNoMoreThanItself) {
    ASSERT_TRUE(start());
    const long failures = send(stripWindow(), kMsgHotkey, kMuteKey, kMake, [] {
        ASSERT_TRUE(::IsWindow(stripWindow()));
        static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
    });
    EXPECT_GT(failures, 10);
    ::SendMessageW(stripWindow(), kMsgHotkey, kMuteKey, kMake);
    const auto& large = BlackCardSeam::largeCard(*MainDlgSeam::cards(*ZelMainSeam::strip())[0]);
    ASSERT_NE(large, nullptr);
    EXPECT_TRUE(shown(large->m_hWnd)) << "with memory again";
}

TEST_P(OutOfMemory, PaintingIsGivenUpAndDoneTheNextTime) {
    ASSERT_TRUE(start(L"/x"));
    ASSERT_TRUE(shown(stripWindow()));
    const long failures = support::forEachFailure(GetParam(), [] {
        ::InvalidateRect(stripWindow(), nullptr, FALSE);
        ::UpdateWindow(stripWindow());
    });
    EXPECT_GT(failures, 10);
    EXPECT_FALSE(::GetUpdateRect(stripWindow(), nullptr, FALSE)) << "no painting without end";
}

TEST_P(OutOfMemory, TheFramesMessagesDoWhatTheyCan) {
    ASSERT_TRUE(start());
    const HWND frame = ZelMainSeam::frame()->m_hWnd;
    for (const UINT message : {kMsgReloadConfig, kMsgSecondInstance, static_cast<UINT>(WM_DISPLAYCHANGE)}) {
        EXPECT_GE(send(frame, message, 0, 0, [frame] { ASSERT_TRUE(::IsWindow(frame)); }), 0) << message;
    }
    EXPECT_TRUE(::IsWindow(stripWindow()));
}

TEST_P(OutOfMemory, CardsThatCannotBeBuiltAnewAreBuiltTheNextTime) {
    setConfig(L"Programmable", 1);
    customise(kSleepKey, L"C:\\x.exe");
    ASSERT_TRUE(start());
    const HWND frame = ZelMainSeam::frame()->m_hWnd;
    const UINT changed = ::RegisterWindowMessageW(L"KESTOVA_HBQ_NOTIFY_5B0C7D2A-3E41-4F8B-9A16-2C7E0D94B1F3");
    const long failures = send(frame, changed, 0, 0, [] { EXPECT_LE(ZelMainSeam::strip()->cardCount(), 2); });
    EXPECT_GT(failures, 10);
    EXPECT_EQ(ZelMainSeam::strip()->cardCount(), 2) << "with memory again";
}

TEST_P(OutOfMemory, TheEndNeedsNone) {
    ASSERT_TRUE(start());
    ASSERT_EQ(ZelMainSeam::strip()->handleHotkey(kMuteKey, kMake), S_OK);
    const FailingAllocation failing(1, Extent::FromThereOn);
    end();
    EXPECT_FALSE(FailingAllocation::happened());
    const AllocationsSucceed mine;
    expectNothingLeft();
}

// Called by other modules, on their threads, without a window procedure around it.
TEST_P(OutOfMemory, CallbacksReturn) {
    ASSERT_TRUE(start());
    const auto reload = [] { CZelConfig::getQrdConfig() = QrdConfig(); };  // the next access reads the registry
    reload();
    EXPECT_GT(support::forEachFailure(
                  GetParam(), [] { HotkeyEventSeam::hotkey(kMuteKey, 0); }, reload),
              0);
    EXPECT_TRUE(logged(L"[ERR] (CHotkeyEventHandler::_hotkeyNotify): Error Code: 0x8007000e"));
    support::forEachFailure(
        GetParam(), [] { HotkeyEventSeam::config(8); }, reload);
    support::forEachFailure(
        GetParam(), [] { ZelMainSeam::hideForPrintScreen(); }, reload);
    pump();
}

INSTANTIATE_TEST_SUITE_P(Extents, OutOfMemory, testing::Values(Extent::Once, Extent::FromThereOn));

}  // namespace
