// Optical drive: an item's position on the card differs from the plug-in's value for it.
#pragma once

#include "Logic/FuncX/CircleFunction.h"

class CFxODD final : public CCircleFunction {
 public:
    CFxODD(std::vector<DWORD> vecHotkeyCodes, std::wstring strCaption)
        : CCircleFunction(functiontables::kOdd, std::move(vecHotkeyCodes), std::move(strCaption)) {}

    using CCircleFunction::selectItem;
    [[nodiscard]] HRESULT getDefaultSelectItem(LONG& rlItem) override;
    [[nodiscard]] HRESULT selectItem(LONG lItem, LONG lParam) override;

 protected:
    void onItemsReported() override { m_vecItemValues.clear(); }
    void onItemAdded(const functiontables::Item& rItem) override { m_vecItemValues.push_back(rItem.dwValue); }

 private:
    std::vector<DWORD> m_vecItemValues;  // in the order of the items on the card
};
