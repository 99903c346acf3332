#include "fakes/Answer.h"
#include "functions/PowerPlanFunction.h"
#include "system/fake/FakePowerPlans.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    auto pPlans = std::make_shared<CFakePowerPlans>();
    pPlans->dwReadMs = kAnswerMs;
    constexpr GUID kOne{1, 0, 0, {}};
    pPlans->set({{kOne, L"One"}, {GUID{2, 0, 0, {}}, L"Two"}}, kOne);
    return std::make_unique<CPowerPlan>(std::move(pPlans));
}

}  // namespace win
