#include "functions/Brightness.h"

#include "functions/AllScreens.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CBrightness>(
        std::make_shared<CAllScreens>(makeWindowsBacklight(), makeWindowsExternalScreens()));
}

}  // namespace win
