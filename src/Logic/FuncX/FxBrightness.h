// Screen brightness: one slider, operated by exactly two keys.
#pragma once

#include "Logic/FuncX/FuncX.h"
#include "Logic/FuncX/FunctionTables.h"

class CFxBrightness final : public CFuncX {
 public:
    using CFuncX::CFuncX;
    using CFuncX::selectItem;

    [[nodiscard]] UINT getSmallPngID() override { return functiontables::kBrightnessLook.uSmallPngId; }
    [[nodiscard]] UINT getLargePngID() override { return functiontables::kBrightnessLook.uLargePngId; }
    [[nodiscard]] std::wstring getDesc() const override { return textOnce(functiontables::kBrightnessLook.uDescId); }
    // No slider (E_OUTOFMEMORY) if the machine adjusts two screens separately.
    [[nodiscard]] HRESULT initItems(std::vector<CQrdItem*>& rVecItems) override;
    [[nodiscard]] HRESULT getDefaultSelectItem(LONG& rlItem) override;
    [[nodiscard]] std::wstring getCurrentStatus() override;
    // The parameter is the level; the item does not matter.
    [[nodiscard]] HRESULT selectItem(LONG lItem, LONG lParam) override;

    // Whether the machine adjusts two screens separately. Unchanged on failure.
    [[nodiscard]] HRESULT isDualBrtCtrl(bool& rbDual) const;
};
