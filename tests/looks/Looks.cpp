#include "looks/Looks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <map>

#include "common/GdiPlus.h"
#include "common/Handle.h"
#include "common/Rendering.h"

namespace looks {

namespace {

constexpr COLORREF kSeenThrough = RGB(0xFF, 0x00, 0xFF);
constexpr int kGap = 6;  // pixels between the pictures of a sheet

std::map<HWND, Layer>& handedOver() {
    static auto& only = *new std::map<HWND, Layer>;  // windows may be painted until the very end
    return only;
}

void keep(HWND window, HDC source, POINT place, SIZE size) {
    DIBSECTION section{};
    ::GetObjectW(::GetCurrentObject(source, OBJ_BITMAP), sizeof(section), &section);
    const LONG stride = section.dsBm.bmWidth;
    const auto* const bits = static_cast<const DWORD*>(section.dsBm.bmBits);
    Layer layer{window, place, {static_cast<int>(size.cx), static_cast<int>(size.cy), {}}};
    for (LONG y = 0; y < size.cy; ++y) {  // the lowest row comes first in memory
        const DWORD* const row = bits + (section.dsBm.bmHeight - 1 - y) * stride;
        layer.picture.pixels.insert(layer.picture.pixels.end(), row, row + size.cx);
    }
    handedOver()[window] = std::move(layer);
}

BOOL WINAPI updateLayered(HWND window, HDC screen, POINT* target, SIZE* size, HDC source, POINT* from, COLORREF key,
                          BLENDFUNCTION* blend, DWORD flags) {
    static const auto call = reinterpret_cast<decltype(&updateLayered)>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), "UpdateLayeredWindow")));
    if (source != nullptr && target != nullptr && size != nullptr) {
        keep(window, source, *target, *size);
    }
    return call(window, screen, target, size, source, from, key, blend, flags);
}

// Between 0 and 1, the same for the same place.
double noise(int x, int y) {
    auto n = static_cast<unsigned>(x) * 374761393U + static_cast<unsigned>(y) * 668265263U;
    n = (n ^ (n >> 13U)) * 1274126177U;
    return static_cast<double>((n ^ (n >> 16U)) & 0xFFFFU) / 65535.0;
}

double smoothNoise(double x, double y) {
    const int column = static_cast<int>(std::floor(x));
    const int row = static_cast<int>(std::floor(y));
    const auto ease = [](double t) { return t * t * (3.0 - 2.0 * t); };
    const double u = ease(x - column);
    const double v = ease(y - row);
    const double top = noise(column, row) * (1.0 - u) + noise(column + 1, row) * u;
    const double bottom = noise(column, row + 1) * (1.0 - u) + noise(column + 1, row + 1) * u;
    return top * (1.0 - v) + bottom * v;
}

DWORD photoPixel(int x, int y, int height) {
    const double ridge = height * (0.35 + 0.3 * smoothNoise(x / 40.0, 3.0));
    const double cloud = smoothNoise(x / 30.0, y / 12.0) * 0.6 + smoothNoise(x / 9.0, y / 5.0) * 0.4;
    const double leaf = smoothNoise(x / 7.0 + 50.0, y / 6.0) * 0.6 + smoothNoise(x / 2.5, y / 2.5) * 0.4;
    const auto mix = [](double a, double b, double t) { return static_cast<DWORD>(a + (b - a) * t) & 0xF8U; };
    return y < ridge ? 0xFF000000U | mix(120, 250, cloud) << 16U | mix(170, 250, cloud) << 8U | mix(225, 255, cloud)
                     : 0xFF000000U | mix(20, 170, leaf) << 16U | mix(45, 180, leaf) << 8U | mix(10, 90, leaf);
}

double linear(DWORD channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

Layer paintedWindow(HWND window) {
    RECT place{};
    ::GetWindowRect(window, &place);
    RECT client{};
    ::GetClientRect(window, &client);
    const rendering::Canvas canvas(std::max<int>(client.right, 1), std::max<int>(client.bottom, 1));
    const common::WindowDc dc(window);
    ::BitBlt(canvas.dc(), 0, 0, client.right, client.bottom, dc.get(), 0, 0, SRCCOPY);
    Layer layer{window, {place.left, place.top}, {static_cast<int>(client.right), static_cast<int>(client.bottom), {}}};
    for (int y = 0; y < client.bottom; ++y) {
        for (int x = 0; x < client.right; ++x) {
            const DWORD pixel = canvas.at(x, y) & 0xFFFFFFU;
            layer.picture.pixels.push_back(pixel == kSeenThrough ? 0 : pixel | 0xFF000000U);
        }
    }
    return layer;
}

bool onlyTakesTheMouse(HWND window) {
    COLORREF key = 0;
    BYTE alpha = 0xFF;
    DWORD flags = 0;
    return ::GetLayeredWindowAttributes(window, &key, &alpha, &flags) != FALSE && (flags & LWA_ALPHA) != 0 &&
           alpha <= 1;
}

int g_scalings = 0;

std::string folder() {
    const char* const name = std::getenv("FENWYN_LOOKS");
    return name != nullptr ? name : "";
}

}  // namespace

const char* nameOf(Backdrop backdrop) {
    return backdrop == Backdrop::White ? "white" : backdrop == Backdrop::Black ? "black" : "photo";
}

FramePixels pixelsOf(Picture& picture) {
    return {picture.pixels.data(), picture.width, picture.width, picture.height};
}

Picture transparent(int width, int height) {
    return {width, height, std::vector<DWORD>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))};
}

Picture backdropPicture(Backdrop backdrop, int width, int height) {
    Picture picture = transparent(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            picture.row(y)[x] = backdrop == Backdrop::White   ? 0xFFFFFFFFU
                                : backdrop == Backdrop::Black ? 0xFF000000U
                                                              : photoPixel(x, y, height);
        }
    }
    return picture;
}

Picture onBackdrop(const Picture& picture, Backdrop backdrop) {
    Picture result = backdropPicture(backdrop, picture.width, picture.height);
    blendPicture(pixelsOf(result), picture, 0, 0, 255);
    return result;
}

Picture enlarged(const Picture& picture, int times) {
    Picture result = transparent(picture.width * times, picture.height * times);
    for (int y = 0; y < result.height; ++y) {
        for (int x = 0; x < result.width; ++x) {
            result.row(y)[x] = picture.row(y / times)[x / times];
        }
    }
    return result;
}

double luminance(DWORD pixel) {
    return 0.2126 * linear(pixel >> 16U & 0xFFU) + 0.7152 * linear(pixel >> 8U & 0xFFU) +
           0.0722 * linear(pixel & 0xFFU);
}

double contrast(double light, double dark) {
    return (std::max(light, dark) + 0.05) / (std::min(light, dark) + 0.05);
}

double letterContrast(const Picture& seen, const RECT& area, bool dark) {
    std::vector<double> lights;
    for (int y = std::max<int>(area.top, 0); y < std::min<int>(area.bottom, seen.height); ++y) {
        for (int x = std::max<int>(area.left, 0); x < std::min<int>(area.right, seen.width); ++x) {
            lights.push_back(luminance(seen.row(y)[x]));
        }
    }
    if (lights.empty()) {
        return 0.0;
    }
    std::sort(lights.begin(), lights.end());
    if (dark) {
        std::reverse(lights.begin(), lights.end());
    }
    return contrast(lights[lights.size() - 1 - lights.size() / 50], lights[lights.size() / 3]);
}

Layer layerOf(HWND layeredWindow) {
    const auto found = handedOver().find(layeredWindow);
    return found != handedOver().end() ? found->second : Layer{};
}

int scalings() {
    return g_scalings;
}

std::vector<Layer> visibleLayers() {
    std::vector<Layer> layers;
    for (HWND window = ::GetTopWindow(nullptr); window != nullptr; window = ::GetWindow(window, GW_HWNDNEXT)) {
        if (::GetWindowThreadProcessId(window, nullptr) != ::GetCurrentThreadId() ||
            ::IsWindowVisible(window) == FALSE || onlyTakesTheMouse(window)) {
            continue;
        }
        const Layer known = layerOf(window);
        layers.push_back(known.window != nullptr ? known : paintedWindow(window));
    }
    std::reverse(layers.begin(), layers.end());
    return layers;
}

Picture onScreen(const std::vector<Layer>& layers, const RECT& area) {
    Picture result = transparent(area.right - area.left, area.bottom - area.top);
    for (const Layer& layer : layers) {
        blendPicture(pixelsOf(result), layer.picture, layer.place.x - area.left, layer.place.y - area.top, 255);
    }
    return result;
}

bool Sheet::wanted() {
    return !folder().empty();
}

bool Sheet::write(const std::string& name) const {
    if (!wanted()) {
        return true;
    }
    int width = 0;
    int height = kGap;
    for (const auto& row : m_rows) {
        int rowWidth = kGap;
        int rowHeight = 0;
        for (const Picture& picture : row) {
            rowWidth += picture.width + kGap;
            rowHeight = std::max(rowHeight, picture.height);
        }
        width = std::max(width, rowWidth);
        height += rowHeight + kGap;
    }
    Picture sheet{width, height,
                  std::vector<DWORD>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0xFF808080U)};
    int y = kGap;
    for (const auto& row : m_rows) {
        int x = kGap;
        int rowHeight = 0;
        for (const Picture& picture : row) {
            blendPicture(pixelsOf(sheet), picture, x, y, 255);
            x += picture.width + kGap;
            rowHeight = std::max(rowHeight, picture.height);
        }
        y += rowHeight + kGap;
    }
    std::ofstream file(folder() + "/" + name + ".ppm", std::ios::binary);
    file << "P6\n" << width << ' ' << height << "\n255\n";
    for (const DWORD pixel : sheet.pixels) {
        for (const unsigned shift : {16U, 8U, 0U}) {
            file.put(static_cast<char>(pixel >> shift & 0xFFU));
        }
    }
    return file.good();
}

}  // namespace looks

// The linker redirects the program's calls of scalePicture and of the two functions of GDI+ that draw images:
// CMakeLists.txt names them.
extern "C" {
Picture __real__Z12scalePictureRK7PictureRK7tagRECT7tagSIZE(const Picture& picture, const RECT& part, SIZE size);
Picture __wrap__Z12scalePictureRK7PictureRK7tagRECT7tagSIZE(const Picture& picture, const RECT& part, SIZE size) {
    ++looks::g_scalings;
    return __real__Z12scalePictureRK7PictureRK7tagRECT7tagSIZE(picture, part, size);
}

Gdiplus::GpStatus WINGDIPAPI __real_GdipDrawImageRectI(Gdiplus::GpGraphics* graphics, Gdiplus::GpImage* image, INT x,
                                                       INT y, INT width, INT height);
Gdiplus::GpStatus WINGDIPAPI __wrap_GdipDrawImageRectI(Gdiplus::GpGraphics* graphics, Gdiplus::GpImage* image, INT x,
                                                       INT y, INT width, INT height) {
    UINT ownWidth = 0;
    UINT ownHeight = 0;
    Gdiplus::DllExports::GdipGetImageWidth(image, &ownWidth);
    Gdiplus::DllExports::GdipGetImageHeight(image, &ownHeight);
    if (static_cast<INT>(ownWidth) != width || static_cast<INT>(ownHeight) != height) {
        ++looks::g_scalings;
    }
    return __real_GdipDrawImageRectI(graphics, image, x, y, width, height);
}

Gdiplus::GpStatus WINGDIPAPI __real_GdipDrawImageRectRectI(Gdiplus::GpGraphics* graphics, Gdiplus::GpImage* image,
                                                           INT x, INT y, INT width, INT height, INT sourceX,
                                                           INT sourceY, INT sourceWidth, INT sourceHeight,
                                                           Gdiplus::GpUnit unit,
                                                           const Gdiplus::GpImageAttributes* attributes,
                                                           Gdiplus::DrawImageAbort callback, VOID* data);
Gdiplus::GpStatus WINGDIPAPI __wrap_GdipDrawImageRectRectI(Gdiplus::GpGraphics* graphics, Gdiplus::GpImage* image,
                                                           INT x, INT y, INT width, INT height, INT sourceX,
                                                           INT sourceY, INT sourceWidth, INT sourceHeight,
                                                           Gdiplus::GpUnit unit,
                                                           const Gdiplus::GpImageAttributes* attributes,
                                                           Gdiplus::DrawImageAbort callback, VOID* data) {
    if (width != sourceWidth || height != sourceHeight) {
        ++looks::g_scalings;
    }
    return __real_GdipDrawImageRectRectI(graphics, image, x, y, width, height, sourceX, sourceY, sourceWidth,
                                         sourceHeight, unit, attributes, callback, data);
}
}

// What the linker finds here it does not take from the system's import libraries.
extern "C" {
extern const auto __imp_UpdateLayeredWindow = &looks::updateLayered;
}
