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

// Opaque. The photograph is a made one: a bright sky over dark and restless ground.
[[nodiscard]] Picture backdropPicture(Backdrop backdrop, int width, int height);

[[nodiscard]] FramePixels pixelsOf(Picture& picture);
[[nodiscard]] Picture transparent(int width, int height);
// The picture over such a backdrop.
[[nodiscard]] Picture onBackdrop(const Picture& picture, Backdrop backdrop);
// Every pixel as a square.
[[nodiscard]] Picture enlarged(const Picture& picture, int times);

// The light of an opaque pixel, 0 to 1, and how much lighter one is than the other, 1 to 21 (WCAG 2, relative luminance
// and contrast ratio).
[[nodiscard]] double luminance(DWORD pixel);
[[nodiscard]] double contrast(double light, double dark);

// One visible window of this thread, in screen pixels.
struct Layer {
    HWND window = nullptr;
    POINT place{};
    Picture picture;
};
// All that can be seen, the lowest first: layered windows as they were handed to the window system, others as they are
// painted. Windows that only take the mouse are left out.
[[nodiscard]] std::vector<Layer> visibleLayers();
// What such a window was handed last; empty when nothing.
[[nodiscard]] Layer layerOf(HWND layeredWindow);
// Their picture within a part of the screen.
[[nodiscard]] Picture onScreen(const std::vector<Layer>& layers, const RECT& area);

// A large picture that is filled from left to right and from top to bottom.
class Sheet {
 public:
    void add(Picture picture) { m_rows.back().push_back(std::move(picture)); }
    void newRow() { m_rows.emplace_back(); }
    // Writes NAME.ppm into the folder that FENWYN_LOOKS names; without one nothing is wanted. False: it cannot be
    // written.
    [[nodiscard]] bool write(const std::string& name) const;
    [[nodiscard]] static bool wanted();

 private:
    std::vector<std::vector<Picture>> m_rows{1};
};

}  // namespace looks
