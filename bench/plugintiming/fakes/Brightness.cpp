#include "functions/Brightness.h"
#include "fakes/Answer.h"
#include "system/fake/FakeBacklight.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    auto pScreen = std::make_shared<CFakeBacklight>();
    pScreen->dwReadMs = kAnswerMs;
    pScreen->levels = {0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100};
    return std::make_unique<CBrightness>(std::move(pScreen));
}

}  // namespace win
