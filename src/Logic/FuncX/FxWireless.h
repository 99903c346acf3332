// Wireless: up to fifteen states, or one notice if the plug-in reports none.
#pragma once

#include "Logic/FuncX/FuncXUseCircleItem.h"
#include "Logic/FuncX/FunctionTables.h"

class CFxWireless final : public CFuncXUseCircleItem {
 public:
    using CFuncX::selectItem;
    using CFuncXUseCircleItem::CFuncXUseCircleItem;

    [[nodiscard]] UINT getSmallPngID() override { return functiontables::kWirelessLook.uSmallPngId; }
    [[nodiscard]] UINT getLargePngID() override { return functiontables::kWirelessLook.uLargePngId; }
    [[nodiscard]] std::wstring getDesc() const override { return textOnce(functiontables::kWirelessLook.uDescId); }
    [[nodiscard]] HRESULT initItems(std::vector<CQrdItem*>& rVecItems) override;
    // The last item; -1 if there is none.
    [[nodiscard]] HRESULT getDefaultSelectItem(LONG& rlItem) override;
    // Inferred from the offered states; the plug-in is not asked.
    [[nodiscard]] std::wstring getCurrentStatus() override;
    [[nodiscard]] HRESULT selectItem(LONG lItem, LONG lParam) override;

 private:
    friend struct FxWirelessSeam;

    [[nodiscard]] HRESULT addItem(DWORD dwState, UINT uImageId1, UINT uImageId2, std::vector<CQrdItem*>& rVecItems);
    [[nodiscard]] HRESULT addErrorItem(std::vector<CQrdItem*>& rVecItems) const;
    [[nodiscard]] HRESULT _addStates(DWORD dwStates, std::vector<CQrdItem*>& rVecItems);

    bool m_bErrorMode = false;
    std::vector<DWORD> m_vecWirelessItems;  // states in the order of the items on the card
    bool m_bEvenStatePresent = false;       // an offered state switches off one device
};
