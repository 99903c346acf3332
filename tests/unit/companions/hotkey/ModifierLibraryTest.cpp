// The configured modifier through the real library: what windows receive of it.
#include "companions/hotkey/HotkeyLibraryFixture.h"
#include "keyboard/OwnInput.h"

namespace companions {
namespace {

constexpr int kMask = keyboard::kMeaninglessKey;

using Keys = std::vector<int>;

struct Choice {
    WORD key;
    int window;  // the key as a window's messages name it
};

void PrintTo(const Choice& choice, std::ostream* stream) {
    *stream << "virtual key " << choice.key;
}

}  // namespace

class ModifierLibrary : public HotkeyLibraryTest, public testing::WithParamInterface<Choice> {
 protected:
    void SetUp() override {
        HotkeyLibraryTest::SetUp();
        setNumber(ZEL_VALUE_MODIFIER_KEY, GetParam().key);
        startAndEnable();
    }
    void useIt() {
        sendKey(GetParam().key, true);
        pressKey(VK_F1);
        sendKey(GetParam().key, false);
        ASSERT_TRUE(reports("0 3b /3b /0"));
        ASSERT_TRUE(m_window.settle());
    }
    void tapIt() {
        m_record.clear();
        tapQuickly(GetParam().key);
        ASSERT_TRUE(reports("0 /0"));
        ASSERT_TRUE(m_window.settle());
    }
};

class WithheldModifierLibrary : public ModifierLibrary {};
INSTANTIATE_TEST_SUITE_P(Keys, WithheldModifierLibrary,
                         testing::Values(Choice{VK_CAPITAL, VK_CAPITAL}, Choice{VK_APPS, VK_APPS},
                                         Choice{VK_F13, VK_F13}, Choice{VK_F24, VK_F24}));

TEST_P(WithheldModifierLibrary, WindowsSeeNothingOfItsUse) {
    const SHORT before = ::GetKeyState(VK_CAPITAL);
    useIt();
    EXPECT_EQ(m_window.keys(), Keys{});
    EXPECT_EQ(::GetKeyState(VK_CAPITAL), before);
}

TEST_P(WithheldModifierLibrary, WindowsSeeATapWhole) {
    const int before = ::GetKeyState(VK_CAPITAL) & 1;
    tapIt();
    EXPECT_EQ(m_window.keys(), (Keys{GetParam().window, -GetParam().window}));
    const int toggled = GetParam().key == VK_CAPITAL ? 1 : 0;
    EXPECT_EQ((::GetKeyState(VK_CAPITAL) & 1) ^ before, toggled);
    if (toggled != 0) {
        tapIt();  // as it was
    }
}

class MaskedModifierLibrary : public ModifierLibrary {};
INSTANTIATE_TEST_SUITE_P(Keys, MaskedModifierLibrary,
                         testing::Values(Choice{VK_RMENU, VK_MENU}, Choice{VK_RWIN, VK_RWIN}));

TEST_P(MaskedModifierLibrary, WindowsSeeAMeaninglessKeyInPlaceOfTheFunctionKey) {
    useIt();
    EXPECT_EQ(m_window.keys(), (Keys{GetParam().window, kMask, -kMask, -GetParam().window}));
}

TEST_P(MaskedModifierLibrary, WindowsSeeATapAsItIs) {
    tapIt();
    EXPECT_EQ(m_window.keys(), (Keys{GetParam().window, -GetParam().window}));
}

class MenuLibrary : public HotkeyLibraryTest {
 protected:
    // A window that counts the events that make the system open a menu.
    struct MenuWindow {
        MenuWindow() {
            WNDCLASSW windowClass{};
            windowClass.lpfnWndProc = &_wndProc;
            windowClass.hInstance = ::GetModuleHandleW(nullptr);
            windowClass.lpszClassName = L"CompanionsTestMenu";
            ::RegisterClassW(&windowClass);
            hWnd = ::CreateWindowExW(WS_EX_TOPMOST, windowClass.lpszClassName, L"", WS_POPUP | WS_VISIBLE, 60, 0, 50,
                                     50, nullptr, nullptr, windowClass.hInstance, nullptr);
            ::SetForegroundWindow(hWnd);
        }
        ~MenuWindow() { ::DestroyWindow(hWnd); }
        MenuWindow(const MenuWindow&) = delete;
        MenuWindow& operator=(const MenuWindow&) = delete;

        HWND hWnd = nullptr;
        static inline int nMenus = 0;
        static inline int nReleases = 0;

     private:
        static LRESULT CALLBACK _wndProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam) {
            const bool bMenu =
                (message == WM_SYSCOMMAND && (wParam & 0xFFF0) == SC_KEYMENU) || message == WM_CONTEXTMENU;
            if (bMenu) {
                ++nMenus;
                return 0;
            }
            const bool bModifier = wParam == VK_MENU || wParam == VK_APPS;
            const LRESULT result = ::DefWindowProcW(hWnd, message, wParam, lParam);
            nReleases += (message == WM_SYSKEYUP || message == WM_KEYUP) && (bModifier || wParam == VK_SCROLL) ? 1 : 0;
            return result;
        }
    };

    // How many menus open when the modifier, with or without F1, is pressed and released.
    int menusAfter(WORD modifier, bool bWithKey) {
        MenuWindow::nMenus = 0;
        if (bWithKey) {
            sendKey(modifier, true);
            pressKey(VK_F1);
            sendKey(modifier, false);
        } else {
            tapQuickly(modifier);
        }
        const int nBefore = MenuWindow::nReleases;
        pressKey(VK_SCROLL);
        EXPECT_TRUE(waitUntil([&] { return MenuWindow::nReleases > nBefore; }));
        pressKey(VK_SCROLL);  // its light as it was
        return MenuWindow::nMenus;
    }
};

TEST_F(MenuLibrary, MenusOpenOnATapOfTheModifierOnly) {
    for (const WORD key : {WORD{VK_RMENU}, WORD{VK_APPS}}) {
        setNumber(ZEL_VALUE_MODIFIER_KEY, key);
        startAndEnable();
        {
            const MenuWindow window;
            ASSERT_TRUE(waitUntil([&] { return ::GetFocus() == window.hWnd; }));
            EXPECT_EQ(menusAfter(key, true), 0) << key;
            EXPECT_EQ(menusAfter(key, false), 1) << key;
        }
        EXPECT_EQ(m_pfnStop(), 0);
    }
}

}  // namespace companions
