// Zoom: three sizes of the icons on the desktop.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/SlowState.h"
#include "system/Zoom.h"

namespace win {

class CZoom final : public IFunction {
 public:
    explicit CZoom(std::shared_ptr<IDesktopIcons> pIcons);

    void remember(const std::shared_ptr<IOfferMemory>& pMemory) override { m_state.remember(pMemory); }
    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<ULONG> items() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<IDesktopIcons> m_pIcons;
    CSlowState<std::size_t> m_state;
};

}  // namespace win
