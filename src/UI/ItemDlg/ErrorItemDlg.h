// The text that a card shows instead of items if its function has nothing to offer.
#pragma once

#include <memory>
#include <string>

#include "UI/ItemDlg/ItemWnd.h"
#include "common/GdiPlus.h"
#include "common/GdiPlusFunc.h"
#include "common/LayeredWnd.h"

class CErrorItemDlg : public CItemWnd, public IDrawTextOnLayeredWnd {
 public:
    explicit CErrorItemDlg(std::wstring strError);

    // Measures the text; the window must exist, because its font is used.
    [[nodiscard]] HRESULT initialize() override;
    [[nodiscard]] HRESULT destroyItem() override;
    [[nodiscard]] int width() const override { return static_cast<int>(m_textRect.Width); }
    [[nodiscard]] int height() const override { return static_cast<int>(m_textRect.Height); }
    [[nodiscard]] HRESULT setItemText(const wchar_t* pszText) override;

    [[nodiscard]] HRESULT drawText(Gdiplus::Graphics& graphics) override;

    [[nodiscard]] const accessible::Kind& accessibleKind() const override { return accessible::kNotice; }
    [[nodiscard]] accessible::Facts accessibleFacts(LONG /*nPart*/) const override { return {m_strError, {}, {}, 0}; }
    [[nodiscard]] HRESULT showItem(bool bShow) override;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    void OnPaint() override;
    void OnKillFocus(HWND hNewWnd);
    [[nodiscard]] HRESULT getErrStringRect();

    Gdiplus::RectF m_textRect;
    std::wstring m_strError;
    OutlineText m_errorText;
};
