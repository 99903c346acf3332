#include "UI/ZelMainDlg.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "Data/ZelConfig.h"
#include "Logic/HotkeyEventHandler.h"
#include "Logic/ZelCommonFunc.h"
#include "Messages.h"
#include "UI/BlackCard.h"
#include "UI/CardStyle.h"
#include "UI/CardsInUse.h"
#include "ZelMain.h"
#include "common/Handle.h"
#include "common/PictureStore.h"
#include "common/ResourceFunc.h"
#include "common/Status.h"
#include "res/DialogIds.h"
#include "res/Pictures.h"

namespace {

constexpr DWORD kDimmedOpacity = 150;  // of the cards that the mouse is not on

}  // namespace

CZelMainDlg::CZelMainDlg() : CCardWnd({IDD_CARD_STRIP, Takes::AllButColourKey, 0, 1}, this) {}

// The window is destroyed before the cards: a plug-in that is ending may dispatch a message.
CZelMainDlg::~CZelMainDlg() {
    CZelMainDlg::DestroyWindow();
}

const MessageMap& CZelMainDlg::messageMap() const {
    static constexpr MessageEntry kEntries[] = {
        onMessage<&CZelMainDlg::OnHotkeyMessage>(kMsgHotkey),
        onMessage<&CZelMainDlg::OnCardsFree>(kMsgCardsFree),
        onMessage<&CZelMainDlg::OnPrintScreen>(kMsgPrintScreen),
        onMessage<&CZelMainDlg::OnLatch>(kMsgLatch),
        onMessage<&CZelMainDlg::OnPrepare>(kMsgPrepare),
        onTimer<&CZelMainDlg::OnTimer>(),
        onFocus<&CZelMainDlg::OnSetFocus>(WM_SETFOCUS),
        onFocus<&CZelMainDlg::OnKillFocus>(WM_KILLFOCUS),
        onMouse<&CZelMainDlg::OnMouseMove>(WM_MOUSEMOVE),
        onMouse<&CZelMainDlg::OnLButtonDown>(WM_LBUTTONDOWN),
        onMouseLeave<&CZelMainDlg::OnMouseLeave>(),
        onMessage<&CZelMainDlg::OnMouseActivate>(WM_MOUSEACTIVATE),
        onMessage<&CZelMainDlg::OnDpiChanged>(kMsgDpiChanged),
    };
    static const MessageMap kMap{&CCardWnd::messageMap(), kEntries};
    return kMap;
}

HRESULT CZelMainDlg::initialize() {
    LOG_ENTER_LEAVE();
    if (CZelConfig::getQrdConfig().bProgrammable) {
        RETURN_IF_FAILED(m_customHotkey.getCustomizedHotkeys());
    }
    RETURN_IF_FAILED(createBlackCards());
    return S_OK;
}

HRESULT CZelMainDlg::createBlackCards() {
    LOG_ENTER_LEAVE();
    const CCardsInUse inUse;
    // Removed from the list first: code that is called when a card ends must not find half-destroyed neighbours.
    std::exchange(m_vecCards, {}).clear();
    m_nHoveredCard = -1;
    RETURN_IF_FAILED(CHotkeyConfig::enumHotkeyConfigs(this));
    return S_OK;
}

HRESULT CZelMainDlg::processHotkeyInfo(const HotkeyInfo* pHotkeyInfo) {
    LOG_ENTER_LEAVE();
    if (pHotkeyInfo == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    LOG_TRACE(L"%s = %s", L"pHotkeyInfo->strFuncName.c_str()", pHotkeyInfo->strFuncName.c_str());
    if (CZelConfig::getQrdConfig().bProgrammable && _allCodesCustomized(pHotkeyInfo->vecCode)) {
        return S_OK;
    }
    RETURN_IF_FAILED(initHotKeyDll(*pHotkeyInfo));
    return S_OK;
}

bool CZelMainDlg::_allCodesCustomized(const std::vector<DWORD>& vecCodes) const {
    return std::all_of(vecCodes.begin(), vecCodes.end(),
                       [this](DWORD code) { return m_customHotkey.isHotkeyCustomized(code); });
}

HRESULT CZelMainDlg::initHotKeyDll(const HotkeyInfo& info) {
    LOG_ENTER_LEAVE();
    if (info.strFuncDll.c_str()[0] == L'\0') {
        RETURN_LOGGED(E_FAIL);
    }
    if (FAILED(common::statusOf([&] { return _addCard(info); }))) {
        LOG_STATUS(E_FAIL);  // a function that cannot work gets no card; the others do
    }
    return S_OK;
}

HRESULT CZelMainDlg::_addCard(const HotkeyInfo& info) {
    auto card = std::make_unique<CBlackCard>(this, m_placement);
    const HRESULT status =
        card->initialize(info.strFuncName.c_str(), info.vecCode, info.strCaption, info.strFuncDll.c_str());
    if (SUCCEEDED(status)) {
        m_vecCards.push_back(std::move(card));
    }
    return status;
}

HRESULT CZelMainDlg::refreshCards(bool bReinitialize) {
    LOG_ENTER_LEAVE();
    if (bReinitialize) {
        RETURN_IF_FAILED(initialize());
        accessible::announce(m_hWnd, EVENT_OBJECT_REORDER);
    }
    RETURN_IF_FAILED(setBlackCardsPos());
    return S_OK;
}

bool CZelMainDlg::placementIsStale() const {
    CardsScreen screen;
    return SUCCEEDED(getCardsScreen(screen)) &&
           (::EqualRect(&screen.workArea, &m_placement.workArea) == FALSE || screen.scale != m_placement.dpi);
}

bool CZelMainDlg::OnInitDialog() {
    LOG_ENTER_LEAVE();
    CCardWnd::OnInitDialog();
    static_cast<void>(setBlackCardsPos());
    if (!m_postponed.empty()) {
        // An order to rebuild the cards that arrived during the first build, before there was a window.
        CCardsInUse::postWhenOver(m_hWnd, kMsgCardsFree);
    }
    return true;
}

bool CZelMainDlg::DestroyWindow() {
    LOG_ENTER_LEAVE();
    return CCardWnd::DestroyWindow();
}

HRESULT CZelMainDlg::calcRatioForPng() {
    LOG_ENTER_LEAVE();
    m_placement.workArea = {};
    m_placement.bottom = CZelConfig::getQrdConfig().uPosition != 0;
    CardsScreen screen;
    RETURN_IF_FAILED(getCardsScreen(screen));
    m_placement.workArea = screen.workArea;
    m_placement.dpi = screen.scale;
    if (m_vecCards.empty()) {
        return S_OK;
    }
    const geometry::Ratio result = geometry::imageRatio(m_placement.workWidth(), cardCount(), m_placement.dpi);
    m_placement.ratio = result.ratio;
    LOG_TRACE(L"Card width:%f, Ratio:%f", result.cardWidth, result.ratio);
    return S_OK;
}

HRESULT CZelMainDlg::setBlackCardsPos() {
    LOG_ENTER_LEAVE();
    RETURN_IF_FAILED(calcRatioForPng());
    const RECT& workArea = m_placement.workArea;
    LOG_TRACE(L"The work area is: left %d,top %d, right %d, bottom %d", static_cast<int>(workArea.left),
              static_cast<int>(workArea.top), static_cast<int>(workArea.right), static_cast<int>(workArea.bottom));

    const geometry::Strip strip = geometry::cardStrip(workArea, cardCount(), m_placement.ratio, m_placement.bottom);
    place(strip.place);
    int index = 0;
    for (const auto& card : m_vecCards) {
        card->setCardRect(geometry::cardRect(strip, index++));
    }
    _prepareLater(0);
    return S_OK;
}

void CZelMainDlg::_prepareLater(std::size_t uCard) const {
    if (m_hWnd != nullptr) {
        ::PostMessageW(m_hWnd, kMsgPrepare, uCard, 0);
    }
}

// Draws the hidden strip, so that it is shown sooner: one card at each message, so that a key waits for no more than
// that, and then all cards together, which then takes little.
LRESULT CZelMainDlg::OnPrepare(WPARAM wParam, LPARAM /*lParam*/) {
    if (isVisible() || CCardsInUse::any() || wParam > m_vecCards.size() || m_vecCards.empty()) {
        return 0;
    }
    const bool last = wParam == m_vecCards.size();
    Pictures pictures;
    for (const auto& card : m_vecCards) {
        if (last || card == m_vecCards[wParam]) {
            _addPicture(pictures, *card, kCardOpacity);
        }
    }
    m_pOnlyCard = last ? nullptr : m_vecCards[wParam].get();
    // What fails now is tried again, and reported, when the strip is shown.
    static_cast<void>(prepareBand(pictures.vecImages, pictures.vecOpacities, pictures.vecPlaces, m_placement.bottom,
                                  geometry::kPictureBand));
    m_pOnlyCard = nullptr;
    if (!last) {
        _prepareLater(wParam + 1);
    }
    return 0;
}

void CZelMainDlg::_addPicture(Pictures& pictures, CBlackCard& card, DWORD dwOpacity) {
    pictures.vecImages.push_back(card.image());
    pictures.vecPlaces.push_back(&card.imageRect());
    pictures.vecOpacities.push_back(dwOpacity);
}

void CZelMainDlg::OnPaint() {
    LOG_ENTER_LEAVE();
    {
        const common::PaintDc paint(m_hWnd);
        const common::UniqueBrush key(::CreateSolidBrush(kColourKey));
        const RECT through = geometry::throughArea(clientRect(), m_placement.ratio, m_placement.bottom);
        ::FillRect(paint.get(), &through, key.get());
    }
    static_cast<void>(showBlackCards());
}

// Asks the plug-ins whether their states changed before the pictures are collected, because one of them may let the
// strip be painted in between. During a plug-in call none is asked; the strip is painted again afterwards.
void CZelMainDlg::_refreshImages() {
    if (CCardsInUse::any()) {
        m_bPaintLater = true;
        CCardsInUse::postWhenOver(m_hWnd, kMsgCardsFree);
        return;
    }
    const CCardsInUse inUse;
    for (const auto& card : m_vecCards) {
        static_cast<void>(card->getImage());
    }
}

DWORD CZelMainDlg::_cardOpacity(int nCard) const {
    const bool dimmed =
        !CZelConfig::getQrdConfig().bShowQrdAtLaunch && theApp.mouseOperating() && nCard != m_nHoveredCard;
    return dimmed ? kDimmedOpacity : kCardOpacity;
}

HRESULT CZelMainDlg::showBlackCards() {
    LOG_ENTER_LEAVE();
    if (m_vecCards.empty()) {
        RETURN_LOGGED(E_FAIL);
    }
    if (picture() == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    LOG_TRACE(L"The mouse is %s operating.", theApp.mouseOperating() ? L"" : L"not");

    _refreshImages();
    const CCardsInUse inUse;
    Pictures pictures;
    int index = 0;
    for (const auto& card : m_vecCards) {
        _addPicture(pictures, *card, _cardOpacity(index++));
    }
    if (!isVisible()) {
        return S_OK;
    }
    RETURN_IF_FAILED(paintBand(pictures.vecImages, pictures.vecOpacities, pictures.vecPlaces, m_placement.bottom,
                               geometry::kPictureBand));
    return S_OK;
}

HRESULT CZelMainDlg::drawText(Gdiplus::Graphics& graphics) {
    HRESULT status = S_OK;
    for (const auto& card : m_vecCards) {
        if (m_pOnlyCard == nullptr || card.get() == m_pOnlyCard) {
            const HRESULT cardStatus = card->drawText(graphics);
            status = FAILED(cardStatus) ? cardStatus : status;  // the others have their texts
        }
    }
    if (m_bLatched && !m_vecCards.empty()) {
        RETURN_IF_FAILED(_drawLatchMark(graphics));
    }
    return status;
}

// What the texts are made of, but for the places of the cards, which are those of their pictures.
std::optional<std::size_t> CZelMainDlg::textState() const {
    std::wstring all =
        std::to_wstring(m_placement.ratio) + (m_placement.bottom ? L"b" : L"t") + (m_bLatched ? L"l" : L"-");
    for (const auto& card : m_vecCards) {
        if (m_pOnlyCard == nullptr || card.get() == m_pOnlyCard) {
            all += L'\n' + card->getCaption() + L'\n' + card->getDesc();
        }
    }
    return std::hash<std::wstring>()(all);
}

HRESULT CZelMainDlg::_drawLatchMark(Gdiplus::Graphics& graphics) {
    if (m_pLatchMark == nullptr) {
        RETURN_IF_FAILED(getImageFromRes(theApp.getPngDll(), kLatchMarkImageId, kPngResourceType, m_pLatchMark));
    }
    RETURN_IF_FAILED(drawStoredImage(graphics, *m_pLatchMark,
                                     geometry::latchMark(m_vecCards.back()->imageRect(), m_placement.ratio)));
    return S_OK;
}

LRESULT CZelMainDlg::OnHotkeyMessage(WPARAM wParam, LPARAM lParam) {
    // Whatever happens with the event: the watched key is no longer held, or no longer alone.
    ::KillTimer(m_hWnd, kTimerPanic);
    const Postponed event{false, static_cast<DWORD>(wParam), static_cast<BOOL>(lParam)};
    if (CCardsInUse::any()) {
        _postpone(event);
        return S_FALSE;
    }
    // Queued after the waiting ones, because what arrives while they are handled comes after them.
    m_postponed.push_back(event);
    return _handlePostponed();
}

void CZelMainDlg::_postpone(const Postponed& what) {
    if (what.bRebuild) {
        LOG_INFO(L"The cards are in use: they are built anew later.");
    } else {
        LOG_INFO(L"The cards are in use: hotkey 0x%x waits.", static_cast<unsigned>(what.dwHotkey));
    }
    m_postponed.push_back(what);
    CCardsInUse::postWhenOver(m_hWnd, kMsgCardsFree);
}

bool CZelMainDlg::postponeRebuild() {
    if (!CCardsInUse::any()) {
        return false;
    }
    _postpone({true, 0, FALSE});
    return true;
}

LRESULT CZelMainDlg::OnCardsFree(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    static_cast<void>(_handlePostponed());
    if (std::exchange(m_bPaintLater, false)) {
        invalidate();
    }
    return 0;
}

// Handles the keys that are waiting now; later ones wait for the next time. Returns the status of the last one.
HRESULT CZelMainDlg::_handlePostponed() {
    HRESULT status = S_FALSE;
    for (std::size_t count = m_postponed.size(); count > 0 && !m_postponed.empty(); --count) {
        if (CCardsInUse::any()) {  // a plug-in's message loop took the message
            CCardsInUse::postWhenOver(m_hWnd, kMsgCardsFree);
            break;
        }
        const Postponed next = m_postponed.front();
        m_postponed.pop_front();
        status = next.bRebuild ? theApp.refreshCards(TRUE) : handleHotkey(next.dwHotkey, next.bBreak);
    }
    return status;
}

bool CZelMainDlg::_keyWaits() const {
    return std::any_of(m_postponed.begin(), m_postponed.end(), [](const Postponed& what) { return !what.bRebuild; });
}

LRESULT CZelMainDlg::OnLatch(WPARAM wParam, LPARAM /*lParam*/) {
    m_bLatched = wParam != 0;
    accessible::announce(m_hWnd, EVENT_OBJECT_STATECHANGE);
    if (isVisible()) {
        invalidate();
    }
    return 0;
}

const CBlackCard* CZelMainDlg::_cardOf(LONG nPart) const {
    return indexInContainer(nPart - 1, m_vecCards) ? m_vecCards[static_cast<std::size_t>(nPart - 1)].get() : nullptr;
}

// The mark of a latched modifier makes it a pressed tool bar.
accessible::Facts CZelMainDlg::accessibleFacts(LONG nPart) const {
    if (nPart == CHILDID_SELF) {
        return {kProductName, {}, {}, m_bLatched ? STATE_SYSTEM_PRESSED : 0};
    }
    const CBlackCard* const card = _cardOf(nPart);
    return card == nullptr ? accessible::Facts{} : card->accessibleFacts();
}

RECT CZelMainDlg::accessiblePlace(LONG nPart) const {
    const CBlackCard* const card = _cardOf(nPart);
    if (card == nullptr) {
        return windowRect();
    }
    RECT place = card->imageRect();
    ::MapWindowPoints(m_hWnd, nullptr, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

void CZelMainDlg::accessiblePress(LONG nPart) {
    if (const CBlackCard* const card = _cardOf(nPart); card != nullptr) {
        const RECT& image = card->imageRect();
        OnLButtonDown({(image.left + image.right) / 2, (image.top + image.bottom) / 2});
    }
}

LRESULT CZelMainDlg::OnPrintScreen(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return theApp.showMainDlg(FALSE, FALSE);
}

HRESULT CZelMainDlg::handleHotkey(DWORD dwHotkey, BOOL bBreak) {
    LOG_ENTER_LEAVE();
    const CCardsInUse inUse;
    ::KillTimer(m_hWnd, kTimerPanic);
    if (CZelConfig::getQrdConfig().bProgrammable && m_customHotkey.isHotkeyCustomized(dwHotkey)) {
        return bBreak ? S_FALSE : m_customHotkey.handleHotkey(dwHotkey);
    }
    if (dwHotkey != 0) {
        if (!isHotkeyDesired(dwHotkey)) {
            RETURN_LOGGED(E_FAIL);
        }
        if (!bBreak) {
            theApp.renewPlacement();  // the strip need not have been visible before
            _leaveMouseFor(dwHotkey);
        }
        _hideForKey(dwHotkey);
    } else {
        RETURN_IF_FAILED(showOnModifier(bBreak));
    }
    for (const auto& card : m_vecCards) {
        static_cast<void>(card->notifyHotkey(dwHotkey, bBreak, !_keyWaits()));
    }
    _autoHide(bBreak);
    return S_OK;
}

bool CZelMainDlg::isHotkeyDesired(DWORD dwHotkey) const {
    return std::any_of(m_vecCards.begin(), m_vecCards.end(),
                       [dwHotkey](const auto& card) { return card->isHotkeyDesired(dwHotkey); });
}

// A key that needs no modifier takes the cards over from the mouse, as the modifier's make does; otherwise its choice
// would be the mouse's to apply.
void CZelMainDlg::_leaveMouseFor(DWORD dwHotkey) {
    if (CHotkeyEventHandler::actsAlone(dwHotkey)) {
        theApp.mouseOperating() = FALSE;
    }
}

// The strip makes way for the enlarged card of the key's function; all other enlarged cards are hidden.
void CZelMainDlg::_hideForKey(DWORD dwHotkey) {
    show(false);
    for (const auto& card : m_vecCards) {
        if (!card->isHotkeyDesired(dwHotkey)) {
            static_cast<void>(card->hideLargeCardDlg());
        }
    }
}

HRESULT CZelMainDlg::showOnModifier(BOOL bBreak) {
    LOG_ENTER_LEAVE();
    const QrdConfig& config = CZelConfig::getQrdConfig();
    if (config.bIgnoreFnKey) {
        return E_NOTIMPL;
    }
    if (!bBreak) {
        theApp.mouseOperating() = FALSE;
    } else if (theApp.mouseOperating()) {
        return E_NOTIMPL;  // the user continued with the mouse: the strip stays
    }
    if (config.bHideMainDlg || cardInUse()) {
        return S_OK;
    }
    if (!bBreak && isVisible()) {
        invalidate();
        return S_OK;
    }
    return theApp.showMainDlg(!bBreak, TRUE);
}

bool CZelMainDlg::cardInUse() const {
    return std::any_of(m_vecCards.begin(), m_vecCards.end(),
                       [](const auto& card) { return card->hasValidSelection(); });
}

void CZelMainDlg::_autoHide(BOOL bBreak) {
    const QrdConfig& config = CZelConfig::getQrdConfig();
    if (!config.bAutoHide) {
        return;
    }
    if (!bBreak) {
        ::KillTimer(m_hWnd, kTimerAutoHide);
        return;
    }
    ::SetTimer(m_hWnd, kTimerAutoHide, config.uAutoHideDelayTime, nullptr);
    LOG_TRACE(L"set timer to hide QRD after %d milliseconds.", static_cast<int>(config.uAutoHideDelayTime));
}

void CZelMainDlg::OnTimer(UINT_PTR uId) {
    LOG_ENTER_LEAVE();
    if (uId == kTimerAutoHide) {
        const CCardsInUse inUse;
        ::KillTimer(m_hWnd, uId);
        for (const auto& card : m_vecCards) {
            static_cast<void>(card->executeSelection());
        }
    } else if (uId == kTimerLaunchHide) {
        ::KillTimer(m_hWnd, uId);
        static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
    } else {
        Default();
    }
}

void CZelMainDlg::OnShowWindow(bool bShow) {
    LOG_ENTER_LEAVE();
    if (!bShow) {
        hidePictures();
        hideLargeCards();
    }
    Default();
}

void CZelMainDlg::hideLargeCards() const {
    for (const auto& card : m_vecCards) {
        static_cast<void>(card->hideLargeCardDlg());
    }
}

void CZelMainDlg::endFunctions() const {
    for (const auto& card : m_vecCards) {
        card->endFunction();
    }
}

void CZelMainDlg::OnSetFocus(HWND /*hOldWnd*/) {
    LOG_ENTER_LEAVE();
    Default();
}

void CZelMainDlg::OnKillFocus(HWND hNewWnd) {
    LOG_ENTER_LEAVE();
    // A strip that is hidden for an enlarged card passes the focus on, and has not lost it.
    if (CZelConfig::getQrdConfig().bHideMainUIWhenLostFocus && isVisible() && !isOwnWindow(hNewWnd)) {
        static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
    }
    Default();
}

void CZelMainDlg::OnMouseMove(POINT point) {
    LOG_ENTER_LEAVE();
    if (!theApp.mouseOperating()) {
        return;
    }
    trackMouse();
    const auto hovered = std::find_if(m_vecCards.begin(), m_vecCards.end(),
                                      [&](const auto& card) { return ::PtInRect(&card->imageRect(), point) != FALSE; });
    const int index = hovered == m_vecCards.end() ? -1 : static_cast<int>(hovered - m_vecCards.begin());
    if (index != m_nHoveredCard) {
        m_nHoveredCard = index;
        invalidate();
    }
}

// A click hides the strip: if it had the focus, hiding would pass it to another program, and the card that the click
// opens would be hidden at once for having lost it.
LRESULT CZelMainDlg::OnMouseActivate(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    return MA_NOACTIVATE;
}

void CZelMainDlg::OnLButtonDown(POINT point) {
    LOG_ENTER_LEAVE();
    const CCardsInUse inUse;
    const bool hadFocus = ::GetForegroundWindow() == m_hWnd;
    show(false);
    ::KillTimer(m_hWnd, kTimerLaunchHide);
    for (const auto& card : m_vecCards) {
        if (::PtInRect(&card->imageRect(), point)) {
            theApp.mouseOperating() = TRUE;
            static_cast<void>(card->showLargeCardDlg(hadFocus));
        }
    }
}

void CZelMainDlg::OnMouseLeave() {
    LOG_ENTER_LEAVE();
    m_bTracking = false;
    m_nHoveredCard = -1;
    if (mouseIsOn()) {
        LOG_TRACE(L"The window contains the cursor is current window.");
        return;
    }
    if (isVisible()) {
        static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
    }
}

// It also comes while the strip is placed on another screen; the cards know that one's scale already.
LRESULT CZelMainDlg::OnDpiChanged(WPARAM /*wParam*/, LPARAM /*lParam*/) {
    if (placementIsStale()) {
        static_cast<void>(theApp.refreshCards(FALSE));
    }
    return 0;
}
