// Brightness: ten levels of the built-in screen.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Backlight.h"
#include "system/SlowState.h"

namespace win {

inline constexpr LONG kBrightnessLevels = 10;

// The level, 0 to 10, of a percentage.
[[nodiscard]] LONG levelOf(BYTE nPercent);
// The percentage of the screen that is nearest to a level; of two, the brighter. `rLevels` is not empty.
[[nodiscard]] BYTE percentOf(LONG lLevel, const std::vector<BYTE>& rLevels);

class CBrightness final : public IFunction {
 public:
    explicit CBrightness(std::shared_ptr<IBacklight> pBacklight);

    void remember(const std::shared_ptr<IOfferMemory>& pMemory) override { m_state.remember(pMemory); }
    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<ULONG> items() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<IBacklight> m_pBacklight;
    CSlowState<Backlight> m_state;
};

}  // namespace win
