// High contrast: what is drawn in the program's own colours gets two colours of the system instead. User-interface
// thread only.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>

#include "common/Picture.h"

namespace contrast {

// Opaque, 0xFFRRGGBB: what is dark in the program's pictures becomes `ground`, what is light becomes `ink`.
struct Colours {
    DWORD ground;
    DWORD ink;
    bool operator==(const Colours&) const = default;
};
struct Palette {
    Colours plain;
    Colours chosen;  // of the selected item
    bool operator==(const Palette&) const = default;
};

// The system's colours if the user wants high contrast; empty: the program's own look.
[[nodiscard]] std::optional<Palette> systemPalette();

// What is drawn from now on; at first, and after an empty one, the program's own look. True if that is a change.
bool use(const std::optional<Palette>& palette) noexcept;
[[nodiscard]] const std::optional<Palette>& used() noexcept;
// Changes with every change of what is used.
[[nodiscard]] std::size_t state() noexcept;

// Which colours a drawing gets.
enum class Tone {
    Plain,
    Chosen,
    Light,    // plain, but its ground is light and its letters are dark
    AsDrawn,  // it has the system's colours already
};
// Replaces the colours of a drawing. Opaque and transparent pixels stay so, edges stay smooth.
void recolour(const FramePixels& frame, Tone tone) noexcept;

}  // namespace contrast
