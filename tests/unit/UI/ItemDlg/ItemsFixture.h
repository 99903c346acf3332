// Shared by the tests of the item windows: the application, the log, and a card for the items.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "plugins/InstrumentedPlugin.h"
#include "support/AppRoom.h"
#include "support/AppSeams.h"
#include "support/LogCapture.h"

inline bool operator==(const RECT& a, const RECT& b) {
    return ::EqualRect(&a, &b) != FALSE;
}
inline void PrintTo(const RECT& rect, std::ostream* out) {
    *out << '(' << rect.left << ", " << rect.top << ")-(" << rect.right << ", " << rect.bottom << ')';
}

namespace items {

using support::AppRoom;
using support::windowRect;

// Where an item is whose caption box or preview is tested.
inline constexpr RECT kItem{300, 200, 372, 272};

inline RECT rect(LONG left, LONG top, LONG right, LONG bottom) {
    return {left, top, right, bottom};
}

inline bool shown(HWND window) {
    return ::IsWindowVisible(window) != FALSE;
}

inline void place(HWND window, int x, int y, int width, int height) {
    ::SetWindowPos(window, HWND_TOPMOST, x, y, width, height, SWP_NOACTIVATE);
}

// Carries out pending paints now.
inline void paintNow(HWND window) {
    ::UpdateWindow(window);
}

inline bool waitsForPaint(HWND window) {
    return ::GetUpdateRect(window, nullptr, FALSE) != FALSE;
}

inline DWORD exStyle(HWND window) {
    return static_cast<DWORD>(::GetWindowLongPtrW(window, GWL_EXSTYLE));
}

struct Layer {
    COLORREF key = 0;
    BYTE alpha = 0xEE;
    DWORD flags = 0;
};
inline Layer layerOf(HWND window) {
    Layer layer;
    ::GetLayeredWindowAttributes(window, &layer.key, &layer.alpha, &layer.flags);
    return layer;
}

class ItemTest : public testing::Test {
 protected:
    // The first room of a process reads the settings, and logs what is missing of them.
    ItemTest() { m_log.clear(); }

    [[nodiscard]] std::vector<std::wstring> errors() const { return m_log.errors(); }
    [[nodiscard]] bool logged(const std::wstring& line) const { return m_log.count(line) > 0; }

    // A card of the strip with the instrumented plug-in.
    CBlackCard& addCard(const wchar_t* function, const std::vector<DWORD>& codes) {
        CBlackCard& card = m_room.addCard();
        EXPECT_EQ(card.initialize(function, codes, L"Caption", m_plugin.path().c_str()), S_OK);
        card.setCardRect({0, 0, 96, 112});
        place(m_room.stripWindow(), 300, 0, 96, 112);
        return card;
    }
    // The strip exists, and the rule for a lost focus hides it.
    void showStrip() {
        ::ShowWindow(m_room.stripWindow(), SW_SHOWNOACTIVATE);
        ASSERT_TRUE(stripShown());
    }
    [[nodiscard]] bool stripShown() const { return shown(m_room.stripWindow()); }

    support::LogCapture m_log;
    AppRoom m_room;
    instr::InstrumentedPlugin m_plugin;
};

inline LRESULT killFocus(HWND window, HWND next) {
    return ::SendMessageW(window, WM_KILLFOCUS, reinterpret_cast<WPARAM>(next), 0);
}

inline void mouse(HWND window, UINT message, int x, int y) {
    ::SendMessageW(window, message, 0, MAKELPARAM(x, y));
}

}  // namespace items
