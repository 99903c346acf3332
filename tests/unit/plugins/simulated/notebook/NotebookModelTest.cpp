// What the notebook's window says: rows of the functions that have a card, words instead of calls, marks.
#include "NotebookModel.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "FenwynPlugin.h"
#include "Functions.h"
#include "NotebookView.h"
#include "SampleSettings.h"
#include "State.h"
#include "Words.h"
#include "ZelHotkey.h"
#include "captions/Captions.h"
#include "common/Handle.h"
#include "common/UiLanguage.h"
#include "plugins/simulated/Plugin.h"
#include "plugins/simulated/Sandbox.h"
#include "support/RegistryRoom.h"

namespace plugintest {
namespace {

using support::RegistryRoom;

class Notebook : public testing::Test {
 protected:
    void read() { m_model = sim::readNotebook(m_model); }
    [[nodiscard]] const sim::NotebookRow& row(const std::wstring& function) const {
        static const sim::NotebookRow none;
        const auto found = std::ranges::find(m_model.rows, function, &sim::NotebookRow::function);
        return found == m_model.rows.end() ? none : *found;
    }
    [[nodiscard]] std::vector<std::wstring> marked() const {
        std::vector<std::wstring> names;
        for (const sim::NotebookRow& row : m_model.rows) {
            if (row.changed) {
                names.push_back(row.function);
            }
        }
        return names;
    }
    static void list(const wchar_t* names) {
        RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, names);
    }

    Sandbox m_sandbox;
    sim::NotebookModel m_model;
};

using Names = std::vector<std::wstring>;

TEST_F(Notebook, HasARowForEachFunctionOfTheList) {
    list(L"Zoom;Output;Mute");
    read();
    ASSERT_EQ(m_model.rows.size(), 3U);
    EXPECT_EQ(m_model.rows[0].function, L"Mute") << "in the order of the keys";
    EXPECT_EQ(m_model.rows[1].function, L"Zoom");
    EXPECT_EQ(m_model.rows[2].function, L"Output");
    list(L"Output_2;");
    read();
    ASSERT_EQ(m_model.rows.size(), 1U) << "Output is not Output_2";
    EXPECT_EQ(m_model.rows[0].function, L"Output_2");
    list(L"");
    read();
    EXPECT_TRUE(m_model.rows.empty());
}

TEST_F(Notebook, WithoutAListItShowsTheSample) {
    read();
    EXPECT_EQ(m_model.rows.size(), std::size(sim::kFunctions) - 1);
    EXPECT_TRUE(row(L"Output").function.empty());
}

TEST_F(Notebook, ShowsTheUsersListWhereTheMachineHasNone) {
    RegistryRoom::setText(HKEY_CURRENT_USER, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Zoom;");
    read();
    ASSERT_EQ(m_model.rows.size(), 1U);
    list(L"Mute;Lock;");
    read();
    EXPECT_EQ(m_model.rows.size(), 2U);
}

TEST_F(Notebook, CaptionsAreThoseOfTheCards) {
    list(L"Mute;Lock");
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", sim::kCaptionValue, L"Quiet!");
    read();
    EXPECT_EQ(row(L"Mute").caption, L"Quiet!");
    EXPECT_EQ(row(L"Lock").caption, captions::captionOf(L"Lock", common::wantedLanguage()));
}

TEST_F(Notebook, SaysInWordsWhatWasChosen) {
    read();
    EXPECT_EQ(m_model.lastChoice, sim::word(L"Nothing chosen yet"));
    EXPECT_EQ(Plugin(L"Brightness").focus(8), FENWYN_OK);
    EXPECT_EQ(Plugin(L"Brightness").focus(-1), FENWYN_OK);
    read();
    EXPECT_EQ(m_model.lastChoice,
              sim::word(L"Last choice: %1, %2", {sim::word(L"Brightness"), row(L"Brightness").state}));
    sim::writeNumber(L"Mute", L"SelectItem.Result", 1);
    EXPECT_NE(Plugin(L"Mute").select(0), FENWYN_OK);
    read();
    EXPECT_EQ(m_model.lastChoice, sim::word(L"%1 refused the choice", {sim::word(L"Mute")}));
}

TEST_F(Notebook, NoTextHasTheNameOfACall) {
    for (const sim::Function& function : sim::kFunctions) {
        sim::writeText({}, sim::kLastFunction, function.name);
        read();
        for (const std::wstring& text : {m_model.lastChoice, m_model.hint, row(function.name).state}) {
            EXPECT_EQ(text.find_first_of(L"()=%_"), std::wstring::npos) << text;
            EXPECT_EQ(text.find(L"Item"), std::wstring::npos) << text;
        }
    }
}

TEST_F(Notebook, MarksTheLatestChangeAlone) {
    read();
    EXPECT_TRUE(marked().empty());
    EXPECT_EQ(Plugin(L"Mute").select(0), FENWYN_OK);
    read();
    EXPECT_EQ(marked(), Names{L"Mute"});
    read();
    EXPECT_EQ(marked(), Names{L"Mute"}) << "until the next change";
    EXPECT_EQ(Plugin(L"Zoom").select(1), FENWYN_OK);
    read();
    EXPECT_EQ(marked(), Names{L"Zoom"});
}

TEST_F(Notebook, ChangeOfTheListMarksNothing) {
    list(L"Mute;Zoom");
    read();
    sim::writeNumber(L"Lock", L"Count", 1);
    list(L"Lock;Zoom;");
    read();
    EXPECT_TRUE(marked().empty());
}

TEST_F(Notebook, NoMarkStaysAfterAReset) {
    EXPECT_EQ(Plugin(L"Mute").select(0), FENWYN_OK);
    read();
    EXPECT_EQ(Plugin(L"Zoom").select(1), FENWYN_OK);
    read();
    EXPECT_EQ(marked(), Names{L"Zoom"});
    EXPECT_TRUE(sim::resetState());
    read();
    EXPECT_TRUE(marked().empty());
    EXPECT_EQ(m_model.lastChoice, sim::word(L"Nothing chosen yet"));
}

TEST_F(Notebook, TellsHowTheModifierIsUsed) {
    const std::wstring modifier = sim::word(L"right Ctrl");
    read();
    EXPECT_EQ(m_model.hint, sim::word(L"Hold %1 and press a key", {modifier}));
    RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_STICKY_MODIFIER, 1);
    read();
    EXPECT_EQ(m_model.hint, sim::word(L"Tap %1, then press a key", {modifier}));
    EXPECT_FALSE(m_model.latched);
    RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_STATE, ZEL_VALUE_LATCHED, 1);
    read();
    EXPECT_TRUE(m_model.latched);
    EXPECT_EQ(m_model.hint, sim::word(L"%1 stays down: press a key", {modifier}));
}

TEST_F(Notebook, NamesTheModifierThatIsSet) {
    const std::vector<std::pair<DWORD, std::wstring>> rows{{0, sim::word(L"right Ctrl")},
                                                           {VK_RMENU, sim::word(L"right Alt")},
                                                           {VK_MENU, sim::word(L"right Alt")},
                                                           {VK_RWIN, sim::word(L"right Windows key")},
                                                           {VK_CAPITAL, sim::word(L"Caps Lock")},
                                                           {VK_APPS, sim::word(L"menu key")},
                                                           {VK_F13, L"F13"},
                                                           {VK_F24, L"F24"},
                                                           {0xFE, sim::word(L"the modifier")}};
    for (const auto& [key, name] : rows) {
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY, key);
        read();
        EXPECT_EQ(m_model.hint, sim::word(L"Hold %1 and press a key", {name}));
    }
}

TEST_F(Notebook, KeysAreThoseOfTheList) {
    const wchar_t* const mute = ZEL_REG_HOTKEY L"\\Mute";
    list(L"Mute;Brightness;");
    read();
    EXPECT_EQ(row(L"Mute").keys, L"F1") << "the sample's, where the list has none";
    EXPECT_EQ(row(L"Brightness").keys, L"F6 / F7");
    const std::vector<std::pair<DWORD, std::wstring>> rows{{0x3C, L"F2"},
                                                           {0x39, sim::word(L"Space")},
                                                           {0, sim::word(L"right Ctrl")},
                                                           {ZEL_CODE_ALONE | 0x44, L"F10"},
                                                           {ZEL_CODE_VIRTUAL_KEY | VK_F13, L"F13"},
                                                           {0x7777, sim::word(L"key %1", {L"0x7777"})}};
    for (const auto& [code, name] : rows) {
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, mute, ZEL_VALUE_CODE, code);
        read();
        EXPECT_EQ(row(L"Mute").keys, name);
    }
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, mute, ZEL_VALUE_CODE, {0x58, 0, 0, 0, 0x3B, 0, 0, 0});
    read();
    EXPECT_EQ(row(L"Mute").keys, L"F12 / F1");
}

// Draws the notebook on a bitmap of its own.
class Drawing {
 public:
    Drawing(int dpi, const sim::NotebookModel& model) : m_size(sim::CNotebookView(dpi).sizeFor(model)) {
        const common::WindowDc screen(nullptr);
        m_dc.reset(CreateCompatibleDC(screen.get()));
        m_bitmap.reset(CreateCompatibleBitmap(screen.get(), m_size.cx, m_size.cy));
        const common::SelectScope select(m_dc.get(), m_bitmap.get());
        sim::CNotebookView(dpi).draw(m_dc.get(), model);
        for (int y = 0; y < m_size.cy; ++y) {
            for (int x = 0; x < m_size.cx; ++x) {
                m_pixels.push_back(GetPixel(m_dc.get(), x, y));
            }
        }
    }

    [[nodiscard]] SIZE size() const { return m_size; }
    [[nodiscard]] bool has(COLORREF color) const { return std::ranges::find(m_pixels, color) != m_pixels.end(); }

 private:
    SIZE m_size;
    common::UniqueMemoryDc m_dc;
    common::UniqueBitmap m_bitmap;
    std::vector<COLORREF> m_pixels;
};

constexpr COLORREF kMark = RGB(0x0A, 0x5F, 0xC4);

TEST_F(Notebook, IsAsHighAsItsRowsAtEveryDpi) {
    list(L"Mute;Lock;");
    read();
    const SIZE one = Drawing(96, m_model).size();
    list(L"Mute;Lock;Zoom;");
    read();
    EXPECT_EQ(Drawing(96, m_model).size().cy, one.cy + 34);
    EXPECT_EQ(Drawing(192, m_model).size().cy, 2 * (one.cy + 34));
    EXPECT_EQ(Drawing(192, m_model).size().cx, 2 * one.cx);
}

TEST_F(Notebook, MarkIsDrawnAndGone) {
    list(L"Mute;Zoom;");
    read();
    EXPECT_FALSE(Drawing(96, m_model).has(kMark));
    EXPECT_EQ(Plugin(L"Mute").select(0), FENWYN_OK);
    read();
    EXPECT_TRUE(Drawing(96, m_model).has(kMark));
    EXPECT_TRUE(sim::resetState());
    read();
    EXPECT_FALSE(Drawing(96, m_model).has(kMark));
}

}  // namespace
}  // namespace plugintest
