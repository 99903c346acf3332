// A thousand system events in random order mixed with keys: nothing crashes, nothing leaks, and everything is in its
// place in the end.
#include <windows.h>

#include <wtsapi32.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iostream>
#include <random>
#include <thread>

#include "AppFixture.h"
#include "Data/RegistryPaths.h"
#include "Logic/HbqNotify.h"
#include "support/ResourceCounters.h"

namespace {

using namespace apptest;

// The same as the fixture of the other tests, but without the log: a storm's would be long.
class StormTest : public testing::Test {
 protected:
    static constexpr RECT kFinalArea{0, 0, 1280, 760};
    static constexpr int kBurst = 8;  // messages pending at the same time

    StormTest() : m_random(seed()) {
        std::cout << "seed " << seed() << '\n';
        system_double::reset();
        EXPECT_TRUE(m_registry.redirected());
        ZelMainSeam::stripWnd() = m_room.stripWindow();
        EXPECT_EQ(ZelMainSeam::createFrame(), S_OK);
        m_hFrame = ZelMainSeam::frame()->m_hWnd;
        writeSettings(0, false);
        for (const auto& [name, code] : kFunctions) {
            const std::wstring key = std::wstring(regpath::kHotkeyKey) + L"\\" + name;
            support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, key, regpath::kCode, code);
            support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, key, regpath::kFuncDll, m_plugin.path());
        }
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, regpath::kHotkeyKey, regpath::kFuncList,
                                       L"Mute;Lock;Sleep;");
        support::RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, regpath::kButtonsKey);
        support::RegistryRoom::makeKey(HKEY_LOCAL_MACHINE, regpath::kUserSettingKey);
    }
    ~StormTest() override {
        ZelMainSeam::stripWnd() = nullptr;
        ZelMainSeam::frame()->DestroyWindow();
        ZelMainSeam::frame().reset();
        pump();
    }

    static unsigned seed() {
        static const unsigned value = [] {
            char text[16] = {};
            ::GetEnvironmentVariableA("FENWYN_TEST_SEED", text, sizeof(text));
            return text[0] != '\0' ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : std::random_device{}();
        }();
        return value;
    }

    void storm(int messages, const std::function<void(int)>& meanwhile = {}) {
        // At most one key per burst, because more keys would outrun the windows.
        const common::UniqueHandle turns(::CreateSemaphoreW(nullptr, 0, messages, nullptr));
        std::thread keys([&turns, messages, keySeed = m_random()] { pressKeys(keySeed, messages / kBurst, turns); });
        for (int i = 0; i < messages; ++i) {
            raiseOne();
            if (i % kBurst == 0) {
                ::ReleaseSemaphore(turns.get(), 1, nullptr);
                pump();
            }
            if (meanwhile) {
                meanwhile(i);
            }
        }
        keys.join();
        settle();
    }

    // The final state of all storms: cards rebuilt, everything hidden but the hover strip.
    void settle() {
        pump();
        ZelMainSeam::mouseOperating() = FALSE;
        writeSettings(0, false);
        customise(false);
        system_double::state().workArea = kFinalArea;
        for (const UINT message : {kMsgReloadConfig, UINT{WM_SETTINGCHANGE}}) {
            ::SendMessageW(m_hFrame, message, message == WM_SETTINGCHANGE ? SPI_SETWORKAREA : 0, 0);
        }
        ::SendMessageW(m_hFrame, hbqNotifyMessage(), 0, 0);
        // Both strips have a picture then, whatever was painted last.
        EXPECT_EQ(theApp.showMainDlg(TRUE, TRUE), S_OK);
        ::UpdateWindow(m_room.stripWindow());
        ::SendMessageW(m_hFrame, kMsgHideStrip, 1, 0);
        ::UpdateWindow(m_room.hoverWindow());
        ::KillTimer(m_hFrame, 100);
        pump();
    }

    // The smallest growth of the process in one round of the storm. The system itself allocates a few objects at times,
    // for the largest number of windows painted at once; a leak grows in every round.
    struct Growth {
        std::ptrdiff_t gdi = PTRDIFF_MAX;
        std::ptrdiff_t handles = PTRDIFF_MAX;
        std::ptrdiff_t windows = PTRDIFF_MAX;
    };
    Growth leastGrowth(int rounds, int messages, const std::function<void(int)>& meanwhile = {}) {
        Growth least;
        for (int round = 0; round < rounds; ++round) {
            const Growth before = counts();
            storm(messages, meanwhile);
            const Growth after = counts();
            least.gdi = std::min(least.gdi, after.gdi - before.gdi);
            least.handles = std::min(least.handles, after.handles - before.handles);
            least.windows = std::min(least.windows, after.windows - before.windows);
        }
        return least;
    }
    static Growth counts() {
        const std::size_t gdi = testsupport::gdiHandles();
        const std::size_t handles = testsupport::kernelHandles();
        EXPECT_GT(gdi, 0U) << "the counter does not work here";
        EXPECT_GT(handles, 0U) << "the counter does not work here";
        return {static_cast<std::ptrdiff_t>(gdi), static_cast<std::ptrdiff_t>(handles),
                static_cast<std::ptrdiff_t>(support::threadWindows())};
    }

    support::RegistryRoom m_registry;
    instr::InstrumentedPlugin m_plugin;
    support::AppRoom m_room;
    HWND m_hFrame = nullptr;

 private:
    static constexpr std::pair<const wchar_t*, DWORD> kFunctions[] = {
        {L"Mute", kMuteKey}, {L"Lock", kLockKey}, {L"Sleep", kSleepKey}};

    unsigned pick(unsigned below) { return m_random() % below; }

    static void writeSettings(DWORD position, bool showAtLaunch) {
        const auto set = [](const wchar_t* name, DWORD value) {
            support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, regpath::kConfigKey, name, value);
        };
        set(L"Position", position);
        set(L"ShowQrdAtLaunch", showAtLaunch ? 1 : 0);
        set(L"Programmable", 1);
        set(L"EnableHover", 1);
        set(L"AutoHide", 1);
        set(L"AutoHideDelayTime", 5);
        set(L"Topmost", position);
    }

    // Assigns one key to a program that does not exist, or removes the assignment.
    static void customise(bool on) {
        const std::wstring button = std::wstring(regpath::kButtonsKey) + L"\\One";
        if (!on) {
            support::RegistryRoom::removeKey(HKEY_LOCAL_MACHINE, button);
            return;
        }
        const std::wstring user = std::wstring(regpath::kUserSettingKey) + L"\\1";
        support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kIsQrdControl, 1);
        support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kMakeFunction, 1);
        support::RegistryRoom::setDword(HKEY_LOCAL_MACHINE, button, regpath::kMakeValue, kLockKey);
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, user, regpath::kOption1, L"C:\\no\\such.exe");
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, user, regpath::kOption2, L"");
    }

    void raiseOne() {
        static constexpr WPARAM kSessionChanges[] = {WTS_CONSOLE_CONNECT, WTS_CONSOLE_DISCONNECT, WTS_SESSION_UNLOCK,
                                                     7};
        const LONG width = 400 + static_cast<LONG>(pick(800));
        switch (pick(8)) {
            case 0:
                system_double::state().workArea = RECT{0, 0, width, 700};
                return post(WM_DISPLAYCHANGE);
            case 1:
                system_double::state().workArea = RECT{1280 - width, 20, 1280, 780};
                return post(WM_SETTINGCHANGE, SPI_SETWORKAREA);
            case 2:
                writeSettings(pick(2), pick(2) != 0);
                return HotkeyEventSeam::config(8);
            case 3:
                return post(WM_WTSSESSION_CHANGE, kSessionChanges[pick(4)]);
            case 4:
                customise(pick(2) != 0);
                return post(hbqNotifyMessage());
            case 5:
                return post(kMsgSecondInstance);
            case 6:
                return post(WM_POWERBROADCAST, PBT_APMRESUMESUSPEND);
            default:
                return moveMouse();
        }
    }
    void post(UINT message, WPARAM wParam = 0) const { ::PostMessageW(m_hFrame, message, wParam, 0); }
    void moveMouse() {
        const HWND target = pick(2) != 0 ? m_room.stripWindow() : m_room.hoverWindow();
        static constexpr UINT kMouse[] = {WM_MOUSEMOVE, WM_MOUSELEAVE, WM_LBUTTONDOWN};
        const auto x = static_cast<int>(pick(300));
        ::PostMessageW(target, kMouse[pick(3)], 0, MAKELPARAM(x, pick(60)));
    }

    static void pressKeys(unsigned keySeed, int count, const common::UniqueHandle& turns) {
        static constexpr DWORD kCodes[] = {kModifier, kMuteKey, kLockKey, kSleepKey, 0x57};
        std::minstd_rand random(keySeed);
        for (int i = 0; i < count; ++i) {
            ::WaitForSingleObject(turns.get(), INFINITE);
            HotkeyEventSeam::hotkey(kCodes[random() % 5], random() % 2);
        }
        HotkeyEventSeam::hotkey(kModifier, 1);
    }

    std::mt19937 m_random;
};

TEST_F(StormTest, LeavesNothingBehindAndEverythingInPlace) {
    storm(40);  // what is created at first use exists now
    const Growth growth = leastGrowth(4, 250);
    EXPECT_LE(growth.gdi, 0);
    EXPECT_LE(growth.handles, 0);
    EXPECT_LE(growth.windows, 0);

    ASSERT_EQ(m_room.strip().cardCount(), 3);
    const double ratio = geometry::imageRatio(kFinalArea.right, 3, 1.0).ratio;
    EXPECT_EQ(theApp.getPngRatio(), ratio);
    EXPECT_EQ(windowRect(m_room.stripWindow()), geometry::cardStrip(kFinalArea, 3, ratio, false).place);
    EXPECT_EQ(windowRect(m_room.hoverWindow()), geometry::hoverStrip(kFinalArea, 3, ratio, false).place);
    EXPECT_FALSE(shown(m_room.stripWindow()));
    EXPECT_TRUE(shown(m_room.hoverWindow()));
}

TEST_F(StormTest, CountersSeeALeak) {
    storm(40);
    std::vector<common::UniqueBitmap> bitmaps;
    std::vector<common::UniqueHandle> events;
    const Growth growth = leastGrowth(4, 40, [&](int i) {
        if (i == 0) {
            bitmaps.emplace_back(::CreateBitmap(1, 1, 1, 32, nullptr));
            events.emplace_back(::CreateEventW(nullptr, FALSE, FALSE, nullptr));
        }
    });
    EXPECT_GE(growth.gdi, 1);
    EXPECT_GE(growth.handles, 1);
}

}  // namespace
