#include "functions/Sleep.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CHibernate>(makeWindowsSuspend());
}

}  // namespace win
