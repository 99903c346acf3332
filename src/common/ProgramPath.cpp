#include "common/ProgramPath.h"

#include <windows.h>

namespace common {

std::wstring programPath() {
    std::wstring path(MAX_PATH, L'\0');
    DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    while (length == path.size()) {
        path.resize(2 * path.size());
        length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    }
    path.resize(length);
    return path;
}

std::wstring programFolder() {
    const std::wstring path = programPath();
    return path.substr(0, path.rfind(L'\\'));
}

}  // namespace common
