#include "RegistryRead.h"

#include <cstring>

namespace hotkey {

common::UniqueRegKey openKey(HKEY root, const wchar_t* path, REGSAM access) noexcept {
    HKEY hKey = nullptr;
    if (::RegOpenKeyExW(root, path, 0, access, &hKey) != ERROR_SUCCESS) {
        return {};
    }
    return common::UniqueRegKey(hKey);
}

std::optional<std::vector<BYTE>> readBytes(HKEY key, const wchar_t* name) {
    std::vector<BYTE> bytes(256);
    for (;;) {
        DWORD cb = static_cast<DWORD>(bytes.size());
        const LSTATUS status = ::RegQueryValueExW(key, name, nullptr, nullptr, bytes.data(), &cb);
        if (status == ERROR_MORE_DATA && cb <= kMaxValueBytes) {
            bytes.resize(cb);  // once more if it grows meanwhile
            continue;
        }
        if (status != ERROR_SUCCESS || cb > kMaxValueBytes) {
            return std::nullopt;
        }
        bytes.resize(cb);
        return bytes;
    }
}

std::optional<std::wstring> readText(HKEY key, const wchar_t* name) {
    const auto bytes = readBytes(key, name);
    if (!bytes) {
        return std::nullopt;
    }
    std::wstring text(bytes->size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), bytes->data(), text.size() * sizeof(wchar_t));
    text.resize(std::wcslen(text.c_str()));
    return text;
}

std::optional<std::vector<DWORD>> readNumbers(HKEY key, const wchar_t* name) {
    const auto bytes = readBytes(key, name);
    if (!bytes) {
        return std::nullopt;
    }
    std::vector<DWORD> numbers(bytes->size() / sizeof(DWORD));
    if (!numbers.empty()) {
        std::memcpy(numbers.data(), bytes->data(), numbers.size() * sizeof(DWORD));
    }
    return numbers;
}

DWORD readNumber(HKEY key, const wchar_t* name, DWORD fallback) {
    const auto numbers = readNumbers(key, name);
    return numbers && !numbers->empty() ? numbers->front() : fallback;
}

}  // namespace hotkey
