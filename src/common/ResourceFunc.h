// Images and texts from resources.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "common/GdiPlus.h"

inline constexpr const wchar_t* kPngResourceType = L"PNG";

// Loads an image that no longer needs the module; a picture that was loaded before is not decoded again. E_POINTER: no
// such resource, or no memory; E_FAIL: it is empty. On failure `outImage` is unchanged. The bytes are not checked:
// loading an image that could not be decoded succeeds; its GetLastStatus() tells.
[[nodiscard]] HRESULT getImageFromRes(HMODULE hModule, WORD wResourceId, const wchar_t* pszResourceType,
                                      std::unique_ptr<Gdiplus::Image>& outImage);

// An image that is decoded when it is first asked for: that takes milliseconds, and the program starts with many.
class LateImage {
 public:
    LateImage() = default;
    explicit LateImage(std::vector<std::byte> bytes) : m_bytes(std::move(bytes)) {}
    explicit LateImage(std::unique_ptr<Gdiplus::Image> pImage) : m_pImage(std::move(pImage)) {}

    // Owned by this object. Null if there is none, or no memory (logged, and tried again at the next call).
    [[nodiscard]] Gdiplus::Image* get();

 private:
    std::vector<std::byte> m_bytes;  // empty once they have been decoded
    std::unique_ptr<Gdiplus::Image> m_pImage;
};

// Only finds the image. The statuses are the same; on failure `rOutImage` is unchanged.
[[nodiscard]] HRESULT getImageFromRes(HMODULE hModule, WORD wResourceId, const wchar_t* pszResourceType,
                                      LateImage& rOutImage);

// A text of the program's string table in the user's language, of any length; empty if there is none.
[[nodiscard]] std::wstring loadResString(UINT uResourceId);
