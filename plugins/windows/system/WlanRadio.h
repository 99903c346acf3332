// The radio of wireless networks.
#pragma once

#include <optional>

#include "system/Radios.h"

namespace win {

// Nothing: there is no interface for wireless networks.
[[nodiscard]] std::optional<Radio> wlanRadio();
void setWlanRadio(bool bOn);

}  // namespace win
