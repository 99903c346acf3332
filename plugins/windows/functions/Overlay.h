// Cursor keys and number pad on the letter keys.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Overlay.h"

namespace win {

class COverlay final : public IFunction {
 public:
    explicit COverlay(std::unique_ptr<IOverlay> pOverlay);

    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::unique_ptr<IOverlay> m_pOverlay;
};

}  // namespace win
