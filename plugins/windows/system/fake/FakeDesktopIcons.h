// A desktop for tests.
#pragma once

#include <atomic>

#include "system/Zoom.h"

namespace win {

class CFakeDesktopIcons final : public IDesktopIcons {
 public:
    std::optional<std::size_t> size() override {
        ::Sleep(dwReadMs);
        return bDesktop ? std::optional<std::size_t>(now.load()) : std::nullopt;
    }
    void resize(std::size_t size) override {
        if (!bRefuses) {
            now = size;
        }
    }

    std::atomic<DWORD> dwReadMs = 0;  // how long a look takes
    std::atomic<bool> bDesktop = true;
    std::atomic<bool> bRefuses = false;
    std::atomic<std::size_t> now = 0;
};

}  // namespace win
