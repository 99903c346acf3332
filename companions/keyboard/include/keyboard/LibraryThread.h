// A thread of a library that its host may free at any time.
#pragma once

#include <windows.h>

#include <functional>

#include "common/Handle.h"

namespace keyboard {

// The thread holds a reference to the module that contains this code and releases it as its last step, so the code
// stays mapped for as long as it runs, whatever the host does. Destroying the object lets a running thread continue.
class CLibraryThread {
 public:
    // E_UNEXPECTED if started before; otherwise the system's error. Throws std::bad_alloc; then nothing runs. An
    // exception of `body` ends the thread.
    [[nodiscard]] HRESULT start(std::function<void()> body);
    // False if the thread still runs after that many ms. A thread that never started has ended.
    [[nodiscard]] bool wait(DWORD milliseconds) const noexcept;
    [[nodiscard]] bool isCurrent() const noexcept { return m_nId != 0 && m_nId == ::GetCurrentThreadId(); }

 private:
    common::UniqueHandle m_hThread;
    DWORD m_nId = 0;
};

}  // namespace keyboard
