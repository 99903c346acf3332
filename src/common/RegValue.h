// Reads one registry value of unknown size.
#pragma once

#include <windows.h>

#include <cstddef>
#include <new>
#include <utility>

namespace common {

// Replaces `out` (a string or vector) by the whole units of the value, whatever its type; a remainder below one unit is
// dropped. The size is queried first, and `spareUnits` more than that are reserved: a value that outgrows them between
// the two reads yields ERROR_MORE_DATA, one too large for the memory ERROR_OUTOFMEMORY. `out` is unchanged on failure.
template <typename Container>
[[nodiscard]] LSTATUS readWholeValue(HKEY key, const wchar_t* name, std::size_t spareUnits, Container& out) try {
    constexpr std::size_t kUnit = sizeof(typename Container::value_type);
    DWORD bytes = 0;
    LSTATUS error = ::RegQueryValueExW(key, name, nullptr, nullptr, nullptr, &bytes);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    Container units;
    units.resize(bytes / kUnit + spareUnits);
    if (units.size() > MAXDWORD / kUnit) {
        return ERROR_OUTOFMEMORY;
    }
    bytes = static_cast<DWORD>(units.size() * kUnit);
    error = ::RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(units.data()), &bytes);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    units.resize(bytes / kUnit);
    out = std::move(units);
    return ERROR_SUCCESS;
} catch (const std::bad_alloc&) {
    return ERROR_OUTOFMEMORY;
}

}  // namespace common
