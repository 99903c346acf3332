// An overlay of the keyboard: some keys stand for others while it is on. One is on at most, of all programs of the
// session together.
#pragma once

#include <memory>

#include "system/OverlayKeys.h"

namespace win {

class IOverlay {
 public:
    virtual ~IOverlay() = default;

    // Quick: it is asked at every repaint of the strip.
    [[nodiscard]] virtual bool isOn() = 0;
    // Switching one on switches the other off. False: it was not done.
    [[nodiscard]] virtual bool turn(bool bOn) = 0;
};

// A keyboard hook on a thread of its own. It goes off at the latest with this object, and at log-off and lock. One
// object of each kind in a library.
[[nodiscard]] std::unique_ptr<IOverlay> makeKeyboardOverlay(OverlayKind kind);

}  // namespace win
