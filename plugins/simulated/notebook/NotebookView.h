// The picture of the simulated notebook.
#pragma once

#include <windows.h>

#include <string>

#include "NotebookModel.h"
#include "common/Handle.h"

namespace sim {

class CNotebookView {
 public:
    // dpi: of the screen; 96 draws the design sizes.
    explicit CNotebookView(int dpi);

    [[nodiscard]] SIZE sizeFor(const NotebookModel& model) const;  // pixels
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
