#include "functions/OpticalDisc.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<COpticalDisc>(makeWindowsDrives());
}

}  // namespace win
