// Access for unit tests to single parts of the application object and of its windows. Each function only returns or
// calls one private member by name.
#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "Logic/HotkeyEventHandler.h"
#include "Logic/SysMsgHandlerFrame.h"
#include "Messages.h"
#include "UI/BlackCard.h"
#include "UI/ItemDlg/CircleItemDlg.h"
#include "UI/ItemDlg/FxOutputItemDlg.h"
#include "UI/ItemDlg/SliderItemDlg.h"
#include "UI/LargeCardDlg.h"
#include "UI/ZelHideDlg.h"
#include "UI/ZelMainDlg.h"
#include "ZelMain.h"

struct ZelMainSeam {
    static common::UniqueModule& pngDll() { return theApp.m_hPngDll; }
    static GdiplusSession& gdiplus() { return theApp.m_gdiplus; }
    static BOOL& mouseOperating() { return theApp.m_bMouseOperating; }
    static std::unique_ptr<CZelMainDlg>& strip() { return theApp.m_pZelMainDlg; }
    static std::unique_ptr<CZelHideDlg>& hoverStrip() { return theApp.m_pZelHideDlg; }
    static std::atomic<HWND>& stripWnd() { return theApp.m_hStripWnd; }
    static HRESULT registerStripClass() { return theApp._setWndClsName(); }
    static std::unique_ptr<CSysMsgHandlerFrame>& frame() { return theApp.m_pFrame; }
    static HRESULT createFrame() { return theApp.createSysMsgHandlerFrame(); }
    static common::UniqueModule& prtHookDll() { return theApp.m_hPrtHookDll; }
    static common::UniqueHandle& mutex() { return theApp.m_hMutex; }
    static bool initInstance() { return theApp.InitInstance(); }
    static int exitInstance() { return theApp.ExitInstance(); }
    static HRESULT checkMultiInstance() { return theApp.checkMultiInstance(); }
    static HRESULT cancelFnSticky() { return theApp._cancelFnSticky(); }
    static LONG hideForPrintScreen() { return CZelMainApp::hideQrdWhenPrtsc(); }
};

struct HotkeyEventSeam {
    static void hotkey(DWORD code, DWORD modifier) { CHotkeyEventHandler::_hotkeyNotify(code, modifier); }
    static void config(DWORD code) { CHotkeyEventHandler::_changeConfigNotify(code); }
};

struct HideDlgSeam {
    static CLayeredWnd* layered(const CZelHideDlg& strip) { return strip.picture(); }
    static LateImage& border(CZelHideDlg& strip) { return strip.m_borderImage; }
    static const std::vector<RECT>& segments(const CZelHideDlg& strip) { return strip.m_vecSegments; }
    static HRESULT show(CZelHideDlg& strip) { return strip._showBlackCardsBoder(); }
};

struct MainDlgSeam {
    static CLayeredWnd* layered(const CZelMainDlg& strip) { return strip.picture(); }
    static void dropLayered(CZelMainDlg& strip) { strip.dropPictures(); }
    static int& hovered(CZelMainDlg& strip) { return strip.m_nHoveredCard; }
    static bool& tracking(CZelMainDlg& strip) { return strip.m_bTracking; }
    static HRESULT calcRatio(CZelMainDlg& strip) { return strip.calcRatioForPng(); }
    static HRESULT place(CZelMainDlg& strip) { return strip.setBlackCardsPos(); }
    static HRESULT show(CZelMainDlg& strip) { return strip.showBlackCards(); }
    static Placement& placement(CZelMainDlg& strip) { return strip.m_placement; }
    static std::vector<std::unique_ptr<CBlackCard>>& cards(CZelMainDlg& strip) { return strip.m_vecCards; }
};

struct BlackCardSeam {
    static LateImage& image(CBlackCard& card) { return card.m_image; }
    static std::unique_ptr<CFuncX>& function(CBlackCard& card) { return card.m_pFunx; }
    static std::unique_ptr<CLargeCardDlg>& largeCard(CBlackCard& card) { return card.m_pLargeCardDlg; }
    static std::vector<CQrdItem*>& items(CBlackCard& card) { return card.m_vecItems; }
    static int& selected(CBlackCard& card) { return card.m_nSelItem; }
    static bool& firstTime(CBlackCard& card) { return card.m_bFirstTime; }
    static geometry::Card& parts(CBlackCard& card) { return card.m_parts; }
    static const OutlineText& descText(const CBlackCard& card) { return card.m_descText; }
    static HRESULT placeItems(CBlackCard& card) { return card.setItemDlgPos(); }
    static HRESULT placeLargeCard(CBlackCard& card) { return card.setLargeCardDlgPos(); }
    static HRESULT createLargeCard(CBlackCard& card) { return card.createLargeCardDlg(); }
    static HRESULT createItems(CBlackCard& card) { return card.createItemDlgs(); }
};

struct LargeCardSeam {
    static const std::wstring& text(const CLargeCardDlg& card) { return card.m_strText; }
    static const geometry::LargeCardTexts& rects(const CLargeCardDlg& card) { return card.m_rects; }
    static CLayeredWnd* layered(const CLargeCardDlg& card) { return card.picture(); }
};

struct ItemDescSeam {
    static const std::wstring& text(const CItemDescDlg& box) { return box.m_strDesc; }
    static void setText(CItemDescDlg& box, const std::wstring& text) { box.m_strDesc = text; }
    static HRESULT measure(const CItemDescDlg& box, Gdiplus::RectF& out) {
        return box.measureDescRect(box.clientRect(), out);
    }
    static HRESULT draw(const CItemDescDlg& box, HDC hDc) { return box.drawDescString(hDc); }
};

struct CircleItemSeam {
    static CItemDescDlg& box(CCircleItemDlg& item) { return item.m_descDlg; }
    static bool& enlarged(CCircleItemDlg& item) { return item.m_bEnlarged; }
    static bool& tracking(CCircleItemDlg& item) { return item.m_bTracking; }
    static const std::wstring& itemText(const CCircleItemDlg& item) { return item.m_strItemText; }
    static HWND smallWnd(const CCircleItemDlg& item) { return wndOf(item._smallPicture()); }
    static HWND largeWnd(const CCircleItemDlg& item) { return wndOf(item._largePicture()); }
    static UINT smallImageId(const CCircleItemDlg& item) { return item.m_uSmallImageId; }
    static UINT largeImageId(const CCircleItemDlg& item) { return item.m_uLargeImageId; }
    static double scale(const CCircleItemDlg& item) { return item.m_scale; }
    static bool hasAnyImage(const CCircleItemDlg& item) { return item.m_pImageSmall || item.m_pImageLarge; }
    static HRESULT showFakeWnd(CCircleItemDlg& item) { return item.showFakeWnd(); }

 private:
    static HWND wndOf(const CLayeredWnd* picture) { return picture == nullptr ? nullptr : picture->m_hWnd; }
};

struct SliderItemSeam {
    static CQrdSliderCtrl& slider(CSliderItemDlg& item) { return item.m_slider; }
};

struct FxOutputItemSeam {
    static COutputPreviewWnd* preview(const CFxOutputItemDlg& item) { return item.m_pPreviewWnd.get(); }
    static HRESULT showPreview(CFxOutputItemDlg& item) { return item.showPreviewWnd(); }
};

struct OutputPreviewSeam {
    using Rows = std::vector<std::unique_ptr<PreviewDisplayRow>>;
    static const Rows& rows(const COutputPreviewWnd& preview) { return preview.m_vecRows; }
};
