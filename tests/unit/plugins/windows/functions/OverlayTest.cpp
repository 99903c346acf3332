#include "functions/Overlay.h"

#include <gtest/gtest.h>

#include <wtsapi32.h>

#include <atomic>
#include <set>

#include "common/Handle.h"
#include "plugins/windows/Waiting.h"
#include "support/FailingAllocation.h"
#include "system/OverlayShare.h"
#include "system/fake/FakeOverlay.h"

namespace win {
namespace {

constexpr WORD kJ = 0x24;
constexpr WORD kI = 0x17;
constexpr WORD kA = 0x1E;

bool nothingHeld(WORD) {
    return false;
}

COverlayKeys numberPad() {
    return COverlayKeys(OverlayKind::Numeric, &nothingHeld);
}

// What a program sees of an answer: the substituted virtual key, 0 if there is none.
WORD sentKey(const COverlayKeys::Answer& answer) {
    return answer.output ? answer.output->wVirtualKey : WORD{0};
}

TEST(OverlayKeys, NumberPadTurnsJIntoOneAndItsUpIntoTheUp) {
    COverlayKeys keys = numberPad();
    const auto down = keys.handle({kJ, false}, false, false);
    EXPECT_TRUE(down.bSwallow);
    ASSERT_TRUE(down.output);
    EXPECT_EQ(down.output->wVirtualKey, VK_NUMPAD1);
    EXPECT_EQ(down.output->key.wScan, 0x4F);
    EXPECT_FALSE(down.output->bUp);
    const auto up = keys.handle({kJ, false}, true, false);
    EXPECT_TRUE(up.bSwallow);
    ASSERT_TRUE(up.output);
    EXPECT_TRUE(up.output->bUp);
    EXPECT_FALSE(keys.drains());
}

TEST(OverlayKeys, CursorKeysTurnIIntoUp) {
    COverlayKeys keys(OverlayKind::Cursor, &nothingHeld);
    const auto down = keys.handle({kI, false}, false, false);
    ASSERT_TRUE(down.output);
    EXPECT_EQ(down.output->wVirtualKey, VK_UP);
    EXPECT_TRUE(down.output->key.bExtended);
}

TEST(OverlayKeys, EachKeyHasOneMeaningAndEachMeaningOneKey) {
    for (const OverlayKind kind : {OverlayKind::Cursor, OverlayKind::Numeric}) {
        std::set<WORD> keys;
        std::set<WORD> meanings;
        for (const OverlayRow& row : overlayRows(kind)) {
            EXPECT_TRUE(keys.insert(row.wScan).second) << row.wScan;
            EXPECT_TRUE(meanings.insert(row.wVirtualKey).second) << row.wVirtualKey;
        }
    }
    EXPECT_EQ(overlayRows(OverlayKind::None).size(), 0U);
}

TEST(OverlayKeys, OtherKeysPass) {
    COverlayKeys keys = numberPad();
    const auto answer = keys.handle({kA, false}, false, false);
    EXPECT_FALSE(answer.bSwallow);
    EXPECT_FALSE(answer.output);
    // The slash of the number pad has the scan code of the ordinary one, with the prefix.
    EXPECT_FALSE(keys.handle({0x35, true}, false, false).bSwallow);
    EXPECT_TRUE(keys.handle({0x35, false}, false, false).bSwallow);
}

TEST(OverlayKeys, RepeatsOfAHeldKeyAreRepeatsOfItsSubstitute) {
    COverlayKeys keys = numberPad();
    for (int i = 0; i < 3; ++i) {
        const auto down = keys.handle({kJ, false}, false, false);
        EXPECT_EQ(sentKey(down), VK_NUMPAD1);
        EXPECT_FALSE(down.output->bUp);
    }
}

TEST(OverlayKeys, WithAModifierAKeyIsACommandAndStaysOneUntilItIsUp) {
    COverlayKeys keys = numberPad();
    EXPECT_FALSE(keys.handle({kJ, false}, false, true).bSwallow);
    EXPECT_FALSE(keys.handle({kJ, false}, false, false).bSwallow) << "the repeat after the modifier is up";
    EXPECT_FALSE(keys.handle({kJ, false}, true, false).bSwallow);
    EXPECT_TRUE(keys.handle({kJ, false}, false, false).bSwallow);
    EXPECT_EQ(sentKey(keys.handle({kJ, false}, true, true)), VK_NUMPAD1) << "a swallowed down has its up";
}

TEST(OverlayKeys, AKeyThatWasDownBeforeKeepsItsMeaningUntilItIsUp) {
    COverlayKeys keys(OverlayKind::Numeric, [](WORD wScan) { return wScan == kJ; });
    EXPECT_FALSE(keys.handle({kJ, false}, false, false).bSwallow);
    EXPECT_TRUE(keys.handle({kI, false}, false, false).bSwallow);
    EXPECT_FALSE(keys.handle({kJ, false}, true, false).bSwallow);
    EXPECT_TRUE(keys.handle({kJ, false}, false, false).bSwallow);
}

// The hook calls it, and no exception may leave a hook.
TEST(OverlayKeys, NeitherAKeyNorTheEndNeedsMemory) {
    COverlayKeys keys = numberPad();
    const support::FailingAllocation failing(1, support::FailingAllocation::Extent::FromThereOn);
    (void)keys.handle({kJ, false}, false, false);
    EXPECT_EQ(keys.end().size(), 1U);
    EXPECT_FALSE(support::FailingAllocation::happened());
}

TEST(OverlayKeys, TheEndLiftsWhatIsHeldAndSwallowsItsOwnUpLater) {
    COverlayKeys keys = numberPad();
    (void)keys.handle({kJ, false}, false, false);
    (void)keys.handle({kI, false}, false, false);
    (void)keys.handle({kI, false}, true, false);
    EXPECT_TRUE(keys.holds());
    const auto ups = keys.end();
    EXPECT_FALSE(keys.holds());
    ASSERT_EQ(ups.size(), 1U);
    EXPECT_EQ(ups[0].wVirtualKey, VK_NUMPAD1);
    EXPECT_TRUE(ups[0].bUp);
    EXPECT_TRUE(keys.drains());
    EXPECT_TRUE(keys.end().empty()) << "once";

    const auto repeat = keys.handle({kJ, false}, false, false);
    EXPECT_TRUE(repeat.bSwallow);
    EXPECT_FALSE(repeat.output) << "a repeat types nothing any more";
    EXPECT_FALSE(keys.handle({kI, false}, false, false).bSwallow) << "other keys are themselves again";
    const auto up = keys.handle({kJ, false}, true, false);
    EXPECT_TRUE(up.bSwallow);
    EXPECT_FALSE(up.output);
    EXPECT_FALSE(keys.drains());
    EXPECT_FALSE(keys.handle({kJ, false}, false, false).bSwallow);
}

// Whatever is pressed and released, in whatever order, while overlays end: every down that was sent has one up.
TEST(OverlayKeys, EveryDownThatIsSentHasItsUp) {
    unsigned seed = 1;
    const auto next = [&seed](unsigned below) { return (seed = seed * 1103515245U + 12345U) / 65536U % below; };
    for (int round = 0; round < 500; ++round) {
        COverlayKeys keys(next(2) == 0 ? OverlayKind::Cursor : OverlayKind::Numeric, &nothingHeld);
        std::multiset<WORD> down;
        std::set<WORD> held;
        const auto count = [&down](const std::optional<COverlayKeys::Output>& output) {
            if (output && output->bUp) {
                EXPECT_GT(down.count(output->wVirtualKey), 0U);
                down.erase(output->wVirtualKey);
            } else if (output) {
                down.insert(output->wVirtualKey);
            }
        };
        for (int step = 0; step < 60; ++step) {
            const auto scan = static_cast<WORD>(0x16 + next(0x20));
            const bool bUp = held.count(scan) != 0 && next(2) == 0;
            count(keys.handle({scan, false}, bUp, next(5) == 0).output);
            if (bUp) {
                held.erase(scan);
            } else {
                held.insert(scan);
            }
            if (next(40) == 0) {
                for (const auto& up : keys.end()) {
                    count(up);
                }
                EXPECT_TRUE(down.empty());
            }
        }
        for (const WORD scan : held) {
            count(keys.handle({scan, false}, true, false).output);
        }
        EXPECT_TRUE(down.empty());
        EXPECT_FALSE(keys.drains());
    }
}

class Overlays : public testing::Test {
 protected:
    std::shared_ptr<OverlayRoom> m_pRoom = std::make_shared<OverlayRoom>();
    COverlay m_cursor{std::make_unique<CFakeOverlay>(OverlayKind::Cursor, m_pRoom)};
    COverlay m_numeric{std::make_unique<CFakeOverlay>(OverlayKind::Numeric, m_pRoom)};
};

TEST_F(Overlays, AreAlwaysOffered) {
    EXPECT_EQ(m_cursor.initialize(), L"");
    EXPECT_EQ(m_cursor.items(), FENWYN_TWO_ITEMS);
    EXPECT_EQ(m_cursor.currentItem(), 1);
}

TEST_F(Overlays, OneGoesOffWhenTheOtherComesOn) {
    EXPECT_TRUE(m_cursor.select(0));
    EXPECT_EQ(m_cursor.currentItem(), 0);
    EXPECT_TRUE(m_numeric.select(0));
    EXPECT_EQ(m_cursor.currentItem(), 1);
    EXPECT_EQ(m_numeric.currentItem(), 0);
    EXPECT_TRUE(m_cursor.select(1)) << "off already";
    EXPECT_EQ(m_numeric.currentItem(), 0);
}

TEST_F(Overlays, TellOfFailureAndOfItemsThatThereAreNot) {
    EXPECT_FALSE(m_cursor.select(2));
    m_pRoom->bRefuses = true;
    EXPECT_FALSE(m_cursor.select(0));
}

// From here on the real implementation: hook, thread and shared memory. Keys themselves need a keyboard: see the
// end-to-end tests.
TEST(OverlayShare, IsOneForAll) {
    COverlayShare one;
    COverlayShare other;
    ASSERT_TRUE(one.valid());
    EXPECT_EQ(other.current(), OverlayKind::None);
    one.take(OverlayKind::Cursor);
    EXPECT_EQ(other.current(), OverlayKind::Cursor);
    EXPECT_TRUE(other.mine(OverlayKind::Cursor)) << "of the same process";
    other.end(OverlayKind::Numeric);
    EXPECT_EQ(one.current(), OverlayKind::Cursor) << "the other one is not on";
    other.end(OverlayKind::Cursor);
    EXPECT_EQ(one.current(), OverlayKind::None);
    EXPECT_EQ(::WaitForSingleObject(one.changed(OverlayKind::Cursor), 0), WAIT_OBJECT_0) << "the holder was told";
}

HWND overlayWindow() {
    for (HWND hWnd = nullptr; (hWnd = ::FindWindowExW(nullptr, hWnd, L"FenwynOverlayWnd", nullptr)) != nullptr;) {
        DWORD process = 0;
        ::GetWindowThreadProcessId(hWnd, &process);
        if (process == ::GetCurrentProcessId()) {
            return hWnd;
        }
    }
    return nullptr;
}

// Waits until there is a window, or none.
bool windowSoon(bool bThere) {
    for (const ULONGLONG end = ::GetTickCount64() + 10000; ::GetTickCount64() < end; ::Sleep(5)) {
        if ((overlayWindow() != nullptr) == bThere) {
            return true;
        }
    }
    return false;
}

// Each test waits for the window of what it switched on, so that no thread of it is left for the next.
class RealOverlay : public testing::Test {
 protected:
    void TearDown() override {
        m_pCursor.reset();
        m_pNumeric.reset();
        EXPECT_TRUE(windowSoon(false));
    }

    std::unique_ptr<IOverlay> m_pCursor = makeKeyboardOverlay(OverlayKind::Cursor);
    std::unique_ptr<IOverlay> m_pNumeric = makeKeyboardOverlay(OverlayKind::Numeric);
};

TEST_F(RealOverlay, ComesAndGoesWithItsHook) {
    EXPECT_FALSE(m_pCursor->isOn());
    ASSERT_TRUE(m_pCursor->turn(true));
    EXPECT_TRUE(m_pCursor->isOn());
    EXPECT_TRUE(windowSoon(true));
    EXPECT_TRUE(m_pCursor->turn(false));
    EXPECT_FALSE(m_pCursor->isOn());
    EXPECT_TRUE(windowSoon(false));
    ASSERT_TRUE(m_pCursor->turn(true)) << "again";
    EXPECT_TRUE(m_pCursor->isOn());
    EXPECT_TRUE(windowSoon(true));
}

TEST_F(RealOverlay, GoesOffAtLockAndLogOff) {
    struct Leaving {
        UINT message;
        WPARAM wParam;
    };
    for (const Leaving leaving : {Leaving{WM_WTSSESSION_CHANGE, WTS_SESSION_LOCK}, Leaving{WM_ENDSESSION, TRUE}}) {
        ASSERT_TRUE(m_pCursor->turn(true));
        ASSERT_TRUE(windowSoon(true));
        ::SendMessageW(overlayWindow(), WM_WTSSESSION_CHANGE, WTS_SESSION_UNLOCK, 0);
        ::SendMessageW(overlayWindow(), WM_ENDSESSION, FALSE, 0);
        EXPECT_TRUE(m_pCursor->isOn()) << "the session goes on";
        ::SendMessageW(overlayWindow(), leaving.message, leaving.wParam, 0);
        EXPECT_FALSE(m_pCursor->isOn());
        EXPECT_TRUE(windowSoon(false));
    }
}

// In place of the overlay window's procedure: keeps its thread until the test lets it go on.
const common::UniqueHandle& goOn() {
    static const common::UniqueHandle hGoOn(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    return hGoOn;
}

std::atomic<bool> g_bHangs = false;

LRESULT CALLBACK hang(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) noexcept {
    if (uMessage == WM_APP) {
        g_bHangs = true;
        ::WaitForSingleObject(goOn().get(), 10000);
    }
    return ::DefWindowProcW(hWnd, uMessage, wParam, lParam);
}

// Keeps the thread of the overlay that is on until the event is set. Its window.
HWND hangOverlay() {
    ::ResetEvent(goOn().get());
    EXPECT_TRUE(windowSoon(true));
    const HWND hWnd = overlayWindow();
    ::SetWindowLongPtrW(hWnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&hang));
    g_bHangs = false;
    ::PostMessageW(hWnd, WM_APP, 0, 0);
    EXPECT_TRUE(soon([] { return g_bHangs.load(); }));
    return hWnd;
}

// The caller is Fenwyn's user-interface thread.
TEST_F(RealOverlay, NobodyWaitsForAThreadThatHangsAtTheEnd) {
    ASSERT_TRUE(m_pCursor->turn(true));
    static_cast<void>(hangOverlay());
    const ULONGLONG ullStart = ::GetTickCount64();
    m_pCursor.reset();
    EXPECT_LT(::GetTickCount64() - ullStart, 250U) << "25 ms, on a busy machine";
    EXPECT_EQ(COverlayShare().current(), OverlayKind::None);
    ::SetEvent(goOn().get());
    EXPECT_TRUE(windowSoon(false));
}

TEST_F(RealOverlay, NobodyWaitsForTheThreadOfAnEarlierOverlay) {
    ASSERT_TRUE(m_pCursor->turn(true));
    const HWND hFirst = hangOverlay();
    EXPECT_TRUE(m_pCursor->turn(false));
    const ULONGLONG ullStart = ::GetTickCount64();
    EXPECT_TRUE(m_pCursor->turn(true));
    EXPECT_LT(::GetTickCount64() - ullStart, 250U) << "25 ms, on a busy machine";
    EXPECT_TRUE(m_pCursor->isOn());
    ::SetEvent(goOn().get());
    EXPECT_TRUE(soon([&] { return overlayWindow() != nullptr && overlayWindow() != hFirst; })) << "and its hook comes";
    EXPECT_TRUE(m_pCursor->isOn());
}

// Two hooks would share what the hook's callback uses. A card must not say "on" where there is none.
TEST_F(RealOverlay, AnOverlayWhoseEarlierThreadNeverEndsGoesOffAgain) {
    ASSERT_TRUE(m_pCursor->turn(true));
    const HWND hFirst = hangOverlay();
    EXPECT_TRUE(m_pCursor->turn(false));
    EXPECT_TRUE(m_pCursor->turn(true));
    EXPECT_TRUE(soon([&] { return !m_pCursor->isOn(); }));
    EXPECT_EQ(overlayWindow(), hFirst);
    ::SetEvent(goOn().get());
}

TEST_F(RealOverlay, GoesOffWithItsLibrary) {
    ASSERT_TRUE(m_pCursor->turn(true));
    ASSERT_TRUE(windowSoon(true));
    const ULONGLONG start = ::GetTickCount64();
    m_pCursor.reset();
    EXPECT_LT(::GetTickCount64() - start, 1000U);
    EXPECT_EQ(COverlayShare().current(), OverlayKind::None);
    EXPECT_TRUE(windowSoon(false));
}

}  // namespace
}  // namespace win
