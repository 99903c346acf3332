// Power plans: up to four, named by the plug-in. An item's position on the card differs from the plan's number.
#pragma once

#include "Logic/FuncX/FuncXUseCircleItem.h"
#include "Logic/FuncX/FunctionTables.h"

class CFxPowerPlan final : public CFuncXUseCircleItem {
 public:
    using CFuncX::selectItem;
    using CFuncXUseCircleItem::CFuncXUseCircleItem;

    [[nodiscard]] UINT getSmallPngID() override { return functiontables::kPowerPlanLook.uSmallPngId; }
    [[nodiscard]] UINT getLargePngID() override { return functiontables::kPowerPlanLook.uLargePngId; }
    [[nodiscard]] std::wstring getDesc() const override { return textOnce(functiontables::kPowerPlanLook.uDescId); }
    [[nodiscard]] HRESULT initItems(std::vector<CQrdItem*>& rVecItems) override;
    [[nodiscard]] HRESULT getDefaultSelectItem(LONG& rlItem) override;
    [[nodiscard]] std::wstring getCurrentStatus() override;
    [[nodiscard]] HRESULT selectItem(LONG lItem, LONG lParam) override;

 private:
    friend struct FxPowerPlanSeam;

    [[nodiscard]] HRESULT addItem(DWORD dwPlan, UINT uImageId1, UINT uImageId2, std::vector<CQrdItem*>& rVecItems);
    // Asks the plug-in. E_POINTER also for a null out pointer; the value is unchanged on failure.
    [[nodiscard]] HRESULT getPowerPlanItemName(DWORD dwPlan, std::wstring* pstrName) const;

    std::vector<DWORD> m_vecUsedPowerPlans;  // plan numbers in the order of the items on the card
};
