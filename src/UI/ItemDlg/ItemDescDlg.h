// The caption box that an item shows below itself.
#pragma once

#include <string>

#include "Logic/Placement.h"
#include "UI/ItemDlg/NoteWnd.h"
#include "common/GdiPlus.h"

class CItemDescDlg : public CNoteWnd {
 public:
    explicit CItemDescDlg(std::wstring strDesc);

    // The placement of the cards; outlives the box.
    void setPlacement(const Placement& placement) { m_pPlacement = &placement; }
    // Places the box under a part of the item, given in screen coordinates, as wide as its text needs. E_POINTER: null.
    [[nodiscard]] HRESULT setWndPos(const RECT* pItemRect);
    [[nodiscard]] const std::wstring& text() const { return m_strDesc; }

    [[nodiscard]] accessible::Facts accessibleFacts(LONG /*nPart*/) const override { return {m_strDesc, {}, {}, 0}; }

 private:
    friend struct ItemDescSeam;
    void OnPaint() override;
    [[nodiscard]] HRESULT measureDescRect(Gdiplus::RectF& outRect) const;
    [[nodiscard]] HRESULT drawDescString(HDC hDc) const;

    std::wstring m_strDesc;
    const Placement* m_pPlacement = &kUnplaced;
};
