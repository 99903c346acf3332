#include "fakes/Answer.h"
#include "functions/TouchpadSwitch.h"
#include "system/fake/FakeTouchpad.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    auto pTouchpad = std::make_shared<CFakeTouchpad>();
    pTouchpad->dwReadMs = kAnswerMs;
    return std::make_unique<CTouchpadSwitch>(std::move(pTouchpad));
}

}  // namespace win
