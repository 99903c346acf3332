// The caption box that an item shows below itself.
#pragma once

#include <optional>
#include <string>

#include "Logic/Placement.h"
#include "UI/ItemDlg/NoteWnd.h"
#include "common/GdiPlus.h"
#include "common/GdiPlusFunc.h"

class CItemDescDlg : public CNoteWnd {
 public:
    explicit CItemDescDlg(std::wstring strDesc);

    // Takes another box's window over, and what is known of its text.
    void takeOver(CItemDescDlg& other) noexcept;
    // The placement of the cards; outlives the box.
    void setPlacement(const Placement& placement) { m_pPlacement = &placement; }
    // Places the box under a part of the item, given in screen coordinates, as wide as its text needs. E_POINTER: null.
    [[nodiscard]] HRESULT setWndPos(const RECT* pItemRect);
    [[nodiscard]] const std::wstring& text() const { return m_strDesc; }

    [[nodiscard]] accessible::Facts accessibleFacts(LONG /*nPart*/) const override { return {m_strDesc, {}, {}, 0}; }

 private:
    friend struct ItemDescSeam;
    void OnPaint() override;
    [[nodiscard]] HRESULT measureDescRect(const RECT& layout, Gdiplus::RectF& outRect) const;
    [[nodiscard]] HRESULT drawDescString(HDC hDc) const;

    // A text that was measured.
    struct Measured {
        std::wstring strText;
        double ratio;
        int nMaxWidth;
        SIZE size;
    };
    [[nodiscard]] HRESULT _measure(int nMaxWidth);

    std::wstring m_strDesc;
    std::optional<Measured> m_measured;
    mutable OutlineText m_text;  // a cache
    const Placement* m_pPlacement = &kUnplaced;
};
