#include "common/Picture.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr float kOpaque = 255.0F;
constexpr unsigned kRounding = 127;  // half of 255

// Blue, green, red, alpha; the colours are linear and premultiplied.
using Light = std::array<float, 4>;

// The linear light of each sRGB value: 0 to 1.
const std::array<float, 256>& lightTable() {
    static const std::array<float, 256> table = [] {
        std::array<float, 256> made{};
        for (std::size_t value = 0; value < made.size(); ++value) {
            const double code = static_cast<double>(value) / 255.0;
            made[value] = static_cast<float>(code <= 0.04045 ? code / 12.92 : std::pow((code + 0.055) / 1.055, 2.4));
        }
        return made;
    }();
    return table;
}

// The sRGB value nearest to a linear light, with the thresholds half-way between the table's entries.
unsigned codeOf(float light) {
    const auto& table = lightTable();
    const auto above = std::upper_bound(table.begin(), table.end(), light);
    if (above == table.begin()) {
        return 0;
    }
    const auto below = above - 1;
    const bool nearerAbove = above != table.end() && *above - light < light - *below;
    return static_cast<unsigned>((nearerAbove ? above : below) - table.begin());
}

Light lightOf(DWORD pixel) {
    const unsigned alpha = pixel >> 24U;
    if (alpha == 0) {
        return {};
    }
    const float share = static_cast<float>(alpha) / kOpaque;
    Light light{0, 0, 0, share};
    for (unsigned channel = 0; channel < 3; ++channel) {
        const unsigned value = (pixel >> (8U * channel)) & 0xFFU;
        light[channel] = lightTable()[std::min((value * 255U + alpha / 2) / alpha, 255U)] * share;
    }
    return light;
}

DWORD pixelOf(const Light& light) {
    const auto alpha = static_cast<unsigned>(std::lround(std::clamp(light[3], 0.0F, 1.0F) * kOpaque));
    if (alpha == 0) {
        return 0;
    }
    DWORD pixel = alpha << 24U;
    for (unsigned channel = 0; channel < 3; ++channel) {
        const unsigned code = codeOf(std::clamp(light[channel] / light[3], 0.0F, 1.0F));
        pixel |= (code * alpha + kRounding) / 255U << (8U * channel);
    }
    return pixel;
}

void add(Light& sum, const Light& light, float weight) {
    for (std::size_t channel = 0; channel < sum.size(); ++channel) {
        sum[channel] += light[channel] * weight;
    }
}

// The source pixels of one result pixel along one axis, and their weights.
struct Taps {
    int first = 0;
    std::vector<float> weights;

    void add(int index, float weight) {
        if (weights.empty()) {
            first = index;
        }
        const auto slot = static_cast<std::size_t>(index - first);
        weights.resize(std::max(weights.size(), slot + 1));
        weights[slot] += weight;
    }
};

// The interpolating kernel, which keeps edges sharp.
float cubic(float distance) {
    const float x = std::fabs(distance);
    if (x < 1.0F) {
        return (1.5F * x - 2.5F) * x * x + 1.0F;
    }
    return x < 2.0F ? ((-0.5F * x + 2.5F) * x - 4.0F) * x + 2.0F : 0.0F;
}

// One axis: the `length` pixels from `start` on become `count`. The source has `available`.
class Axis {
 public:
    Axis(int start, int length, int available, int count)
        : m_start(start), m_length(length), m_available(available), m_step(static_cast<double>(length) / count) {
        m_taps.reserve(static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i) {
            m_taps.push_back(count > length ? _enlarged(i) : _averaged(i));
        }
    }
    [[nodiscard]] const std::vector<Taps>& taps() const { return m_taps; }

 private:
    [[nodiscard]] bool _there(int index) const { return index >= 0 && index < m_available; }

    [[nodiscard]] Taps _averaged(int i) const {
        Taps taps;
        const double from = m_start + i * m_step;
        const double to = from + m_step;
        for (int index = static_cast<int>(std::floor(from)); index < to; ++index) {
            const double covered = std::min(to, index + 1.0) - std::max(from, static_cast<double>(index));
            if (covered > 1.0e-9 && _there(index)) {
                taps.add(index, static_cast<float>(covered / m_step));
            }
        }
        return taps;
    }

    [[nodiscard]] Taps _enlarged(int i) const {
        Taps taps;
        const double centre = m_start + (i + 0.5) * m_step - 0.5;
        const int nearest = static_cast<int>(std::floor(centre));
        for (int index = nearest - 1; index <= nearest + 2; ++index) {
            // Beyond its edge, the part continues with its edge pixels.
            const int inside = std::clamp(index, m_start, m_start + m_length - 1);
            if (_there(inside)) {
                taps.add(inside, cubic(static_cast<float>(index - centre)));
            }
        }
        return taps;
    }

    int m_start;
    int m_length;
    int m_available;
    double m_step;
    std::vector<Taps> m_taps;
};

bool sameSize(const RECT& part, SIZE size) {
    return part.right - part.left == size.cx && part.bottom - part.top == size.cy;
}

Picture blank(SIZE size) {
    const auto count = static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy);
    return {static_cast<int>(size.cx), static_cast<int>(size.cy), std::vector<DWORD>(count)};
}

Picture copyPart(const Picture& picture, const RECT& part, SIZE size) {
    Picture copy = blank(size);
    const int left = std::max<int>(part.left, 0);
    const int right = std::min<int>(part.right, picture.width);
    for (int y = std::max<int>(part.top, 0); left < right && y < std::min<int>(part.bottom, picture.height); ++y) {
        std::copy(picture.row(y) + left, picture.row(y) + right, copy.row(y - part.top) + (left - part.left));
    }
    return copy;
}

// Each channel of a pixel times factor / 255.
DWORD dimmed(DWORD pixel, unsigned factor) {
    DWORD result = 0;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        result |= (((pixel >> shift) & 0xFFU) * factor + kRounding) / 255U << shift;
    }
    return result;
}

DWORD premultiplied(DWORD colour) {
    return (colour & 0xFF000000U) | (dimmed(colour, colour >> 24U) & 0x00FFFFFFU);
}

}  // namespace

Picture scalePicture(const Picture& picture, const RECT& part, SIZE size) {
    const int length = part.right - part.left;
    const int rows = part.bottom - part.top;
    if (length <= 0 || rows <= 0 || size.cx <= 0 || size.cy <= 0) {
        return {};
    }
    if (sameSize(part, size)) {
        return copyPart(picture, part, size);
    }
    const Axis across(part.left, length, picture.width, size.cx);
    const Axis down(part.top, rows, picture.height, size.cy);

    // First each required row at its new width, then the columns.
    const int top = std::clamp<int>(part.top, 0, picture.height);
    const int bottom = std::clamp<int>(part.bottom, top, picture.height);
    const auto width = static_cast<std::size_t>(size.cx);
    std::vector<Light> band(static_cast<std::size_t>(bottom - top) * width);
    std::vector<Light> line(static_cast<std::size_t>(picture.width));
    for (int y = top; y < bottom; ++y) {
        std::transform(picture.row(y), picture.row(y) + picture.width, line.begin(), lightOf);
        Light* const target = band.data() + static_cast<std::size_t>(y - top) * width;
        for (std::size_t x = 0; x < width; ++x) {
            const Taps& taps = across.taps()[x];
            for (std::size_t i = 0; i < taps.weights.size(); ++i) {
                add(target[x], line[static_cast<std::size_t>(taps.first) + i], taps.weights[i]);
            }
        }
    }
    Picture scaled = blank(size);
    for (int y = 0; y < scaled.height; ++y) {
        const Taps& taps = down.taps()[static_cast<std::size_t>(y)];
        for (std::size_t x = 0; x < width; ++x) {
            Light sum{};
            for (std::size_t i = 0; i < taps.weights.size(); ++i) {
                add(sum, band[static_cast<std::size_t>(taps.first - top + static_cast<int>(i)) * width + x],
                    taps.weights[i]);
            }
            scaled.row(y)[x] = pixelOf(sum);
        }
    }
    return scaled;
}

DWORD mixColours(DWORD firstColour, int first, DWORD secondColour, int second, int total) {
    Light sum{};
    add(sum, lightOf(premultiplied(firstColour)), static_cast<float>(first) / static_cast<float>(total));
    add(sum, lightOf(premultiplied(secondColour)), static_cast<float>(second) / static_cast<float>(total));
    return pixelOf(sum);
}

void blendPicture(const FramePixels& frame, const Picture& picture, int left, int top, DWORD opacity) {
    const unsigned factor = std::min<DWORD>(opacity, 255);
    const int from = std::max(left, 0);
    const int to = static_cast<int>(std::min<long long>(frame.width, static_cast<long long>(left) + picture.width));
    const int bottom =
        static_cast<int>(std::min<long long>(frame.height, static_cast<long long>(top) + picture.height));
    for (int y = std::max(top, 0); from < to && y < bottom; ++y) {
        const DWORD* source = picture.row(y - top) + (from - left);
        DWORD* const target = frame.row(y);
        for (int x = from; x < to; ++x, ++source) {
            const DWORD over = factor == 255 ? *source : dimmed(*source, factor);
            const unsigned alpha = over >> 24U;
            if (alpha == 255) {
                target[x] = over;
            } else if (alpha != 0) {
                // A layered window's pixels never overflow: each channel is at most its alpha.
                target[x] = over + (target[x] == 0 ? 0 : dimmed(target[x], 255U - alpha));
            }
        }
    }
}
