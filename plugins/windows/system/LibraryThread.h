// Threads of a library that may be unloaded.
#pragma once

#include <windows.h>

#include <functional>

#include "common/Handle.h"

namespace win {

// Starts a thread that runs `body` once. The thread holds a reference to the library that this code is in, so that it
// stays mapped until the body has returned and everything that it owns is gone, however early the library's user gives
// it up. The result is null when there is no memory for it.
[[nodiscard]] common::UniqueHandle startLibraryThread(std::function<void()> body);

}  // namespace win
