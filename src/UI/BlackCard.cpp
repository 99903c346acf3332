#include "UI/BlackCard.h"

#include <utility>

#include "Logic/FuncX/FuncXFactory.h"
#include "Logic/ZelCommonFunc.h"
#include "Messages.h"
#include "UI/CardStyle.h"
#include "UI/CardsInUse.h"
#include "UI/ItemDlg/CircleItemDlg.h"
#include "UI/LargeCardDlg.h"
#include "UI/PopupDlg.h"
#include "ZelMain.h"
#include "common/GdiPlusFunc.h"
#include "common/Status.h"
#include "common/TryMake.h"
#include "framework/Wnd.h"
#include "res/DialogIds.h"

CBlackCard::CBlackCard(CWnd* pParentWnd, const Placement& placement)
    : m_pParentWnd(pParentWnd), m_placement(placement) {}

CBlackCard::~CBlackCard() {
    uninitialize();
}

HRESULT CBlackCard::initialize(const wchar_t* pszName, std::vector<DWORD> vecCodes, std::wstring strCaption,
                               const wchar_t* pszFuncDll) {
    LOG_ENTER_LEAVE();
    const HRESULT status =
        common::statusOf([&] { return _initialize(pszName, std::move(vecCodes), std::move(strCaption), pszFuncDll); });
    if (FAILED(status)) {
        LOG_STATUS(status);
        // A rejected function leaves no library, thread or timer behind.
        uninitialize();
    }
    return status;
}

HRESULT CBlackCard::_initialize(const wchar_t* pszName, std::vector<DWORD> vecCodes, std::wstring strCaption,
                                const wchar_t* pszFuncDll) {
    m_pFunx = CFuncXFactory::createFunx(pszName, std::move(vecCodes), std::move(strCaption));
    if (m_pFunx == nullptr) {
        return E_POINTER;
    }
    m_pFunx->setName(pszName);
    // A plug-in that failed to initialise has logged why; its function counts as not supported.
    static_cast<void>(m_pFunx->initHotkeyDll(pszFuncDll));
    return m_pFunx->isFuncSupported() ? _loadImage() : E_FAIL;
}

HRESULT CBlackCard::_loadImage() {
    return getImageFromRes(theApp.getPngDll(), static_cast<WORD>(m_pFunx->getSmallPngID()), kPngResourceType, m_image);
}

void CBlackCard::endFunction() {
    if (m_pFunx != nullptr && !m_pFunx->isAtWork()) {
        m_pFunx->finalize();
    }
}

void CBlackCard::uninitialize() {
    if (m_pFunx != nullptr) {
        m_pFunx->finalize();
    }
    m_image = {};
    m_pFunx.reset();
    if (m_pLargeCardDlg != nullptr) {
        m_pLargeCardDlg->DestroyWindow();
        m_pLargeCardDlg.reset();
    }
    clearItems();
}

void CBlackCard::setCardRect(const RECT& rect) {
    m_cardRect = rect;
    m_parts = geometry::cardParts(rect, m_placement.ratio, m_placement.bottom);
}

Gdiplus::Image* CBlackCard::getImage() {
    if (m_pFunx != nullptr && m_pFunx->needRefreshSmallPng()) {
        static_cast<void>(_loadImage());  // a failed load keeps the picture of the old state
    }
    return image();
}

std::wstring CBlackCard::getCaption() const {
    RETURN_UNLESS(m_pFunx != nullptr, L"NULL != m_pFunx", std::wstring());
    return m_pFunx->getCaption();
}

std::wstring CBlackCard::getDesc() const {
    RETURN_UNLESS(m_pFunx != nullptr, L"NULL != m_pFunx", std::wstring());
    return m_pFunx->getDesc();
}

accessible::Facts CBlackCard::accessibleFacts() const {
    if (m_pFunx == nullptr) {
        return {{}, {}, {}, STATE_SYSTEM_UNAVAILABLE};
    }
    std::wstring name = m_pFunx->getCaption();
    std::wstring desc = m_pFunx->getDesc();
    // Captions can be switched off.
    return name.empty() ? accessible::Facts{std::move(desc), {}, {}, 0}
                        : accessible::Facts{std::move(name), {}, std::move(desc), 0};
}

std::vector<accessible::ITarget*> CBlackCard::accessibleItems() const {
    std::vector<accessible::ITarget*> targets;
    for (CQrdItem* item : m_vecItems) {
        if (auto* target = dynamic_cast<accessible::ITarget*>(item); target != nullptr) {
            targets.push_back(target);
        }
    }
    return targets;
}

accessible::ITarget* CBlackCard::accessibleCard() const {
    return m_pLargeCardDlg.get();
}

bool CBlackCard::isSelected(const CQrdItem* pItem) const {
    return hasValidSelection() && m_vecItems[static_cast<std::size_t>(m_nSelItem)] == pItem;
}

// The system's focus stays with the program that the user works in: without this, steps would be silent.
void CBlackCard::_announceSelection() const {
    const HWND item = m_vecItems[static_cast<std::size_t>(m_nSelItem)]->windowHandle();
    if (::IsWindowVisible(item) != FALSE) {
        accessible::announce(item, EVENT_OBJECT_SELECTION);
        accessible::announceFocus(item);
    }
}

HRESULT CBlackCard::drawText(Gdiplus::Graphics& graphics) {
    const CDescFormat format(m_placement.bottom ? Gdiplus::StringAlignmentFar : Gdiplus::StringAlignmentNear);

    std::unique_ptr<Gdiplus::Font> font;
    RETURN_IF_FAILED(getNormalDPIWndFont(m_pParentWnd, graphics, font));

    const CCaptionFormat captionFormat(format.GetLineAlignment());
    Gdiplus::RectF caption = toRectF(m_parts.caption);
    caption.Inflate(-static_cast<float>(m_placement.ratio * kCaptionMargin), 0.0F);
    m_captionText.draw(graphics, caption, getCaption().c_str(), *font, &captionFormat, 0.0, kWhite, kWhite);
    // The outline extends beyond the letters: this keeps neighbours' descriptions apart.
    Gdiplus::RectF desc = toRectF(m_parts.desc);
    desc.Inflate(-static_cast<float>(kOutlineWidth), 0.0F);
    const auto drawDesc = [&, text = getDesc()] {
        m_descText.draw(graphics, desc, text.c_str(), *font, &format, kOutlineWidth, kWhite, kBlack);
    };
    drawDesc();
    if (const RECT place = m_descText.place(); contrast::used() && ::IsRectEmpty(&place) == FALSE) {
        drawPlate(graphics, toRectF(place));  // not on the desktop itself
        drawDesc();
    }
    return m_captionText.complete() && m_descText.complete() ? S_OK : E_OUTOFMEMORY;
}

HRESULT CBlackCard::notifyHotkey(DWORD dwHotkey, BOOL bBreak, bool bHeld) {
    LOG_ENTER_LEAVE();
    if (bBreak) {
        return dwHotkey != 0 ? S_FALSE : executeSelection();
    }
    if (m_pFunx == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (!m_pFunx->containsHotkeyCode(dwHotkey)) {
        m_bFirstTime = true;
        return S_OK;
    }
    if (m_pParentWnd == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (bHeld) {
        m_pFunx->armPanicTimer(m_pParentWnd->m_hWnd, kTimerPanic);
    }
    if (m_bFirstTime) {
        RETURN_IF_FAILED(handleHotkeyFirstTime(dwHotkey));
        return S_OK;
    }
    const int before = m_nSelItem++;
    if (!indexInContainer(m_nSelItem, m_vecItems)) {
        m_nSelItem = 0;
    }
    RETURN_IF_FAILED(refreshItemDlgs(dwHotkey));
    if (m_nSelItem != before) {
        _announceSelection();
    }
    return S_OK;
}

HRESULT CBlackCard::handleHotkeyFirstTime(DWORD dwHotkey) {
    const unsigned hides = m_uHides;
    RETURN_IF_FAILED(showLargeCardDlg());
    LONG item = m_nSelItem;
    RETURN_IF_FAILED(m_pFunx->getDefaultSelectItem(item));
    if (hides != m_uHides) {
        return S_FALSE;  // hidden meanwhile: nothing is selected that nobody sees
    }
    if (!indexInContainer(item, m_vecItems)) {
        const LONG substitute = m_pFunx->getSubstituteItem();
        if (indexInContainer(substitute, m_vecItems)) {
            LOG_INFO(L"There is no item %d: item %d is selected.", item, substitute);
        }
        item = substitute;
    }
    // If no item is selected, releasing the modifier only hides the card.
    m_nSelItem = indexInContainer(item, m_vecItems) ? static_cast<int>(item) : -1;
    RETURN_IF_FAILED(refreshItemDlgs(dwHotkey));
    m_bFirstTime = false;
    _announceSelection();
    return S_OK;
}

HRESULT CBlackCard::refreshItemDlgs(DWORD dwHotkey) {
    if (!hasValidSelection()) {
        RETURN_LOGGED(E_FAIL);
    }
    CQrdItem* selected = m_vecItems[static_cast<std::size_t>(m_nSelItem)];
    for (CQrdItem* item : m_vecItems) {
        if (item != selected && item != nullptr) {
            RETURN_IF_FAILED(item->switchItem(dwHotkey, m_bFirstTime, false));
        }
    }
    if (selected == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    // Last, so that the selected item ends up above its neighbours.
    RETURN_IF_FAILED(selected->switchItem(dwHotkey, m_bFirstTime, true));
    return S_OK;
}

bool CBlackCard::isHotkeyDesired(DWORD dwHotkey) const {
    if (m_pFunx == nullptr) {
        LOG_STATUS(0);
        return false;
    }
    return m_pFunx->containsHotkeyCode(dwHotkey);
}

bool CBlackCard::hasValidSelection() const {
    return indexInContainer(m_nSelItem, m_vecItems);
}

HRESULT CBlackCard::executeFunx(int nItem, LONG lParam, bool bHideAfter, HRESULT* pFunctionStatus) {
    LOG_ENTER_LEAVE();
    const CCardsInUse inUse;
    if (nItem < 0) {
        const bool shown = m_pLargeCardDlg != nullptr && m_pLargeCardDlg->isVisible();
        return shown ? theApp.showMainDlg(FALSE, TRUE) : S_FALSE;
    }
    RETURN_UNLESS(indexInContainer(nItem, m_vecItems), L"indexInContainer(nSelItem, m_vecItems)", E_FAIL);
    if (m_pFunx == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    const HRESULT functionStatus = m_pFunx->selectItem(nItem, &bHideAfter, lParam);
    if (FAILED(functionStatus)) {
        LOG_STATUS(E_FAIL);
    }
    if (pFunctionStatus != nullptr) {
        *pFunctionStatus = functionStatus;
    }
    return bHideAfter ? theApp.showMainDlg(FALSE, TRUE) : S_OK;
}

HRESULT CBlackCard::selectItem(const CQrdItem* pItem, LONG lParam, bool bHideAfter, HRESULT* pFunctionStatus) {
    int position = 0;
    for (const CQrdItem* item : m_vecItems) {
        if (item == pItem) {
            break;
        }
        ++position;
    }
    return executeFunx(position, lParam, bHideAfter, pFunctionStatus);
}

HRESULT CBlackCard::showLargeCardDlg(bool bFocusMoves) {
    LOG_ENTER_LEAVE();
    const unsigned hides = m_uHides;
    RETURN_IF_FAILED(createLargeCardDlg());
    const HRESULT status = createItemDlgs();
    if (FAILED(status)) {
        LOG_STATUS(E_FAIL);  // the enlarged card shows the state even if there is nothing to choose
    }
    if (CZelMainApp::cardsStayHidden()) {
        return status;  // the key selects and applies items that nobody sees
    }
    // During a query, the plug-in may dispatch an order to hide, which takes effect.
    if (hides == m_uHides) {
        // With the mouse the card takes the focus, so that it notices when another program gets it. With keys the focus
        // stays with the program that the user works in.
        if (bFocusMoves) {
            m_pLargeCardDlg->expectLateFocusLoss();
        }
        ::ShowWindow(m_pLargeCardDlg->m_hWnd, theApp.mouseOperating() ? SW_SHOW : SW_SHOWNOACTIVATE);
        m_pLargeCardDlg->setText(m_pFunx->getCurrentStatus());
        // Not in its turn, after whatever the windows cause that are shown meanwhile.
        ::UpdateWindow(m_pLargeCardDlg->m_hWnd);
    }
    if (hides == m_uHides) {
        _showItems(true);
    }
    return status;
}

HRESULT CBlackCard::hideLargeCardDlg() {
    LOG_ENTER_LEAVE();
    ++m_uHides;
    m_nSelItem = -1;
    m_bFirstTime = true;
    if (m_pLargeCardDlg == nullptr) {
        // The normal case for most cards: reported by the status, but not logged as an error.
        LOG_TRACE(L"Error Code: 0x%x", static_cast<unsigned>(E_POINTER));
        return E_POINTER;
    }
    RETURN_UNLESS(m_pLargeCardDlg->isWindow(), L"::IsWindow(m_pLargeCardDlg->m_hWnd)", E_FAIL);
    m_pLargeCardDlg->show(false);
    _showItems(false);
    return S_OK;
}

void CBlackCard::_showItems(bool bShow) const {
    for (CQrdItem* item : m_vecItems) {
        if (item != nullptr) {
            static_cast<void>(item->showItem(bShow));
        }
    }
}

HRESULT CBlackCard::createLargeCardDlg() {
    if (m_pFunx == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (m_pLargeCardDlg == nullptr || !m_pLargeCardDlg->isWindow()) {
        RETURN_IF_FAILED(common::statusOf([this] { return _makeLargeCardDlg(); }));
    }
    const HRESULT status = setLargeCardDlgPos();
    if (FAILED(status)) {
        m_pLargeCardDlg->DestroyWindow();
        m_pLargeCardDlg.reset();
        RETURN_LOGGED(status);
    }
    return S_OK;
}

HRESULT CBlackCard::_makeLargeCardDlg() {
    m_pLargeCardDlg.reset();
    auto dialog = common::tryMake<CLargeCardDlg>(m_pFunx->getLargePngID(), m_pFunx->getCaption(), m_pFunx->getDesc(),
                                                 this, m_placement);
    if (dialog == nullptr) {
        return E_OUTOFMEMORY;
    }
    const HRESULT status = dialog->initialize();
    if (FAILED(status)) {
        return status;
    }
    if (!dialog->Create(nullptr)) {
        return E_FAIL;
    }
    m_pLargeCardDlg = std::move(dialog);
    return S_OK;
}

HRESULT CBlackCard::setLargeCardDlgPos() {
    if (m_pParentWnd == nullptr || m_pLargeCardDlg == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    POINT origin{0, 0};
    if (!::ClientToScreen(m_pParentWnd->m_hWnd, &origin)) {
        RETURN_LOGGED(E_FAIL);
    }
    RECT card = m_cardRect;
    ::OffsetRect(&card, origin.x, origin.y);
    if (!m_pLargeCardDlg->place(geometry::largeCard(card, m_placement.ratio, m_placement.bottom))) {
        RETURN_LOGGED(E_FAIL);
    }
    return S_OK;
}

HRESULT CBlackCard::createItemDlgs() {
    if (m_pFunx == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    const CCircleItemDlg::CHandOver handOver;
    clearItems();
    const HRESULT status = common::statusOf([this] { return _buildItems(); });
    if (FAILED(status)) {
        clearItems();
        RETURN_LOGGED(status);
    }
    return S_OK;
}

HRESULT CBlackCard::_buildItems() {
    m_pFunx->setPlacement(m_placement);
    RETURN_IF_FAILED(m_pFunx->initItems(m_vecItems));
    for (CQrdItem* item : m_vecItems) {
        if (item != nullptr) {
            static_cast<void>(item->setBlackCardInfo(this));
        }
    }
    return setItemDlgPos();
}

void CBlackCard::clearItems() {
    for (CQrdItem*& item : m_vecItems) {
        // The entry is emptied first: a window may still ask its card for it while it is being destroyed.
        const std::unique_ptr<CQrdItem> doomed(std::exchange(item, nullptr));
        if (doomed != nullptr) {
            static_cast<void>(doomed->destroyItem());
        }
    }
    m_vecItems.clear();
}

HRESULT CBlackCard::setItemDlgPos() {
    if (m_vecItems.empty() || m_vecItems.front() == nullptr) {
        RETURN_LOGGED(E_FAIL);
    }
    if (m_pLargeCardDlg == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    if (!m_placement.known()) {
        RETURN_LOGGED(E_FAIL);
    }
    const RECT& workArea = m_placement.workArea;

    const CQrdItem& first = *m_vecItems.front();
    const geometry::ItemRow row =
        geometry::itemRow(m_pLargeCardDlg->windowRect(), workArea, first.width(), static_cast<int>(m_vecItems.size()),
                          first.descOverhang(), m_placement.ratio);
    if (row.allWidth >= workArea.right - workArea.left) {
        LOG_ASSERT(L"nAllItemsWidth < rectWorkArea.Width()");
    }
    LOG_TRACE(L"Left max item count:%f, right max item count:%f.", row.leftMax, row.rightMax);
    int index = 0;
    for (const CQrdItem* item : m_vecItems) {
        const int x = row.left(index++);
        if (item != nullptr) {
            placeWindow(item->windowHandle(), {x, row.y, x + first.width(), row.y + first.height()});
        }
    }
    return S_OK;
}

HRESULT CBlackCard::updateStatus(const std::wstring& strText) {
    if (m_pLargeCardDlg == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    m_pLargeCardDlg->setText(strText);
    return S_OK;
}

void CBlackCard::onFocusLost(HWND hNewWnd) {
    // The focus may move between the program's own windows.
    if (theApp.mouseOperating() && !isOwnWindow(hNewWnd)) {
        static_cast<void>(theApp.showMainDlg(FALSE, TRUE));
    }
}
