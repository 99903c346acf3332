// The application object: start, message loop, end.
#include "Support.h"
#include "TemplateIds.h"

namespace {

class TestApp : public CWinApp {
 public:
    std::function<bool(TestApp&)> m_fnInit;
    int m_nEnded = 0;

 protected:
    bool InitInstance() override { return CWinApp::InitInstance() && m_fnInit(*this); }
    int ExitInstance() override {
        ++m_nEnded;
        return CWinApp::ExitInstance();
    }
};

int run(TestApp& app, const wchar_t* commandLine = L"") {
    return app.Main(::GetModuleHandleW(nullptr), commandLine);
}

struct TestFrame : test::Scripted<CFrameWnd> {
    bool make() {
        test::registerClass();
        return CFrameWnd::Create(test::kClassName, L"", WS_OVERLAPPEDWINDOW);
    }
};

}  // namespace

TEST(App, FailedStartSkipsTheLoopButNotTheEnd) {
    TestApp app;
    app.m_fnInit = [](TestApp&) { return false; };
    EXPECT_EQ(run(app), 0);
    EXPECT_EQ(app.m_nEnded, 1);
}

TEST(App, InstanceAndCommandLineAreThereAtTheStart) {
    TestApp app;
    app.m_fnInit = [](TestApp& self) {
        EXPECT_EQ(self.m_hInstance, ::GetModuleHandleW(nullptr));
        EXPECT_STREQ(self.m_lpCmdLine, L"/hide");
        return false;
    };
    run(app, L"/hide");
}

TEST(App, LoopEndsWithTheExitCodeOfTheQuitMessage) {
    TestApp app;
    app.m_fnInit = [](TestApp&) {
        ::PostQuitMessage(17);
        return true;
    };
    EXPECT_EQ(run(app), 17);
    EXPECT_EQ(app.m_nEnded, 1);
}

TEST(App, EndOfTheMainWindowEndsTheLoop) {
    TestApp app;
    TestFrame frame;
    TestFrame other;
    app.m_fnInit = [&](TestApp& self) {
        EXPECT_TRUE(frame.make());
        EXPECT_TRUE(other.make());
        self.m_pMainWnd = &frame;
        other.DestroyWindow();
        EXPECT_FALSE(test::takeQuit());
        ::PostMessageW(frame.m_hWnd, WM_CLOSE, 0, 0);
        return true;
    };
    EXPECT_EQ(run(app), 0);
    EXPECT_EQ(app.m_pMainWnd, nullptr);
}

TEST(App, LoopThatTakesTheQuitMessageForItselfDoesNotKeepTheProgramAlive) {
    TestApp app;
    TestFrame frame;
    app.m_fnInit = [&](TestApp& self) {
        EXPECT_TRUE(frame.make());
        self.m_pMainWnd = &frame;
        frame.DestroyWindow();
        EXPECT_TRUE(test::takeQuit());
        return true;
    };
    EXPECT_EQ(run(app), 0);  // otherwise it would never return
    EXPECT_EQ(app.m_nEnded, 1);
}

TEST(App, DeletedMainWindowEndsTheLoopToo) {
    TestApp app;
    auto* frame = new TestFrame;
    frame->on(test::kProbe, [](auto& self) {
        delete &self;
        return LRESULT{0};
    });
    app.m_fnInit = [&](TestApp& self) {
        EXPECT_TRUE(frame->make());
        self.m_pMainWnd = frame;
        ::PostMessageW(frame->m_hWnd, test::kProbe, 0, 0);
        return true;
    };
    EXPECT_EQ(run(app), 0);
    EXPECT_EQ(app.m_pMainWnd, nullptr);
}

TEST(App, EndDestroysAMainWindowThatIsStillThere) {
    TestApp app;
    TestFrame frame;
    app.m_fnInit = [&](TestApp& self) {
        EXPECT_TRUE(frame.make());
        self.m_pMainWnd = &frame;
        return false;
    };
    run(app);
    EXPECT_EQ(frame.m_hWnd, nullptr);
    EXPECT_TRUE(test::takeQuit());
}

TEST(App, MessagesAreOfferedToTheTargetAndItsAncestorsInThatOrder) {
    struct Window : CWnd {
        Window(std::string name, std::string& log, bool use) : m_strName(std::move(name)), m_log(log), m_bUse(use) {}
        bool PreTranslateMessage(MSG& message) override {
            if (message.message != test::kProbe) {
                return false;
            }
            m_log += m_strName;
            return m_bUse;
        }
        LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
            m_log += message == test::kProbe ? "dispatched" : "";
            return CWnd::WindowProc(message, wParam, lParam);
        }
        std::string m_strName;
        std::string& m_log;
        bool m_bUse;
    };
    for (const bool used : {false, true}) {
        TestApp app;
        std::string log;
        Window parent("parent ", log, used);
        Window child("child ", log, false);
        app.m_fnInit = [&](TestApp&) {
            EXPECT_TRUE(test::create(parent));
            EXPECT_TRUE(test::create(child, parent.m_hWnd));
            ::PostMessageW(child.m_hWnd, test::kProbe, 0, 0);
            ::PostQuitMessage(0);
            return true;
        };
        run(app);
        EXPECT_EQ(log, used ? "child parent " : "child parent dispatched");
    }
}

TEST(App, WindowMayBeDeletedWhileAMessageIsOffered) {
    struct Window : CWnd {
        bool PreTranslateMessage(MSG& message) override {
            if (message.message != test::kProbe) {
                return false;
            }
            delete this;
            return false;
        }
    };
    TestApp app;
    CWnd parent;
    HWND handle = nullptr;
    app.m_fnInit = [&](TestApp&) {
        EXPECT_TRUE(test::create(parent));
        auto* child = new Window;
        EXPECT_TRUE(test::create(*child, parent.m_hWnd));
        handle = child->m_hWnd;
        ::PostMessageW(handle, test::kProbe, 0, 0);
        ::PostQuitMessage(5);
        return true;
    };
    EXPECT_EQ(run(app), 5);
    EXPECT_EQ(::IsWindow(handle), FALSE);
}

TEST(App, KeysReachTheDialogThatHoldsTheFocusedControl) {
    TestApp app;
    test::Scripted<CDialog> dialog(static_cast<UINT>(IDD_PLAIN));
    UINT pressed = 0;
    dialog.on(WM_COMMAND, [&](auto&) {
        ++pressed;
        ::PostQuitMessage(0);
        return LRESULT{0};
    });
    app.m_fnInit = [&](TestApp&) {
        EXPECT_TRUE(dialog.Create(nullptr));
        ::PostMessageW(::GetDlgItem(dialog.m_hWnd, IDC_SECOND), WM_KEYDOWN, VK_RETURN, 1);
        ::SetTimer(dialog.m_hWnd, 1, 5000, [](HWND, UINT, UINT_PTR, DWORD) { ::PostQuitMessage(99); });
        return true;
    };
    EXPECT_EQ(run(app), 0);
    EXPECT_EQ(pressed, 1U);
}
