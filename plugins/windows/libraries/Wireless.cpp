#include "functions/Wireless.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CWireless>(makeWindowsRadios());
}

}  // namespace win
