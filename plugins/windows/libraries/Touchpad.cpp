#include "functions/TouchpadSwitch.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CTouchpadSwitch>(makeWindowsTouchpad());
}

}  // namespace win
