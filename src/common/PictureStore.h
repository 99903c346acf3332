// A cache of decoded and scaled pictures: a picture is decoded once and scaled once for each size it is shown at,
// however often windows are created and destroyed. Plain memory, which may outlive GDI+. User-interface thread only.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

#include "common/GdiPlus.h"
#include "common/Picture.h"

// A picture as it was drawn, and the sizes at which it was shown last.
class MasterPicture {
 public:
    explicit MasterPicture(Picture picture) : m_picture(std::move(picture)) {}

    [[nodiscard]] const Picture& pixels() const { return m_picture; }
    // Its number; no two pictures of the process have the same.
    [[nodiscard]] std::size_t id() const { return m_uId; }
    // A part of it (pixels) at a size, created at the first call. Valid until the next call.
    [[nodiscard]] const Picture& scaled(const RECT& part, SIZE size);

    // How often it had to be scaled.
    [[nodiscard]] int scalings() const { return m_nScalings; }
    [[nodiscard]] std::size_t bytes() const;

 private:
    struct Version {
        RECT part;
        SIZE size;
        Picture picture;
    };

    static inline std::size_t s_uPictures = 0;

    const std::size_t m_uId = ++s_uPictures;
    Picture m_picture;
    std::vector<Version> m_versions;  // the most recently used comes first
    int m_nScalings = 0;
};

// Keeps the pixels alive that an image only points to; must be its first base.
class MasterPictureHolder {
 protected:
    explicit MasterPictureHolder(std::shared_ptr<MasterPicture> pMaster) : m_pMaster(std::move(pMaster)) {}

    std::shared_ptr<MasterPicture> m_pMaster;
};

// A GDI+ image over a master picture's pixels. Images of one picture share it.
class StoredImage final : private MasterPictureHolder, public Gdiplus::Bitmap {
 public:
    explicit StoredImage(std::shared_ptr<MasterPicture> pMaster);

    [[nodiscard]] MasterPicture& master() const { return *m_pMaster; }
};

namespace picturestore {

// The picture that was decoded from these bytes; null if there is none.
[[nodiscard]] std::shared_ptr<MasterPicture> find(std::span<const std::byte> bytes);
// Stores it. If there are too many, pictures that no image shows are dropped, least recently requested first.
void keep(std::span<const std::byte> bytes, std::shared_ptr<MasterPicture> pMaster);

}  // namespace picturestore

// Draws a stored image at another size: reduced as all pictures are, and kept, so that the graphics itself scales
// nothing. E_FAIL, unlogged: the image is none of the store, or the graphics fails.
[[nodiscard]] HRESULT drawStoredImage(Gdiplus::Graphics& graphics, Gdiplus::Image& image, const RECT& place);

// The pixels of any image; empty (0 x 0) if it was not decoded or there is no memory.
[[nodiscard]] Picture pixelsOf(Gdiplus::Image& image);
