// The page Buttons: keys that start a program, a file or an address in place of a card.
#include <algorithm>
#include <optional>

#include "Controls.h"
#include "KeyListener.h"
#include "KeyNames.h"
#include "KeyTable.h"
#include "Pages.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "common/StartByShell.h"

#include <windowsx.h>  // after the framework, whose names its macros would change

namespace settings {
namespace {

constexpr UINT_PTR kTimerPatience = 1;  // nothing has arrived
constexpr UINT kPatienceMs = 8000;

class CButtonsPage : public CPage {
 public:
    CButtonsPage(CModel& model, const Surroundings& surroundings) : CPage(IDD_PAGE_BUTTONS, model, surroundings) {}

    void load() override;
    void setShown(bool shown) override;
    void scaleChanged() override;
    void onControl(UINT id, UINT code) override;
    bool DestroyWindow() override;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    bool OnInitDialog() override;
    LRESULT onNotify(const NMHDR& header) override;

 private:
    LRESULT OnKeyHeard(WPARAM wParam, LPARAM lParam);
    void OnTimer(UINT_PTR uId);

    void _listen();
    void _arrived(const HeardKey& key);
    void _showFields(DWORD code, const std::wstring& program, const std::wstring& parameters);
    void _enableButtons() const;
    void _select(DWORD code) const;
    void _set();
    void _remove();
    void _browse();
    void _try() const;
    [[nodiscard]] std::wstring _typed(int id) const;
    [[nodiscard]] const CustomKey* _keyOf(DWORD code) const;
    void _say(const std::wstring& words) const { ::SetWindowTextW(control(IDC_BUTTONS_SAID), words.c_str()); }

    std::vector<CustomKey> m_vecKeys;  // those that count: one for each code
    CKeyListener m_listener;
    DWORD m_nCode = 0;        // of the key in the fields; 0: none yet
    bool m_bLoading = false;  // controls change because the model did
};

const MessageMap& CButtonsPage::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CButtonsPage::OnKeyHeard>(kMsgKeyHeard),
        onTimer<&CButtonsPage::OnTimer>(),
    };
    static const MessageMap kMap{&CPage::messageMap(), kEntries};
    return kMap;
}

bool CButtonsPage::OnInitDialog() {
    ListView_SetExtendedListViewStyle(control(IDC_BUTTONS_LIST), LVS_EX_FULLROWSELECT);
    int index = 0;
    for (const int title : {IDS_KEYS_COLUMN_KEY, IDS_BUTTONS_COLUMN_PROGRAM, IDS_BUTTONS_COLUMN_PARAMETERS}) {
        std::wstring words = text(static_cast<UINT>(title));
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT;
        column.pszText = words.data();
        ListView_InsertColumn(control(IDC_BUTTONS_LIST), index++, &column);
    }
    for (const int id : {IDC_BUTTONS_PROGRAM, IDC_BUTTONS_PARAMETERS}) {
        Edit_LimitText(control(id), common::kMostFileChars);
    }
    return true;
}

bool CButtonsPage::DestroyWindow() {
    m_listener.stop();
    return CPage::DestroyWindow();
}

void CButtonsPage::setShown(bool shown) {
    if (!shown) {
        m_listener.stop();
    }
    CPage::setShown(shown);
}

void CButtonsPage::scaleChanged() {
    shareWidth(control(IDC_BUTTONS_LIST), {25, 50, 25});
}

void CButtonsPage::load() {
    m_bLoading = true;
    Button_SetCheck(control(IDS_PROGRAMMABLE), areKeysProgrammable(model()));
    m_vecKeys.clear();
    for (const CustomKey& key : customKeys(model())) {
        if (_keyOf(key.code) == nullptr) {
            m_vecKeys.push_back(key);
        }
    }
    const HWND list = control(IDC_BUTTONS_LIST);
    ListView_DeleteAllItems(list);
    for (std::size_t i = 0; i < m_vecKeys.size(); ++i) {
        CustomKey& key = m_vecKeys[i];
        std::wstring name = keyWithModifier(key.code);
        LVITEMW item{};
        item.mask = LVIF_TEXT;
        item.iItem = static_cast<int>(i);
        item.pszText = name.data();
        ListView_InsertItem(list, &item);
        ListView_SetItemText(list, item.iItem, 1, key.program.data());
        ListView_SetItemText(list, item.iItem, 2, key.parameters.data());
    }
    scaleChanged();
    m_bLoading = false;
    _showFields(0, L"", L"");
    _say(L"");
}

const CustomKey* CButtonsPage::_keyOf(DWORD code) const {
    const auto found = std::ranges::find_if(m_vecKeys, [code](const CustomKey& key) { return key.code == code; });
    return found == m_vecKeys.end() ? nullptr : &*found;
}

void CButtonsPage::_showFields(DWORD code, const std::wstring& program, const std::wstring& parameters) {
    m_nCode = code;
    ::SetWindowTextW(control(IDC_BUTTONS_KEY), code == 0 ? text(IDS_KEYS_NONE).c_str() : keyWithModifier(code).c_str());
    m_bLoading = true;
    ::SetWindowTextW(control(IDC_BUTTONS_PROGRAM), program.c_str());
    ::SetWindowTextW(control(IDC_BUTTONS_PARAMETERS), parameters.c_str());
    m_bLoading = false;
    _enableButtons();
}

std::wstring CButtonsPage::_typed(int id) const {
    std::wstring words(common::kMostFileChars, L'\0');
    words.resize(static_cast<std::size_t>(
        ::GetWindowTextW(control(id), words.data(), static_cast<int>(words.size()) + 1)));
    return words;
}

void CButtonsPage::_enableButtons() const {
    const std::wstring program = _typed(IDC_BUTTONS_PROGRAM);
    const bool any = program.find_first_not_of(L' ') != std::wstring::npos;
    const CustomKey* const key = _keyOf(m_nCode);
    const bool same = key != nullptr && key->program == program && key->parameters == _typed(IDC_BUTTONS_PARAMETERS);
    const std::pair<int, bool> states[] = {
        {IDS_BUTTONS_SET, any && m_nCode != 0 && !same}, {IDS_BUTTONS_TRY, any}, {IDS_BUTTONS_REMOVE, key != nullptr}};
    for (const auto& [id, enabled] : states) {
        if (!enabled && ::GetFocus() == control(id)) {
            ::SetFocus(control(IDC_BUTTONS_LIST));  // a disabled button must not keep it
        }
        ::EnableWindow(control(id), enabled ? TRUE : FALSE);
    }
}

LRESULT CButtonsPage::onNotify(const NMHDR& header) {
    if (header.idFrom == IDC_BUTTONS_LIST && header.code == LVN_ITEMCHANGED && !m_bLoading) {
        const int row = ListView_GetNextItem(header.hwndFrom, -1, LVNI_SELECTED);
        if (row >= 0 && static_cast<std::size_t>(row) < m_vecKeys.size()) {
            const CustomKey& key = m_vecKeys[static_cast<std::size_t>(row)];
            _showFields(key.code, key.program, key.parameters);
            _say(L"");
        }
    }
    return 0;
}

void CButtonsPage::_select(DWORD code) const {
    for (std::size_t i = 0; i < m_vecKeys.size(); ++i) {
        if (m_vecKeys[i].code == code) {
            ListView_SetItemState(control(IDC_BUTTONS_LIST), static_cast<int>(i), LVIS_SELECTED | LVIS_FOCUSED,
                                  LVIS_SELECTED | LVIS_FOCUSED);
        }
    }
}

void CButtonsPage::onControl(UINT id, UINT code) {
    if (m_bLoading) {
        return;
    }
    switch (id) {
        case IDS_PROGRAMMABLE:
            setKeysProgrammable(model(), Button_GetCheck(control(IDS_PROGRAMMABLE)) == BST_CHECKED);
            break;
        case IDS_BUTTONS_PRESS:
            _listen();
            break;
        case IDS_BUTTONS_BROWSE:
            _browse();
            break;
        case IDS_BUTTONS_SET:
            _set();
            break;
        case IDS_BUTTONS_REMOVE:
            _remove();
            break;
        case IDS_BUTTONS_TRY:
            _try();
            break;
        case IDC_BUTTONS_PROGRAM:
        case IDC_BUTTONS_PARAMETERS:
            if (code == EN_CHANGE) {
                _enableButtons();
            }
            break;
        default:
            break;
    }
}

void CButtonsPage::_listen() {
    const bool hears = m_listener.hear(m_hWnd);
    if (hears) {
        ::SetTimer(m_hWnd, kTimerPatience, kPatienceMs, nullptr);
    }
    _say(text(hears ? IDS_BUTTONS_ASK_KEY : IDS_KEYS_NO_HOOK));
}

void CButtonsPage::OnTimer(UINT_PTR uId) {
    ::KillTimer(m_hWnd, uId);
    if (m_listener.isListening()) {
        m_listener.stop();
        _say(text(IDS_KEYS_NOTHING));
    }
}

LRESULT CButtonsPage::OnKeyHeard(WPARAM wParam, LPARAM lParam) {
    const HeardKey key = heardKey(wParam);
    const bool modifier = key.virtualKey == trackerSettings(model()).modifierKey;
    if (lParam == 0 || modifier || !m_listener.isListening()) {
        return 0;
    }
    m_listener.stop();
    ::KillTimer(m_hWnd, kTimerPatience);
    if (key.virtualKey == VK_ESCAPE) {
        _say(L"");
    } else {
        _arrived(key);
    }
    return 0;
}

// Of a customised key the button utility keeps seven bits of its scan code.
void CButtonsPage::_arrived(const HeardKey& key) {
    const DWORD code = keyboard::codeOfSlot(key.slot);
    if (key.slot == 0 || code > kHighestCustomCode) {
        _say(text(IDS_BUTTONS_WRONG_KEY));
        return;
    }
    if (const CustomKey* const there = _keyOf(code)) {
        _showFields(code, there->program, there->parameters);
        _say(text(IDS_BUTTONS_CHANGES));
    } else {
        _showFields(code, _typed(IDC_BUTTONS_PROGRAM), _typed(IDC_BUTTONS_PARAMETERS));
        const std::vector<FunctionKeys> functions = functionKeys(model());
        const FunctionKeys* const card = takenBy(functions, key.slot, key.virtualKey, false);
        _say(card != nullptr ? text(IDS_BUTTONS_INSTEAD, {card->caption}) : std::wstring());
    }
    ::SetFocus(control(IDC_BUTTONS_PROGRAM));
}

void CButtonsPage::_set() {
    const DWORD code = m_nCode;
    setCustomKey(model(), code, _typed(IDC_BUTTONS_PROGRAM), _typed(IDC_BUTTONS_PARAMETERS));
    load();
    _select(code);
    if (!areKeysProgrammable(model())) {
        _say(text(IDS_BUTTONS_SWITCHED_OFF));
    }
}

// Every button with that code, because the next one would take the first one's place.
void CButtonsPage::_remove() {
    const DWORD code = m_nCode;
    for (const CustomKey& key : customKeys(model())) {
        if (key.code == code) {
            removeCustomKey(model(), key);
        }
    }
    load();
}

void CButtonsPage::_browse() {
    const std::wstring title = text(IDS_BUTTONS_COLUMN_PROGRAM);
    std::wstring kinds = text(IDS_BUTTONS_PROGRAMS) + L'\0' + L"*.exe" + L'\0' + text(IDS_BUTTONS_FILES) + L'\0' +
                         L"*.*" + L'\0';
    if (const auto file = surroundings().chooseFile(::GetAncestor(m_hWnd, GA_ROOT), {title, kinds, L"exe", false})) {
        ::SetWindowTextW(control(IDC_BUTTONS_PROGRAM), file->c_str());
    }
}

void CButtonsPage::_try() const {
    const std::wstring program = _typed(IDC_BUTTONS_PROGRAM);
    if (const DWORD error = common::startByShell(program, _typed(IDC_BUTTONS_PARAMETERS)); error != ERROR_SUCCESS) {
        tell(text(IDS_BUTTONS_NOT_STARTED, {program, systemErrorText(error)}));
    }
}

}  // namespace

std::unique_ptr<CPage> makeButtonsPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CButtonsPage>(model, surroundings);
}

}  // namespace settings
