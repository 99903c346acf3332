// One open registry key with typed reads that return statuses and log every failure.
#pragma once

#include <windows.h>

#include <vector>

// Not thread-safe: one thread uses an object at a time. The key is opened without requesting a registry view.
class RegConfigAccess {
 public:
    RegConfigAccess() = default;
    // Calls Close(): an object that was closed before, or never opened, logs one error line, which readers of the log
    // know.
    virtual ~RegConfigAccess();
    RegConfigAccess(const RegConfigAccess&) = delete;
    RegConfigAccess& operator=(const RegConfigAccess&) = delete;

    // E_HANDLE if a key is open already (it stays open), E_POINTER for a null path, otherwise the system's error as a
    // status.
    [[nodiscard]] HRESULT Open(HKEY hRoot, const wchar_t* pszSubKey, REGSAM access);
    [[nodiscard]] HRESULT Close();

    // The stored type is never checked: a value is its bytes, read as 32-bit numbers (a remainder below four bytes is
    // dropped). `out` is replaced on success and unchanged on failure.
    [[nodiscard]] HRESULT GetValue(const wchar_t* pszName, std::vector<DWORD>& out) const;
    // The first number of the value; without one, `out` keeps the caller's value.
    [[nodiscard]] HRESULT GetValue(const wchar_t* pszName, DWORD& out) const;
    // All stored UTF-16 units, including a stored terminator: make it a string and use that as NUL-terminated text.
    [[nodiscard]] HRESULT GetValue(const wchar_t* pszName, std::vector<wchar_t>& out) const;

    [[nodiscard]] HKEY key() const noexcept { return m_hKey; }

 private:
    HKEY m_hKey = nullptr;
};
