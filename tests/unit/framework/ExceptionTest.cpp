// No exception leaves the framework: neither through the system's calls nor out of the program.
#include <new>
#include <stdexcept>

#include "Support.h"
#include "TemplateIds.h"
#include "support/FailingAllocation.h"

namespace {

using support::FailingAllocation;

// Counts the reported exceptions, which must be reported inside the catch block.
class ListeningApp : public CWinApp {
 public:
    std::function<bool()> m_fnInit = [] { return false; };
    std::function<void()> m_fnExit = [] {};
    int m_nCaught = 0;

 protected:
    bool InitInstance() override { return m_fnInit(); }
    int ExitInstance() override {
        m_fnExit();
        return CWinApp::ExitInstance();
    }
    void exceptionCaught() noexcept override { m_nCaught += std::current_exception() != nullptr ? 1 : 100; }
};

struct TestDialog : test::Scripted<CDialog> {
    TestDialog() : Scripted(static_cast<UINT>(IDD_PLAIN)) {}
    std::function<void(TestDialog&)> m_fnInit = [](TestDialog&) {};

 protected:
    bool OnInitDialog() override {
        const auto init = m_fnInit;
        init(*this);
        return true;
    }
};

[[noreturn]] LRESULT fail(test::ScriptedWnd&) {
    throw std::runtime_error("a handler that fails");
}

class Exceptions : public testing::Test {
 protected:
    Exceptions() { test::takeQuit(); }
    ListeningApp m_app;
    const UINT m_windows = test::threadWindows();
};

}  // namespace

TEST_F(Exceptions, OfAHandlerEndWithTheMessage) {
    test::ScriptedWnd window;
    ASSERT_TRUE(test::create(window));
    window.on(test::kProbe, fail);
    window.on(test::kProbe + 1, [](test::ScriptedWnd&) { return 7; });
    EXPECT_EQ(::SendMessageW(window.m_hWnd, test::kProbe, 0, 0), 0);
    EXPECT_EQ(m_app.m_nCaught, 1);
    EXPECT_EQ(::SendMessageW(window.m_hWnd, test::kProbe + 1, 0, 0), 7) << "the window works on";
    EXPECT_EQ(m_app.m_nCaught, 1);
}

TEST_F(Exceptions, OfPaintingLeaveNothingToPaint) {
    test::ScriptedWnd window;
    ASSERT_TRUE(test::create(window));
    window.on(WM_PAINT, fail);
    ::ShowWindow(window.m_hWnd, SW_SHOWNOACTIVATE);
    ::InvalidateRect(window.m_hWnd, nullptr, FALSE);
    ::UpdateWindow(window.m_hWnd);
    EXPECT_GE(m_app.m_nCaught, 1);
    EXPECT_FALSE(::GetUpdateRect(window.m_hWnd, nullptr, FALSE));
}

TEST_F(Exceptions, NeverRefuseTheEndOfTheSession) {
    test::ScriptedWnd window;
    ASSERT_TRUE(test::create(window));
    window.on(WM_QUERYENDSESSION, fail);
    EXPECT_EQ(::SendMessageW(window.m_hWnd, WM_QUERYENDSESSION, 0, 0), TRUE);
}

TEST_F(Exceptions, OfCreationLeaveNoWindow) {
    for (const UINT message : std::initializer_list<UINT>{WM_NCCREATE, WM_CREATE}) {
        test::ScriptedWnd window;
        window.on(message, fail);
        EXPECT_FALSE(test::create(window)) << message;
        EXPECT_EQ(window.m_hWnd, nullptr);
        EXPECT_EQ(test::threadWindows(), m_windows);
        window.on(message, [](test::ScriptedWnd& self) { return self.passOn(); });
        EXPECT_TRUE(test::create(window)) << "the next time";
    }
    EXPECT_EQ(m_app.m_nCaught, 2);
}

TEST_F(Exceptions, OfInitialisationLeaveNoDialog) {
    TestDialog dialog;
    dialog.m_fnInit = [](TestDialog&) { throw std::bad_alloc(); };
    EXPECT_FALSE(dialog.Create(nullptr));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_EQ(test::threadWindows(), m_windows);
    EXPECT_EQ(m_app.m_nCaught, 1);
    dialog.m_fnInit = [](TestDialog&) {};
    EXPECT_TRUE(dialog.Create(nullptr)) << "the next time";
}

TEST_F(Exceptions, OfADialogThatDeletedItselfAreHarmless) {
    auto* dialog = new TestDialog;
    dialog->m_fnInit = [](TestDialog& self) {
        delete &self;
        throw std::bad_alloc();
    };
    EXPECT_FALSE(dialog->Create(nullptr));
    EXPECT_EQ(TestDialog::s_nAlive, 0);
    EXPECT_EQ(test::threadWindows(), m_windows);
}

TEST_F(Exceptions, OfTheLastCallAreCaught) {
    test::ScriptedWnd window;
    ASSERT_TRUE(test::create(window));
    window.m_fnPostNcDestroy = [] { throw std::bad_alloc(); };
    window.on(WM_NCDESTROY, fail);
    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(m_app.m_nCaught, 2);
    EXPECT_EQ(window.m_hWnd, nullptr) << "the object is unbound all the same";
}

TEST_F(Exceptions, NeedNoApplication) {
    test::ScriptedWnd window;
    ASSERT_TRUE(test::create(window));
    window.on(test::kProbe, fail);
    {
        // The end of this application leaves the program without one.
        const ListeningApp other;
    }
    EXPECT_EQ(::SendMessageW(window.m_hWnd, test::kProbe, 0, 0), 0);
}

TEST_F(Exceptions, OfTheStartEndTheProgramInGoodOrder) {
    int ended = 0;
    m_app.m_fnInit = []() -> bool { throw std::bad_alloc(); };
    m_app.m_fnExit = [&] { ++ended; };
    EXPECT_EQ(m_app.Main(::GetModuleHandleW(nullptr), L""), 0);
    EXPECT_EQ(m_app.m_nCaught, 1);
    EXPECT_EQ(ended, 1);
}

TEST_F(Exceptions, OfTheEndKeepTheExitCode) {
    m_app.m_fnInit = [] {
        ::PostQuitMessage(17);
        return true;
    };
    m_app.m_fnExit = [] { throw std::bad_alloc(); };
    EXPECT_EQ(m_app.Main(::GetModuleHandleW(nullptr), L""), 17);
    EXPECT_EQ(m_app.m_nCaught, 1);
}

// Fails before a message is dispatched, outside any window procedure.
struct Stumbling : test::ScriptedWnd {
    bool PreTranslateMessage(MSG& message) override {
        return message.message == test::kProbe ? throw std::bad_alloc() : false;
    }
};

TEST_F(Exceptions, OfOneMessageDoNotEndTheLoop) {
    Stumbling window;
    ASSERT_TRUE(test::create(window));
    bool reached = false;
    window.on(test::kProbe + 1, [&](test::ScriptedWnd&) {
        reached = true;
        ::PostQuitMessage(3);
        return 0;
    });
    m_app.m_fnInit = [&] {
        ::PostMessageW(window.m_hWnd, test::kProbe, 0, 0);
        ::PostMessageW(window.m_hWnd, test::kProbe + 1, 0, 0);
        return true;
    };
    EXPECT_EQ(m_app.Main(::GetModuleHandleW(nullptr), L""), 3);
    EXPECT_TRUE(reached);
    EXPECT_EQ(m_app.m_nCaught, 1);
}

TEST_F(Exceptions, OfBindingLeaveNoWindow) {
    for (const auto extent : {FailingAllocation::Extent::Once, FailingAllocation::Extent::FromThereOn}) {
        test::ScriptedWnd window;
        test::registerClass();
        bool created = false;
        const long failures = support::forEachFailure(
            extent, [&] { created = test::create(window); },
            [&] {
                EXPECT_EQ(created, window.m_hWnd != nullptr);
                EXPECT_EQ(test::threadWindows(), m_windows + (created ? 1 : 0));
                window.DestroyWindow();
            });
        EXPECT_TRUE(created) << "with memory";
        EXPECT_GE(failures, 2);
        EXPECT_GE(m_app.m_nCaught, failures);
        m_app.m_nCaught = 0;
    }
}
