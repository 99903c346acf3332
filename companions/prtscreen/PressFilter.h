// Distinguishes presses of one key from its repeats.
#pragma once

#include <windows.h>

#include "keyboard/KeyEvent.h"

namespace prtscreen {

class CPressFilter {
 public:
    // True for a press. A missed release costs no press once the key has been silent for long enough.
    [[nodiscard]] bool isPress(bool bDown, DWORD time) noexcept {
        const bool bPress = bDown && (!m_bDown || time - m_nTime > keyboard::kRepeatGap);
        m_bDown = bDown;
        m_nTime = time;
        return bPress;
    }

 private:
    bool m_bDown = false;
    DWORD m_nTime = 0;
};

}  // namespace prtscreen
