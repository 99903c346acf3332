// The text that a card shows instead of items when its function has nothing to offer.
#pragma once

#include <memory>
#include <string>

#include "UI/ItemDlg/QrdItem.h"
#include "common/GdiPlus.h"
#include "common/GdiPlusFunc.h"
#include "common/LayeredWnd.h"
#include "framework/Dialog.h"

class CErrorItemDlg : public CDialog, public CQrdItem, public IDrawTextOnLayeredWnd {
 public:
    explicit CErrorItemDlg(std::wstring strError);
    ~CErrorItemDlg() override;

    // Measures the text; the window has to exist, because its font is used.
    [[nodiscard]] HRESULT initialize() override;
    HRESULT destroyItem() override;
    [[nodiscard]] int width() const override { return static_cast<int>(m_textRect.Width); }
    [[nodiscard]] int height() const override { return static_cast<int>(m_textRect.Height); }
    [[nodiscard]] HWND windowHandle() const override { return m_hWnd; }
    HRESULT showItem(bool bShow) override;
    HRESULT setItemText(const wchar_t* pszText) override;

    HRESULT drawText(Gdiplus::Graphics& graphics) override;
    bool DestroyWindow() override;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    void OnPaint();
    void OnKillFocus(HWND hNewWnd);
    HRESULT getErrStringRect();

    Gdiplus::RectF m_textRect;
    std::wstring m_strError;
    std::unique_ptr<CLayeredWnd> m_pLayeredWnd;
    OutlineText m_errorText;
};
