// Images and texts from resources.
#pragma once

#include <memory>
#include <string>

#include "common/GdiPlus.h"

inline constexpr const wchar_t* kPngResourceType = L"PNG";

// Loads an image that no longer needs the module; a picture that was loaded before is not decoded again. E_POINTER: no
// such resource, or no memory; E_FAIL: it is empty. On failure `outImage` is unchanged. The bytes are not checked:
// loading an image that could not be decoded succeeds; its GetLastStatus() tells.
[[nodiscard]] HRESULT getImageFromRes(HMODULE hModule, WORD wResourceId, const wchar_t* pszResourceType,
                                      std::unique_ptr<Gdiplus::Image>& outImage);

// A text of the program's string table, of any length; empty if there is none.
[[nodiscard]] std::wstring loadResString(UINT uResourceId);

// The text that `load(buffer, capacity)` writes, truncated to its capacity, returning its length: loaded into 30
// characters, then into twice as many until some remain free.
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
