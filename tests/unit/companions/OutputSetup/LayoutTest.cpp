// The layout of the three windows, measured in the font that the system has, at 96 to 192 dpi and in every language.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "ConfigDlg.h"
#include "LanguageTexts.h"
#include "OutputDlg.h"
#include "SaveDlg.h"
#include "SetupIds.h"
#include "Texts.h"
#include "common/Handle.h"
#include "support/RegistryRoom.h"

namespace {

constexpr int kMargin = 7;         // dialog units, as everything of the layout
constexpr int kButtonPadding = 3;  // left and right of a button's text
constexpr int kCellPadding = 12;   // pixels at 96 dpi that a list keeps around the text of a cell

LOGFONTW fontAt(int dpi) {
    LOGFONTW font{};
    font.lfHeight = -::MulDiv(9, dpi, 72);
    std::wstring(L"Tahoma").copy(font.lfFaceName, LF_FACESIZE - 1);
    return font;
}

std::vector<HWND> controlsOf(HWND dialog) {
    std::vector<HWND> controls;
    for (HWND control = ::GetWindow(dialog, GW_CHILD); control != nullptr;
         control = ::GetWindow(control, GW_HWNDNEXT)) {
        controls.push_back(control);
    }
    return controls;
}

std::wstring classOf(HWND window) {
    wchar_t name[64] = L"";
    ::GetClassNameW(window, name, 64);
    return name;
}

bool isButton(HWND window) {
    return classOf(window) == L"Button";
}

RECT placeOf(HWND control) {
    RECT place{};
    ::GetWindowRect(control, &place);
    ::MapWindowPoints(nullptr, ::GetParent(control), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

// In pixels, without the ampersand of the access key.
SIZE measured(HWND control, const std::wstring& text) {
    const common::WindowDc dc(control);
    const common::SelectScope select(dc.get(), reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT extent{};
    ::DrawTextW(dc.get(), text.c_str(), -1, &extent, DT_CALCRECT | DT_SINGLELINE);
    return {extent.right, extent.bottom};
}

// The same text in every language; the text alone when it is none of the string table.
std::vector<std::wstring> inEveryLanguage(const std::wstring& shown) {
    for (UINT id = IDS_PROGRAM; id <= IDS_MODE_OTHER; ++id) {
        if (!shown.empty() && setup::text(id) == shown) {
            return textsOf(id);
        }
    }
    return {shown};
}

class Layout : public testing::TestWithParam<int> {
 protected:
    Layout() {
        const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_LISTVIEW_CLASSES};
        ::InitCommonControlsEx(&classes);
        m_surroundings.displays = [] {
            return std::vector<setup::Display>{{L"1", L"Built-in screen", L"LCD", true, {0, 0, 1920, 1080}},
                                               {L"2", L"Monitor", L"DisplayPort 1", false, {1920, 0, 4480, 1440}}};
        };
        m_surroundings.font = [] { return fontAt(GetParam()); };
        EXPECT_EQ(favourites::store({{L"Desk", FENWYN_MODE_EXTEND_RIGHT, {}}}), ERROR_SUCCESS);
        m_windows.push_back(
            std::make_unique<setup::COutputDlg>(setup::Request{setup::Task::Output, 4, 0x1FF}, m_surroundings));
        m_windows.push_back(std::make_unique<setup::CSaveDlg>(m_surroundings));
        m_windows.push_back(std::make_unique<setup::CConfigDlg>(m_surroundings));
        for (const auto& window : m_windows) {
            EXPECT_TRUE(window->open());
        }
    }

    // Dialog units of the window's font as pixels.
    static POINT units(HWND dialog, int x, int y) {
        const SIZE alphabet =
            measured(::GetDlgItem(dialog, IDC_DISPLAYS_LABEL), L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
        return {::MulDiv(x, (alphabet.cx / 26 + 1) / 2, 4), ::MulDiv(y, alphabet.cy, 8)};
    }

    template <typename Check>
    void forEachWindow(Check check) const {
        for (const auto& window : m_windows) {
            SCOPED_TRACE(testing::Message() << window->className() << " at " << GetParam() << " dpi");
            check(window->m_hWnd);
        }
    }

    support::RegistryRoom m_registry;
    setup::Surroundings m_surroundings;
    std::vector<std::unique_ptr<setup::CSetupDlg>> m_windows;
};

}  // namespace

TEST_P(Layout, EveryControlHasTheSystemsFont) {
    forEachWindow([](HWND dialog) {
        for (const HWND control : controlsOf(dialog)) {
            LOGFONTW font{};
            ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font, &font);
            EXPECT_EQ(font.lfHeight, fontAt(GetParam()).lfHeight);
            EXPECT_STREQ(font.lfFaceName, L"Tahoma");
        }
    });
}

TEST_P(Layout, MarginsAreTheSameOnAllSides) {
    forEachWindow([](HWND dialog) {
        RECT client{};
        ::GetClientRect(dialog, &client);
        RECT all{LONG_MAX, LONG_MAX, 0, 0};
        for (const HWND control : controlsOf(dialog)) {
            const RECT place = placeOf(control);
            all = {std::min(all.left, place.left), std::min(all.top, place.top), std::max(all.right, place.right),
                   std::max(all.bottom, place.bottom)};
        }
        const POINT margin = units(dialog, kMargin, kMargin);
        EXPECT_NEAR(all.left, margin.x, 1);
        EXPECT_NEAR(all.top, margin.y, 1);
        EXPECT_NEAR(client.right - all.right, margin.x, 2);
        EXPECT_NEAR(client.bottom - all.bottom, margin.y, 2);
    });
}

TEST_P(Layout, ButtonsHaveOneSizeAndEndInOneLine) {
    forEachWindow([](HWND dialog) {
        RECT client{};
        ::GetClientRect(dialog, &client);
        const RECT last = placeOf(::GetDlgItem(dialog, IDCANCEL));
        EXPECT_NEAR(client.right - last.right, units(dialog, kMargin, 0).x, 2);
        for (const HWND control : controlsOf(dialog)) {
            if (!isButton(control)) {
                continue;
            }
            const RECT place = placeOf(control);
            EXPECT_NEAR(place.right - place.left, last.right - last.left, 1);
            EXPECT_NEAR(place.bottom - place.top, last.bottom - last.top, 1);
            EXPECT_TRUE(std::abs(place.top - last.top) <= 1 || std::abs(place.right - last.right) <= 1)
                << "in a row or a column with the others";
        }
    });
}

TEST_P(Layout, NoControlLiesOverAnother) {
    forEachWindow([](HWND dialog) {
        const std::vector<HWND> controls = controlsOf(dialog);
        for (std::size_t i = 0; i < controls.size(); ++i) {
            for (std::size_t k = i + 1; k < controls.size(); ++k) {
                const RECT first = placeOf(controls[i]);
                const RECT second = placeOf(controls[k]);
                RECT both{};
                EXPECT_FALSE(::IntersectRect(&both, &first, &second)) << i << " " << k;
            }
        }
    });
}

TEST_P(Layout, NoTextIsCutInAnyLanguage) {
    forEachWindow([](HWND dialog) {
        int seen = 0;
        for (const HWND control : controlsOf(dialog)) {
            const std::wstring kind = classOf(control);
            if (kind != L"Button" && kind != L"Static") {
                continue;
            }
            wchar_t shown[256] = L"";
            ::GetWindowTextW(control, shown, 256);
            const RECT place = placeOf(control);
            const LONG room =
                place.right - place.left - (kind == L"Button" ? 2 * units(dialog, kButtonPadding, 0).x : 0);
            for (const std::wstring& text : inEveryLanguage(shown)) {
                ++seen;
                EXPECT_LE(measured(control, text).cx, room) << ::testing::PrintToString(text);
                EXPECT_LE(measured(control, text).cy, place.bottom - place.top) << ::testing::PrintToString(text);
            }
        }
        EXPECT_GE(seen, 6);
    });
}

TEST_P(Layout, ColumnsHaveRoomForTheirTitlesAndCells) {
    forEachWindow([](HWND dialog) {
        for (const HWND control : controlsOf(dialog)) {
            if (classOf(control) != WC_LISTVIEWW) {
                continue;
            }
            const int padding = ::MulDiv(kCellPadding, GetParam(), USER_DEFAULT_SCREEN_DPI);
            for (int column = 0; column < 3; ++column) {
                wchar_t title[64] = L"";
                LVCOLUMNW entry{};
                entry.mask = LVCF_TEXT;
                entry.pszText = title;
                entry.cchTextMax = 64;
                ListView_GetColumn(control, column, &entry);
                std::vector<std::wstring> texts = inEveryLanguage(title);
                for (int row = 0; row < ListView_GetItemCount(control); ++row) {
                    wchar_t cell[128] = L"";
                    ListView_GetItemText(control, row, column, cell, 128);
                    texts.emplace_back(cell);
                }
                if (title == setup::text(IDS_COLUMN_ARRANGEMENT)) {
                    for (UINT id = IDS_MODE; id <= IDS_MODE_LAST; ++id) {
                        std::ranges::copy(textsOf(id), std::back_inserter(texts));
                    }
                }
                for (const std::wstring& text : texts) {
                    EXPECT_LE(measured(control, text).cx + padding, ListView_GetColumnWidth(control, column))
                        << ::testing::PrintToString(text);
                }
            }
        }
    });
}

TEST_P(Layout, ArrangementsFitTheirList) {
    const HWND list = ::GetDlgItem(m_windows[0]->m_hWnd, IDC_MODES);
    RECT client{};
    ::GetClientRect(list, &client);
    for (UINT id = IDS_MODE; id <= IDS_MODE_LAST; ++id) {
        for (const std::wstring& text : textsOf(id)) {
            EXPECT_LE(measured(list, text).cx, client.right) << ::testing::PrintToString(text);
        }
    }
    EXPECT_GE(::SendMessageW(list, LB_GETITEMHEIGHT, 0, 0), measured(list, L"Ág").cy)
        << "lines as high as their letters";
}

INSTANTIATE_TEST_SUITE_P(Dpi, Layout, testing::Values(96, 120, 144, 192));
