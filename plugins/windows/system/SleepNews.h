// The end of the machine's sleep.
#pragma once

#include <functional>

#include "common/Handle.h"

namespace win {

// Calls `awake` whenever the machine has slept, on the thread that made this object and destroys it, when that thread
// handles its messages. The system may tell of one sleep twice. Without a window, because there is none to be had, it
// stays silent.
class CSleepNews {
 public:
    explicit CSleepNews(std::function<void()> awake);
    ~CSleepNews();
    CSleepNews(const CSleepNews&) = delete;
    CSleepNews& operator=(const CSleepNews&) = delete;

 private:
    static LRESULT CALLBACK _procedure(HWND hWnd, UINT uMessage, WPARAM wParam, LPARAM lParam) noexcept;

    const std::function<void()> m_awake;
    common::UniqueWindow m_hWnd;
};

}  // namespace win
