// One number for everything that the watched configuration keys hold.
#pragma once

#include <cstdint>

namespace hotkey {

// Differs, for all practical purposes, whenever a watched key or value came, went or changed. Throws std::bad_alloc
// only. Thread: any.
[[nodiscard]] std::uint64_t digestConfiguration();

}  // namespace hotkey
