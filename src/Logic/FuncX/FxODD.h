// Optical drive: an item's place on the card and the value that the plug-in knows it by differ.
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
