// What the tests of looks share: the windows of this program as a person sees them, over a backdrop; brightness by
// number; and sheets of pictures.
#pragma once

#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "common/Picture.h"

namespace looks {

inline constexpr std::array<double, 5> kRatios{0.4, 0.6, 0.8, 1.0, 1.25};

enum class Backdrop { White, Black, Photo };
inline constexpr std::array<Backdrop, 3> kBackdrops{Backdrop::White, Backdrop::Black, Backdrop::Photo};
[[nodiscard]] const char* nameOf(Backdrop backdrop);

// Opaque. The photograph is generated: a bright sky above dark, uneven ground.
[[nodiscard]] Picture backdropPicture(Backdrop backdrop, int width, int height);

[[nodiscard]] FramePixels pixelsOf(Picture& picture);
[[nodiscard]] Picture transparent(int width, int height);
// The picture drawn over that backdrop.
[[nodiscard]] Picture onBackdrop(const Picture& picture, Backdrop backdrop);
// Each pixel becomes a square of that many pixels.
[[nodiscard]] Picture enlarged(const Picture& picture, int times);

// The relative luminance of an opaque pixel, 0 to 1, and the contrast ratio of two luminances, 1 to 21 (WCAG 2).
[[nodiscard]] double luminance(DWORD pixel);
[[nodiscard]] double contrast(double light, double dark);
// How much the lightest pixels of a part of an opaque picture stand out from its middle ones: light letters on their
// ground. With `dark` the darkest pixels. 0 if the part is empty.
[[nodiscard]] double letterContrast(const Picture& seen, const RECT& area, bool dark = false);

// How often the program had a picture scaled since the start, by its own function or by GDI+.
[[nodiscard]] int scalings();

// One visible window of this thread, in screen pixels.
struct Layer {
    HWND window = nullptr;
    POINT place{};
    Picture picture;
};
// All visible windows, the lowest first: layered windows with the picture that the window system received, others as
// they paint themselves. Windows that only receive the mouse are not included.
[[nodiscard]] std::vector<Layer> visibleLayers();
// The latest picture of a layered window; empty if it has none yet.
[[nodiscard]] Layer layerOf(HWND layeredWindow);
// The layers combined, within a part of the screen.
[[nodiscard]] Picture onScreen(const std::vector<Layer>& layers, const RECT& area);

// A large picture that is filled from left to right and from top to bottom.
class Sheet {
 public:
    void add(Picture picture) { m_rows.back().push_back(std::move(picture)); }
    void newRow() { m_rows.emplace_back(); }
    // Writes NAME.ppm into the folder that FENWYN_LOOKS names. False: it cannot be written.
    [[nodiscard]] bool write(const std::string& name) const;
    [[nodiscard]] static bool wanted();

 private:
    std::vector<std::vector<Picture>> m_rows{1};
};

}  // namespace looks
