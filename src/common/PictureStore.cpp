#include "common/PictureStore.h"

#include <algorithm>
#include <functional>
#include <list>
#include <string_view>
#include <utility>

namespace {

// One picture is shown at one size and place at a time; two more while the screen changes.
constexpr std::size_t kVersions = 3;

// All pictures of fifteen cards and their items at full size take about half of it.
constexpr std::size_t kMostBytes = 8U << 20U;

// Larger than any picture of a card; an image that claims more is not worth its memory.
constexpr UINT kLargestSide = 8192;

struct Entry {
    std::size_t size;
    std::size_t hash;
    std::shared_ptr<MasterPicture> pMaster;
};

// The most recently requested one comes first.
std::list<Entry>& entries() {
    static std::list<Entry> list;
    return list;
}

std::size_t hashOf(std::span<const std::byte> bytes) {
    return std::hash<std::string_view>()({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

bool sameRect(const RECT& left, const RECT& right) {
    return ::EqualRect(&left, &right) != FALSE;
}

void dropUnused() {
    auto& list = entries();
    std::size_t bytes = 0;
    for (const Entry& entry : list) {
        bytes += entry.pMaster->bytes();
    }
    for (auto entry = list.end(); bytes > kMostBytes && entry != list.begin();) {
        --entry;
        if (entry->pMaster.use_count() == 1) {
            bytes -= entry->pMaster->bytes();
            entry = list.erase(entry);
        }
    }
}

}  // namespace

const Picture& MasterPicture::scaled(const RECT& part, SIZE size) {
    const RECT whole{0, 0, m_picture.width, m_picture.height};
    if (sameRect(part, whole) && size.cx == m_picture.width && size.cy == m_picture.height) {
        return m_picture;
    }
    auto version = std::find_if(m_versions.begin(), m_versions.end(), [&](const Version& candidate) {
        return sameRect(candidate.part, part) && candidate.size.cx == size.cx && candidate.size.cy == size.cy;
    });
    if (version == m_versions.end()) {
        ++m_nScalings;
        if (m_versions.size() == kVersions) {
            m_versions.pop_back();
        }
        m_versions.push_back({part, size, scalePicture(m_picture, part, size)});
        version = m_versions.end() - 1;
    }
    std::rotate(m_versions.begin(), version, version + 1);
    return m_versions.front().picture;
}

std::size_t MasterPicture::bytes() const {
    std::size_t count = m_picture.pixels.size();
    for (const Version& version : m_versions) {
        count += version.picture.pixels.size();
    }
    return count * sizeof(DWORD);
}

StoredImage::StoredImage(std::shared_ptr<MasterPicture> pMaster)
    : MasterPictureHolder(std::move(pMaster)),
      Gdiplus::Bitmap(m_pMaster->pixels().width, m_pMaster->pixels().height,
                      m_pMaster->pixels().width * static_cast<INT>(sizeof(DWORD)), PixelFormat32bppPARGB,
                      // GDI+ asks for writable bytes; nobody draws onto a stored image.
                      reinterpret_cast<BYTE*>(const_cast<DWORD*>(m_pMaster->pixels().pixels.data()))) {}

std::shared_ptr<MasterPicture> picturestore::find(std::span<const std::byte> bytes) {
    auto& list = entries();
    const std::size_t hash = hashOf(bytes);
    const auto entry = std::find_if(list.begin(), list.end(), [&](const Entry& candidate) {
        return candidate.size == bytes.size() && candidate.hash == hash;
    });
    if (entry == list.end()) {
        return nullptr;
    }
    list.splice(list.begin(), list, entry);
    return list.front().pMaster;
}

void picturestore::keep(std::span<const std::byte> bytes, std::shared_ptr<MasterPicture> pMaster) {
    entries().push_front({bytes.size(), hashOf(bytes), std::move(pMaster)});
    dropUnused();
}

HRESULT drawStoredImage(Gdiplus::Graphics& graphics, Gdiplus::Image& image, const RECT& place) {
    const auto* const stored = dynamic_cast<StoredImage*>(&image);
    if (stored == nullptr) {
        return E_FAIL;
    }
    const Picture& whole = stored->master().pixels();
    const Picture& scaled = stored->master().scaled({0, 0, whole.width, whole.height},
                                                    {place.right - place.left, place.bottom - place.top});
    // GDI+ asks for bytes that it may write to; it only reads them.
    Gdiplus::Bitmap bitmap(scaled.width, scaled.height, scaled.width * static_cast<INT>(sizeof(DWORD)),
                           PixelFormat32bppPARGB, reinterpret_cast<BYTE*>(const_cast<DWORD*>(scaled.pixels.data())));
    return graphics.DrawImage(&bitmap, static_cast<INT>(place.left), static_cast<INT>(place.top), scaled.width,
                              scaled.height) == Gdiplus::Ok
               ? S_OK
               : E_FAIL;
}

Picture pixelsOf(Gdiplus::Image& image) {
    if (const auto* const stored = dynamic_cast<StoredImage*>(&image); stored != nullptr) {
        return stored->master().pixels();
    }
    const UINT width = image.GetWidth();
    const UINT height = image.GetHeight();
    if (width == 0 || height == 0 || width > kLargestSide || height > kLargestSide) {
        return {};
    }
    Picture picture{static_cast<int>(width), static_cast<int>(height),
                    std::vector<DWORD>(static_cast<std::size_t>(width) * height)};
    Gdiplus::Bitmap target(picture.width, picture.height, picture.width * static_cast<INT>(sizeof(DWORD)),
                           PixelFormat32bppPARGB, reinterpret_cast<BYTE*>(picture.pixels.data()));
    Gdiplus::Graphics graphics(&target);
    graphics.SetCompositingMode(Gdiplus::CompositingModeSourceCopy);
    const auto status = graphics.DrawImage(&image, Gdiplus::Rect(0, 0, picture.width, picture.height), 0, 0,
                                           picture.width, picture.height, Gdiplus::UnitPixel);
    return status == Gdiplus::Ok ? std::move(picture) : Picture{};
}
