// A thread of a library that may be freed by its host at any time.
#pragma once

#include <windows.h>

#include <functional>

#include "common/Handle.h"

namespace keyboard {

// The thread holds a reference to the module that this code is in and gives it up with its last step, so the code stays
// mapped for as long as it runs, whatever the host does. Destroying the object lets a running thread go on.
class CLibraryThread {
 public:
    // E_UNEXPECTED when started before; else the system's error. Throws std::bad_alloc; nothing runs then. An exception
    // of `body` ends the thread.
    [[nodiscard]] HRESULT start(std::function<void()> body);
    // False when the thread still runs after that many ms. A thread that never started has ended.
    [[nodiscard]] bool wait(DWORD milliseconds) const noexcept;
    [[nodiscard]] bool isCurrent() const noexcept { return m_nId != 0 && m_nId == ::GetCurrentThreadId(); }

 private:
    common::UniqueHandle m_hThread;
    DWORD m_nId = 0;
};

}  // namespace keyboard
