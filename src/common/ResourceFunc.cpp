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

}  // namespace

HRESULT getImageFromRes(HMODULE hModule, WORD wResourceId, const wchar_t* pszResourceType,
                        std::unique_ptr<Gdiplus::Image>& outImage) {
    const HRSRC hResource = ::FindResourceW(hModule, MAKEINTRESOURCEW(wResourceId), pszResourceType);
    if (hResource == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    const DWORD dwSize = ::SizeofResource(hModule, hResource);
    if (dwSize == 0) {
        RETURN_LOGGED(E_FAIL);
    }
    const std::byte* const pBytes = resourceBytes(hModule, hResource);
    if (pBytes == nullptr) {
        RETURN_LOGGED(E_POINTER);
    }
    const std::span<const std::byte> bytes(pBytes, dwSize);
    std::unique_ptr<Gdiplus::Image> image;
    const HRESULT status = common::statusOf([&] { return imageOf(bytes, image); });
    // Without memory for the picture, it counts as missing.
    RETURN_IF_FAILED(status == E_OUTOFMEMORY ? E_POINTER : status);
    outImage = std::move(image);
    return S_OK;
}

std::wstring loadResString(UINT uResourceId) {
    return common::textOf(nullptr, uResourceId);
}
