// A key of the registry as a storage.
#pragma once

#include <functional>

#include "common/Handle.h"
#include "common/Storage.h"

namespace storage {

class RegistryStorage final : public StorageInterface {
 public:
    RegistryStorage() = default;

    // Opens an existing key, without requesting a registry view; a previously open key is closed. Not open on failure.
    bool open(HKEY hRoot, const std::wstring& subKey, REGSAM access);
    [[nodiscard]] REGSAM access() const noexcept { return m_access; }

    [[nodiscard]] bool isOpen() const override;
    [[nodiscard]] std::unique_ptr<StorageInterface> openSubStorage(const std::wstring& subKey) const override;
    [[nodiscard]] std::unique_ptr<StorageInterface> createSubStorage(const std::wstring& subKey) override;
    void close() override;
    bool setDword(const std::wstring& name, DWORD value) override;
    bool getDword(const std::wstring& name, DWORD& out) const override;
    bool setString(const std::wstring& name, const std::wstring& text) override;
    bool getString(const std::wstring& name, std::wstring& out) const override;
    bool setBinary(const std::wstring& name, const std::vector<BYTE>& bytes) override;
    bool getBinary(const std::wstring& name, std::vector<BYTE>& out) const override;
    bool enumSubKeys(std::vector<std::wstring>& names) const override;
    bool enumValues(std::vector<std::wstring>& names) const override;
    bool deleteSubKey(const std::wstring& name) override;
    bool deleteValue(const std::wstring& name) override;

 private:
    [[nodiscard]] bool _write(const std::wstring& name, DWORD type, const void* data, std::size_t bytes);

    common::UniqueRegKey m_hKey;
    REGSAM m_access = 0;  // what the key was opened with; 0 when closed
};

// Appends the names that `readName(index, buffer, chars)` yields for index 0, 1, ... until ERROR_NO_MORE_ITEMS, which
// is success. `chars` is the buffer's size on entry and the name's length on return; ERROR_MORE_DATA requests the same
// index with a larger buffer.
using ReadName = std::function<LSTATUS(DWORD index, wchar_t* buffer, DWORD* chars)>;
[[nodiscard]] bool enumerateNames(const ReadName& readName, std::vector<std::wstring>& names);

}  // namespace storage
