// Keyboard backlight: the status of the timer item also shows its time.
#pragma once

#include "Logic/FuncX/CircleFunction.h"

class CFxKBB final : public CCircleFunction {
 public:
    CFxKBB(std::vector<DWORD> vecHotkeyCodes, std::wstring strCaption)
        : CCircleFunction(functiontables::kKbb, std::move(vecHotkeyCodes), std::move(strCaption)) {}

    [[nodiscard]] std::wstring getCurrentStatus() override;
};
