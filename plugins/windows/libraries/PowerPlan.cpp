#include "functions/PowerPlanFunction.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CPowerPlan>(makeWindowsPowerPlans());
}

}  // namespace win
