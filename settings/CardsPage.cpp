// The list of functions: which have a card, in which order, and why one is missing.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>

#include "Allowed.h"
#include "CardList.h"
#include "CardPictures.h"
#include "Controls.h"
#include "KeyNames.h"
#include "Pages.h"
#include "PluginState.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "common/DialogFont.h"

namespace settings {
namespace {

constexpr UINT kMsgAnswered = WM_APP + 1;  // from the thread that asks the plug-ins
constexpr UINT kMsgSwitch = WM_APP + 2;    // the row wParam was checked (lParam 1) or unchecked

// Of a picture in the list, in pixels at 96 dpi.
constexpr SIZE kPictureSize{36, 24};

enum class Remedy { None, SwitchOn, SwitchOff, Key, Buttons, File, Forgive, Check };

constexpr Remedy remedyOf(CardState state) {
    switch (state) {
        case CardState::Off:
            return Remedy::SwitchOn;
        case CardState::Unknown:
        case CardState::Declined:
            return Remedy::SwitchOff;
        case CardState::NoKey:
            return Remedy::Key;
        case CardState::StartsPrograms:
            return Remedy::Buttons;
        case CardState::NoPlugin:
        case CardState::FileMissing:
        case CardState::Faulty:
            return Remedy::File;
        case CardState::SetAside:
            return Remedy::Forgive;
        case CardState::NotAsked:
            return Remedy::Check;
        case CardState::Asking:
        case CardState::Shown:
            break;
    }
    return Remedy::None;
}

UINT stateText(UINT base, CardState state) {
    return base + static_cast<UINT>(state);
}

std::wstring keysOf(const Card& card) {
    std::wstring keys;
    for (const DWORD code : card.codes) {
        keys += (keys.empty() ? L"" : L", ") + keyWithModifier(code);
    }
    return keys;
}

class CCardsPage : public CPage {
 public:
    CCardsPage(CModel& model, const Surroundings& surroundings)
        : CPage(IDD_PAGE_CARDS, model, surroundings),
          m_questions(surroundings.askPlugin, [this] { ::PostMessageW(m_hWnd, kMsgAnswered, 0, 0); }) {}

    void load() override;
    [[nodiscard]] bool store() override;
    void setShown(bool shown) override;
    void scaleChanged() override;
    void onControl(UINT id, UINT code) override;
    bool PreTranslateMessage(MSG& message) override;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    bool OnInitDialog() override;
    LRESULT onNotify(const NMHDR& header) override;

 private:
    void OnAnswered() { _showStates(); }
    LRESULT OnSwitch(WPARAM wParam, LPARAM lParam);
    void OnDrag(POINT point);
    void OnDrop(POINT point);
    void OnCaptureChanged();

    [[nodiscard]] HWND _list() const { return control(IDC_CARDS); }
    [[nodiscard]] int _selected() const { return ListView_GetNextItem(_list(), -1, LVNI_SELECTED); }
    void _shareWidth() const { shareWidth(_list(), {40, 22, 38}); }
    [[nodiscard]] const Card* _card() const;
    [[nodiscard]] std::size_t _listed() const;
    [[nodiscard]] int _rowAt(POINT point) const;
    void _select(int row) const;
    void _showStates();
    void _showCard();
    void _showButtons();
    void _setCell(int row, int column, const std::wstring& words) const;
    [[nodiscard]] CardReport _reportOf(const Card& card);
    void _itemChanged(const NMLISTVIEW& change);
    void _switch(int row, bool on);
    void _move(int row, int by);
    void _moveTo(std::size_t from, std::size_t to);
    void _takeCaption();
    void _takePlugin();
    void _chooseFile();
    void _carryOut(Remedy remedy);
    void _forgive(const Card& card);

    CPluginQuestions m_questions;
    std::vector<Card> m_vecCards;
    UniqueImageList m_pictures;
    bool m_bLoading = false;
    int m_nDragged = -1;
};

const MessageMap& CCardsPage::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onEvent<&CCardsPage::OnAnswered>(kMsgAnswered),
        onMessage<&CCardsPage::OnSwitch>(kMsgSwitch),
        onMouse<&CCardsPage::OnDrag>(WM_MOUSEMOVE),
        onMouse<&CCardsPage::OnDrop>(WM_LBUTTONUP),
        onEvent<&CCardsPage::OnCaptureChanged>(WM_CAPTURECHANGED),
    };
    static const MessageMap kMap{&CPage::messageMap(), kEntries};
    return kMap;
}

bool CCardsPage::OnInitDialog() {
    ListView_SetExtendedListViewStyle(_list(), LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_CHECKBOXES);
    int index = 0;
    for (const int id : {IDS_COLUMN_CARD, IDS_COLUMN_KEY, IDS_COLUMN_STATE}) {
        std::wstring title = text(static_cast<UINT>(id));
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_SUBITEM;
        column.pszText = title.data();
        column.iSubItem = index;
        ListView_InsertColumn(_list(), index++, &column);
    }
    ::SendMessageW(control(IDC_CARD_CAPTION), EM_LIMITTEXT, kLongestCaption, 0);
    ::SendMessageW(control(IDC_CARD_PLUGIN), EM_LIMITTEXT, kLongestPath, 0);
    return false;
}

// The other pages may have changed keys since it was last shown.
void CCardsPage::setShown(bool shown) {
    if (shown && !isVisible()) {
        load();
    }
    CPage::setShown(shown);
}

void CCardsPage::scaleChanged() {
    const int dpi = static_cast<int>(common::dpiOf(m_hWnd));
    m_pictures = cardPictures({::MulDiv(kPictureSize.cx, dpi, USER_DEFAULT_SCREEN_DPI),
                               ::MulDiv(kPictureSize.cy, dpi, USER_DEFAULT_SCREEN_DPI)});
    ListView_SetImageList(_list(), m_pictures.get(), LVSIL_SMALL);
    _shareWidth();
}

// The selection stays with the row.
void CCardsPage::load() {
    const int selected = std::max(0, _selected());
    m_bLoading = true;
    m_vecCards = cards(model());
    ListView_DeleteAllItems(_list());
    for (std::size_t i = 0; i < m_vecCards.size(); ++i) {
        const Card& card = m_vecCards[i];
        std::wstring caption = card.caption.empty() ? card.name : card.caption;
        LVITEMW item{};
        item.mask = LVIF_TEXT | LVIF_IMAGE;
        item.iItem = static_cast<int>(i);
        item.pszText = caption.data();
        item.iImage = cardPictureOf(card.name);
        ListView_InsertItem(_list(), &item);
        _setCell(item.iItem, 1, keysOf(card));
        ListView_SetCheckState(_list(), item.iItem, card.isListed ? TRUE : FALSE);
    }
    m_bLoading = false;
    _shareWidth();
    _select(std::min(selected, static_cast<int>(m_vecCards.size()) - 1));
    _showStates();
}

void CCardsPage::_setCell(int row, int column, const std::wstring& words) const {
    std::wstring copy = words;
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = copy.data();
    ::SendMessageW(_list(), LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

CardReport CCardsPage::_reportOf(const Card& card) {
    const CardReport report = reportOf(card, std::nullopt);
    return report.state == CardState::Asking ? reportOf(card, m_questions.answerOf(card.name, card.pluginFile)) : report;
}

void CCardsPage::_showStates() {
    for (std::size_t i = 0; i < m_vecCards.size(); ++i) {
        _setCell(static_cast<int>(i), 2, text(stateText(IDS_CARD_STATE, _reportOf(m_vecCards[i]).state)));
    }
    _showCard();
}

const Card* CCardsPage::_card() const {
    const int row = _selected();
    return row >= 0 && row < static_cast<int>(m_vecCards.size()) ? &m_vecCards[static_cast<std::size_t>(row)] : nullptr;
}

std::size_t CCardsPage::_listed() const {
    return static_cast<std::size_t>(std::ranges::count(m_vecCards, true, &Card::isListed));
}

void CCardsPage::_select(int row) const {
    ListView_SetItemState(_list(), row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(_list(), row, FALSE);
}

// What stands below the list. A field in which somebody types stays as it is.
void CCardsPage::_showCard() {
    const Card* const card = _card();
    m_bLoading = true;
    const auto show = [](HWND field, const std::wstring& words) {
        if (::GetFocus() != field && windowText(field) != words) {
            ::SetWindowTextW(field, words.c_str());
        }
    };
    show(control(IDC_CARD_CAPTION), card != nullptr ? card->caption : L"");
    show(control(IDC_CARD_PLUGIN), card != nullptr ? card->plugin : L"");
    m_bLoading = false;
    _showButtons();
}

void CCardsPage::_showButtons() {
    const Card* const card = _card();
    const CardReport report = card != nullptr ? _reportOf(*card) : CardReport{};
    const int row = _selected();
    const bool isListed = card != nullptr && card->isListed;
    ::SetWindowTextW(control(IDC_CARD_WHY), text(stateText(IDS_CARD_WHY, report.state), {report.why, report.when}).c_str());
    ::SetWindowTextW(control(IDC_CARD_REMEDY), text(stateText(IDS_CARD_REMEDY, report.state)).c_str());
    ::ShowWindow(control(IDC_CARD_REMEDY), remedyOf(report.state) != Remedy::None ? SW_SHOW : SW_HIDE);
    ::EnableWindow(control(IDS_CARD_UP), isListed && row > 0);
    ::EnableWindow(control(IDS_CARD_DOWN), isListed && row + 1 < static_cast<int>(_listed()));
    for (const int id : {IDC_CARD_CAPTION, IDC_CARD_PLUGIN, IDS_CARD_CHOOSE}) {
        ::EnableWindow(control(id), isListed && card->isKnown);
    }
}

LRESULT CCardsPage::onNotify(const NMHDR& header) {
    if (header.idFrom != IDC_CARDS || m_bLoading) {
        return CPage::onNotify(header);
    }
    const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
    switch (header.code) {
        case LVN_ITEMCHANGED:
            _itemChanged(change);
            return 0;
        case LVN_BEGINDRAG:
            if (change.iItem < static_cast<int>(_listed())) {
                m_nDragged = change.iItem;
                ::SetCapture(m_hWnd);
            }
            return 0;
        default:
            return CPage::onNotify(header);
    }
}

void CCardsPage::_itemChanged(const NMLISTVIEW& change) {
    constexpr UINT kChecked = INDEXTOSTATEIMAGEMASK(2);
    if ((change.uChanged & LVIF_STATE) == 0) {
        return;
    }
    if (((change.uNewState ^ change.uOldState) & LVIS_STATEIMAGEMASK) != 0 &&
        (change.uOldState & LVIS_STATEIMAGEMASK) != 0) {
        // The list is made anew then, which it must not be while it tells of the change.
        const bool on = (change.uNewState & LVIS_STATEIMAGEMASK) == kChecked;
        ::PostMessageW(m_hWnd, kMsgSwitch, static_cast<WPARAM>(change.iItem), on ? 1 : 0);
    } else if (((change.uNewState ^ change.uOldState) & LVIS_SELECTED) != 0) {
        _showCard();
    }
}

LRESULT CCardsPage::OnSwitch(WPARAM wParam, LPARAM lParam) {
    const bool on = lParam != 0;
    if (wParam < m_vecCards.size() && m_vecCards[wParam].isListed != on) {
        _switch(static_cast<int>(wParam), on);
    }
    return 0;
}

// Where it goes when it is switched, it keeps the selection.
void CCardsPage::_switch(int row, bool on) {
    const auto index = static_cast<std::size_t>(row);
    const std::wstring name = m_vecCards[index].name;
    switchCard(model(), m_vecCards, index, on);
    load();
    const auto found = std::ranges::find_if(
        m_vecCards, [&](const Card& card) { return card.name == name && card.isListed == on; });
    _select(static_cast<int>(found - m_vecCards.begin()));
}

void CCardsPage::_move(int row, int by) {
    const int target = row + by;
    const int listed = static_cast<int>(_listed());
    if (row >= 0 && row < listed && target >= 0 && target < listed) {
        _moveTo(static_cast<std::size_t>(row), static_cast<std::size_t>(target));
    }
}

void CCardsPage::_moveTo(std::size_t from, std::size_t to) {
    moveCard(model(), m_vecCards, from, to);
    load();
    _select(static_cast<int>(to));
}

bool CCardsPage::PreTranslateMessage(MSG& message) {
    const bool moves = message.message == WM_SYSKEYDOWN && (message.wParam == VK_UP || message.wParam == VK_DOWN);
    if (moves && message.hwnd == _list()) {
        _move(_selected(), message.wParam == VK_UP ? -1 : 1);
        return true;
    }
    return CPage::PreTranslateMessage(message);
}

int CCardsPage::_rowAt(POINT point) const {
    LVHITTESTINFO hit{};
    hit.pt = point;
    ::MapWindowPoints(m_hWnd, _list(), &hit.pt, 1);
    const int row = ListView_HitTest(_list(), &hit);
    return row < static_cast<int>(_listed()) ? row : -1;
}

// The row that the dragged one would take the place of is marked.
void CCardsPage::OnDrag(POINT point) {
    if (m_nDragged < 0) {
        return;
    }
    ListView_SetItemState(_list(), -1, 0, LVIS_DROPHILITED);
    if (const int row = _rowAt(point); row >= 0) {
        ListView_SetItemState(_list(), row, LVIS_DROPHILITED, LVIS_DROPHILITED);
    }
}

void CCardsPage::OnDrop(POINT point) {
    const int from = m_nDragged;
    const int to = _rowAt(point);
    if (from < 0) {
        return;
    }
    ::ReleaseCapture();
    if (to >= 0 && to != from) {
        _moveTo(static_cast<std::size_t>(from), static_cast<std::size_t>(to));
    }
}

void CCardsPage::OnCaptureChanged() {
    m_nDragged = -1;
    ListView_SetItemState(_list(), -1, 0, LVIS_DROPHILITED);
}

void CCardsPage::onControl(UINT id, UINT code) {
    if (m_bLoading) {
        return;
    }
    switch (id) {
        case IDS_CARD_UP:
            return _move(_selected(), -1);
        case IDS_CARD_DOWN:
            return _move(_selected(), 1);
        case IDS_CARD_CHECK:
            return _carryOut(Remedy::Check);
        case IDS_CARD_CHOOSE:
            return _chooseFile();
        case IDC_CARD_REMEDY:
            return _carryOut(_card() != nullptr ? remedyOf(_reportOf(*_card()).state) : Remedy::None);
        case IDC_CARD_CAPTION:
            return code == EN_CHANGE ? _takeCaption() : void();
        case IDC_CARD_PLUGIN:
            // What is typed is not asked letter by letter.
            return code == EN_KILLFOCUS && isEdited(control(IDC_CARD_PLUGIN)) ? _takePlugin() : void();
        default:
            break;
    }
}

void CCardsPage::_takeCaption() {
    const int row = _selected();
    if (row < 0) {
        return;
    }
    Card& card = m_vecCards[static_cast<std::size_t>(row)];
    card.caption = windowText(control(IDC_CARD_CAPTION));
    setCaption(model(), card, card.caption);
    _setCell(row, 0, card.caption.empty() ? card.name : card.caption);
}

void CCardsPage::_takePlugin() {
    const Card* const card = _card();
    const std::wstring path = windowText(control(IDC_CARD_PLUGIN));
    if (card != nullptr && isPath(path)) {
        setPlugin(model(), *card, path);
        load();
    }
}

bool CCardsPage::store() {
    const HWND field = control(IDC_CARD_PLUGIN);
    if (!isEdited(field)) {
        return true;
    }
    if (!isPath(windowText(field))) {
        tell(text(IDS_ERROR_PLUGIN));
        ::SetFocus(field);
        return false;
    }
    _takePlugin();
    return true;
}

void CCardsPage::_chooseFile() {
    const Card* const card = _card();
    constexpr wchar_t kPattern[] = L"\0*.dll\0";
    const FileQuestion question{text(IDS_PLUGIN_TITLE, {card != nullptr ? card->caption : L""}),
                                text(IDS_PLUGIN_FILES) + std::wstring(kPattern, std::size(kPattern) - 1), L"dll", false};
    const auto file = surroundings().chooseFile(::GetAncestor(m_hWnd, GA_ROOT), question);
    if (card != nullptr && file) {
        setPlugin(model(), *card, *file);
        load();
    }
}

void CCardsPage::_carryOut(Remedy remedy) {
    const int row = _selected();
    switch (remedy) {
        case Remedy::None:
            break;
        case Remedy::SwitchOn:
            return _switch(row, true);
        case Remedy::SwitchOff:
            return _switch(row, false);
        case Remedy::Key:
            return goTo(IDS_TAB_KEYS, _card()->name);
        case Remedy::Buttons:
            return goTo(IDS_TAB_BUTTONS, _card()->name);
        case Remedy::File:
            return _chooseFile();
        case Remedy::Forgive:
            return _forgive(*_card());
        case Remedy::Check:
            m_questions.forget();
            return _showStates();
    }
}

// Fenwyn loads it at its next start.
void CCardsPage::_forgive(const Card& card) {
    if (const LSTATUS error = forgivePlugin(card.pluginFile); error != ERROR_SUCCESS) {
        return tell(text(IDS_ERROR_WRITE, {systemErrorText(static_cast<DWORD>(error))}));
    }
    tell(text(IDS_CARD_FORGIVEN));
    _showStates();
}

}  // namespace

std::unique_ptr<CPage> makeCardsPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CCardsPage>(model, surroundings);
}

}  // namespace settings
