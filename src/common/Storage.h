// Named values in a tree of keys. The registry is the only implementation; it is used through a handle with a
// selectable reaction to failures (quiet or throwing). One thread uses a storage at a time; handles may be copied
// freely.
#pragma once

#include <windows.h>

#include <memory>
#include <string>
#include <vector>

namespace storage {

// One open key. Every operation returns false (or null) at once if the key is not open. Out values are written on
// success only; enumerations append, and keep what they found if they fail half-way.
class StorageInterface {
 public:
    virtual ~StorageInterface() = default;

    [[nodiscard]] virtual bool isOpen() const = 0;
    // The child is opened with this key's access mask.
    [[nodiscard]] virtual std::unique_ptr<StorageInterface> openSubStorage(const std::wstring& subKey) const = 0;
    [[nodiscard]] virtual std::unique_ptr<StorageInterface> createSubStorage(const std::wstring& subKey) = 0;
    virtual void close() = 0;

    virtual bool setDword(const std::wstring& name, DWORD value) = 0;
    // The stored type is not checked; a value of more than four bytes fails.
    virtual bool getDword(const std::wstring& name, DWORD& out) const = 0;
    // Stores no terminator: readers must not rely on one.
    virtual bool setString(const std::wstring& name, const std::wstring& text) = 0;
    // The text up to its first NUL.
    virtual bool getString(const std::wstring& name, std::wstring& out) const = 0;
    // Nothing is written for an empty vector, which is a failure.
    virtual bool setBinary(const std::wstring& name, const std::vector<BYTE>& bytes) = 0;
    virtual bool getBinary(const std::wstring& name, std::vector<BYTE>& out) const = 0;

    virtual bool enumSubKeys(std::vector<std::wstring>& names) const = 0;
    virtual bool enumValues(std::vector<std::wstring>& names) const = 0;

    // Something that does not exist counts as deleted. A subkey is deleted with all its contents; an empty name is
    // refused.
    virtual bool deleteSubKey(const std::wstring& name) = 0;
    virtual bool deleteValue(const std::wstring& name) = 0;
};

// A handle's reaction to a failure.
enum class Policy : int {
    Quiet = 1,  // an empty handle, or false
    Throw = 2,  // StorageException
};

// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor): nothing derives from it
class StorageException final {
 public:
    explicit StorageException(std::wstring message) : m_strMessage(std::move(message)) {}

    // "<source>(<line>) : <what failed>\n"; lives as long as the exception.
    [[nodiscard]] virtual const wchar_t* message() const noexcept { return m_strMessage.c_str(); }

 private:
    std::wstring m_strMessage;
};

// A handle by value; copies share one storage.
class Storage {
 public:
    Storage() = default;

    // Opens a key for reading. A handle that could not be opened is empty, and always quiet.
    [[nodiscard]] static Storage open(HKEY hRoot, const std::wstring& subKey, Policy policy);
    // The child keeps this handle's policy; a child of an empty handle is quiet.
    [[nodiscard]] Storage openSub(const std::wstring& subKey) const;

    [[nodiscard]] bool isOpen() const;
    [[nodiscard]] Policy policy() const noexcept { return m_policy; }

    bool getDword(const std::wstring& name, DWORD& out) const;
    bool getString(const std::wstring& name, std::wstring& out) const;
    bool enumSubKeys(std::vector<std::wstring>& names) const;
    bool enumValues(std::vector<std::wstring>& names) const;

 private:
    Storage(std::shared_ptr<StorageInterface> storage, Policy policy)
        : m_policy(policy), m_pStorage(std::move(storage)) {}

    Policy m_policy = Policy::Quiet;
    std::shared_ptr<StorageInterface> m_pStorage;
};

}  // namespace storage
