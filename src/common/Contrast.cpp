#include "common/Contrast.h"

#include <algorithm>
#include <cwchar>

namespace contrast {

namespace {

std::optional<Palette> g_used;
std::size_t g_uState = 0;

// Systems that cannot switch to high contrast themselves do not say that it is available; there, only what is stored
// counts.
bool isStored() {
    wchar_t flags[16] = L"";
    DWORD dwSize = sizeof(flags);
    return ::RegGetValueW(HKEY_CURRENT_USER, L"Control Panel\\Accessibility\\HighContrast", L"Flags",
                          RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, flags, &dwSize) == ERROR_SUCCESS &&
           (std::wcstoul(flags, nullptr, 10) & HCF_HIGHCONTRASTON) != 0;
}

bool isWanted() {
    HIGHCONTRASTW setting{};
    setting.cbSize = sizeof(setting);
    const bool known = ::SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(setting), &setting, 0) != FALSE &&
                       (setting.dwFlags & HCF_AVAILABLE) != 0;
    return known ? (setting.dwFlags & HCF_HIGHCONTRASTON) != 0 : isStored();
}

DWORD systemColour(int nIndex) {
    const DWORD colour = ::GetSysColor(nIndex);
    return 0xFF000000U | GetRValue(colour) << 16U | GetGValue(colour) << 8U | GetBValue(colour);
}

// How much ink a brightness (0 to 255) is, of 255. The grounds of the pictures have none, the faintest strokes are all
// ink, lines and smooth edges are between.
constexpr unsigned inkOf(unsigned brightness, unsigned none, unsigned all) {
    return brightness <= none ? 0U : std::min(255U, (brightness - none) * 255U / (all - none));
}
constexpr unsigned inkOnDark(unsigned brightness) {
    return inkOf(brightness, 52, 104);
}
constexpr unsigned inkOnLight(unsigned brightness) {
    return inkOf(255U - brightness, 50, 130);
}

unsigned channel(DWORD colour, unsigned shift) {
    return colour >> shift & 0xFFU;
}

DWORD mixed(const Colours& colours, unsigned ink, unsigned alpha) {
    DWORD pixel = alpha << 24U;
    for (const unsigned shift : {16U, 8U, 0U}) {
        const unsigned full =
            (channel(colours.ink, shift) * ink + channel(colours.ground, shift) * (255U - ink)) / 255U;
        pixel |= (full * alpha + 127U) / 255U << shift;
    }
    return pixel;
}

}  // namespace

std::optional<Palette> systemPalette() {
    if (!isWanted()) {
        return std::nullopt;
    }
    return Palette{{systemColour(COLOR_WINDOW), systemColour(COLOR_WINDOWTEXT)},
                   {systemColour(COLOR_HIGHLIGHT), systemColour(COLOR_HIGHLIGHTTEXT)}};
}

bool use(const std::optional<Palette>& palette) noexcept {
    if (palette == g_used) {
        return false;
    }
    g_used = palette;
    ++g_uState;
    return true;
}

const std::optional<Palette>& used() noexcept {
    return g_used;
}

std::size_t state() noexcept {
    return g_uState;
}

void recolour(const FramePixels& frame, Tone tone) noexcept {
    if (!g_used || tone == Tone::AsDrawn) {
        return;
    }
    const Colours& colours = tone == Tone::Chosen ? g_used->chosen : g_used->plain;
    for (int y = 0; y < frame.height; ++y) {
        for (DWORD* pixel = frame.row(y); pixel != frame.row(y) + frame.width; ++pixel) {
            // A bitmap without an alpha channel is opaque.
            const unsigned alpha = tone == Tone::Light ? 255U : *pixel >> 24U;
            if (alpha == 0) {
                continue;
            }
            const unsigned lightest = std::max({channel(*pixel, 16), channel(*pixel, 8), channel(*pixel, 0)});
            const unsigned brightness = std::min(255U, lightest * 255U / alpha);
            *pixel = mixed(colours, tone == Tone::Light ? inkOnLight(brightness) : inkOnDark(brightness), alpha);
        }
    }
}

}  // namespace contrast
