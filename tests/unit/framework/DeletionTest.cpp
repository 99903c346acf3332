// Objects that are deleted during their own messages. Every deleted object fills its memory with garbage, so that a
// framework that uses it afterwards crashes here.
#include "Support.h"

using test::create;
using test::ScriptedWnd;

namespace {

constexpr UINT kOuter = WM_USER + 1;
constexpr UINT kInner = WM_USER + 2;

LRESULT deleteSelf(ScriptedWnd& self) {
    delete &self;
    return 0;
}

class SelfDeletingCtrl : public ScriptedWnd {
 protected:
    [[nodiscard]] const MessageMap& messageMap() const override { return kMap; }
    LRESULT OnClick(NMHDR* /*header*/) {
        delete this;
        return 9;
    }
    static constexpr MessageEntry kEntries[] = {
        onReflectedNotify<&SelfDeletingCtrl::OnClick>(static_cast<UINT>(NM_CLICK)),
    };
    static constexpr MessageMap kMap{nullptr, kEntries};
};

// Neither the object nor the window is left.
void expectGone(HWND window) {
    EXPECT_EQ(ScriptedWnd::s_nAlive, 0);
    EXPECT_EQ(CWnd::fromHandle(window), nullptr);
    EXPECT_EQ(::IsWindow(window), FALSE);
}

}  // namespace

TEST(Deletion, InsideAHandler) {
    auto* window = new ScriptedWnd;
    ASSERT_TRUE(create(*window));
    const HWND handle = window->m_hWnd;
    window->on(kOuter, &deleteSelf);
    ::SendMessageW(handle, kOuter, 0, 0);
    expectGone(handle);
}

TEST(Deletion, InsideANestedMessage) {
    auto* window = new ScriptedWnd;
    ASSERT_TRUE(create(*window));
    const HWND handle = window->m_hWnd;
    window->on(kInner, &deleteSelf);
    window->on(kOuter, [handle](ScriptedWnd&) {
        ::SendMessageW(handle, kInner, 0, 0);
        return LRESULT{11};
    });
    EXPECT_EQ(::SendMessageW(handle, kOuter, 0, 0), 11);
    expectGone(handle);
}

TEST(Deletion, InsideANestedMessageThroughTheWindowClass) {
    // The system's WM_CLOSE destroys the window during the default processing.
    auto* window = new ScriptedWnd;
    window->m_fnPostNcDestroy = [window] { delete window; };
    ASSERT_TRUE(create(*window));
    const HWND handle = window->m_hWnd;
    ::SendMessageW(handle, WM_CLOSE, 0, 0);
    expectGone(handle);
}

class DeletionDuring : public testing::TestWithParam<UINT> {};

TEST_P(DeletionDuring, DestructionHappensOnce) {
    auto* window = new ScriptedWnd;
    ASSERT_TRUE(create(*window));
    const HWND handle = window->m_hWnd;
    int heard = 0;
    window->on(GetParam(), [&heard](ScriptedWnd& self) {
        ++heard;
        return deleteSelf(self);
    });
    window->DestroyWindow();
    EXPECT_EQ(heard, 1);
    expectGone(handle);
}

INSTANTIATE_TEST_SUITE_P(Messages, DeletionDuring, testing::Values(WM_DESTROY, WM_NCDESTROY));

TEST(Deletion, InPostNcDestroy) {
    auto* window = new ScriptedWnd;
    ASSERT_TRUE(create(*window));
    const HWND handle = window->m_hWnd;
    window->m_fnPostNcDestroy = [window] {
        EXPECT_EQ(window->m_hWnd, nullptr);
        delete window;
    };
    window->DestroyWindow();
    expectGone(handle);
}

TEST(Deletion, OfTheParentWhileAChildIsDestroyed) {
    auto* parent = new ScriptedWnd;
    ASSERT_TRUE(create(*parent));
    const HWND handle = parent->m_hWnd;
    int destroyed = 0;
    auto* child = new ScriptedWnd;
    child->on(WM_DESTROY, [&destroyed, parent](ScriptedWnd& self) {
        ++destroyed;
        delete parent;
        return self.passOn();
    });
    child->m_fnPostNcDestroy = [child] { delete child; };
    ASSERT_TRUE(create(*child, handle));
    parent->DestroyWindow();
    EXPECT_EQ(destroyed, 1);
    expectGone(handle);
}

TEST(Deletion, OfAControlInsideItsReflectedNotification) {
    CWnd parent;
    ASSERT_TRUE(create(parent));
    auto* control = new SelfDeletingCtrl;
    ASSERT_TRUE(create(*control, parent.m_hWnd));
    const HWND handle = control->m_hWnd;
    NMHDR header{handle, 0, static_cast<UINT>(NM_CLICK)};
    EXPECT_EQ(::SendMessageW(parent.m_hWnd, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header)), 9);
    expectGone(handle);
}

class DeletionWhileCreating : public testing::TestWithParam<UINT> {};

TEST_P(DeletionWhileCreating, CreationFailsAndLeavesNothingBehind) {
    const UINT before = test::threadWindows();
    auto* window = new ScriptedWnd;
    HWND handle = nullptr;
    window->on(GetParam(), [&handle](ScriptedWnd& self) {
        handle = self.m_hWnd;
        delete &self;
        return LRESULT{1};
    });
    EXPECT_FALSE(create(*window));
    EXPECT_NE(handle, nullptr);
    expectGone(handle);
    EXPECT_EQ(test::threadWindows(), before);
    ScriptedWnd next;
    EXPECT_TRUE(create(next));
}

INSTANTIATE_TEST_SUITE_P(Messages, DeletionWhileCreating, testing::Values(WM_NCCREATE, WM_NCCALCSIZE, WM_CREATE));

TEST(Deletion, HandleIsFreeForANewObjectAfterwards) {
    for (int i = 0; i < 200; ++i) {
        auto* window = new ScriptedWnd;
        ASSERT_TRUE(create(*window));
        window->on(kOuter, &deleteSelf);
        ::SendMessageW(window->m_hWnd, kOuter, 0, 0);
    }
    EXPECT_EQ(ScriptedWnd::s_nAlive, 0);
}

// The window of an object may be handed to another one, also by one of its own handlers.
TEST(Deletion, OfAnObjectThatHandedItsWindowOnLeavesTheWindow) {
    ScriptedWnd taker;
    auto* window = new ScriptedWnd;
    ASSERT_TRUE(create(*window));
    const HWND handle = window->m_hWnd;
    window->on(kOuter, [&taker](ScriptedWnd& self) {
        EXPECT_TRUE(taker.takeWindow(self));
        EXPECT_FALSE(taker.takeWindow(self)) << "there is nothing left to take";
        delete &self;
        return LRESULT{7};
    });
    EXPECT_EQ(::SendMessageW(handle, kOuter, 0, 0), 7);
    ASSERT_TRUE(::IsWindow(handle));
    EXPECT_EQ(taker.m_hWnd, handle);
    EXPECT_EQ(CWnd::fromHandle(handle), &taker);
    taker.on(kInner, [](ScriptedWnd&) { return LRESULT{5}; });
    EXPECT_EQ(::SendMessageW(handle, kInner, 0, 0), 5);
    ScriptedWnd other;
    ASSERT_TRUE(create(other));
    EXPECT_FALSE(taker.takeWindow(other)) << "it has a window already";
    EXPECT_TRUE(taker.DestroyWindow());
    EXPECT_FALSE(::IsWindow(handle));
}
