// Touchpad: the system offers a toggle only, so the state is read, the toggle sent if it differs, and the state
// verified.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/SlowState.h"
#include "system/Touchpad.h"

namespace win {

class CTouchpadSwitch final : public IFunction {
 public:
    explicit CTouchpadSwitch(std::shared_ptr<ITouchpad> pTouchpad);

    void remember(const std::shared_ptr<IOfferMemory>& pMemory) override { m_enabled.remember(pMemory); }
    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<ULONG> items() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<ITouchpad> m_pTouchpad;
    CSlowState<bool> m_enabled;
};

}  // namespace win
