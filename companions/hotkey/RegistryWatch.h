// Detects changes of the watched configuration keys.
#pragma once

#include <windows.h>

#include <vector>

#include "common/Handle.h"

namespace hotkey {

// Belongs to one thread: the system ends a watch together with the thread that requested it.
class CRegistryWatch {
 public:
    CRegistryWatch() noexcept;

    // Starts all watches again. To be called at first and after each signal; changes before the call may not be
    // signalled, so read the keys only after it. Throws std::bad_alloc only.
    void arm();
    // Auto-reset event: check again. May be signalled without a change. Null if the system refused it.
    [[nodiscard]] HANDLE event() const noexcept { return m_hEvent.get(); }

 private:
    common::UniqueHandle m_hEvent;
    std::vector<common::UniqueRegKey> m_vecKeys;  // after the event: closing a watched key signals it
};

}  // namespace hotkey
