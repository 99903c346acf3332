// The picture of the simulated notebook: its contents, and drawing it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "common/Handle.h"

namespace sim {

struct NotebookRow {
    std::wstring keys;
    std::wstring caption;
    std::wstring state;
    bool changed = false;  // by the latest change

    bool operator==(const NotebookRow&) const = default;
};

struct NotebookModel {
    std::vector<NotebookRow> rows;
    bool latched = false;   // the modifier stays down without being held
    std::wstring hint;      // what to do with the modifier
    std::wstring lastCall;  // the last call that changed the machine
    std::wstring lastKey;   // the last key that reached the window

    bool operator==(const NotebookModel&) const = default;
};

// Reads the current state of the machine. Rows whose state differs from `previous` are marked; if none differs, the
// marks do not change.
[[nodiscard]] NotebookModel readNotebook(const NotebookModel& previous);

class CNotebookView {
 public:
    // dpi: of the screen; 96 draws the design sizes.
    explicit CNotebookView(int dpi);

    [[nodiscard]] SIZE size() const;  // pixels
    void draw(HDC dc, const NotebookModel& model) const;

 private:
    [[nodiscard]] int _scaled(int length) const { return MulDiv(length, m_nDpi, USER_DEFAULT_SCREEN_DPI); }
    void _drawHeader(HDC dc, const NotebookModel& model) const;
    void _drawRow(HDC dc, const NotebookRow& row, const RECT& place) const;
    void _drawFooter(HDC dc, const NotebookModel& model) const;
    void _drawKey(HDC dc, const std::wstring& label, const RECT& place) const;
    void _drawText(HDC dc, HFONT font, COLORREF color, const std::wstring& text, RECT place, UINT format) const;

    int m_nDpi;
    common::UniqueFont m_font;
    common::UniqueFont m_boldFont;
    common::UniqueFont m_titleFont;
};

}  // namespace sim
