#include "functions/Lock.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CLock>(makeWindowsLock());
}

}  // namespace win
