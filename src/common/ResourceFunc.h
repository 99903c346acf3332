// Images and texts out of resources.
#pragma once

#include <memory>
#include <string>

#include "common/GdiPlus.h"

inline constexpr const wchar_t* kPngResourceType = L"PNG";

// Loads an image that needs the module no longer; a picture that was loaded before is not decoded again. E_POINTER: no
// such resource, or no memory; E_FAIL: it is empty. A failure leaves `outImage` untouched. The bytes are not judged: an
// image that could not be decoded is a success, and says so itself through GetLastStatus().
[[nodiscard]] HRESULT getImageFromRes(HMODULE hModule, WORD wResourceId, const wchar_t* pszResourceType,
                                      std::unique_ptr<Gdiplus::Image>& outImage);

// A text of the program's string table, of any length; empty when there is none.
[[nodiscard]] std::wstring loadResString(UINT uResourceId);

// The text that `load(buffer, capacity)` writes, cut off to its capacity, returning its length: loaded into 30
// characters, then into twice as many as long as nothing is left free.
template <typename Load>
[[nodiscard]] std::wstring loadGrowing(Load load) {
    for (int capacity = 30;; capacity *= 2) {
        std::wstring text(static_cast<std::size_t>(capacity), L'\0');
        const int length = load(text.data(), capacity);
        if (length < capacity - 1) {
            text.resize(length > 0 ? static_cast<std::size_t>(length) : 0U);
            return text;
        }
    }
}
