#include "common/ResourceFunc.h"

#include <shlwapi.h>

#include <span>
#include <utility>

#include "common/PictureStore.h"
#include "common/Status.h"
#include "common/UiLanguage.h"

namespace {

struct ReleaseStream {
    void operator()(IStream* pStream) const noexcept { pStream->Release(); }
};
using StreamPtr = std::unique_ptr<IStream, ReleaseStream>;

// The address of the bytes of a resource; null if the system cannot supply them.
const std::byte* resourceBytes(HMODULE hModule, HRSRC hResource) noexcept {
    const HGLOBAL hLoaded = ::LoadResource(hModule, hResource);
    return hLoaded != nullptr ? static_cast<const std::byte*>(::LockResource(hLoaded)) : nullptr;
}

// E_POINTER: there is none; E_FAIL: it is empty.
[[nodiscard]] HRESULT findResource(HMODULE hModule, WORD wResourceId, const wchar_t* pszResourceType,
                                   std::span<const std::byte>& rBytes) noexcept {
    const HRSRC hResource = ::FindResourceW(hModule, MAKEINTRESOURCEW(wResourceId), pszResourceType);
    if (hResource == nullptr) {
        return E_POINTER;
    }
    const DWORD dwSize = ::SizeofResource(hModule, hResource);
    if (dwSize == 0) {
        return E_FAIL;
    }
    const std::byte* const pBytes = resourceBytes(hModule, hResource);
    rBytes = {pBytes, pBytes != nullptr ? dwSize : 0};
    return pBytes != nullptr ? S_OK : E_POINTER;
}

// Creates an image from arbitrary bytes. E_POINTER: no memory.
[[nodiscard]] HRESULT decode(std::span<const std::byte> bytes, std::unique_ptr<Gdiplus::Image>& outImage) {
    // Not a stream on global memory: some systems read behind that one's end when the length of a damaged part leads
    // there.
    const StreamPtr stream(
        ::SHCreateMemStream(reinterpret_cast<const BYTE*>(bytes.data()), static_cast<UINT>(bytes.size())));
    if (!stream) {
        return E_POINTER;
    }
    outImage = tryMakeGdiPlus<Gdiplus::Image>(stream.get());
    return outImage != nullptr ? S_OK : E_POINTER;
}

[[nodiscard]] HRESULT storedImage(std::shared_ptr<MasterPicture> master, std::unique_ptr<Gdiplus::Image>& outImage) {
    outImage = tryMakeGdiPlus<StoredImage>(std::move(master));
    return outImage != nullptr ? S_OK : E_POINTER;
}

// Decoded at the first call, later taken from the store. Throws std::bad_alloc.
[[nodiscard]] HRESULT imageOf(std::span<const std::byte> bytes, std::unique_ptr<Gdiplus::Image>& outImage) {
    if (auto known = picturestore::find(bytes); known != nullptr) {
        return storedImage(std::move(known), outImage);
    }
    std::unique_ptr<Gdiplus::Image> decoded;
    const HRESULT status = decode(bytes, decoded);
    if (FAILED(status)) {
        return status;
    }
    Picture picture = pixelsOf(*decoded);
    if (picture.pixels.empty()) {
        outImage = std::move(decoded);  // logs its own failure
        return S_OK;
    }
    auto master = std::make_shared<MasterPicture>(std::move(picture));
    picturestore::keep(bytes, master);
    return storedImage(std::move(master), outImage);
}

// Without memory for the picture, it counts as missing.
[[nodiscard]] HRESULT decodedImage(std::span<const std::byte> bytes, std::unique_ptr<Gdiplus::Image>& outImage) {
    std::unique_ptr<Gdiplus::Image> image;
    const HRESULT status = common::statusOf([&] { return imageOf(bytes, image); });
    if (FAILED(status)) {
        return status == E_OUTOFMEMORY ? E_POINTER : status;
    }
    outImage = std::move(image);
    return S_OK;
}

}  // namespace

HRESULT getImageFromRes(HMODULE hModule, WORD wResourceId, const wchar_t* pszResourceType,
                        std::unique_ptr<Gdiplus::Image>& outImage) {
    std::span<const std::byte> bytes;
    RETURN_IF_FAILED(findResource(hModule, wResourceId, pszResourceType, bytes));
    RETURN_IF_FAILED(decodedImage(bytes, outImage));
    return S_OK;
}

HRESULT getImageFromRes(HMODULE hModule, WORD wResourceId, const wchar_t* pszResourceType, LateImage& rOutImage) try {
    std::span<const std::byte> bytes;
    RETURN_IF_FAILED(findResource(hModule, wResourceId, pszResourceType, bytes));
    rOutImage = LateImage({bytes.begin(), bytes.end()});
    return S_OK;
} catch (const std::bad_alloc&) {
    RETURN_LOGGED(E_POINTER);
}

Gdiplus::Image* LateImage::get() {
    if (!m_bytes.empty()) {
        const HRESULT status = decodedImage(m_bytes, m_pImage);
        if (FAILED(status)) {
            LOG_STATUS(status);
            return nullptr;
        }
        m_bytes = {};
    }
    return m_pImage.get();
}

std::wstring loadResString(UINT uResourceId) {
    return common::textOf(nullptr, uResourceId);
}
