#include "NotebookView.h"

#include "Functions.h"
#include "Machine.h"
#include "State.h"
#include "ZelHotkey.h"
#include "ZelModifier.h"

namespace sim {

namespace {

// Design sizes, at 96 dpi.
constexpr int kWidth = 880;
constexpr int kMargin = 22;
constexpr int kHeaderHeight = 62;
constexpr int kRowHeight = 34;
constexpr int kFooterHeight = 44;
constexpr int kColumns = 2;
constexpr int kRowsPerColumn = static_cast<int>((std::size(kFunctions) + kColumns - 1) / kColumns);
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

// 0 if there is none.
DWORD numberOf(HKEY root, const wchar_t* key, const wchar_t* name) {
    DWORD number = 0;
    DWORD bytes = sizeof number;
    RegGetValueW(root, key, name, RRF_RT_REG_DWORD, nullptr, &number, &bytes);
    return number;
}

// The name on the key, as far as the keyboard layout knows it.
std::wstring modifierName() {
    const DWORD key = zelModifierKey(numberOf(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY));
    if (key == VK_RCONTROL) {
        return L"right Ctrl";
    }
    const UINT scan = MapVirtualKeyW(key, MAPVK_VK_TO_VSC_EX);
    const LONG place = static_cast<LONG>((scan & 0xFFU) << 16U | ((scan & 0xFF00U) != 0 ? 1U << 24U : 0U));
    wchar_t name[64] = L"";
    return scan != 0 && GetKeyNameTextW(place, name, static_cast<int>(std::size(name))) > 0 ? name : L"another key";
}

std::wstring hintText() {
    const bool sticky = numberOf(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_STICKY_MODIFIER) != 0;
    return (sticky ? L"Tap the modifier (" : L"Hold the modifier (") + modifierName() + L") and press a key";
}

std::wstring keysOf(const Function& function) {
    std::wstring keys = function.keys[0].name;
    for (std::size_t i = 1; i < function.keyCount(); ++i) {
        keys += std::wstring(L" / ") + function.keys[i].name;
    }
    return keys;
}

}  // namespace

NotebookModel readNotebook(const NotebookModel& previous) {
    NotebookModel model;
    bool anyChanged = false;
    for (std::size_t i = 0; i < std::size(kFunctions); ++i) {
        NotebookRow row{keysOf(kFunctions[i]), kFunctions[i].caption, stateText(kFunctions[i])};
        row.changed = i < previous.rows.size() && previous.rows[i].state != row.state;
        anyChanged |= row.changed;
        model.rows.push_back(std::move(row));
    }
    for (std::size_t i = 0; !anyChanged && i < previous.rows.size(); ++i) {
        model.rows[i].changed = previous.rows[i].changed;
    }
    model.latched = numberOf(HKEY_CURRENT_USER, ZEL_REG_STATE, ZEL_VALUE_LATCHED) != 0;
    model.hint = hintText();
    model.lastCall = readText({}, L"LastCall", {});
    model.lastKey = previous.lastKey;
    return model;
}

CNotebookView::CNotebookView(int dpi)
    : m_nDpi(dpi),
      m_font(fontOf(_scaled(kTextHeight), FW_NORMAL)),
      m_boldFont(fontOf(_scaled(kTextHeight), FW_BOLD)),
      m_titleFont(fontOf(_scaled(kTitleHeight), FW_NORMAL)) {}

SIZE CNotebookView::size() const {
    return {_scaled(kWidth), _scaled(kHeaderHeight + kRowsPerColumn * kRowHeight + kFooterHeight + kMargin / 2)};
}

void CNotebookView::draw(HDC dc, const NotebookModel& model) const {
    const SIZE whole = size();
    fill(dc, {0, 0, whole.cx, whole.cy}, kPaper);
    SetBkMode(dc, TRANSPARENT);
    _drawHeader(dc, model);
    const int columnWidth = (kWidth - 2 * kMargin - (kColumns - 1) * kColumnGap) / kColumns;
    for (std::size_t i = 0; i < model.rows.size(); ++i) {
        const int left = kMargin + static_cast<int>(i) / kRowsPerColumn * (columnWidth + kColumnGap);
        const int top = kHeaderHeight + static_cast<int>(i) % kRowsPerColumn * kRowHeight;
        _drawRow(dc, model.rows[i],
                 {_scaled(left), _scaled(top), _scaled(left + columnWidth), _scaled(top + kRowHeight)});
    }
    _drawFooter(dc, model);
}

void CNotebookView::_drawHeader(HDC dc, const NotebookModel& model) const {
    const RECT place{_scaled(kMargin), _scaled(8), _scaled(kWidth - kMargin), _scaled(kHeaderHeight - 8)};
    _drawText(dc, m_titleFont.get(), kInk, L"Simulated notebook", place, DT_LEFT);
    if (model.latched) {
        _drawText(dc, m_boldFont.get(), kLatched, L"Modifier latched", place, DT_RIGHT);
    } else {
        _drawText(dc, m_font.get(), kQuiet, model.hint, place, DT_RIGHT);
    }
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
    const int top = kHeaderHeight + kRowsPerColumn * kRowHeight + kMargin / 4;
    const RECT place{_scaled(kMargin), _scaled(top), _scaled(kWidth - kMargin), _scaled(top + kFooterHeight)};
    RECT calls = place;
    calls.right = _scaled(kWidth * 2 / 3);
    RECT keys = place;
    keys.left = calls.right;
    _drawText(dc, m_font.get(), kQuiet, model.lastCall.empty() ? L"No call yet" : L"Last call: " + model.lastCall,
              calls, DT_LEFT);
    _drawText(dc, m_font.get(), kQuiet, model.lastKey.empty() ? L"" : L"Key that came through: " + model.lastKey, keys,
              DT_RIGHT);
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
