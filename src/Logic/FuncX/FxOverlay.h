// Cursor and numeric overlay: their card's picture follows a state that can also change outside the program.
#pragma once

#include "Logic/FuncX/CircleFunction.h"

class COverlayFunction : public CCircleFunction {
 public:
    [[nodiscard]] bool needRefreshSmallPng() override;
    [[nodiscard]] UINT getSmallPngID() override;
    // False while the mouse operates the cards: the overlays' keys belong to the user's typing then.
    [[nodiscard]] bool containsHotkeyCode(DWORD dwCode) const override;

 protected:
    COverlayFunction(const functiontables::OverlayDescription& rDescription, std::vector<DWORD> vecHotkeyCodes,
                     std::wstring strCaption)
        : CCircleFunction(rDescription.circle, std::move(vecHotkeyCodes), std::move(strCaption)),
          m_uOnPngId(rDescription.uOnPngId) {}

 private:
    UINT m_uOnPngId;
    LONG m_lLastItem = INVALID_CURRENT_ITEM;  // the current item when the picture was last chosen
};

template <const functiontables::OverlayDescription& kDescription>
class CDescribedOverlay final : public COverlayFunction {
 public:
    CDescribedOverlay(std::vector<DWORD> vecHotkeyCodes, std::wstring strCaption)
        : COverlayFunction(kDescription, std::move(vecHotkeyCodes), std::move(strCaption)) {}
};

using CFxCursorOverlay = CDescribedOverlay<functiontables::kCursorOverlay>;
using CFxNumOverlay = CDescribedOverlay<functiontables::kNumOverlay>;
