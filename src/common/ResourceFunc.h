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

// A text of the program's string table in the user's language, of any length; empty if there is none.
[[nodiscard]] std::wstring loadResString(UINT uResourceId);
