#include "common/RegistryStorage.h"

#include <windows.h>

#include <shlwapi.h>

#include <algorithm>

#include "common/RegValue.h"

namespace storage {

namespace {

constexpr std::size_t kNameChars = 256;
constexpr std::size_t kMostNameChars = 1U << 20;  // far above what the registry allows

bool succeeded(LSTATUS error) {
    return error == ERROR_SUCCESS;
}

bool gone(LSTATUS error) {
    return succeeded(error) || error == ERROR_FILE_NOT_FOUND;
}

}  // namespace

bool RegistryStorage::open(HKEY hRoot, const std::wstring& subKey, REGSAM access) {
    close();
    HKEY key = nullptr;
    if (!succeeded(::RegOpenKeyExW(hRoot, subKey.c_str(), 0, access, &key))) {
        return false;
    }
    m_hKey.reset(key);
    m_access = access;
    return true;
}

bool RegistryStorage::isOpen() const {
    return static_cast<bool>(m_hKey);
}

std::unique_ptr<StorageInterface> RegistryStorage::openSubStorage(const std::wstring& subKey) const {
    if (!isOpen()) {
        return nullptr;
    }
    auto child = std::make_unique<RegistryStorage>();
    if (!child->open(m_hKey.get(), subKey, m_access)) {
        return nullptr;
    }
    return child;
}

std::unique_ptr<StorageInterface> RegistryStorage::createSubStorage(const std::wstring& subKey) {
    if (!isOpen()) {
        return nullptr;
    }
    auto child = std::make_unique<RegistryStorage>();
    if (!succeeded(::RegCreateKeyExW(m_hKey.get(), subKey.c_str(), 0, nullptr, 0, m_access, nullptr,
                                     child->m_hKey.put(), nullptr))) {
        return nullptr;
    }
    child->m_access = m_access;
    return child;
}

void RegistryStorage::close() {
    m_hKey.reset();
    m_access = 0;
}

bool RegistryStorage::_write(const std::wstring& name, DWORD type, const void* data, std::size_t bytes) {
    return isOpen() && bytes <= MAXDWORD &&
           succeeded(::RegSetValueExW(m_hKey.get(), name.c_str(), 0, type, static_cast<const BYTE*>(data),
                                      static_cast<DWORD>(bytes)));
}

bool RegistryStorage::setDword(const std::wstring& name, DWORD value) {
    return _write(name, REG_DWORD, &value, sizeof(value));
}

bool RegistryStorage::getDword(const std::wstring& name, DWORD& out) const {
    DWORD value = 0;
    DWORD bytes = sizeof(value);
    if (!isOpen() || !succeeded(::RegQueryValueExW(m_hKey.get(), name.c_str(), nullptr, nullptr,
                                                   reinterpret_cast<BYTE*>(&value), &bytes))) {
        return false;
    }
    out = value;
    return true;
}

bool RegistryStorage::setString(const std::wstring& name, const std::wstring& text) {
    // The system reads one unit beyond the text and stores a terminator that it finds there.
    const std::wstring unterminated = text + L'.';
    return _write(name, REG_SZ, unterminated.data(), text.size() * sizeof(wchar_t));
}

bool RegistryStorage::getString(const std::wstring& name, std::wstring& out) const {
    if (!isOpen() || !succeeded(common::readWholeValue(m_hKey.get(), name.c_str(), 0, out))) {
        return false;
    }
    out.resize(std::min(out.size(), out.find(L'\0')));
    return true;
}

bool RegistryStorage::setBinary(const std::wstring& name, const std::vector<BYTE>& bytes) {
    return !bytes.empty() && _write(name, REG_BINARY, bytes.data(), bytes.size());
}

bool RegistryStorage::getBinary(const std::wstring& name, std::vector<BYTE>& out) const {
    return isOpen() && succeeded(common::readWholeValue(m_hKey.get(), name.c_str(), 0, out));
}

bool RegistryStorage::enumSubKeys(std::vector<std::wstring>& names) const {
    const auto readName = [this](DWORD index, wchar_t* buffer, DWORD* chars) {
        return ::RegEnumKeyExW(m_hKey.get(), index, buffer, chars, nullptr, nullptr, nullptr, nullptr);
    };
    return isOpen() && enumerateNames(readName, names);
}

bool RegistryStorage::enumValues(std::vector<std::wstring>& names) const {
    const auto readName = [this](DWORD index, wchar_t* buffer, DWORD* chars) {
        return ::RegEnumValueW(m_hKey.get(), index, buffer, chars, nullptr, nullptr, nullptr, nullptr);
    };
    return isOpen() && enumerateNames(readName, names);
}

bool RegistryStorage::deleteSubKey(const std::wstring& name) {
    return isOpen() && !name.empty() && gone(static_cast<LSTATUS>(::SHDeleteKeyW(m_hKey.get(), name.c_str())));
}

bool RegistryStorage::deleteValue(const std::wstring& name) {
    return isOpen() && gone(::RegDeleteValueW(m_hKey.get(), name.c_str()));
}

bool enumerateNames(const ReadName& readName, std::vector<std::wstring>& names) {
    std::vector<wchar_t> buffer(kNameChars);
    for (DWORD index = 0;;) {
        DWORD chars = static_cast<DWORD>(buffer.size());
        const LSTATUS error = readName(index, buffer.data(), &chars);
        if (error == ERROR_MORE_DATA && buffer.size() < kMostNameChars) {
            buffer.resize(buffer.size() * 2);
            continue;
        }
        if (!succeeded(error)) {
            return error == ERROR_NO_MORE_ITEMS;
        }
        buffer.back() = L'\0';
        names.emplace_back(buffer.data());
        buffer.resize(kNameChars);
        ++index;
    }
}

}  // namespace storage
