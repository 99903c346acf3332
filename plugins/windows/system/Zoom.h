// The size of the icons on the desktop.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

namespace win {

inline constexpr std::size_t kZoomSizes = 3;  // normal, larger, largest
using ZoomTable = std::array<int, kZoomSizes>;

// The index of the nearest size in the table; of two, the smaller.
[[nodiscard]] std::size_t nearestSize(const ZoomTable& rTable, int nSize);

// Any thread; may take long, because the shell answers.
class IDesktopIcons {
 public:
    virtual ~IDesktopIcons() = default;

    // The icons' current size of the three, or the nearest; nothing: there is no desktop.
    [[nodiscard]] virtual std::optional<std::size_t> size() = 0;
    virtual void resize(std::size_t size) = 0;
};

// The shell's view of the desktop if there is one, otherwise the spacing and font of icons.
[[nodiscard]] std::shared_ptr<IDesktopIcons> makeWindowsDesktopIcons();

}  // namespace win
