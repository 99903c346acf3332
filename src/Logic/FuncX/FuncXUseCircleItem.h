// The base of every function whose card shows round items.
#pragma once

#include "Logic/FuncX/FuncX.h"

class CFuncXUseCircleItem : public CFuncX {
 public:
    using CFuncX::CFuncX;

 protected:
    // Creates a round item with its window and appends it. The image ids are passed on in the given order: small,
    // large.
    [[nodiscard]] HRESULT addCircleItem(UINT uTextId, UINT uImageId1, UINT uImageId2,
                                        std::vector<CQrdItem*>& rVecItems);
    [[nodiscard]] HRESULT addCircleItem(const std::wstring& strText, UINT uImageId1, UINT uImageId2,
                                        std::vector<CQrdItem*>& rVecItems);
};
