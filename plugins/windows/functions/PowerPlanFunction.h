// Power plans: up to four of the system's, by their own names.
#pragma once

#include <array>
#include <memory>

#include "plugin/Function.h"
#include "system/PowerPlans.h"
#include "system/SlowState.h"

namespace win {

inline constexpr std::size_t kPlanItems = 4;

// The card's contents: the plan of each item, and which one is active.
struct PlanItems {
    std::array<std::optional<PowerPlan>, kPlanItems> plans;
    std::optional<LONG> active;

    [[nodiscard]] ULONG mask() const;
};

// The standard plans have the items with their pictures: 0 high performance, 1 balanced, 2 power saver. The last item
// is for another plan, preferably the active one; further ones fill free items, in the system's order. Plans beyond
// four are omitted.
[[nodiscard]] PlanItems arrangePlans(const std::vector<PowerPlan>& plans, const std::optional<GUID>& active);

class CPowerPlan final : public IFunction {
 public:
    explicit CPowerPlan(std::shared_ptr<IPowerPlans> pPlans);

    void remember(const std::shared_ptr<IOfferMemory>& pMemory) override { m_state.remember(pMemory); }
    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<ULONG> items() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;
    [[nodiscard]] std::optional<std::wstring> itemText(ULONG uItem) override;

 private:
    std::shared_ptr<IPowerPlans> m_pPlans;
    CSlowState<PlanItems> m_state;
    PlanItems m_shown;  // the last result of items(): a choice refers to it
};

}  // namespace win
