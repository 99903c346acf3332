// The page Keys: the key that stands for Fn, which key opens which card, and a field where keys can be tried out.
#include <algorithm>
#include <optional>

#include "Controls.h"
#include "FenwynFunctions.h"
#include "KeyField.h"
#include "KeyListener.h"
#include "KeyNames.h"
#include "KeyTable.h"
#include "Pages.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "ZelHotkey.h"
#include "ZelModifier.h"
#include "common/Handle.h"
#include "common/ObjectSecurity.h"

#include <windowsx.h>  // after the framework, whose names its macros would change

namespace settings {
namespace {

constexpr DWORD kGoodModifiers[] = {VK_RCONTROL, VK_RMENU, VK_RWIN, VK_CAPITAL, VK_APPS, VK_F13, VK_F14, VK_F15, VK_F16,
                                    VK_F17,      VK_F18,   VK_F19,  VK_F20,     VK_F21,  VK_F22, VK_F23, VK_F24};
constexpr DWORD kLongestDelay = 60000;  // ms, as the hotkey library takes it
constexpr DWORD kUsualDelay = 1000;

constexpr UINT_PTR kTimerPatience = 1;  // nothing has arrived
constexpr UINT_PTR kTimerCancel = 2;    // does a starting Fenwyn want the keyboard?
constexpr UINT_PTR kTimerRelease = 3;   // the key that arrived should be up again
constexpr UINT kPatienceMs = 8000;
constexpr UINT kCancelMs = 250;
constexpr UINT kReleaseMs = 2000;

constexpr RAWINPUTDEVICE kHeardDevices[] = {
    {1, 6, RIDEV_INPUTSINK, nullptr},     // keyboards
    {0x0C, 1, RIDEV_INPUTSINK, nullptr},  // consumer controls: volume, brightness, launch keys
    {1, 0x80, RIDEV_INPUTSINK, nullptr},  // system controls: sleep
};

void registerRawInput(HWND hWnd) {
    for (RAWINPUTDEVICE device : kHeardDevices) {
        device.hwndTarget = hWnd;
        device.dwFlags = hWnd != nullptr ? RIDEV_INPUTSINK : RIDEV_REMOVE;
        ::RegisterRawInputDevices(&device, 1, sizeof device);
    }
}

std::wstring hex(DWORD number) {
    wchar_t digits[16];
    std::swprintf(digits, std::size(digits), L"0x%02lX", number);
    return digits;
}

class CKeysPage : public CPage {
 public:
    CKeysPage(CModel& model, const Surroundings& surroundings) : CPage(IDD_PAGE_KEYS, model, surroundings) {}

    void load() override;
    bool store() override;
    void setShown(bool shown) override;
    void showCard(const fenwyn::Function& function) override;
    void scaleChanged() override;
    void onControl(UINT id, UINT code) override;
    bool DestroyWindow() override;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    bool OnInitDialog() override;
    LRESULT onNotify(const NMHDR& header) override;

 private:
    // What a pressed key is for.
    enum class For { Nothing, Modifier, Function };
    // A row of the list: one key of a function, or none.
    struct Row {
        std::size_t function;
        std::optional<DWORD> code;
    };

    LRESULT OnDrawItem(WPARAM wParam, LPARAM lParam);
    LRESULT OnKeyHeard(WPARAM wParam, LPARAM lParam);
    LRESULT OnKeyTried(WPARAM wParam, LPARAM lParam);
    LRESULT OnInput(WPARAM wParam, LPARAM lParam);
    void OnTimer(UINT_PTR uId);

    void _showModifier();
    void _showRows();
    void _enableButtons() const;
    [[nodiscard]] int _selectedRow() const { return ListView_GetNextItem(control(IDC_KEYS_LIST), -1, LVNI_SELECTED); }
    void _select(const std::wstring& function, DWORD code) const;
    void _selectRow(std::ptrdiff_t row) const;
    void _say(const std::wstring& words) const { ::SetWindowTextW(control(IDC_KEYS_HEARD), words.c_str()); }

    void _listen(For purpose);
    void _stopListening();
    void _arrived(const HeardKey& key);
    void _describe(const HeardKey& key);
    void _takeModifier(DWORD virtualKey);
    void _use(bool alone);
    void _removeKey();

    void _tryOut(bool on);
    void _sayTried(const std::wstring& words) const { ::SetWindowTextW(control(IDC_KEYS_TRIED), words.c_str()); }
    void _tried(DWORD code);
    [[nodiscard]] bool _opens(const FunctionKeys& function) const;

    std::vector<FunctionKeys> m_vecFunctions;
    std::vector<CustomKey> m_vecCustom;  // none while keys may not be customised
    std::vector<Row> m_vecRows;
    CKeyListener m_listener;
    common::UniqueHandle m_query;  // ZEL_CANCEL_QUERY_EVENT while a key is asked for
    For m_for = For::Nothing;
    std::wstring m_strFunction;       // whose key is asked for
    std::optional<HeardKey> m_heard;  // what arrived, and waits for a decision
    std::wstring m_strDevice;         // where the last input came from
    bool m_bModifierHeld = false;
    bool m_bOtherInput = false;  // something arrived that is no key
    bool m_bLoading = false;     // controls change because the model did
    bool m_bCardsShown = false;  // in the field
    DWORD m_nOpened = 0;         // the code whose card is open in the field; 0: none
};

const MessageMap& CKeysPage::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CKeysPage::OnDrawItem>(WM_DRAWITEM),
        onMessage<&CKeysPage::OnKeyHeard>(kMsgKeyHeard),
        onMessage<&CKeysPage::OnKeyTried>(kMsgKeyTried),
        onMessage<&CKeysPage::OnInput>(WM_INPUT),
        onTimer<&CKeysPage::OnTimer>(),
    };
    static const MessageMap kMap{&CPage::messageMap(), kEntries};
    return kMap;
}

bool CKeysPage::OnInitDialog() {
    ListView_SetExtendedListViewStyle(control(IDC_KEYS_LIST), LVS_EX_FULLROWSELECT);
    UINT title = IDS_KEYS_COLUMN_CARD;
    for (int i = 0; i < 2; ++i) {
        std::wstring words = text(title);
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT;
        column.pszText = words.data();
        ListView_InsertColumn(control(IDC_KEYS_LIST), i, &column);
        title = IDS_KEYS_COLUMN_KEY;
    }
    Edit_LimitText(control(IDC_KEYS_DELAY), 5);
    // Not drawn, but what a screen reader says of it. The label above has the key that leads here.
    std::wstring name = text(IDS_KEYS_TRY);
    std::erase(name, L'&');
    ::SetWindowTextW(control(IDC_KEYS_FIELD), name.c_str());
    return true;
}

bool CKeysPage::DestroyWindow() {
    _stopListening();
    m_listener.stop();
    return CPage::DestroyWindow();
}

void CKeysPage::setShown(bool shown) {
    if (!shown) {
        _stopListening();
    }
    CPage::setShown(shown);
}

// The card may have come to the list since the page was loaded.
void CKeysPage::showCard(const fenwyn::Function& function) {
    load();
    const auto found = std::ranges::find_if(m_vecRows, [&](const Row& row) {
        return fenwyn::equalNames(m_vecFunctions[row.function].name, function.name);
    });
    if (found != m_vecRows.end()) {
        _selectRow(found - m_vecRows.begin());
        ::SetFocus(control(IDC_KEYS_LIST));
    }
}

void CKeysPage::_selectRow(std::ptrdiff_t row) const {
    const HWND list = control(IDC_KEYS_LIST);
    ListView_SetItemState(list, static_cast<int>(row), LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(list, static_cast<int>(row), FALSE);
}

void CKeysPage::scaleChanged() {
    shareWidth(control(IDC_KEYS_LIST), {60, 40});
}

void CKeysPage::load() {
    m_bLoading = true;
    m_vecFunctions = functionKeys(model());
    m_vecCustom = customKeysInForce(model());
    _showModifier();
    Button_SetCheck(control(IDS_STICKY), keyNumber(model(), ZEL_VALUE_STICKY_MODIFIER, 0) != 0);
    ::SetDlgItemTextW(m_hWnd, IDC_KEYS_DELAY,
                      std::to_wstring(keyNumber(model(), ZEL_VALUE_RELEASE_DELAY, kUsualDelay)).c_str());
    m_bLoading = false;
    _showRows();
    _say(L"");
    _sayTried(text(IDS_KEYS_TRY_IDLE));
    ::InvalidateRect(control(IDC_KEYS_FIELD), nullptr, TRUE);
}

// A value that is no key is shown as what it is; the library takes the right Ctrl key then.
void CKeysPage::_showModifier() {
    const HWND box = control(IDC_KEYS_MODIFIER);
    const DWORD stored = keyNumber(model(), ZEL_VALUE_MODIFIER_KEY, VK_RCONTROL);
    const DWORD current = zelModifierKey(stored) == VK_RCONTROL ? stored : zelModifierKey(stored);
    ComboBox_ResetContent(box);
    const auto add = [box, current](DWORD key) {
        const int index = ComboBox_AddString(box, nameOfVirtualKey(key).c_str());
        ComboBox_SetItemData(box, index, key);
        if (key == current) {
            ComboBox_SetCurSel(box, index);
        }
    };
    std::ranges::for_each(kGoodModifiers, add);
    if (ComboBox_GetCurSel(box) < 0) {
        add(current);
    }
}

void CKeysPage::_showRows() {
    const HWND list = control(IDC_KEYS_LIST);
    const int selected = _selectedRow();
    ListView_DeleteAllItems(list);
    m_vecRows.clear();
    for (std::size_t i = 0; i < m_vecFunctions.size(); ++i) {
        for (const DWORD code : m_vecFunctions[i].codes) {
            m_vecRows.push_back({i, code});
        }
        if (m_vecFunctions[i].codes.empty()) {
            m_vecRows.push_back({i, std::nullopt});
        }
    }
    for (std::size_t i = 0; i < m_vecRows.size(); ++i) {
        std::wstring caption = m_vecFunctions[m_vecRows[i].function].caption;
        std::wstring key = m_vecRows[i].code ? keyWithModifier(*m_vecRows[i].code) : text(IDS_KEYS_NONE);
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = static_cast<int>(i);
        item.pszText = caption.data();
        ListView_InsertItem(list, &item);
        ListView_SetItemText(list, item.iItem, 1, key.data());
    }
    const int last = static_cast<int>(m_vecRows.size()) - 1;
    scaleChanged();
    ListView_SetItemState(list, std::clamp(selected, 0, std::max(last, 0)), LVIS_SELECTED | LVIS_FOCUSED,
                          LVIS_SELECTED | LVIS_FOCUSED);
    _enableButtons();
}

void CKeysPage::_select(const std::wstring& function, DWORD code) const {
    for (std::size_t i = 0; i < m_vecRows.size(); ++i) {
        if (m_vecRows[i].code == code && m_vecFunctions[m_vecRows[i].function].name == function) {
            _selectRow(static_cast<std::ptrdiff_t>(i));
        }
    }
}

// A function needs a key: one without any has no card. A function that is not wanted is switched off on the page Cards.
void CKeysPage::_enableButtons() const {
    const int row = _selectedRow();
    const bool any = row >= 0 && static_cast<std::size_t>(row) < m_vecRows.size();
    const bool more = any && m_vecFunctions[m_vecRows[static_cast<std::size_t>(row)].function].codes.size() > 1;
    bool withFn = false;
    bool alone = false;
    if (m_heard && m_heard->slot != 0 && !m_strFunction.empty()) {
        withFn = takenBy(m_vecFunctions, m_heard->slot, m_heard->virtualKey, false) == nullptr;
        alone = takenBy(m_vecFunctions, m_heard->slot, m_heard->virtualKey, true) == nullptr &&
                !isForTyping(m_heard->virtualKey);
    }
    const std::pair<int, bool> states[] = {
        {IDS_KEYS_ADD, any}, {IDS_KEYS_REMOVE, more}, {IDS_KEYS_USE_FN, withFn}, {IDS_KEYS_USE_ALONE, alone}};
    for (const auto& [id, enabled] : states) {
        if (!enabled && ::GetFocus() == control(id)) {
            ::SetFocus(control(IDC_KEYS_LIST));  // a disabled button must not keep it
        }
        ::EnableWindow(control(id), enabled ? TRUE : FALSE);
    }
}

LRESULT CKeysPage::onNotify(const NMHDR& header) {
    if (header.idFrom == IDC_KEYS_LIST && header.code == LVN_ITEMCHANGED && !m_bLoading) {
        _enableButtons();
    }
    return 0;
}

void CKeysPage::onControl(UINT id, UINT code) {
    if (m_bLoading) {
        return;
    }
    switch (id) {
        case IDC_KEYS_MODIFIER:
            if (code == CBN_SELCHANGE) {
                const HWND box = control(IDC_KEYS_MODIFIER);
                _takeModifier(static_cast<DWORD>(ComboBox_GetItemData(box, ComboBox_GetCurSel(box))));
            }
            break;
        case IDS_STICKY:
            setKeyNumber(model(), ZEL_VALUE_STICKY_MODIFIER, Button_GetCheck(control(IDS_STICKY)) == BST_CHECKED);
            break;
        case IDC_KEYS_DELAY:
            if (code == EN_CHANGE) {
                BOOL number = FALSE;
                const UINT delay = ::GetDlgItemInt(m_hWnd, IDC_KEYS_DELAY, &number, FALSE);
                if (number != FALSE && delay <= kLongestDelay) {
                    setKeyNumber(model(), ZEL_VALUE_RELEASE_DELAY, delay);
                }
            }
            break;
        case IDS_KEYS_CHOOSE_FN:
            _listen(For::Modifier);
            break;
        case IDS_KEYS_ADD:
            _listen(For::Function);
            break;
        case IDS_KEYS_REMOVE:
            _removeKey();
            break;
        case IDS_KEYS_USE_FN:
            _use(false);
            break;
        case IDS_KEYS_USE_ALONE:
            _use(true);
            break;
        case IDC_KEYS_FIELD:
            if (code == BN_SETFOCUS || code == BN_KILLFOCUS) {
                _tryOut(code == BN_SETFOCUS);
            }
            break;
        default:
            break;
    }
}

// A stored number that is out of range is only an error once somebody has typed.
bool CKeysPage::store() {
    BOOL number = FALSE;
    const UINT delay = ::GetDlgItemInt(m_hWnd, IDC_KEYS_DELAY, &number, FALSE);
    const bool typed = number == FALSE || delay != keyNumber(model(), ZEL_VALUE_RELEASE_DELAY, kUsualDelay);
    if (!typed || (number != FALSE && delay <= kLongestDelay)) {
        return true;
    }
    tell(text(IDS_KEYS_DELAY_RANGE, {std::to_wstring(kLongestDelay)}));
    ::SetFocus(control(IDC_KEYS_DELAY));
    return false;
}

// ---- Press the key

void CKeysPage::_listen(For purpose) {
    _stopListening();
    m_heard.reset();
    m_strDevice.clear();
    m_bModifierHeld = false;
    m_bOtherInput = false;
    m_strFunction.clear();
    std::wstring words = text(IDS_KEYS_PRESS_FN);
    if (purpose == For::Function) {
        const FunctionKeys& function =
            m_vecFunctions[m_vecRows[static_cast<std::size_t>(_selectedRow())].function];
        m_strFunction = function.name;
        words = text(IDS_KEYS_PRESS, {function.caption});
    }
    _enableButtons();
    if (!m_listener.hear(m_hWnd)) {
        _say(text(IDS_KEYS_NO_HOOK));
        return;
    }
    m_for = purpose;
    // A Fenwyn that starts meanwhile takes the keyboard.
    m_query.reset(::CreateEventW(common::OnlyForTheUser().get(), FALSE, FALSE, ZEL_CANCEL_QUERY_EVENT));
    registerRawInput(m_hWnd);
    ::SetTimer(m_hWnd, kTimerPatience, kPatienceMs, nullptr);
    ::SetTimer(m_hWnd, kTimerCancel, kCancelMs, nullptr);
    _say(words);
}

void CKeysPage::_stopListening() {
    if (m_for == For::Nothing) {
        return;
    }
    m_for = For::Nothing;
    m_listener.stop();
    m_query.reset();
    registerRawInput(nullptr);
    for (const UINT_PTR timer : {kTimerPatience, kTimerCancel, kTimerRelease}) {
        ::KillTimer(m_hWnd, timer);
    }
}

void CKeysPage::OnTimer(UINT_PTR uId) {
    if (uId == kTimerCancel) {
        if (m_query && ::WaitForSingleObject(m_query.get(), 0) == WAIT_OBJECT_0) {
            _stopListening();
            _say(L"");
        }
        return;
    }
    _stopListening();
    if (uId == kTimerPatience && !m_heard) {
        _say(m_bOtherInput ? text(IDS_KEYS_OTHER_INPUT, {m_strDevice}) : text(IDS_KEYS_NOTHING));
    }
}

// The system may tell of the device before or after the hook was called.
LRESULT CKeysPage::OnInput(WPARAM /*wParam*/, LPARAM lParam) {
    RAWINPUTHEADER header{};
    UINT size = sizeof header;
    if (::GetRawInputData(reinterpret_cast<HRAWINPUT>(lParam), RID_HEADER, &header, &size, sizeof header) == size) {
        m_strDevice = keyboardName(header.hDevice);
        m_bOtherInput = m_bOtherInput || header.dwType == RIM_TYPEHID;
        if (m_heard) {
            _describe(*m_heard);
        }
    }
    return Default();
}

LRESULT CKeysPage::OnKeyHeard(WPARAM wParam, LPARAM lParam) {
    const HeardKey key = heardKey(wParam);
    const bool down = lParam != 0;
    if (m_for == For::Nothing) {
        return 0;
    }
    if (m_heard) {
        if (!down && m_heard->virtualKey == key.virtualKey) {
            _stopListening();
        }
        return 0;
    }
    const bool modifier = m_for == For::Function && key.virtualKey == trackerSettings(model()).modifierKey;
    if (modifier) {
        if (!down && m_bModifierHeld) {
            _say(text(IDS_KEYS_IS_FN));
        }
        m_bModifierHeld = down;
    } else if (down && key.virtualKey == VK_ESCAPE && !m_bModifierHeld) {
        _stopListening();
        _say(L"");
    } else if (down) {
        _arrived(key);
    }
    return 0;
}

void CKeysPage::_arrived(const HeardKey& key) {
    m_heard = key;
    ::KillTimer(m_hWnd, kTimerPatience);
    ::SetTimer(m_hWnd, kTimerRelease, kReleaseMs, nullptr);
    if (m_for == For::Modifier && !isForTyping(key.virtualKey) && key.virtualKey <= 0xFE) {
        _takeModifier(key.virtualKey);
        _showModifier();
    }
    _describe(key);
    _enableButtons();
    for (const int id : {m_bModifierHeld ? IDS_KEYS_USE_FN : IDS_KEYS_USE_ALONE, IDS_KEYS_USE_FN, IDS_KEYS_USE_ALONE}) {
        if (::IsWindowEnabled(control(id)) != FALSE) {
            ::SetFocus(control(id));
            break;
        }
    }
}

// What arrived and from where, and what speaks against using it.
void CKeysPage::_describe(const HeardKey& key) {
    const DWORD code = keyboard::codeOfSlot(key.slot);
    const bool scanned = key.slot != 0 && key.slot < keyboard::kVirtualKeySlot;
    std::wstring words = text(IDS_KEYS_HEARD, {keyName(code), scanned ? hex(code) : text(IDS_KEYS_NO_SCAN_CODE),
                                               hex(key.virtualKey), hex(code)});
    if (!m_strDevice.empty()) {
        words += L' ' + text(IDS_KEYS_FROM, {m_strDevice});
    }
    if (m_strFunction.empty()) {
        words += isForTyping(key.virtualKey) ? L'\n' + text(IDS_KEYS_TYPING) : L"";
        _say(words);
        return;
    }
    if (const FunctionKeys* taken = takenBy(m_vecFunctions, key.slot, key.virtualKey, false)) {
        words += L'\n' + text(IDS_KEYS_TAKEN_FN, {taken->caption});
    }
    if (const FunctionKeys* taken = takenBy(m_vecFunctions, key.slot, key.virtualKey, true)) {
        words += L'\n' + text(IDS_KEYS_TAKEN_ALONE, {taken->caption});
    } else if (isForTyping(key.virtualKey)) {
        words += L'\n' + text(IDS_KEYS_TYPING);
    }
    for (const CustomKey& custom : m_vecCustom) {
        if (custom.code == code) {
            words += L'\n' + text(IDS_KEYS_STARTS, {custom.program});
            break;
        }
    }
    _say(words);
}

void CKeysPage::_takeModifier(DWORD virtualKey) {
    setKeyNumber(model(), ZEL_VALUE_MODIFIER_KEY, virtualKey);
}

void CKeysPage::_use(bool alone) {
    const auto found = std::ranges::find_if(
        m_vecFunctions, [this](const FunctionKeys& function) { return function.name == m_strFunction; });
    if (!m_heard || found == m_vecFunctions.end()) {
        return;
    }
    _stopListening();
    const DWORD code = keyboard::codeOfSlot(m_heard->slot) | (alone ? ZEL_CODE_ALONE : 0);
    std::vector<DWORD> codes = found->codes;
    codes.push_back(code);
    setFunctionCodes(model(), found->name, codes);
    const std::wstring name = found->name;
    const std::wstring words = text(IDS_KEYS_USED, {keyWithModifier(code), found->caption});
    m_heard.reset();
    load();
    _select(name, code);
    _say(words);
    ::SetFocus(control(IDC_KEYS_LIST));
}

void CKeysPage::_removeKey() {
    const Row row = m_vecRows[static_cast<std::size_t>(_selectedRow())];
    const FunctionKeys& function = m_vecFunctions[row.function];
    std::vector<DWORD> codes = function.codes;
    std::erase(codes, row.code.value_or(0));
    if (!codes.empty()) {
        setFunctionCodes(model(), function.name, codes);
        load();
    }
}

// ---- Try it

void CKeysPage::_tryOut(bool on) {
    m_bCardsShown = false;
    m_nOpened = 0;
    if (!on) {
        if (m_for == For::Nothing) {
            m_listener.stop();
        }
        _sayTried(text(IDS_KEYS_TRY_IDLE));
    } else {
        _stopListening();
        _sayTried(m_listener.tryOut(m_hWnd, trackerSettings(model())) ? text(IDS_KEYS_TRY_ON)
                                                                     : text(IDS_KEYS_NO_HOOK));
    }
    ::InvalidateRect(control(IDC_KEYS_FIELD), nullptr, TRUE);
}

LRESULT CKeysPage::OnKeyTried(WPARAM wParam, LPARAM lParam) {
    const auto code = static_cast<DWORD>(wParam);
    switch (static_cast<Tried>(lParam)) {
        case Tried::Make:
            _tried(code);
            break;
        case Tried::Break:
            if (code == ZEL_CODE_MODIFIER) {
                _sayTried(text(m_nOpened != 0 ? IDS_KEYS_TRY_APPLIED : IDS_KEYS_TRY_ON));
                m_bCardsShown = false;
                m_nOpened = 0;
            }
            break;
        case Tried::Latched:
            _sayTried(text(IDS_KEYS_TRY_LATCHED));
            break;
        case Tried::Unlatched:
            break;
    }
    ::InvalidateRect(control(IDC_KEYS_FIELD), nullptr, TRUE);
    return 0;
}

bool CKeysPage::_opens(const FunctionKeys& function) const {
    return m_nOpened != 0 && std::ranges::find(function.codes, m_nOpened) != function.codes.end();
}

// As the strip decides it: a customised key starts its program, any other opens the cards that have its code.
void CKeysPage::_tried(DWORD code) {
    if (code == ZEL_CODE_MODIFIER) {
        m_bCardsShown = true;
        _sayTried(text(IDS_KEYS_TRY_SHOWN));
        return;
    }
    const std::wstring key = keyWithModifier(code);
    for (const CustomKey& custom : m_vecCustom) {
        if (custom.code == code) {
            _sayTried(text(IDS_KEYS_TRY_STARTS, {key, custom.program}));
            return;
        }
    }
    const DWORD before = m_nOpened;
    m_nOpened = code;
    std::wstring opened;
    for (const FunctionKeys& function : m_vecFunctions) {
        if (_opens(function)) {
            opened += (opened.empty() ? L"" : L", ") + function.caption;
        }
    }
    if (opened.empty()) {
        m_nOpened = before;
        _sayTried(text(IDS_KEYS_TRY_NOTHING, {key}));
    } else {
        m_bCardsShown = false;
        _sayTried(text(IDS_KEYS_TRY_OPENS, {key, opened}));
    }
}

// One box for each card: framed while the row would be shown, filled while the card would be open.
LRESULT CKeysPage::OnDrawItem(WPARAM /*wParam*/, LPARAM lParam) {
    const auto& draw = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    ::FillRect(draw.hDC, &draw.rcItem, ::GetSysColorBrush(COLOR_WINDOW));
    RECT inner = draw.rcItem;
    ::FrameRect(draw.hDC, &inner, ::GetSysColorBrush((draw.itemState & ODS_FOCUS) != 0 ? COLOR_HIGHLIGHT : COLOR_GRAYTEXT));
    const auto count = static_cast<int>(m_vecFunctions.size());
    if (count == 0) {
        return TRUE;
    }
    ::InflateRect(&inner, -1, -1);  // the frame
    ::SetBkMode(draw.hDC, TRANSPARENT);
    const common::SelectScope font(
        draw.hDC, reinterpret_cast<HFONT>(::SendMessageW(draw.hwndItem, WM_GETFONT, 0, 0)));
    for (int i = 0; i < count; ++i) {
        const FunctionKeys& function = m_vecFunctions[static_cast<std::size_t>(i)];
        RECT box = boxOfCard(inner, count, i);
        const bool open = _opens(function);
        ::FillRect(draw.hDC, &box, ::GetSysColorBrush(open ? COLOR_HIGHLIGHT : COLOR_BTNFACE));
        if (m_bCardsShown) {
            ::FrameRect(draw.hDC, &box, ::GetSysColorBrush(COLOR_HIGHLIGHT));
        }
        ::SetTextColor(draw.hDC, ::GetSysColor(open ? COLOR_HIGHLIGHTTEXT : COLOR_BTNTEXT));
        ::InflateRect(&box, -kBesideCaption, 0);
        ::DrawTextW(draw.hDC, function.caption.c_str(), -1, &box,
                    DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_END_ELLIPSIS | DT_NOPREFIX);
    }
    return TRUE;
}

}  // namespace

std::unique_ptr<CPage> makeKeysPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CKeysPage>(model, surroundings);
}

}  // namespace settings
