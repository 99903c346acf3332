#include "fakes/Answer.h"
#include "functions/OpticalDisc.h"
#include "system/fake/FakeDrives.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    auto pDrives = std::make_shared<CFakeDrives>();
    pDrives->dwReadMs = kAnswerMs;
    pDrives->drives = {{L'D', false}};
    return std::make_unique<COpticalDisc>(std::move(pDrives));
}

}  // namespace win
