// Creation and destruction of windows with their objects.
#include <algorithm>
#include <vector>

#include "Support.h"

using test::create;
using test::ScriptedWnd;

namespace {

struct RecordingWnd : CWnd {
    std::vector<UINT> messages;

 protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        messages.push_back(message);
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

bool contains(const std::vector<UINT>& messages, UINT message) {
    return std::find(messages.begin(), messages.end(), message) != messages.end();
}

}  // namespace

TEST(Creation, ObjectHearsTheVeryFirstAndTheVeryLastMessage) {
    RecordingWnd window;
    ASSERT_TRUE(create(window));
    EXPECT_EQ(CWnd::fromHandle(window.m_hWnd), &window);
    EXPECT_TRUE(contains(window.messages, WM_NCCREATE));
    EXPECT_TRUE(contains(window.messages, WM_CREATE));
    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(window.messages.back(), static_cast<UINT>(WM_NCDESTROY));
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_FALSE(window.DestroyWindow());
}

TEST(Creation, HandleIsThereInTheFirstMessage) {
    ScriptedWnd window;
    HWND seen = nullptr;
    window.on(WM_NCCREATE, [&](ScriptedWnd& self) {
        seen = self.m_hWnd;
        return self.passOn();
    });
    ASSERT_TRUE(create(window));
    EXPECT_EQ(seen, window.m_hWnd);
}

TEST(Creation, SecondCreationOfALivingWindowIsRefused) {
    ScriptedWnd window;
    ASSERT_TRUE(create(window));
    const HWND first = window.m_hWnd;
    EXPECT_FALSE(create(window));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(window.m_hWnd, first);
}

TEST(Creation, ObjectCanCreateAgainAfterDestruction) {
    ScriptedWnd window;
    ASSERT_TRUE(create(window));
    window.DestroyWindow();
    EXPECT_TRUE(create(window));
}

TEST(Creation, UnknownClassFailsAndSaysWhy) {
    constexpr const wchar_t* kNoClass = L"FrameworkTestNoSuchClass";
    ::CreateWindowExW(0, kNoClass, L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    const DWORD reason = ::GetLastError();
    ::SetLastError(0);
    ScriptedWnd window;
    EXPECT_FALSE(window.CreateEx(0, kNoClass, L"", WS_POPUP, test::kPlace, nullptr, nullptr));
    EXPECT_EQ(::GetLastError(), reason);
    EXPECT_NE(reason, 0U);
    EXPECT_EQ(window.m_hWnd, nullptr);
    // The next window of the thread, created without the framework, gets no object.
    test::registerClass();
    const HWND other =
        ::CreateWindowExW(0, test::kClassName, L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(CWnd::fromHandle(other), nullptr);
    ::DestroyWindow(other);
}

class RefusedCreation : public testing::TestWithParam<std::pair<UINT, LRESULT>> {};

TEST_P(RefusedCreation, LeavesNothingBehind) {
    const UINT before = test::threadWindows();
    ScriptedWnd window;
    HWND seen = nullptr;
    int destroyed = 0;
    window.on(GetParam().first, [&](ScriptedWnd& self) {
        seen = self.m_hWnd;
        return GetParam().second;
    });
    window.m_fnPostNcDestroy = [&] { ++destroyed; };
    EXPECT_FALSE(create(window));
    EXPECT_NE(seen, nullptr);
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::fromHandle(seen), nullptr);
    EXPECT_EQ(::IsWindow(seen), FALSE);
    EXPECT_LE(destroyed, 1);
    EXPECT_EQ(test::threadWindows(), before);
    window.on(GetParam().first, [](ScriptedWnd& self) { return self.passOn(); });
    EXPECT_TRUE(create(window));
}

INSTANTIATE_TEST_SUITE_P(Messages, RefusedCreation,
                         testing::Values(std::pair<UINT, LRESULT>{WM_NCCREATE, FALSE},
                                         std::pair<UINT, LRESULT>{WM_CREATE, -1}));

TEST(Creation, WindowsMadeInCreationHandlersBelongToTheirOwnObjects) {
    ScriptedWnd outer;
    ScriptedWnd inner;
    ScriptedWnd innermost;
    HWND foreign = nullptr;
    inner.on(WM_NCCREATE, [&](ScriptedWnd& self) {
        EXPECT_TRUE(create(innermost));
        return self.passOn();
    });
    outer.on(WM_CREATE, [&](ScriptedWnd& self) {
        foreign = ::CreateWindowExW(0, L"BUTTON", L"", WS_CHILD, 0, 0, 1, 1, self.m_hWnd, nullptr, nullptr, nullptr);
        EXPECT_TRUE(create(inner, self.m_hWnd));
        return self.passOn();
    });
    ASSERT_TRUE(create(outer));
    EXPECT_EQ(CWnd::fromHandle(foreign), nullptr);
    EXPECT_EQ(CWnd::fromHandle(outer.m_hWnd), &outer);
    EXPECT_EQ(CWnd::fromHandle(inner.m_hWnd), &inner);
    EXPECT_EQ(CWnd::fromHandle(innermost.m_hWnd), &innermost);
}

TEST(Creation, FailedInnerCreationDoesNotTakeTheOuterObjectsPlace) {
    ScriptedWnd outer;
    ScriptedWnd inner;
    HWND foreign = nullptr;
    outer.on(WM_NCCREATE, [&](ScriptedWnd& self) {
        EXPECT_FALSE(inner.CreateEx(0, L"FrameworkTestNoSuchClass", L"", WS_POPUP, test::kPlace, nullptr, nullptr));
        foreign = ::CreateWindowExW(0, L"BUTTON", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
        return self.passOn();
    });
    ASSERT_TRUE(create(outer));
    EXPECT_EQ(CWnd::fromHandle(foreign), nullptr);
    EXPECT_EQ(inner.m_hWnd, nullptr);
    ::DestroyWindow(foreign);
}

TEST(Creation, ObjectWhoseWindowIsGoneAgainIsNotGivenTheNextOne) {
    ScriptedWnd window;
    HWND foreign = nullptr;
    int created = 0;
    window.on(WM_CREATE, [&](ScriptedWnd& self) {
        if (++created > 1) {
            return LRESULT{-1};
        }
        self.DestroyWindow();
        foreign = ::CreateWindowExW(0, L"BUTTON", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
        return LRESULT{-1};
    });
    EXPECT_FALSE(create(window));
    EXPECT_EQ(created, 1);
    EXPECT_NE(foreign, nullptr);
    EXPECT_EQ(CWnd::fromHandle(foreign), nullptr);
    EXPECT_EQ(window.m_hWnd, nullptr);
    ::DestroyWindow(foreign);
}

TEST(Creation, ScopeWaitsWhileAnotherObjectIsCreated) {
    ScriptedWnd waiting;
    ScriptedWnd other;
    const CCreationScope scope(waiting);
    ASSERT_TRUE(create(other));
    const HWND window =
        ::CreateWindowExW(0, test::kClassName, L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    EXPECT_TRUE(scope.confirm(window));
    EXPECT_EQ(CWnd::fromHandle(window), &waiting);
    EXPECT_NE(other.m_hWnd, window);
}

namespace {

LRESULT CALLBACK refuseAll(int code, WPARAM wParam, LPARAM lParam) {
    return code == HCBT_CREATEWND ? 1 : ::CallNextHookEx(nullptr, code, wParam, lParam);
}
// First calls the hooks before it, then refuses.
LRESULT CALLBACK refuseLast(int code, WPARAM wParam, LPARAM lParam) {
    const LRESULT result = ::CallNextHookEx(nullptr, code, wParam, lParam);
    return code == HCBT_CREATEWND ? 1 : result;
}
// Hides the event from the hooks before it.
LRESULT CALLBACK swallow(int code, WPARAM wParam, LPARAM lParam) {
    return code == HCBT_CREATEWND ? 0 : ::CallNextHookEx(nullptr, code, wParam, lParam);
}

HHOOK install(HOOKPROC hook) {
    return ::SetWindowsHookExW(WH_CBT, hook, nullptr, ::GetCurrentThreadId());
}

}  // namespace

TEST(Creation, RefusalByAnEarlierHookLeavesNothingBehind) {
    ScriptedWnd window;
    const HHOOK hook = install(&refuseAll);
    EXPECT_FALSE(create(window));
    ::UnhookWindowsHookEx(hook);
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_TRUE(create(window));
}

class LaterHook : public testing::TestWithParam<HOOKPROC> {};

TEST_P(LaterHook, LeavesNothingBehind) {
    test::registerClass();
    const UINT before = test::threadWindows();
    ScriptedWnd window;
    {
        const CCreationScope scope(window);
        const HHOOK hook = install(GetParam());
        EXPECT_FALSE(scope.confirm(
            ::CreateWindowExW(0, test::kClassName, L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr)));
        ::UnhookWindowsHookEx(hook);
    }
    EXPECT_EQ(window.m_hWnd, nullptr);
    EXPECT_EQ(test::threadWindows(), before);
    EXPECT_TRUE(create(window));
}

INSTANTIATE_TEST_SUITE_P(Hooks, LaterHook, testing::Values(&refuseLast, &swallow));

TEST(Creation, DefaultRectangleLetsTheSystemChoose) {
    test::registerClass();
    CFrameWnd frame;
    ASSERT_TRUE(frame.Create(test::kClassName, L"Title", WS_OVERLAPPEDWINDOW));
    const RECT rect = frame.windowRect();
    EXPECT_GT(rect.right - rect.left, 50);
    EXPECT_GT(rect.bottom - rect.top, 50);
    wchar_t title[16] = {};
    ::GetWindowTextW(frame.m_hWnd, title, 16);
    EXPECT_STREQ(title, L"Title");
}

TEST(Creation, PlaceIsKept) {
    ScriptedWnd window;
    ASSERT_TRUE(create(window));
    const RECT rect = window.windowRect();
    EXPECT_TRUE(::EqualRect(&rect, &test::kPlace));
    const RECT client = window.clientRect();
    EXPECT_EQ(client.right, 200);
    EXPECT_EQ(client.bottom, 100);
}

TEST(Frame, CloseGoesThroughTheVirtualDestroyWindow) {
    struct Frame : CFrameWnd {
        int destroyed = 0;
        bool DestroyWindow() override {
            ++destroyed;
            return CFrameWnd::DestroyWindow();
        }
    } frame;
    test::registerClass();
    ASSERT_TRUE(frame.Create(test::kClassName, L"", WS_OVERLAPPEDWINDOW));
    ::SendMessageW(frame.m_hWnd, WM_CLOSE, 0, 0);
    EXPECT_EQ(frame.destroyed, 1);
    EXPECT_FALSE(frame.isWindow());
}

TEST(Subclass, ObjectHearsTheControlAndPassesOn) {
    ScriptedWnd parent;
    ASSERT_TRUE(create(parent));
    const HWND edit =
        ::CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 50, 20, parent.m_hWnd, nullptr, nullptr, nullptr);
    ScriptedWnd control;
    ASSERT_TRUE(control.SubclassWindow(edit));
    int heard = 0;
    control.on(WM_SETTEXT, [&](ScriptedWnd& self) {
        ++heard;
        return self.passOn();
    });
    ::SetWindowTextW(edit, L"text");
    wchar_t text[16] = {};
    ::GetWindowTextW(edit, text, 16);
    EXPECT_EQ(heard, 1);
    EXPECT_STREQ(text, L"text");
    parent.DestroyWindow();
    EXPECT_EQ(control.m_hWnd, nullptr);
}

TEST(Subclass, ControlOutlivesAnObjectThatDidNotCreateIt) {
    ScriptedWnd parent;
    ASSERT_TRUE(create(parent));
    const HWND edit =
        ::CreateWindowExW(0, L"EDIT", L"", WS_CHILD, 0, 0, 50, 20, parent.m_hWnd, nullptr, nullptr, nullptr);
    {
        ScriptedWnd control;
        ASSERT_TRUE(control.SubclassWindow(edit));
    }
    ASSERT_TRUE(::IsWindow(edit));
    EXPECT_EQ(CWnd::fromHandle(edit), nullptr);
    ::SetWindowTextW(edit, L"still an edit control");
    EXPECT_EQ(::GetWindowTextLengthW(edit), 21);
}

TEST(Subclass, WhatCannotBeBoundIsRefused) {
    ScriptedWnd object;
    EXPECT_FALSE(object.SubclassWindow(nullptr));
    EXPECT_FALSE(object.SubclassWindow(reinterpret_cast<HWND>(static_cast<LONG_PTR>(0x7FFE))));
    EXPECT_FALSE(object.SubclassWindow(::GetDesktopWindow()));  // of another process
    ScriptedWnd window;
    ASSERT_TRUE(create(window));
    EXPECT_FALSE(object.SubclassWindow(window.m_hWnd));  // has an object
    EXPECT_FALSE(window.SubclassWindow(window.m_hWnd));
    EXPECT_EQ(object.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::fromHandle(window.m_hWnd), &window);
}

TEST(Subclass, WindowOfAnotherThreadIsRefused) {
    ScriptedWnd window;
    ASSERT_TRUE(create(window));
    const HWND plain =
        ::CreateWindowExW(0, test::kClassName, L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    std::pair<HWND, bool> question{plain, true};
    const HANDLE thread = ::CreateThread(
        nullptr, 0,
        [](void* argument) -> DWORD {
            auto* asked = static_cast<std::pair<HWND, bool>*>(argument);
            ScriptedWnd foreign;
            asked->second = foreign.SubclassWindow(asked->first);
            return 0;
        },
        &question, 0, nullptr);
    ASSERT_EQ(::WaitForSingleObject(thread, 5000), WAIT_OBJECT_0);
    ::CloseHandle(thread);
    EXPECT_FALSE(question.second);
    ::DestroyWindow(plain);
}

TEST(Handle, UnknownWindowsHaveNoObject) {
    EXPECT_EQ(CWnd::fromHandle(nullptr), nullptr);
    EXPECT_EQ(CWnd::fromHandle(::GetDesktopWindow()), nullptr);
}

TEST(Handle, ObjectsAreThoseOfTheCallingThread) {
    ScriptedWnd window;
    ASSERT_TRUE(create(window));
    CWnd* seen = &window;
    std::pair<HWND, CWnd**> question{window.m_hWnd, &seen};
    const HANDLE thread = ::CreateThread(
        nullptr, 0,
        [](void* argument) -> DWORD {
            auto* asked = static_cast<std::pair<HWND, CWnd**>*>(argument);
            *asked->second = CWnd::fromHandle(asked->first);
            return 0;
        },
        &question, 0, nullptr);
    ASSERT_EQ(::WaitForSingleObject(thread, 5000), WAIT_OBJECT_0);
    ::CloseHandle(thread);
    EXPECT_EQ(seen, nullptr);
}

TEST(Window, ExtendedStyleBitsAreAdded) {
    ScriptedWnd window;
    ASSERT_TRUE(create(window));
    window.addExStyle(WS_EX_TOOLWINDOW);
    window.addExStyle(WS_EX_LAYERED);
    const auto style = ::GetWindowLongPtrW(window.m_hWnd, GWL_EXSTYLE);
    EXPECT_EQ(style & (WS_EX_TOOLWINDOW | WS_EX_LAYERED), WS_EX_TOOLWINDOW | WS_EX_LAYERED);
}

TEST(Window, VisibilityIsThatOfTheWindow) {
    ScriptedWnd window;
    EXPECT_FALSE(window.isVisible());
    ASSERT_TRUE(create(window));
    EXPECT_TRUE(window.isWindow());
    EXPECT_FALSE(window.isVisible());
    ::ShowWindow(window.m_hWnd, SW_SHOWNOACTIVATE);
    EXPECT_TRUE(window.isVisible());
}

namespace {
// Destroyed after main has returned, with an existing window: the exit code of this test program shows whether that
// worked.
CWnd g_outlivesMain;
}  // namespace

TEST(Window, ObjectMayOutliveMain) {
    ASSERT_TRUE(create(g_outlivesMain));
}
