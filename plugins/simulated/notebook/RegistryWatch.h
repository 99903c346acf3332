// Notifies a window when the simulated machine, Fenwyn's published state or the function list changed, without polling.
#pragma once

#include <windows.h>

#include <thread>

#include "common/Handle.h"

namespace sim {

class CRegistryWatch {
 public:
    CRegistryWatch() = default;
    ~CRegistryWatch() { stop(); }
    CRegistryWatch(const CRegistryWatch&) = delete;
    CRegistryWatch& operator=(const CRegistryWatch&) = delete;

    // Posts `message` to `window` after every change of a value or key below SOFTWARE\KESTOVA of the user and of the
    // machine, until stop(). Simultaneous changes may cause one message. False: the system provided no event or no
    // thread.
    bool start(HWND window, UINT message);
    void stop();

 private:
    void _watch(HWND window, UINT message) const noexcept;

    common::UniqueHandle m_hStop;
    common::UniqueHandle m_hChanged;
    std::thread m_thread;
};

}  // namespace sim
