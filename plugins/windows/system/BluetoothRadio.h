// The Bluetooth radio, from the system's own list of radios (since Windows 10).
#pragma once

#include <optional>

#include "system/Radios.h"

namespace win {

// Nothing: there is none, the system is older, or it does not support programs of this bitness.
[[nodiscard]] std::optional<Radio> bluetoothRadio();
void setBluetoothRadio(bool bOn);

}  // namespace win
