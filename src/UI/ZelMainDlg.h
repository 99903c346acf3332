// The card strip: one card per hotkey function, side by side at the edge of the work area. It computes the image scale
// of the whole user interface and receives every hotkey event.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include "Data/HotkeyConfig.h"
#include "Logic/CustomHotkey.h"
#include "Logic/Placement.h"
#include "UI/CardGeometry.h"
#include "UI/CardWnd.h"
#include "common/LayeredWnd.h"

class CBlackCard;

class CZelMainDlg : public CCardWnd, public IDrawTextOnLayeredWnd, public IEnumHotkeyConfigs {
 public:
    CZelMainDlg();
    ~CZelMainDlg() override;

    // Reads the customised keys when they are enabled, then builds the cards.
    [[nodiscard]] HRESULT initialize();
    // Lays out the cards again; with bReinitialize rebuilds them first.
    [[nodiscard]] HRESULT refreshCards(bool bReinitialize);
    // One key event, on the user-interface thread: code 0 is the modifier.
    [[nodiscard]] HRESULT handleHotkey(DWORD dwHotkey, BOOL bBreak);
    void hideLargeCards() const;
    // The session ends during a call of a plug-in: ends the functions of all others. Cards and windows stay, because
    // code that works with them is on the stack.
    void endFunctions() const;
    // While cards are in use they cannot be rebuilt: true if the application is asked to do it later.
    [[nodiscard]] bool postponeRebuild();

    // The placement of the cards; updated by every layout. Lives as long as the strip.
    [[nodiscard]] const Placement& placement() const { return m_placement; }
    // Whether a layout now would place the cards differently.
    [[nodiscard]] bool placementIsStale() const;
    // Whether an enlarged card has a selected item.
    [[nodiscard]] bool cardInUse() const;
    [[nodiscard]] int cardCount() const { return static_cast<int>(m_vecCards.size()); }

    [[nodiscard]] HRESULT drawText(Gdiplus::Graphics& graphics) override;
    [[nodiscard]] std::optional<std::size_t> textState() const override;
    [[nodiscard]] HRESULT processHotkeyInfo(const HotkeyInfo* pHotkeyInfo) override;
    bool DestroyWindow() override;

    // Its parts are the cards.
    [[nodiscard]] const accessible::Kind& accessibleKind() const override { return accessible::kStrip; }
    [[nodiscard]] accessible::Facts accessibleFacts(LONG nPart) const override;
    [[nodiscard]] LONG accessibleParts() const override { return cardCount(); }
    [[nodiscard]] RECT accessiblePlace(LONG nPart) const override;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;
    void accessiblePress(LONG nPart) override;

 private:
    friend struct MainDlgSeam;

    [[nodiscard]] HRESULT createBlackCards();
    [[nodiscard]] HRESULT initHotKeyDll(const HotkeyInfo& info);
    [[nodiscard]] HRESULT _addCard(const HotkeyInfo& info);
    [[nodiscard]] bool _allCodesCustomized(const std::vector<DWORD>& vecCodes) const;
    [[nodiscard]] HRESULT calcRatioForPng();
    [[nodiscard]] HRESULT setBlackCardsPos();
    [[nodiscard]] HRESULT showBlackCards();
    void _refreshImages();
    // Images, opacities and places of the cards, in parallel.
    struct Pictures {
        std::vector<Gdiplus::Image*> vecImages;
        std::vector<DWORD> vecOpacities;
        std::vector<const RECT*> vecPlaces;
    };
    static void _addPicture(Pictures& pictures, CBlackCard& card, DWORD dwOpacity);
    void _prepareLater(std::size_t uCard) const;
    [[nodiscard]] DWORD _cardOpacity(int nCard) const;
    [[nodiscard]] bool isHotkeyDesired(DWORD dwHotkey) const;
    static void _leaveMouseFor(DWORD dwHotkey);
    void _hideForKey(DWORD dwHotkey);
    [[nodiscard]] HRESULT showOnModifier(BOOL bBreak);
    void _autoHide(BOOL bBreak);

    // Orders that arrived while cards were in use, in order of arrival.
    struct Postponed {
        bool bRebuild;
        DWORD dwHotkey;
        BOOL bBreak;
    };
    void _postpone(const Postponed& what);
    [[nodiscard]] HRESULT _handlePostponed();
    [[nodiscard]] bool _keyWaits() const;

    LRESULT OnHotkeyMessage(WPARAM wParam, LPARAM lParam);
    LRESULT OnCardsFree(WPARAM wParam, LPARAM lParam);
    LRESULT OnPrintScreen(WPARAM wParam, LPARAM lParam);
    LRESULT OnLatch(WPARAM wParam, LPARAM lParam);
    LRESULT OnPrepare(WPARAM wParam, LPARAM lParam);
    [[nodiscard]] const CBlackCard* _cardOf(LONG nPart) const;
    [[nodiscard]] HRESULT _drawLatchMark(Gdiplus::Graphics& graphics);
    void OnPaint() override;
    void OnTimer(UINT_PTR uId);
    void OnShowWindow(bool bShow) override;
    void OnSetFocus(HWND hOldWnd);
    void OnKillFocus(HWND hNewWnd);
    void OnMouseMove(POINT point);
    void OnMouseLeave();
    LRESULT OnMouseActivate(WPARAM wParam, LPARAM lParam);
    void OnLButtonDown(POINT point);
    LRESULT OnDpiChanged(WPARAM wParam, LPARAM lParam);

    Placement m_placement;  // before the cards, which use it until they are destroyed
    std::vector<std::unique_ptr<CBlackCard>> m_vecCards;
    CCustomHotkey m_customHotkey;
    int m_nHoveredCard = -1;
    const CBlackCard* m_pOnlyCard = nullptr;       // whose text is drawn, while the cards are prepared one by one
    bool m_bLatched = false;                       // the modifier is active without being held
    std::unique_ptr<Gdiplus::Image> m_pLatchMark;  // loaded when it is shown first
    std::deque<Postponed> m_postponed;
    bool m_bPaintLater = false;  // painted during a plug-in call, with the existing pictures
};
