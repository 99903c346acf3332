#include "functions/Overlay.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    return std::make_unique<COverlay>(makeKeyboardOverlay(OverlayKind::Cursor));
}

}  // namespace win
