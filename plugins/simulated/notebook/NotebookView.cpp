#include "NotebookView.h"

#include "Words.h"

namespace sim {

namespace {

// Design sizes, at 96 dpi.
constexpr int kWidth = 880;
constexpr int kMargin = 22;
constexpr int kHeaderHeight = 62;
constexpr int kRowHeight = 34;
constexpr int kFooterHeight = 44;
constexpr int kColumns = 2;
constexpr int kColumnGap = 28;
constexpr int kKeyWidth = 72;
constexpr int kCaptionLeft = 88;
constexpr int kStateLeft = 226;
constexpr int kMarkWidth = 3;
constexpr int kTitleHeight = 22;
constexpr int kTextHeight = 15;

constexpr COLORREF kPaper = RGB(0xF5, 0xF6, 0xF8);
constexpr COLORREF kLine = RGB(0xDD, 0xE1, 0xE6);
constexpr COLORREF kInk = RGB(0x1C, 0x20, 0x26);
constexpr COLORREF kQuiet = RGB(0x5B, 0x63, 0x6E);
constexpr COLORREF kAccent = RGB(0x0A, 0x5F, 0xC4);
constexpr COLORREF kKeyFace = RGB(0xFF, 0xFF, 0xFF);
constexpr COLORREF kKeyEdge = RGB(0xB9, 0xC0, 0xCA);
constexpr COLORREF kLatched = RGB(0xC2, 0x41, 0x0C);

// A face that every system has or substitutes by one with a real bold and the measured letter widths.
common::UniqueFont fontOf(int height, LONG weight) {
    LOGFONTW font{};
    font.lfHeight = -height;
    font.lfWeight = weight;
    font.lfQuality = CLEARTYPE_QUALITY;
    std::wstring(L"Arial").copy(font.lfFaceName, LF_FACESIZE - 1);
    return common::UniqueFont(CreateFontIndirectW(&font));
}

void fill(HDC dc, const RECT& place, COLORREF color) {
    const common::UniqueBrush brush(CreateSolidBrush(color));
    FillRect(dc, &place, brush.get());
}

int rowsPerColumn(const NotebookModel& model) {
    return (static_cast<int>(model.rows.size()) + kColumns - 1) / kColumns;
}

}  // namespace

CNotebookView::CNotebookView(int dpi)
    : m_nDpi(dpi),
      m_font(fontOf(_scaled(kTextHeight), FW_NORMAL)),
      m_boldFont(fontOf(_scaled(kTextHeight), FW_BOLD)),
      m_titleFont(fontOf(_scaled(kTitleHeight), FW_NORMAL)) {}

SIZE CNotebookView::sizeFor(const NotebookModel& model) const {
    return {_scaled(kWidth), _scaled(kHeaderHeight + rowsPerColumn(model) * kRowHeight + kFooterHeight + kMargin / 2)};
}

void CNotebookView::draw(HDC dc, const NotebookModel& model) const {
    const SIZE whole = sizeFor(model);
    fill(dc, {0, 0, whole.cx, whole.cy}, kPaper);
    SetBkMode(dc, TRANSPARENT);
    _drawHeader(dc, model);
    const int columnWidth = (kWidth - 2 * kMargin - (kColumns - 1) * kColumnGap) / kColumns;
    for (std::size_t i = 0; i < model.rows.size(); ++i) {
        const int left = kMargin + static_cast<int>(i) / rowsPerColumn(model) * (columnWidth + kColumnGap);
        const int top = kHeaderHeight + static_cast<int>(i) % rowsPerColumn(model) * kRowHeight;
        _drawRow(dc, model.rows[i],
                 {_scaled(left), _scaled(top), _scaled(left + columnWidth), _scaled(top + kRowHeight)});
    }
    _drawFooter(dc, model);
}

void CNotebookView::_drawHeader(HDC dc, const NotebookModel& model) const {
    const RECT place{_scaled(kMargin), _scaled(8), _scaled(kWidth - kMargin), _scaled(kHeaderHeight - 8)};
    _drawText(dc, m_titleFont.get(), kInk, word(L"Simulated notebook"), place, DT_LEFT);
    _drawText(dc, model.latched ? m_boldFont.get() : m_font.get(), model.latched ? kLatched : kQuiet, model.hint, place,
              DT_RIGHT);
}

void CNotebookView::_drawRow(HDC dc, const NotebookRow& row, const RECT& place) const {
    fill(dc, {place.left, place.bottom - 1, place.right, place.bottom}, kLine);
    if (row.changed) {
        const int left = place.left - _scaled(3 * kMarkWidth);
        fill(dc, {left, place.top + _scaled(6), left + _scaled(kMarkWidth), place.bottom - _scaled(6)}, kAccent);
    }
    const int inset = _scaled(4);
    _drawKey(dc, row.keys, {place.left, place.top + inset, place.left + _scaled(kKeyWidth), place.bottom - inset - 1});
    _drawText(dc, m_font.get(), kInk, row.caption,
              {place.left + _scaled(kCaptionLeft), place.top, place.left + _scaled(kStateLeft - 8), place.bottom},
              DT_LEFT);
    _drawText(dc, m_boldFont.get(), row.changed ? kAccent : kInk, row.state,
              {place.left + _scaled(kStateLeft), place.top, place.right, place.bottom}, DT_LEFT);
}

void CNotebookView::_drawFooter(HDC dc, const NotebookModel& model) const {
    const int top = kHeaderHeight + rowsPerColumn(model) * kRowHeight + kMargin / 4;
    const RECT place{_scaled(kMargin), _scaled(top), _scaled(kWidth - kMargin), _scaled(top + kFooterHeight)};
    RECT choice = place;
    choice.right = _scaled(kWidth * 2 / 3);
    RECT typed = place;
    typed.left = choice.right;
    _drawText(dc, m_font.get(), kQuiet, model.lastChoice, choice, DT_LEFT);
    if (!model.typed.empty()) {
        _drawText(dc, m_font.get(), kQuiet, word(L"Typed here: %1", {model.typed}), typed, DT_RIGHT);
    }
}

void CNotebookView::_drawKey(HDC dc, const std::wstring& label, const RECT& place) const {
    const common::UniqueBrush face(CreateSolidBrush(kKeyFace));
    const common::UniquePen edge(CreatePen(PS_SOLID, 1, kKeyEdge));
    const common::SelectScope selectFace(dc, face.get());
    const common::SelectScope selectEdge(dc, edge.get());
    RoundRect(dc, place.left, place.top, place.right, place.bottom, _scaled(6), _scaled(6));
    _drawText(dc, m_font.get(), kInk, label, place, DT_CENTER);
}

void CNotebookView::_drawText(HDC dc, HFONT font, COLORREF color, const std::wstring& text, RECT place,
                              UINT format) const {
    const common::SelectScope selectFont(dc, font);
    SetTextColor(dc, color);
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &place,
              format | DT_SINGLELINE | DT_VCENTER | DT_END_ELLIPSIS | DT_NOPREFIX);
}

}  // namespace sim
