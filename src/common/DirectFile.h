// A file that can be opened when nobody gets the lock of the process heap any more, which CreateFile needs.
#pragma once

#include <windows.h>

#include <array>

#include "common/Handle.h"

namespace common {

class DirectFile {
 public:
    // Any path of at most MAX_PATH characters, relative ones to the current folder. Needs the heap, as nothing else
    // does.
    explicit DirectFile(const wchar_t* pszPath) noexcept;

    // For writes at its end; others may do what they like meanwhile. Creates the file, or with bEmpty empties it. Empty
    // on failure; the last error says why.
    [[nodiscard]] UniqueFile openForAppending(bool bEmpty) const noexcept;

 private:
    std::array<wchar_t, MAX_PATH + 16> m_native{};  // as the system itself names the file; empty: there is none
};

}  // namespace common
