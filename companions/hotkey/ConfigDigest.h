// One number for the entire contents of the watched configuration keys.
#pragma once

#include <cstdint>

namespace hotkey {

// Practically always differs if a watched key or value was added, removed or changed. Throws std::bad_alloc only.
// Thread: any.
[[nodiscard]] std::uint64_t digestConfiguration();

}  // namespace hotkey
