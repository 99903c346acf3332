// The three windows, with simulated displays and user input.
#include <gtest/gtest.h>

#include "ConfigDlg.h"
#include "NameMessage.h"
#include "OutputDlg.h"
#include "SaveDlg.h"
#include "SetupApp.h"
#include "SetupIds.h"
#include "Texts.h"
#include "common/DialogFont.h"
#include "support/RegistryRoom.h"

using setup::text;

namespace {

std::vector<setup::Display> twoDisplays() {
    return {{L"\\\\.\\DISPLAY1", L"Panel", L"LCD", true, {0, 0, 1920, 1080}},
            {L"\\\\.\\DISPLAY2", L"Monitor", L"HDMI 1", false, {1920, 0, 4480, 1440}}};
}

class Window : public testing::Test {
 protected:
    Window() {
        const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_LISTVIEW_CLASSES};
        ::InitCommonControlsEx(&classes);
        m_surroundings.displays = [this] { return m_displays; };
        m_surroundings.apply = [this](LONG arrangement) {
            m_applied.push_back(arrangement);
            return m_applyResult;
        };
        m_surroundings.font = [] { return common::messageFont(); };
        m_surroundings.tell = [this](HWND, const std::wstring& message) {
            m_told.push_back(message);
            if (m_whileTelling) {
                m_whileTelling();
            }
        };
        m_surroundings.ask = [this](HWND, const std::wstring& message) {
            m_told.push_back(message);
            if (m_whileTelling) {
                m_whileTelling();
            }
            return m_answer;
        };
    }

    static HWND control(const setup::CSetupDlg& dialog, int id) { return ::GetDlgItem(dialog.m_hWnd, id); }
    static void press(const setup::CSetupDlg& dialog, int id) {
        ::SendMessageW(dialog.m_hWnd, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0);
    }
    static std::wstring cell(HWND list, int row, int column) {
        wchar_t buffer[128] = {};
        ListView_GetItemText(list, row, column, buffer, 128);
        return buffer;
    }
    static void favourites(std::initializer_list<const wchar_t*> names) {
        setup::Favourites list;
        for (const wchar_t* name : names) {
            list.push_back({name, FENWYN_MODE_CLONE, {favourites::displayRecord(L"LCD", 0, 800, 600)}});
        }
        ASSERT_EQ(favourites::store(list), ERROR_SUCCESS);
    }
    static std::vector<std::wstring> storedNames() {
        std::vector<std::wstring> names;
        for (const favourites::Favourite& favourite : favourites::load()) {
            names.push_back(favourite.text);
        }
        return names;
    }

    support::RegistryRoom m_registry;
    setup::Surroundings m_surroundings;
    std::vector<setup::Display> m_displays = twoDisplays();
    std::vector<LONG> m_applied;
    LONG m_applyResult = ERROR_SUCCESS;
    std::vector<std::wstring> m_told;
    std::function<void()> m_whileTelling;
    bool m_answer = true;
};

using Names = std::vector<std::wstring>;

struct OutputWindow : Window {
    setup::COutputDlg m_dlg{setup::Request{setup::Task::Output, 4, 0x1D8}, m_surroundings};  // 3, 4, 6, 7 and 8

    [[nodiscard]] HWND modes() const { return control(m_dlg, IDC_MODES); }
    [[nodiscard]] LRESULT selectedMode() const {
        const LRESULT line = ::SendMessageW(modes(), LB_GETCURSEL, 0, 0);
        return ::SendMessageW(modes(), LB_GETITEMDATA, static_cast<WPARAM>(line), 0);
    }
    void select(int line) const { ::SendMessageW(modes(), LB_SETCURSEL, static_cast<WPARAM>(line), 0); }
};

struct SaveWindow : Window {
    setup::CSaveDlg m_dlg{m_surroundings};

    void save(const wchar_t* name) {
        ::SetWindowTextW(control(m_dlg, IDC_NAME), name);
        press(m_dlg, IDOK);
    }
};

struct ConfigWindow : Window {
    setup::CConfigDlg m_dlg{m_surroundings};

    [[nodiscard]] HWND list() const { return control(m_dlg, IDC_FAVOURITES); }
    // The list's text after a user has typed a name; null if they cancelled.
    LRESULT type(int row, const wchar_t* name) const {
        NMLVDISPINFOW info{};
        info.hdr = {list(), IDC_FAVOURITES, static_cast<UINT>(LVN_ENDLABELEDITW)};
        info.item.iItem = row;
        info.item.pszText = const_cast<wchar_t*>(name);
        return ::SendMessageW(m_dlg.m_hWnd, WM_NOTIFY, IDC_FAVOURITES, reinterpret_cast<LPARAM>(&info));
    }
    void key(WORD key) const {
        NMLVKEYDOWN info{};
        info.hdr = {list(), IDC_FAVOURITES, static_cast<UINT>(LVN_KEYDOWN)};
        info.wVKey = key;
        ::SendMessageW(m_dlg.m_hWnd, WM_NOTIFY, IDC_FAVOURITES, reinterpret_cast<LPARAM>(&info));
    }
};

}  // namespace

TEST_F(OutputWindow, IsFoundByItsClassAndClosesOnTheStripsMessage) {
    ASSERT_TRUE(m_dlg.open());
    EXPECT_EQ(::FindWindowW(L"_DCWNDCLS_OUTPUT_", nullptr), m_dlg.m_hWnd);
    EXPECT_TRUE(m_dlg.isVisible());
    ::SendMessageW(m_dlg.m_hWnd, 0x0465, 0, 0);
    EXPECT_FALSE(m_dlg.isWindow());
}

TEST_F(OutputWindow, OffersTheArrangementsOfTheMaskAndBeginsWithTheAskedOne) {
    ASSERT_TRUE(m_dlg.open());
    EXPECT_EQ(::SendMessageW(modes(), LB_GETCOUNT, 0, 0), 5);
    EXPECT_EQ(selectedMode(), 4);
    wchar_t line[64] = {};
    ::SendMessageW(modes(), LB_GETTEXT, 0, reinterpret_cast<LPARAM>(line));
    EXPECT_EQ(line, setup::modeText(3));
}

TEST_F(OutputWindow, ListsTheDisplays) {
    ASSERT_TRUE(m_dlg.open());
    const HWND list = control(m_dlg, IDC_DISPLAYS);
    EXPECT_EQ(ListView_GetItemCount(list), 2);
    EXPECT_EQ(cell(list, 1, 0), L"2. Monitor");
    EXPECT_EQ(cell(list, 1, 1), L"HDMI 1");
    EXPECT_EQ(cell(list, 1, 2), L"2560 x 1440");
}

TEST_F(OutputWindow, ListFollowsTheDisplays) {
    ASSERT_TRUE(m_dlg.open());
    m_displays.pop_back();
    ::SendMessageW(m_dlg.m_hWnd, WM_DISPLAYCHANGE, 32, 0);
    EXPECT_EQ(ListView_GetItemCount(control(m_dlg, IDC_DISPLAYS)), 1);
}

TEST_F(OutputWindow, ListIsReadAgainWhenThePersonComesBack) {
    ASSERT_TRUE(m_dlg.open());
    m_displays.pop_back();
    ::SendMessageW(m_dlg.m_hWnd, WM_ACTIVATE, WA_INACTIVE, 0);
    EXPECT_EQ(ListView_GetItemCount(control(m_dlg, IDC_DISPLAYS)), 2);
    ::SendMessageW(m_dlg.m_hWnd, WM_ACTIVATE, WA_ACTIVE, 0);
    EXPECT_EQ(ListView_GetItemCount(control(m_dlg, IDC_DISPLAYS)), 1);
}

TEST_F(OutputWindow, ApplySetsTheChosenArrangementAndCloses) {
    ASSERT_TRUE(m_dlg.open());
    select(2);
    press(m_dlg, IDOK);
    EXPECT_EQ(m_applied, std::vector<LONG>{6});
    EXPECT_FALSE(m_dlg.isWindow());
}

TEST_F(OutputWindow, DoubleClickAppliesToo) {
    ASSERT_TRUE(m_dlg.open());
    ::SendMessageW(m_dlg.m_hWnd, WM_COMMAND, MAKEWPARAM(IDC_MODES, LBN_SELCHANGE), 0);
    EXPECT_TRUE(m_applied.empty());
    ::SendMessageW(m_dlg.m_hWnd, WM_COMMAND, MAKEWPARAM(IDC_MODES, LBN_DBLCLK), 0);
    EXPECT_EQ(m_applied, std::vector<LONG>{4});
}

TEST_F(OutputWindow, RefusedArrangementIsToldAndTheWindowStays) {
    ASSERT_TRUE(m_dlg.open());
    m_applyResult = ERROR_GEN_FAILURE;
    press(m_dlg, IDOK);
    ASSERT_EQ(m_told.size(), 1U);
    EXPECT_EQ(m_told[0], text(IDS_ERROR_APPLY, setup::systemErrorText(ERROR_GEN_FAILURE)));
    EXPECT_TRUE(m_dlg.isWindow());
}

TEST_F(OutputWindow, ArrangementWithoutSettingsIsTold) {
    ASSERT_TRUE(m_dlg.open());
    m_applyResult = ERROR_NOT_SUPPORTED;
    press(m_dlg, IDOK);
    EXPECT_EQ(m_told, Names{text(IDS_ERROR_CANNOT_APPLY)});
    EXPECT_TRUE(m_dlg.isWindow());
}

TEST_F(OutputWindow, WithoutAChoiceNothingHappens) {
    ASSERT_TRUE(m_dlg.open());
    select(-1);
    press(m_dlg, IDOK);
    EXPECT_TRUE(m_applied.empty());
    EXPECT_TRUE(m_dlg.isWindow());
}

TEST_F(OutputWindow, CancelAndCloseChangeNothing) {
    ASSERT_TRUE(m_dlg.open());
    press(m_dlg, IDCANCEL);
    EXPECT_FALSE(m_dlg.isWindow());
    ASSERT_TRUE(m_dlg.open());
    ::SendMessageW(m_dlg.m_hWnd, WM_CLOSE, 0, 0);
    EXPECT_FALSE(m_dlg.isWindow());
    EXPECT_TRUE(m_applied.empty());
}

TEST_F(OutputWindow, TakesTheRequestOfASecondStartAndIgnoresNonsense) {
    ASSERT_TRUE(m_dlg.open());
    const UINT request = setup::COutputDlg::kRequestMessage;
    EXPECT_TRUE(::SendMessageW(m_dlg.m_hWnd, request, 0x3, 1));
    EXPECT_EQ(::SendMessageW(modes(), LB_GETCOUNT, 0, 0), 2);
    EXPECT_EQ(selectedMode(), 1);
    EXPECT_FALSE(::SendMessageW(m_dlg.m_hWnd, request, 0x3, 2));
    EXPECT_FALSE(::SendMessageW(m_dlg.m_hWnd, request, 0, 0));
    EXPECT_FALSE(::SendMessageW(m_dlg.m_hWnd, request, ~WPARAM{0}, 1));
    EXPECT_FALSE(::SendMessageW(m_dlg.m_hWnd, request, 0xFFFF, -1));
    EXPECT_FALSE(::SendMessageW(m_dlg.m_hWnd, request, 0xFFFF, 1000));
    EXPECT_EQ(selectedMode(), 1);
}

TEST_F(SaveWindow, IsFoundByItsClassAndClosesOnTheStripsMessage) {
    ASSERT_TRUE(m_dlg.open());
    EXPECT_EQ(::FindWindowW(L"_DCWNDCLS_SAVE_", nullptr), m_dlg.m_hWnd);
    ::SendMessageW(m_dlg.m_hWnd, 0x0465, 0, 0);
    EXPECT_FALSE(m_dlg.isWindow());
}

TEST_F(SaveWindow, ProposesAFreeNameReadyToBeTypedOver) {
    favourites({(text(IDS_NAME_STEM) + L" 1").c_str()});
    ASSERT_TRUE(m_dlg.open());
    EXPECT_EQ(setup::controlText(control(m_dlg, IDC_NAME)), text(IDS_NAME_STEM) + L" 2");
    EXPECT_EQ(::GetFocus(), control(m_dlg, IDC_NAME));
    EXPECT_EQ(setup::controlText(control(m_dlg, IDC_ARRANGEMENT)),
              text(IDS_PRESENT_ARRANGEMENT, setup::modeText(FENWYN_MODE_EXTEND_RIGHT)));
}

TEST_F(SaveWindow, KeepsThePresentArrangementUnderTheNameAndCloses) {
    favourites({L"Old"});
    ASSERT_TRUE(m_dlg.open());
    save(L"  Meeting room ");
    EXPECT_FALSE(m_dlg.isWindow());
    EXPECT_EQ(storedNames(), (Names{L"Old", L"Meeting room"}));
    const favourites::Favourite kept = favourites::load()[1];
    EXPECT_EQ(kept.mode, FENWYN_MODE_EXTEND_RIGHT);
    ASSERT_EQ(kept.displays.size(), 2U);
    EXPECT_STREQ(kept.displays[1].szConnector, L"HDMI 1");
    EXPECT_EQ(kept.displays[1].uHeight, 1440U);
}

TEST_F(SaveWindow, BadNamesAreToldAndTheWindowStays) {
    favourites({L"Desk"});
    ASSERT_TRUE(m_dlg.open());
    save(L"   ");
    save(L"DESK");
    save(std::wstring(favourites::kMostTextChars + 1, L'x').c_str());
    EXPECT_EQ(m_told, (Names{text(IDS_ERROR_NAME_EMPTY), text(IDS_ERROR_NAME_TAKEN), text(IDS_ERROR_NAME_LONG)}));
    EXPECT_TRUE(m_dlg.isWindow());
    EXPECT_EQ(storedNames(), Names{L"Desk"});
}

TEST_F(SaveWindow, FullListIsTold) {
    ASSERT_EQ(favourites::store(setup::Favourites(favourites::kMost, favourites::Favourite{L"x", 0, {}})),
              ERROR_SUCCESS);
    ASSERT_TRUE(m_dlg.open());
    save(L"One more");
    EXPECT_EQ(m_told, Names{text(IDS_ERROR_FULL)});
}

TEST_F(SaveWindow, RefusedWritesAreTold) {
    ASSERT_TRUE(m_dlg.open());
    m_registry.refuseWrites();
    save(L"New");
    ASSERT_EQ(m_told.size(), 1U);
    EXPECT_EQ(m_told[0].find(text(IDS_ERROR_STORE, L"").substr(0, 20)), 0U);
    EXPECT_TRUE(m_dlg.isWindow());
}

TEST_F(SaveWindow, DisplaysThatWentAwayAreTold) {
    ASSERT_TRUE(m_dlg.open());
    m_displays.clear();
    ::SendMessageW(m_dlg.m_hWnd, WM_DISPLAYCHANGE, 32, 0);
    save(L"New");
    EXPECT_EQ(m_told, Names{text(IDS_ERROR_NO_DISPLAY)});
}

TEST_F(SaveWindow, MayBeClosedWhileAMessageStands) {
    ASSERT_TRUE(m_dlg.open());
    m_whileTelling = [this] { ::SendMessageW(m_dlg.m_hWnd, 0x0465, 0, 0); };
    save(L"");
    EXPECT_FALSE(m_dlg.isWindow());
}

TEST_F(ConfigWindow, ListsDisplaysAndFavourites) {
    favourites({L"One", L"Two"});
    ASSERT_TRUE(m_dlg.open());
    EXPECT_EQ(ListView_GetItemCount(control(m_dlg, IDC_DISPLAYS)), 2);
    ASSERT_EQ(ListView_GetItemCount(list()), 2);
    EXPECT_EQ(cell(list(), 1, 0), L"Two");
    EXPECT_EQ(cell(list(), 1, 1), setup::modeText(FENWYN_MODE_CLONE));
    EXPECT_EQ(cell(list(), 1, 2), L"LCD");
    EXPECT_EQ(setup::selectedRow(list()), 0);
}

TEST_F(ConfigWindow, OpensWithTheFocusOnTheFavourites) {
    favourites({L"One"});
    ASSERT_TRUE(m_dlg.open());
    EXPECT_EQ(::GetFocus(), list());
}

TEST_F(ConfigWindow, WithoutFavouritesThereIsNothingToRenameOrDelete) {
    favourites({});
    ASSERT_TRUE(m_dlg.open());
    EXPECT_FALSE(::IsWindowEnabled(control(m_dlg, IDC_RENAME)));
    EXPECT_FALSE(::IsWindowEnabled(control(m_dlg, IDC_DELETE)));
    press(m_dlg, IDC_DELETE);
    press(m_dlg, IDC_RENAME);
    EXPECT_TRUE(m_told.empty());
}

TEST_F(ConfigWindow, RenameOpensTheNameForTyping) {
    favourites({L"One"});
    ASSERT_TRUE(m_dlg.open());
    press(m_dlg, IDC_RENAME);
    EXPECT_NE(ListView_GetEditControl(list()), nullptr);
    ::SendMessageW(list(), LVM_CANCELEDITLABEL, 0, 0);
    key(VK_F2);
    EXPECT_NE(ListView_GetEditControl(list()), nullptr);
}

TEST_F(ConfigWindow, TypedNameIsKept) {
    favourites({L"One", L"Two"});
    ASSERT_TRUE(m_dlg.open());
    EXPECT_FALSE(type(1, L" New "));
    EXPECT_EQ(storedNames(), (Names{L"One", L"New"}));
    EXPECT_EQ(cell(list(), 1, 0), L"New");
    EXPECT_TRUE(m_told.empty());
}

TEST_F(ConfigWindow, TypedThroughTheRealEditControl) {
    favourites({L"One"});
    ASSERT_TRUE(m_dlg.open());
    press(m_dlg, IDC_RENAME);
    const HWND edit = ListView_GetEditControl(list());
    ::SetWindowTextW(edit, L"Typed");
    ::SendMessageW(edit, WM_KEYDOWN, VK_RETURN, 1);
    EXPECT_EQ(storedNames(), Names{L"Typed"});
    EXPECT_TRUE(m_dlg.isWindow());
}

TEST_F(ConfigWindow, GivenUpOrUnchangedNamesChangeNothing) {
    favourites({L"One", L"Two"});
    ASSERT_TRUE(m_dlg.open());
    type(0, nullptr);
    type(0, L" One ");
    type(-1, L"x");
    type(2, L"x");
    EXPECT_EQ(storedNames(), (Names{L"One", L"Two"}));
    EXPECT_TRUE(m_told.empty());
}

TEST_F(ConfigWindow, BadNamesAreTold) {
    favourites({L"One", L"Two"});
    ASSERT_TRUE(m_dlg.open());
    type(0, L" ");
    type(0, L"two");
    type(0, std::wstring(100'000, L'x').c_str());
    EXPECT_EQ(m_told, (Names{text(IDS_ERROR_NAME_EMPTY), text(IDS_ERROR_NAME_TAKEN), text(IDS_ERROR_NAME_LONG)}));
    EXPECT_EQ(storedNames(), (Names{L"One", L"Two"}));
}

TEST_F(ConfigWindow, DeleteAsksFirst) {
    favourites({L"One", L"Two"});
    ASSERT_TRUE(m_dlg.open());
    m_answer = false;
    press(m_dlg, IDC_DELETE);
    EXPECT_EQ(m_told, Names{text(IDS_ASK_DELETE, L"One")});
    EXPECT_EQ(storedNames(), (Names{L"One", L"Two"}));
    m_answer = true;
    key(VK_DELETE);
    EXPECT_EQ(storedNames(), Names{L"Two"});
    EXPECT_EQ(ListView_GetItemCount(list()), 1);
    EXPECT_EQ(setup::selectedRow(list()), 0);
}

TEST_F(ConfigWindow, DeletingTheLastOneLeavesTheFocusInTheWindow) {
    favourites({L"One"});
    ASSERT_TRUE(m_dlg.open());
    ::SetFocus(control(m_dlg, IDC_DELETE));
    press(m_dlg, IDC_DELETE);
    EXPECT_TRUE(storedNames().empty());
    EXPECT_FALSE(::IsWindowEnabled(control(m_dlg, IDC_DELETE)));
    EXPECT_EQ(::GetFocus(), list());
}

TEST_F(ConfigWindow, ListThatAnotherProgramChangedIsReadAgain) {
    favourites({L"One", L"Two"});
    ASSERT_TRUE(m_dlg.open());
    favourites({L"Zero", L"One", L"Two"});
    press(m_dlg, IDC_DELETE);
    EXPECT_EQ(m_told.back(), text(IDS_ERROR_CHANGED));
    EXPECT_EQ(storedNames(), (Names{L"Zero", L"One", L"Two"}));
    EXPECT_EQ(ListView_GetItemCount(list()), 3);
}

TEST_F(ConfigWindow, MayBeClosedWhileTheQuestionStands) {
    favourites({L"One"});
    ASSERT_TRUE(m_dlg.open());
    m_whileTelling = [this] { ::SendMessageW(m_dlg.m_hWnd, WM_CLOSE, 0, 0); };
    press(m_dlg, IDC_DELETE);
    EXPECT_FALSE(m_dlg.isWindow());
    EXPECT_EQ(storedNames(), Names{L"One"});
}

TEST_F(ConfigWindow, ForeignNotificationsAreLeftAlone) {
    ASSERT_TRUE(m_dlg.open());
    ::SendMessageW(m_dlg.m_hWnd, WM_NOTIFY, 0, 0);
    NMHDR header{m_dlg.m_hWnd, 0, static_cast<UINT>(LVN_ENDLABELEDITW)};
    ::SendMessageW(m_dlg.m_hWnd, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&header));
    EXPECT_TRUE(m_told.empty());
}

namespace {

// One run of the program, which ends automatically when its window was opened.
int runApp(const setup::Surroundings& surroundings, const wchar_t* commandLine, const wchar_t* className) {
    setup::CSetupApp app(surroundings);
    bool seen = false;
    std::pair<const wchar_t*, bool*> watch{className, &seen};
    static std::pair<const wchar_t*, bool*>* s_pWatch;
    s_pWatch = &watch;
    const UINT_PTR timer = ::SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR, DWORD) {
        if (const HWND window = ::FindWindowW(s_pWatch->first, nullptr); window != nullptr) {
            *s_pWatch->second = true;
            ::PostMessageW(window, WM_CLOSE, 0, 0);
        }
    });
    const int code = app.Main(::GetModuleHandleW(nullptr), commandLine);
    ::KillTimer(nullptr, timer);
    return seen ? 100 + code : code;
}

}  // namespace

using App = Window;

TEST_F(App, OpensTheWindowThatTheCommandLineAsksFor) {
    EXPECT_EQ(runApp(m_surroundings, L"\\Config", OUTPUT_SETUP_CLASS_CONFIG), 100);
    EXPECT_EQ(runApp(m_surroundings, L"\\Save", OUTPUT_SETUP_CLASS_SAVE), 100);
    EXPECT_EQ(runApp(m_surroundings, L"\\OutputConf 131078", OUTPUT_SETUP_CLASS_OUTPUT), 100);
    EXPECT_TRUE(m_told.empty());
}

TEST_F(App, BadCommandLineIsToldAndEndsWithOne) {
    EXPECT_EQ(runApp(m_surroundings, L"\\Nonsense", OUTPUT_SETUP_CLASS_CONFIG), 1);
    EXPECT_EQ(m_told, Names{text(IDS_ERROR_COMMAND_LINE)});
}

TEST_F(App, WithoutDisplaysOnlyTheFavouritesAreThere) {
    m_displays.clear();
    EXPECT_EQ(runApp(m_surroundings, L"\\Save", OUTPUT_SETUP_CLASS_SAVE), 1);
    EXPECT_EQ(runApp(m_surroundings, L"\\OutputConf 131078", OUTPUT_SETUP_CLASS_OUTPUT), 1);
    EXPECT_EQ(m_told, (Names{text(IDS_ERROR_NO_DISPLAY), text(IDS_ERROR_NO_DISPLAY)}));
    EXPECT_EQ(runApp(m_surroundings, L"\\Config", OUTPUT_SETUP_CLASS_CONFIG), 100);
}

TEST_F(App, WarningIsToldBeforeTheWindowOpens) {
    m_surroundings.warning = L"beware";
    EXPECT_EQ(runApp(m_surroundings, L"\\Config", OUTPUT_SETUP_CLASS_CONFIG), 100);
    EXPECT_EQ(m_told, Names{L"beware"});
}
