#include "functions/Zoom.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<CZoom>(makeWindowsDesktopIcons());
}

}  // namespace win
