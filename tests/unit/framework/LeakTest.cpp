// After thousands of windows, the framework has returned everything to the system. The system's own counters of user
// objects are unreliable, so the numbers of fresh handles are watched: the low word of a window's handle is its
// position in the table shared by hooks, menus and windows, and it does not change if nothing leaks.
#include <algorithm>
#include <vector>

#include "Support.h"
#include "TemplateIds.h"

// After the header that defines its types.
#include <psapi.h>

namespace {

constexpr int kCycles = 3000;

// The highest table position among a few fresh windows.
int freshHandlePlace() {
    constexpr int kProbes = 8;
    HWND probes[kProbes] = {};
    int highest = 0;
    for (HWND& probe : probes) {
        probe = ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
        highest = std::max(highest, static_cast<int>(LOWORD(reinterpret_cast<ULONG_PTR>(probe))));
    }
    for (const HWND probe : probes) {
        ::DestroyWindow(probe);
    }
    return highest;
}

SIZE_T privateBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof(counters);
    ::K32GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof(counters));
    return counters.PagefileUsage;
}

LRESULT CALLBACK idleHook(int code, WPARAM wParam, LPARAM lParam) {
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

struct Growth {
    int places;    // of the handle table
    SIZE_T bytes;  // of private memory
};

// The growth caused by a number of cycles, after some warm-up.
Growth growth(const std::function<void()>& cycle, int cycles) {
    for (int i = 0; i < 50; ++i) {
        cycle();
    }
    const int place = freshHandlePlace();
    const SIZE_T memory = privateBytes();
    for (int i = 0; i < cycles; ++i) {
        cycle();
    }
    const SIZE_T after = privateBytes();
    return {freshHandlePlace() - place, after > memory ? after - memory : 0};
}

void expectNoLeak(const std::function<void()>& cycle) {
    const Growth grown = growth(cycle, kCycles);
    EXPECT_LE(grown.places, 32);
    EXPECT_LE(grown.bytes, 1024U * 1024U);
}

}  // namespace

TEST(Leak, TheWatchNoticesLeakedHooksAndWindows) {
    const int before = freshHandlePlace();
    std::vector<HHOOK> hooks;
    for (int i = 0; i < 100; ++i) {
        hooks.push_back(::SetWindowsHookExW(WH_CBT, &idleHook, nullptr, ::GetCurrentThreadId()));
    }
    const int after = freshHandlePlace();
    for (const HHOOK hook : hooks) {
        ::UnhookWindowsHookEx(hook);
    }
    EXPECT_GT(after, before + 32);
}

TEST(Leak, WindowsCreatedAndDestroyed) {
    expectNoLeak([] {
        test::ScriptedWnd window;
        ASSERT_TRUE(test::create(window, HWND_MESSAGE));
        window.DestroyWindow();
    });
}

TEST(Leak, WindowsEndedByTheirObject) {
    expectNoLeak([] {
        test::ScriptedWnd window;
        ASSERT_TRUE(test::create(window, HWND_MESSAGE));
    });
}

TEST(Leak, CreationsThatFail) {
    expectNoLeak([] {
        test::ScriptedWnd window;
        window.on(WM_CREATE, [](test::ScriptedWnd&) { return LRESULT{-1}; });
        EXPECT_FALSE(test::create(window, HWND_MESSAGE));
        EXPECT_FALSE(window.CreateEx(0, L"FrameworkTestNoSuchClass", L"", 0, test::kPlace, nullptr, nullptr));
    });
}

TEST(Leak, ObjectsDeletedInTheirOwnHandlers) {
    expectNoLeak([] {
        auto* window = new test::ScriptedWnd;
        ASSERT_TRUE(test::create(*window, HWND_MESSAGE));
        window->on(WM_USER, [](test::ScriptedWnd& self) {
            delete &self;
            return LRESULT{0};
        });
        ::SendMessageW(window->m_hWnd, WM_USER, 0, 0);
    });
}

TEST(Leak, DialogsCostNoMoreThanThoseOfTheBareSystem) {
    constexpr int kDialogs = 300;
    const Growth bare = growth(
        [] {
            ::DestroyWindow(::CreateDialogParamW(
                ::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDD_PLAIN), nullptr,
                [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0));
        },
        kDialogs);
    const Growth ours = growth(
        [] {
            CDialog dialog(IDD_PLAIN);
            ASSERT_TRUE(dialog.Create(nullptr));
        },
        kDialogs);
    EXPECT_LE(ours.places, bare.places + 32);
    EXPECT_LE(ours.bytes, bare.bytes + bare.bytes / 4 + 512 * 1024);
}
