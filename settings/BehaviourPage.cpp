// The settings as a list that can be scrolled, made from the table: a heading for each group, and for each setting its
// control, a sentence that says what it does, and its default.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "Allowed.h"
#include "Controls.h"
#include "Model.h"
#include "Pages.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "common/DialogFont.h"
#include "common/Handle.h"

namespace settings {
namespace {

// Dialog units. Of a row: where its control begins, and how far the sentence is indented.
constexpr int kMargin = 7;
constexpr int kControlLeft = 158;
constexpr int kIndent = 12;
constexpr int kLine = 8;
constexpr int kControlHeight = 12;
constexpr int kButtonHeight = 14;
constexpr int kNumberWidth = 52;
constexpr int kListWidth = 110;
constexpr int kButtonWidth = 50;
constexpr int kSmallGap = 3;
constexpr int kGap = 7;
constexpr int kDroppedLines = 10;
constexpr int kScrolledLines = 3;  // by a notch of the wheel

// The numbers of a row's controls.
enum Part : int { kLabel, kControl, kSpin, kUnit, kMore, kBad, kRepair, kParts };

struct Heading {
    Group group;
    UINT text;
};
constexpr Heading kHeadings[] = {{Group::Place, IDS_GROUP_PLACE},
                                 {Group::Showing, IDS_GROUP_SHOWING},
                                 {Group::Captions, IDS_GROUP_CAPTIONS},
                                 {Group::Plugins, IDS_GROUP_PLUGINS},
                                 {Group::Language, IDS_GROUP_LANGUAGE}};

UINT unitText(Kind kind) {
    return kind == Kind::Pixels ? IDS_PIXELS : IDS_MILLISECONDS;
}

bool isNumber(Kind kind) {
    return kind == Kind::Milliseconds || kind == Kind::Pixels;
}

bool isChosen(Kind kind) {
    return kind == Kind::Position || kind == Kind::Language;
}

std::wstring defaultText(const Value& value) {
    switch (value.kind) {
        case Kind::YesNo:
            return text(value.standard != 0 ? IDS_ON : IDS_OFF);
        case Kind::Position:
            return text(value.standard != 0 ? IDS_BOTTOM : IDS_TOP);
        case Kind::Language:
            return text(IDS_LANGUAGE_OF_WINDOWS);
        case Kind::Path:
            return text(IDS_EMPTY);
        default:
            return std::to_wstring(value.standard) + L" " + text(unitText(value.kind));
    }
}

std::wstring sentenceOf(const Value& value) {
    const bool forAll = value.scope == Scope::Machine;
    return text(value.label + 1) + L" " + text(IDS_DEFAULT, {defaultText(value)}) +
           (forAll ? L" " + text(IDS_FOR_ALL) : L"");
}

// Why a stored value is not good; only for one that is not.
std::wstring problemOf(const Value& value, const CModel::Reading& reading) {
    if (isText(value.kind)) {
        return text(IDS_BAD_TEXT, {reading.text});
    }
    const std::wstring number = std::to_wstring(reading.number);
    if (reading.content->type == REG_DWORD) {
        return text(IDS_BAD_RANGE, {number, std::to_wstring(value.lowest), std::to_wstring(value.highest)});
    }
    return reading.content->type == REG_SZ ? text(IDS_BAD_WORD, {reading.text, number}) : text(IDS_BAD_TYPE, {number});
}

std::wstring languageOwnName(const wchar_t* name) {
    wchar_t words[LOCALE_NAME_MAX_LENGTH * 2] = L"";
    const bool hasRegion = std::wcschr(name, L'-') != nullptr;
    ::GetLocaleInfoEx(name, hasRegion ? LOCALE_SNATIVEDISPLAYNAME : LOCALE_SNATIVELANGUAGENAME, words,
                      static_cast<int>(std::size(words)));
    return words[0] != L'\0' ? words : name;
}

class CBehaviourPage : public CPage {
 public:
    CBehaviourPage(CModel& model, const Surroundings& surroundings)
        : CPage(IDD_PAGE_BEHAVIOUR, model, surroundings) {}

    void load() override;
    [[nodiscard]] bool store() override;
    void scaleChanged() override;
    void onControl(UINT id, UINT code) override;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    bool OnInitDialog() override;

 private:
    // What belongs to one setting; without a setting, a heading.
    struct Row {
        const Value* value = nullptr;
        HWND parts[kParts] = {};
    };

    LRESULT OnScroll(WPARAM wParam, LPARAM lParam);
    LRESULT OnWheel(WPARAM wParam, LPARAM lParam);

    void _createHeading(UINT id);
    void _createRow(const Value& value);
    void _createNumber(Row& row);
    void _createChoice(Row& row);
    [[nodiscard]] HWND _child(Part part, const wchar_t* kind, const std::wstring& words, DWORD style);

    [[nodiscard]] bool _showProblem(const Row& row, const CModel::Reading& reading) const;
    void _loadControl(const Row& row, const CModel::Reading& reading) const;
    void _take(const Row& row);
    [[nodiscard]] bool _isBadEntry(const Row& row) const;

    void _layOut();
    [[nodiscard]] int _placeHeading(const Row& row, int top) const;
    [[nodiscard]] int _placeRow(const Row& row, int top) const;
    void _placeControl(const Row& row, int top) const;
    [[nodiscard]] int _placeWords(HWND words, int top, int width) const;
    void _put(HWND control, int left, int top, int width, int height) const;
    void _scrollTo(int position);
    void _showControl(HWND control);
    [[nodiscard]] int _x(int units) const { return ::MulDiv(units, m_units.cx, 4); }
    [[nodiscard]] int _y(int units) const { return ::MulDiv(units, m_units.cy, 8); }
    [[nodiscard]] int _width() const { return static_cast<int>(clientRect().right) - 2 * _x(kMargin); }

    std::vector<Row> m_vecRows;
    common::UniqueFont m_bold;
    SIZE m_units{1, 1};  // pixels of four horizontal and eight vertical dialog units
    int m_nHeight = 0;   // of all rows
    int m_nScrolled = 0;
    bool m_bLoading = false;
};

const MessageMap& CBehaviourPage::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CBehaviourPage::OnScroll>(WM_VSCROLL),
        onMessage<&CBehaviourPage::OnWheel>(WM_MOUSEWHEEL),
    };
    static const MessageMap kMap{&CPage::messageMap(), kEntries};
    return kMap;
}

bool CBehaviourPage::OnInitDialog() {
    for (const Heading& heading : kHeadings) {
        _createHeading(heading.text);
        for (const Value& value : values()) {
            if (value.group == heading.group) {
                _createRow(value);
            }
        }
    }
    return false;
}

HWND CBehaviourPage::_child(Part part, const wchar_t* kind, const std::wstring& words, DWORD style) {
    const auto id = static_cast<INT_PTR>(IDC_FIRST_ROW + static_cast<int>(m_vecRows.size()) * kParts + part);
    const DWORD exStyle = std::wcscmp(kind, WC_EDITW) == 0 ? WS_EX_CLIENTEDGE : 0;
    return ::CreateWindowExW(exStyle, kind, words.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, m_hWnd,
                             reinterpret_cast<HMENU>(id), ::GetModuleHandleW(nullptr), nullptr);
}

void CBehaviourPage::_createHeading(UINT id) {
    Row row;
    row.parts[kLabel] = _child(kLabel, WC_STATICW, text(id), SS_LEFT);
    m_vecRows.push_back(row);
}

void CBehaviourPage::_createRow(const Value& value) {
    Row row{&value, {}};
    const std::wstring label = text(value.label);
    if (value.kind == Kind::YesNo) {
        row.parts[kControl] =
            _child(kControl, WC_BUTTONW, label, BS_AUTOCHECKBOX | BS_NOTIFY | WS_TABSTOP);
    } else {
        row.parts[kLabel] = _child(kLabel, WC_STATICW, label, SS_LEFT);
    }
    if (isNumber(value.kind)) {
        _createNumber(row);
    } else if (isChosen(value.kind)) {
        _createChoice(row);
    } else if (value.kind == Kind::Path) {
        row.parts[kControl] = _child(kControl, WC_EDITW, L"", ES_AUTOHSCROLL | WS_TABSTOP);
        ::SendMessageW(row.parts[kControl], EM_LIMITTEXT, kLongestPath, 0);
    }
    row.parts[kMore] = _child(kMore, WC_STATICW, sentenceOf(value), SS_LEFT | SS_NOPREFIX);
    row.parts[kBad] = _child(kBad, WC_STATICW, L"", SS_LEFT | SS_NOPREFIX);
    row.parts[kRepair] = _child(kRepair, WC_BUTTONW, text(IDS_REPAIR), BS_PUSHBUTTON | BS_NOTIFY | WS_TABSTOP);
    ::ShowWindow(row.parts[kRepair], SW_HIDE);
    m_vecRows.push_back(row);
}

void CBehaviourPage::_createNumber(Row& row) {
    constexpr DWORD kSpinStyle = UDS_ALIGNRIGHT | UDS_ARROWKEYS | UDS_SETBUDDYINT | UDS_NOTHOUSANDS;
    constexpr WPARAM kMostDigits = 10;
    row.parts[kControl] = _child(kControl, WC_EDITW, L"", ES_NUMBER | ES_RIGHT | WS_TABSTOP);
    row.parts[kSpin] = _child(kSpin, UPDOWN_CLASSW, L"", kSpinStyle);
    row.parts[kUnit] = _child(kUnit, WC_STATICW, text(unitText(row.value->kind)), SS_LEFT);
    ::SendMessageW(row.parts[kControl], EM_LIMITTEXT, kMostDigits, 0);
    ::SendMessageW(row.parts[kSpin], UDM_SETRANGE32, row.value->lowest, static_cast<LPARAM>(row.value->highest));
    UDACCEL step{0, row.value->kind == Kind::Milliseconds ? 100U : 1U};
    ::SendMessageW(row.parts[kSpin], UDM_SETACCEL, 1, reinterpret_cast<LPARAM>(&step));
}

void CBehaviourPage::_createChoice(Row& row) {
    row.parts[kControl] = _child(kControl, WC_COMBOBOXW, L"", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP);
    const auto add = [&](const std::wstring& words) { addChoice(row.parts[kControl], words); };
    if (row.value->kind == Kind::Position) {
        add(text(IDS_TOP));
        add(text(IDS_BOTTOM));
        return;
    }
    add(text(IDS_LANGUAGE_OF_WINDOWS));
    for (const wchar_t* name : languageNames()) {
        add(languageOwnName(name));
    }
}

void CBehaviourPage::load() {
    m_bLoading = true;
    bool moved = false;
    for (const Row& row : m_vecRows) {
        if (row.value != nullptr) {
            const CModel::Reading reading = model().read(*row.value);
            _loadControl(row, reading);
            moved = _showProblem(row, reading) || moved;
        }
    }
    m_bLoading = false;
    if (moved) {
        _layOut();
    }
}

// What is wrong with the stored value, and the button that repairs it. True: it takes more or less room than before.
bool CBehaviourPage::_showProblem(const Row& row, const CModel::Reading& reading) const {
    const std::wstring problem = reading.isGood ? L"" : problemOf(*row.value, reading);
    if (problem == windowText(row.parts[kBad])) {
        return false;
    }
    ::SetWindowTextW(row.parts[kBad], problem.c_str());
    for (const Part part : {kBad, kRepair}) {
        ::ShowWindow(row.parts[part], reading.isGood ? SW_HIDE : SW_SHOWNA);
    }
    return true;
}

void CBehaviourPage::_loadControl(const Row& row, const CModel::Reading& reading) const {
    const HWND control = row.parts[kControl];
    switch (row.value->kind) {
        case Kind::YesNo:
            setChecked(control, reading.number != 0);
            break;
        case Kind::Position:
            choose(control, reading.number != 0 ? 1 : 0);
            break;
        case Kind::Language: {
            const auto names = languageNames();
            const auto found = std::ranges::find_if(names, [&](const wchar_t* name) { return reading.text == name; });
            const int known = found != names.end() ? static_cast<int>(found - names.begin()) + 1 : -1;
            choose(control, reading.text.empty() ? 0 : known);
            break;
        }
        case Kind::Path:
            ::SetWindowTextW(control, reading.text.c_str());
            break;
        default:
            ::SetWindowTextW(control, std::to_wstring(reading.number).c_str());
            break;
    }
}

// What the control of a setting shows now. The control stays as it is: somebody may be typing in it.
void CBehaviourPage::_take(const Row& row) {
    const HWND control = row.parts[kControl];
    switch (row.value->kind) {
        case Kind::YesNo:
            model().setNumber(*row.value, isChecked(control) ? 1 : 0);
            break;
        case Kind::Position:
            model().setNumber(*row.value, chosen(control) == 1 ? 1 : 0);
            break;
        case Kind::Language: {
            const int index = chosen(control);
            model().setText(*row.value, index > 0 ? languageNames()[static_cast<std::size_t>(index - 1)] : L"");
            _loadControl(row, model().read(*row.value));  // without a language of the user the machine's may be in force
            break;
        }
        default:
            if (_isBadEntry(row)) {
                return;  // it is still being typed
            }
            if (row.value->kind == Kind::Path) {
                model().setText(*row.value, windowText(control));
            } else {
                model().setNumber(*row.value, static_cast<DWORD>(std::wcstoul(windowText(control).c_str(), nullptr, 10)));
            }
            break;
    }
    if (_showProblem(row, model().read(*row.value))) {
        _layOut();
    }
}

// Of a text field that the person has changed.
bool CBehaviourPage::_isBadEntry(const Row& row) const {
    const bool isField = row.value != nullptr && (isNumber(row.value->kind) || row.value->kind == Kind::Path);
    if (!isField || !isEdited(row.parts[kControl])) {
        return false;
    }
    const std::wstring words = windowText(row.parts[kControl]);
    if (row.value->kind == Kind::Path) {
        return !words.empty() && !isPath(words);
    }
    const unsigned long long number = std::wcstoull(words.c_str(), nullptr, 10);
    return words.empty() || number < row.value->lowest || number > row.value->highest;
}

bool CBehaviourPage::store() {
    const auto bad = std::ranges::find_if(m_vecRows, [this](const Row& row) { return _isBadEntry(row); });
    if (bad == m_vecRows.end()) {
        return true;
    }
    const Value& value = *bad->value;
    tell(value.kind == Kind::Path
             ? text(IDS_ERROR_PATH)
             : text(IDS_ERROR_RANGE, {std::to_wstring(value.lowest), std::to_wstring(value.highest)}));
    ::SetFocus(bad->parts[kControl]);
    return false;
}

void CBehaviourPage::onControl(UINT id, UINT code) {
    const std::size_t index = (id - IDC_FIRST_ROW) / kParts;
    if (id < IDC_FIRST_ROW || index >= m_vecRows.size() || m_bLoading) {
        return;
    }
    const Row& row = m_vecRows[index];
    const Part part = static_cast<Part>((id - IDC_FIRST_ROW) % kParts);
    const bool isButton = part == kRepair || row.value->kind == Kind::YesNo;
    if (isButton ? code == BN_SETFOCUS : (code == EN_SETFOCUS || code == CBN_SETFOCUS)) {
        _showControl(row.parts[part]);
    } else if (part == kRepair && code == BN_CLICKED) {
        model().set(model().placeOf(*row.value), isText(row.value->kind) ? Content() : numberData(row.value->standard));
        ::SetFocus(row.parts[kControl]);
        load();
    } else if (part == kControl && (isButton ? code == BN_CLICKED : (code == EN_CHANGE || code == CBN_SELCHANGE))) {
        _take(row);
    }
}

void CBehaviourPage::scaleChanged() {
    const HWND plain = m_vecRows.back().parts[kMore];
    const auto font = fontOf(plain);
    m_units = common::dialogUnitsOf(font);
    LOGFONTW bold{};
    ::GetObjectW(font, sizeof bold, &bold);
    bold.lfWeight = FW_BOLD;
    m_bold.reset(::CreateFontIndirectW(&bold));
    for (const Row& row : m_vecRows) {
        const HWND strong = row.parts[row.value == nullptr ? kLabel : kBad];
        ::SendMessageW(strong, WM_SETFONT, reinterpret_cast<WPARAM>(m_bold.get()), FALSE);
    }
    _layOut();
}

// From the top; the places of all rows follow from each other.
void CBehaviourPage::_layOut() {
    // To draw again would show a page that is hidden.
    const bool shown = (::GetWindowLongPtrW(m_hWnd, GWL_STYLE) & WS_VISIBLE) != 0;
    if (shown) {
        ::SendMessageW(m_hWnd, WM_SETREDRAW, FALSE, 0);
    }
    int top = _y(kMargin) - m_nScrolled;
    for (const Row& row : m_vecRows) {
        top = row.value == nullptr ? _placeHeading(row, top) : _placeRow(row, top);
    }
    m_nHeight = top + m_nScrolled;
    SCROLLINFO info{sizeof info, SIF_ALL | SIF_DISABLENOSCROLL, 0, m_nHeight - 1, static_cast<UINT>(clientRect().bottom), m_nScrolled, 0};
    ::SetScrollInfo(m_hWnd, SB_VERT, &info, TRUE);
    if (shown) {
        ::SendMessageW(m_hWnd, WM_SETREDRAW, TRUE, 0);
        ::RedrawWindow(m_hWnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    }
}

int CBehaviourPage::_placeHeading(const Row& row, int top) const {
    const int gap = &row == &m_vecRows.front() ? 0 : _y(kSmallGap);
    _put(row.parts[kLabel], _x(kMargin), top + gap, _width(), _y(kLine + 1));
    return top + gap + _y(kLine + 1) + _y(kSmallGap + 1);
}

int CBehaviourPage::_placeRow(const Row& row, int top) const {
    _placeControl(row, top);
    const int words = _width() - _x(kIndent);
    top += _y(kControlHeight) + (row.value->kind == Kind::YesNo ? 0 : _y(kSmallGap - 1));
    top = _placeWords(row.parts[kMore], top, words);
    if (::GetWindowTextLengthW(row.parts[kBad]) > 0) {
        const int beside = words - _x(kButtonWidth + kSmallGap);
        const int bottom = _placeWords(row.parts[kBad], top + _y(kSmallGap), beside);
        _put(row.parts[kRepair], _x(kMargin + kIndent + kSmallGap) + beside, top + _y(1), _x(kButtonWidth), _y(kButtonHeight));
        top = std::max(bottom, top + _y(1 + kButtonHeight));
    }
    return top + _y(kGap);
}

void CBehaviourPage::_placeControl(const Row& row, int top) const {
    const Kind kind = row.value->kind;
    if (kind == Kind::YesNo) {
        _put(row.parts[kControl], _x(kMargin), top, _width(), _y(kControlHeight - 1));
        return;
    }
    const int left = _x(kControlLeft);
    _put(row.parts[kLabel], _x(kMargin), top + _y(2), left - _x(kMargin), _y(kLine + 1));
    if (kind == Kind::Path) {
        _put(row.parts[kControl], left, top, _x(kMargin) + _width() - left, _y(kControlHeight));
    } else if (isChosen(kind)) {
        _put(row.parts[kControl], left, top, _x(kListWidth), _y(kControlHeight + kDroppedLines * kLine));
    } else {
        _put(row.parts[kControl], left, top, _x(kNumberWidth), _y(kControlHeight));
        ::SendMessageW(row.parts[kSpin], UDM_SETBUDDY, reinterpret_cast<WPARAM>(row.parts[kControl]), 0);
        _put(row.parts[kUnit], left + _x(kNumberWidth + kSmallGap), top + _y(2), _x(kListWidth), _y(kLine + 1));
    }
}

// As many lines as the words take. Returns where they end.
int CBehaviourPage::_placeWords(HWND words, int top, int width) const {
    const common::WindowDc dc(words);
    const common::SelectScope select(dc.get(), fontOf(words));
    RECT extent{0, 0, width, 0};
    const std::wstring shown = windowText(words);
    ::DrawTextW(dc.get(), shown.c_str(), -1, &extent, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    _put(words, _x(kMargin + kIndent), top, width, static_cast<int>(extent.bottom));
    return top + static_cast<int>(extent.bottom);
}

void CBehaviourPage::_put(HWND control, int left, int top, int width, int height) const {
    ::SetWindowPos(control, nullptr, left, top, width, height, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

void CBehaviourPage::_scrollTo(int position) {
    const int highest = std::max(0, m_nHeight - static_cast<int>(clientRect().bottom));
    const int wanted = std::clamp(position, 0, highest);
    if (wanted != m_nScrolled) {
        ::ScrollWindowEx(m_hWnd, 0, m_nScrolled - wanted, nullptr, nullptr, nullptr, nullptr,
                         SW_SCROLLCHILDREN | SW_INVALIDATE | SW_ERASE);
        m_nScrolled = wanted;
        ::SetScrollPos(m_hWnd, SB_VERT, m_nScrolled, TRUE);
    }
}

// With a margin, so that the sentence below it can be read too.
void CBehaviourPage::_showControl(HWND control) {
    RECT place{};
    ::GetWindowRect(control, &place);
    ::MapWindowPoints(nullptr, m_hWnd, reinterpret_cast<POINT*>(&place), 2);
    const int below = _y(kControlHeight + 3 * kLine);
    if (place.top < _y(kMargin)) {
        _scrollTo(m_nScrolled + static_cast<int>(place.top) - _y(kMargin + 2 * kLine));
    } else if (place.top + below > clientRect().bottom) {
        _scrollTo(m_nScrolled + static_cast<int>(place.top) + below - static_cast<int>(clientRect().bottom));
    }
}

LRESULT CBehaviourPage::OnScroll(WPARAM wParam, LPARAM /*lParam*/) {
    const int page = static_cast<int>(clientRect().bottom);
    SCROLLINFO info{sizeof info, SIF_TRACKPOS, 0, 0, 0, 0, 0};
    ::GetScrollInfo(m_hWnd, SB_VERT, &info);
    switch (LOWORD(wParam)) {
        case SB_LINEUP:
            _scrollTo(m_nScrolled - _y(kLine));
            break;
        case SB_LINEDOWN:
            _scrollTo(m_nScrolled + _y(kLine));
            break;
        case SB_PAGEUP:
            _scrollTo(m_nScrolled - page);
            break;
        case SB_PAGEDOWN:
            _scrollTo(m_nScrolled + page);
            break;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            _scrollTo(info.nTrackPos);
            break;
        default:
            break;
    }
    return 0;
}

LRESULT CBehaviourPage::OnWheel(WPARAM wParam, LPARAM /*lParam*/) {
    const int notches = GET_WHEEL_DELTA_WPARAM(wParam);
    _scrollTo(m_nScrolled - ::MulDiv(notches, kScrolledLines * _y(kLine + 2), WHEEL_DELTA));
    return 0;
}

}  // namespace

std::unique_ptr<CPage> makeBehaviourPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CBehaviourPage>(model, surroundings);
}

}  // namespace settings
