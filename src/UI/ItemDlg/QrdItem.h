// The item interface: what a card needs from the windows in the row below its enlarged card. Every item window is a
// dialog that implements it. All calls must be made on the user-interface thread.
#pragma once

#include <windows.h>

#include "Logic/Placement.h"

class CBlackCard;

class CQrdItem {
 public:
    CQrdItem() = default;
    virtual ~CQrdItem() = default;
    CQrdItem(const CQrdItem&) = delete;
    CQrdItem& operator=(const CQrdItem&) = delete;

    // Loads images or measures text. After a failure only destroyItem() and deletion are allowed.
    [[nodiscard]] virtual HRESULT initialize() = 0;
    // Releases the window, its layered windows and its images; the object is deleted next.
    [[nodiscard]] virtual HRESULT destroyItem() = 0;
    [[nodiscard]] virtual int width() const = 0;   // pixels
    [[nodiscard]] virtual int height() const = 0;  // pixels
    [[nodiscard]] virtual HWND windowHandle() const = 0;
    // Shows without activating, or hides with all companion windows.
    [[nodiscard]] virtual HRESULT showItem(bool bShow) = 0;
    [[nodiscard]] virtual HRESULT setItemText(const wchar_t* /*pszText*/) { return S_OK; }
    // How far the caption box sticks out of the item on each side, pixels.
    [[nodiscard]] virtual int descOverhang() const { return 0; }
    // Marks the item as selected or not; the card calls it for every item at every press of its key.
    [[nodiscard]] virtual HRESULT switchItem(DWORD /*dwHotkey*/, bool /*bFirstTime*/, bool /*bSelected*/) {
        return S_OK;
    }

    // The placement of the cards; set before initialize(), and outlives the item.
    virtual void setPlacement(const Placement& placement) { m_pPlacement = &placement; }
    // The owning card, which outlives the item.
    [[nodiscard]] HRESULT setBlackCardInfo(CBlackCard* pBlackCard);
    // Tells the card that the item lost the focus to a window (null: to none).
    [[nodiscard]] HRESULT killFocus(HWND hNewWnd) const;

 protected:
    [[nodiscard]] const Placement& placement() const { return *m_pPlacement; }

    CBlackCard* m_pBlackCard = nullptr;

 private:
    const Placement* m_pPlacement = &kUnplaced;
};
