// Dialogs from templates, their own window classes, and dialogs that end unexpectedly.
#include <framework/SliderCtrl.h>

#include "Support.h"
#include "TemplateIds.h"

namespace {

class TestDialog : public test::Scripted<CDialog> {
 public:
    explicit TestDialog(UINT id) : Scripted(id) {}
    std::function<bool(TestDialog&)> m_fnInit;

 protected:
    bool OnInitDialog() override {
        const auto init = m_fnInit;
        return init ? init(*this) : true;
    }
};

// A copy of the system's dialog class under the template's name.
void registerOwnClass() {
    WNDCLASSW description{};
    ASSERT_TRUE(::GetClassInfoW(nullptr, L"#32770", &description));
    description.hInstance = ::GetModuleHandleW(nullptr);
    description.lpszClassName = L"" OWN_DIALOG_CLASS;
    ASSERT_TRUE(::RegisterClassW(&description) != 0 || ::GetLastError() == ERROR_CLASS_ALREADY_EXISTS);
}

MSG keyMessage(HWND target, WPARAM key) {
    MSG message{};
    message.hwnd = target;
    message.message = WM_KEYDOWN;
    message.wParam = key;
    message.lParam = 1;
    return message;
}

}  // namespace

TEST(Dialog, IsMadeFromItsTemplateAndInitialisedOnce) {
    TestDialog dialog(IDD_PLAIN);
    int initialised = 0;
    dialog.m_fnInit = [&](TestDialog& self) {
        ++initialised;
        EXPECT_NE(::GetDlgItem(self.m_hWnd, IDC_SECOND), nullptr);
        return true;
    };
    ASSERT_TRUE(dialog.Create(nullptr));
    EXPECT_EQ(initialised, 1);
    wchar_t title[16] = {};
    ::GetWindowTextW(dialog.m_hWnd, title, 16);
    EXPECT_STREQ(title, L"Plain");
    EXPECT_FALSE(dialog.isVisible());
}

TEST(Dialog, OwnClassOfTheTemplateIsADialogLikeAnyOther) {
    registerOwnClass();
    TestDialog dialog(IDD_OWN_CLASS);
    int initialised = 0;
    int probed = 0;
    dialog.m_fnInit = [&](TestDialog&) { return ++initialised > 0; };
    dialog.on(test::kProbe, [&](auto&) { return LRESULT{++probed}; });
    ASSERT_TRUE(dialog.Create(nullptr));
    EXPECT_EQ(initialised, 1);
    wchar_t name[64] = {};
    ::GetClassNameW(dialog.m_hWnd, name, 64);
    EXPECT_STREQ(name, L"" OWN_DIALOG_CLASS);
    EXPECT_EQ(::FindWindowW(L"" OWN_DIALOG_CLASS, nullptr), dialog.m_hWnd);
    EXPECT_EQ(::SendMessageW(dialog.m_hWnd, test::kProbe, 0, 0), 1);
    // The system's dialog behaviour works: it knows the default button.
    EXPECT_EQ(HIWORD(::SendMessageW(dialog.m_hWnd, DM_GETDEFID, 0, 0)), DC_HASDEFID);
    EXPECT_TRUE(dialog.DestroyWindow());
}

TEST(Dialog, UnregisteredClassOrMissingTemplateFails) {
    for (const UINT id : {UINT{IDD_NO_CLASS}, UINT{IDD_MISSING}}) {
        TestDialog dialog(id);
        ::SetLastError(0);
        EXPECT_FALSE(dialog.Create(nullptr)) << id;
        EXPECT_NE(::GetLastError(), 0U) << id;
        EXPECT_EQ(dialog.m_hWnd, nullptr) << id;
    }
}

TEST(Dialog, SecondCreationIsRefused) {
    TestDialog dialog(IDD_PLAIN);
    ASSERT_TRUE(dialog.Create(nullptr));
    const HWND first = dialog.m_hWnd;
    EXPECT_FALSE(dialog.Create(nullptr));
    EXPECT_EQ(::GetLastError(), static_cast<DWORD>(ERROR_ALREADY_EXISTS));
    EXPECT_EQ(dialog.m_hWnd, first);
}

TEST(Dialog, ControlsCreatedByTheTemplateAreNotTheDialogsObject) {
    TestDialog dialog(IDD_PLAIN);
    ASSERT_TRUE(dialog.Create(nullptr));
    EXPECT_EQ(CWnd::fromHandle(::GetDlgItem(dialog.m_hWnd, IDC_FIRST)), nullptr);
}

TEST(Dialog, DialogsMadeWhileInitialisingAreBoundToTheirOwnObjects) {
    TestDialog inner(IDD_PLAIN);
    TestDialog outer(IDD_PLAIN);
    outer.m_fnInit = [&](TestDialog& self) { return inner.Create(self.m_hWnd); };
    ASSERT_TRUE(outer.Create(nullptr));
    EXPECT_EQ(CWnd::fromHandle(inner.m_hWnd), &inner);
    EXPECT_EQ(CWnd::fromHandle(outer.m_hWnd), &outer);
    EXPECT_EQ(::GetWindow(inner.m_hWnd, GW_OWNER), outer.m_hWnd);
}

TEST(Dialog, MemberControlIsDetachedWithTheDialog) {
    struct SliderDialog : CDialog {
        SliderDialog() : CDialog(IDD_SLIDER) {}
        CSliderCtrl slider;
        bool bound = false;
        bool OnInitDialog() override {
            bound = slider.SubclassDlgItem(IDC_TRACK, *this);
            return true;
        }
    };
    const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_BAR_CLASSES};
    ::InitCommonControlsEx(&classes);
    auto dialog = std::make_unique<SliderDialog>();
    ASSERT_TRUE(dialog->Create(nullptr));
    EXPECT_TRUE(dialog->bound);
    dialog->DestroyWindow();
    EXPECT_EQ(dialog->slider.m_hWnd, nullptr);
    // And again, this time ended by deleting the object.
    ASSERT_TRUE(dialog->Create(nullptr));
    const HWND handle = dialog->m_hWnd;
    dialog.reset();
    EXPECT_EQ(::IsWindow(handle), FALSE);
}

TEST(Dialog, DeletedWhileInitialisingFailsAndLeavesNothingBehind) {
    const UINT before = test::threadWindows();
    auto* dialog = new TestDialog(IDD_PLAIN);
    HWND handle = nullptr;
    dialog->m_fnInit = [&handle](TestDialog& self) {
        handle = self.m_hWnd;
        delete &self;
        return true;
    };
    EXPECT_FALSE(dialog->Create(nullptr));
    EXPECT_EQ(::IsWindow(handle), FALSE);
    EXPECT_EQ(test::threadWindows(), before);
}

TEST(Dialog, DeletedByASentMessageWhileInitialising) {
    auto* dialog = new TestDialog(IDD_PLAIN);
    HWND handle = nullptr;
    dialog->on(test::kProbe, [](auto& self) {
        delete &self;
        return LRESULT{0};
    });
    dialog->m_fnInit = [&handle](TestDialog& self) {
        handle = self.m_hWnd;
        ::SendMessageW(handle, test::kProbe, 0, 0);
        return false;
    };
    EXPECT_FALSE(dialog->Create(nullptr));
    EXPECT_EQ(CWnd::fromHandle(handle), nullptr);
    EXPECT_EQ(::IsWindow(handle), FALSE);
}

TEST(Dialog, DestroyedWhileInitialisingCanBeMadeAgain) {
    TestDialog dialog(IDD_PLAIN);
    dialog.m_fnInit = [](TestDialog& self) {
        self.DestroyWindow();
        return true;
    };
    EXPECT_FALSE(dialog.Create(nullptr));
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    dialog.m_fnInit = nullptr;
    EXPECT_TRUE(dialog.Create(nullptr));
}

TEST(DialogKeys, TabMovesTheFocusBetweenControls) {
    TestDialog dialog(IDD_PLAIN);
    ASSERT_TRUE(dialog.Create(nullptr));
    ::ShowWindow(dialog.m_hWnd, SW_SHOW);
    ::SetFocus(::GetDlgItem(dialog.m_hWnd, IDC_FIRST));
    MSG tab = keyMessage(::GetDlgItem(dialog.m_hWnd, IDC_FIRST), VK_TAB);
    EXPECT_TRUE(dialog.PreTranslateMessage(tab));
    EXPECT_EQ(::GetFocus(), ::GetDlgItem(dialog.m_hWnd, IDC_SECOND));
}

TEST(DialogKeys, EnterPressesTheDefaultButton) {
    TestDialog dialog(IDD_PLAIN);
    int pressed = 0;
    dialog.on(WM_COMMAND, [&](auto&) { return LRESULT{++pressed}; });
    ASSERT_TRUE(dialog.Create(nullptr));
    MSG enter = keyMessage(dialog.m_hWnd, VK_RETURN);
    EXPECT_TRUE(dialog.PreTranslateMessage(enter));
    EXPECT_EQ(pressed, 1);
}

TEST(DialogKeys, DialogMayBeDeletedByItsDefaultButton) {
    auto* dialog = new TestDialog(IDD_PLAIN);
    ASSERT_TRUE(dialog->Create(nullptr));
    dialog->on(WM_COMMAND, [](auto& self) {
        delete &self;
        return LRESULT{0};
    });
    MSG enter = keyMessage(dialog->m_hWnd, VK_RETURN);
    EXPECT_TRUE(dialog->PreTranslateMessage(enter));
    EXPECT_EQ(test::Scripted<CDialog>::s_nAlive, 0);
}

TEST(DialogKeys, OtherMessagesAndDialogsWithoutAWindowAreLeftAlone) {
    TestDialog dialog(IDD_PLAIN);
    MSG key = keyMessage(nullptr, VK_TAB);
    EXPECT_FALSE(dialog.PreTranslateMessage(key));
    ASSERT_TRUE(dialog.Create(nullptr));
    MSG mouse = keyMessage(dialog.m_hWnd, 0);
    mouse.message = WM_MOUSEMOVE;
    EXPECT_FALSE(dialog.PreTranslateMessage(mouse));
}

// Whatever the system scales dialogs for, this one's font was made for so many dots per inch: its 8 points in pixels.
TEST(Dialog, KnowsForWhichResolutionItsFontWasMade) {
    TestDialog dialog(IDD_PLAIN);
    ASSERT_TRUE(dialog.Create(nullptr));
    LOGFONTW font{};
    ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(dialog.m_hWnd, WM_GETFONT, 0, 0)), sizeof(font), &font);
    EXPECT_EQ(font.lfHeight, -::MulDiv(8, dialog.fontDpi(), 72));
    // It goes with the window.
    TestDialog other(IDD_PLAIN);
    const int dpi = dialog.fontDpi();
    ASSERT_TRUE(other.takeWindow(dialog));
    EXPECT_EQ(other.fontDpi(), dpi);
}
