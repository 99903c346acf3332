// One card of the strip: it binds a hotkey function to a rectangle of the strip and owns the enlarged card and the row
// of items that are shown while the user holds the function's key. All calls must be made on the user-interface thread.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Logic/FuncX/FuncX.h"
#include "Logic/Placement.h"
#include "UI/Accessible.h"
#include "UI/CardGeometry.h"
#include "UI/ItemDlg/QrdItem.h"
#include "common/GdiPlusFunc.h"
#include "common/ResourceFunc.h"

class CLargeCardDlg;
class CWnd;

class CBlackCard {
 public:
    // The strip's window, whose client area is the origin of the card's rectangle, and the placement of the cards; both
    // outlive the card.
    CBlackCard(CWnd* pParentWnd, const Placement& placement);
    ~CBlackCard();
    CBlackCard(const CBlackCard&) = delete;
    CBlackCard& operator=(const CBlackCard&) = delete;

    // Creates the function, loads its plug-in and the card's picture. After a failure nothing stays loaded.
    [[nodiscard]] HRESULT initialize(const wchar_t* pszName, std::vector<DWORD> vecCodes, std::wstring strCaption,
                                     const wchar_t* pszFuncDll);
    // Ends the function, unless its plug-in is at work; the windows stay. The card does nothing any more.
    void endFunction();
    // Ends the function and destroys all windows of the card.
    void uninitialize();

    // The card's rectangle in the strip's client coordinates; the rectangles within it follow.
    void setCardRect(const RECT& rect);
    [[nodiscard]] const RECT& imageRect() const { return m_parts.image; }

    // Draws caption and description while the strip is composed.
    [[nodiscard]] HRESULT drawText(Gdiplus::Graphics& graphics);
    // The picture for the function's current state; owned by the card. Asks the plug-in.
    [[nodiscard]] Gdiplus::Image* getImage();
    // The picture of the last getImage(). Decodes it at the first call.
    [[nodiscard]] Gdiplus::Image* image() { return m_image.get(); }
    [[nodiscard]] std::wstring getCaption() const;
    [[nodiscard]] std::wstring getDesc() const;

    // What assistive programs learn about the card in the strip; and the windows of its items, from left to right, and
    // of the enlarged card above them, null while there is none.
    [[nodiscard]] accessible::Facts accessibleFacts() const;
    [[nodiscard]] std::vector<accessible::ITarget*> accessibleItems() const;
    [[nodiscard]] accessible::ITarget* accessibleCard() const;
    // Whether the keys have selected this item.
    [[nodiscard]] bool isSelected(const CQrdItem* pItem) const;

    // One key event: code 0 is the modifier. S_FALSE: the card is not concerned. bHeld: no later event has arrived, so
    // that a pressed key may count as held.
    [[nodiscard]] HRESULT notifyHotkey(DWORD dwHotkey, BOOL bBreak, bool bHeld = true);
    // Whether the code belongs to the card's function; false (logged) without a function.
    [[nodiscard]] bool isHotkeyDesired(DWORD dwHotkey) const;
    // Whether an item is selected, that is, whether the enlarged card is in use.
    [[nodiscard]] bool hasValidSelection() const;
    // Applies the selected item.
    [[nodiscard]] HRESULT executeSelection() { return executeFunx(m_nSelItem, -1, true); }

    // Shows the enlarged card and its items, unless the message loop of a plug-in dispatches an order to hide them.
    // bFocusMoves: the strip that made way for it had the focus.
    [[nodiscard]] HRESULT showLargeCardDlg(bool bFocusMoves = false);
    [[nodiscard]] HRESULT hideLargeCardDlg();

    // Applies an item by its index; a negative index only hides the strip if the enlarged card is shown.
    [[nodiscard]] HRESULT executeFunx(int nItem, LONG lParam, bool bHideAfter, HRESULT* pFunctionStatus = nullptr);
    // The same for an item object: called by an item window when the user chose it. *pFunctionStatus receives the
    // function's own status, because the card's status does not tell whether the function refused. It is unchanged if
    // the function was not asked.
    [[nodiscard]] HRESULT selectItem(const CQrdItem* pItem, LONG lParam, bool bHideAfter,
                                     HRESULT* pFunctionStatus = nullptr);
    // Sets the text of the enlarged card and repaints it. E_POINTER while there is no enlarged card.
    [[nodiscard]] HRESULT updateStatus(const std::wstring& strText);

    // The focus moved from one of the card's windows to another window (null: to none).
    static void onFocusLost(HWND hNewWnd);

 private:
    friend struct BlackCardSeam;

    [[nodiscard]] HRESULT _initialize(const wchar_t* pszName, std::vector<DWORD> vecCodes, std::wstring strCaption,
                                      const wchar_t* pszFuncDll);
    [[nodiscard]] HRESULT _loadImage();
    [[nodiscard]] HRESULT createLargeCardDlg();
    [[nodiscard]] HRESULT _makeLargeCardDlg();
    [[nodiscard]] HRESULT setLargeCardDlgPos();
    [[nodiscard]] HRESULT createItemDlgs();
    [[nodiscard]] HRESULT _buildItems();
    [[nodiscard]] HRESULT setItemDlgPos();
    void clearItems();
    void _showItems(bool bShow) const;
    void _announceSelection() const;
    [[nodiscard]] HRESULT handleHotkeyFirstTime(DWORD dwHotkey);
    [[nodiscard]] HRESULT refreshItemDlgs(DWORD dwHotkey);

    CWnd* m_pParentWnd;
    const Placement& m_placement;
    LateImage m_image;
    RECT m_cardRect{};
    geometry::Card m_parts{};
    OutlineText m_captionText;
    OutlineText m_descText;
    std::unique_ptr<CFuncX> m_pFunx;
    std::unique_ptr<CLargeCardDlg> m_pLargeCardDlg;
    std::vector<CQrdItem*> m_vecItems;  // owned; the functions fill and clean it
    bool m_bFirstTime = true;           // the next press of the card's key is the first of a sequence
    int m_nSelItem = -1;
    unsigned m_uHides = 0;  // how often the enlarged card was hidden, so that long operations notice it
};
