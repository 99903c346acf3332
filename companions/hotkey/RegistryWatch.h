// Notices that something happened to the watched configuration keys.
#pragma once

#include <windows.h>

#include <vector>

#include "common/Handle.h"

namespace hotkey {

// Belongs to one thread: the system ends a watch with the thread that asked for it.
class CRegistryWatch {
 public:
    CRegistryWatch() noexcept;

    // Watches everything anew. To be called at first and after each signal; what happened meanwhile may go unsignalled,
    // so look at the keys only after it. Throws std::bad_alloc only.
    void arm();
    // Auto-reset event: look again. May be signalled for nothing. Null when the system refused it.
    [[nodiscard]] HANDLE event() const noexcept { return m_hEvent.get(); }

 private:
    common::UniqueHandle m_hEvent;
    std::vector<common::UniqueRegKey> m_vecKeys;  // after the event: closing a watched key signals it
};

}  // namespace hotkey
