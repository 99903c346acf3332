// An overlay of the keyboard: some keys stand for others while it is on. At most one is on in the session, across all
// programs.
#pragma once

#include <memory>

#include "system/OverlayKeys.h"

namespace win {

class IOverlay {
 public:
    virtual ~IOverlay() = default;

    // Fast: it is called at every repaint of the strip.
    [[nodiscard]] virtual bool isOn() = 0;
    // Switching one on switches off the other. False: failed.
    [[nodiscard]] virtual bool turn(bool bOn) = 0;
};

// A keyboard hook on a thread of its own. The overlay is switched off at the latest with this object, and at log-off
// and lock. One object of each kind in a library.
[[nodiscard]] std::unique_ptr<IOverlay> makeKeyboardOverlay(OverlayKind kind);

}  // namespace win
