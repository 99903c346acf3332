#include "functions/Brightness.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CBrightness>(makeWindowsBacklight());
}

}  // namespace win
