// The texts of the resources in a language of the test's choice.
#pragma once

#include <windows.h>

#include <string>

inline constexpr WORD kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
inline constexpr WORD kGerman = MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN);

// A string of one language: tables hold sixteen, each preceded by its length.
inline std::wstring textOf(UINT id, WORD language) {
    const HRSRC table = ::FindResourceExW(nullptr, RT_STRING, MAKEINTRESOURCEW(id / 16 + 1), language);
    const auto* place = static_cast<const wchar_t*>(::LockResource(::LoadResource(nullptr, table)));
    if (place == nullptr) {
        return {};
    }
    for (UINT i = 0; i < id % 16; ++i) {
        place += 1 + *place;
    }
    return {place + 1, *place};
}
