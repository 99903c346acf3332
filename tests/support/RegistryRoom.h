// A private machine and user registry for one test: during its lifetime, the process sees empty keys below
// HKEY_CURRENT_USER\Software as its HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER. Nothing outside is read or written, and
// nothing stays behind. One at a time.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace support {

// The status for a key or a value that does not exist.
inline constexpr HRESULT kFileNotFound = static_cast<HRESULT>(0x80070002U);

class RegistryRoom {
 public:
    RegistryRoom() : m_name(L"Software\\FenwynTest-" + std::to_wstring(::GetCurrentProcessId())) {
        ::RegDeleteTreeW(HKEY_CURRENT_USER, m_name.c_str());
        m_hMachine = _create(L"\\Machine");
        m_hUser = _create(L"\\User");
        ::RegOpenKeyExW(HKEY_CURRENT_USER, nullptr, 0, KEY_ALL_ACCESS, &m_hRealUser);
        m_bRedirected = m_hMachine != nullptr && m_hUser != nullptr && m_hRealUser != nullptr &&
                        ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_hMachine) == ERROR_SUCCESS &&
                        ::RegOverridePredefKey(HKEY_CURRENT_USER, m_hUser) == ERROR_SUCCESS;
    }
    ~RegistryRoom() {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        ::RegCloseKey(m_hMachine);
        ::RegCloseKey(m_hUser);
        ::RegDeleteTreeW(m_hRealUser, m_name.c_str());
        ::RegCloseKey(m_hRealUser);
    }
    RegistryRoom(const RegistryRoom&) = delete;
    RegistryRoom& operator=(const RegistryRoom&) = delete;

    // False: the system refused, and every test must stop before it uses the real registry.
    [[nodiscard]] bool redirected() const noexcept { return m_bRedirected; }

    // From here on nothing can be written for the user: a deleted key accepts no values.
    void refuseWrites() {
        ::RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        ::RegDeleteTreeW(HKEY_CURRENT_USER, (m_name + L"\\User").c_str());
        ::RegOverridePredefKey(HKEY_CURRENT_USER, m_hUser);
    }

    static void setDword(HKEY root, const std::wstring& key, const wchar_t* name, DWORD value) {
        set(root, key, name, REG_DWORD, &value, sizeof(value));
    }
    // Stored with its terminator, as most programs do.
    static void setText(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& text) {
        set(root, key, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    }
    static void setBinary(HKEY root, const std::wstring& key, const wchar_t* name, const std::vector<BYTE>& bytes) {
        set(root, key, name, REG_BINARY, bytes.data(), bytes.size());
    }
    static void set(HKEY root, const std::wstring& key, const wchar_t* name, DWORD type, const void* data,
                    std::size_t bytes) {
        ::RegSetKeyValueW(root, key.c_str(), name, type, data, static_cast<DWORD>(bytes));
    }
    static void makeKey(HKEY root, const std::wstring& key) {
        HKEY made = nullptr;
        ::RegCreateKeyExW(root, key.c_str(), 0, nullptr, 0, KEY_READ, nullptr, &made, nullptr);
        ::RegCloseKey(made);
    }
    static void removeKey(HKEY root, const std::wstring& key) { ::RegDeleteTreeW(root, key.c_str()); }
    static void removeValue(HKEY root, const std::wstring& key, const wchar_t* name) {
        ::RegDeleteKeyValueW(root, key.c_str(), name);
    }

 private:
    [[nodiscard]] HKEY _create(const wchar_t* part) const {
        HKEY key = nullptr;
        ::RegCreateKeyExW(HKEY_CURRENT_USER, (m_name + part).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                          nullptr);
        return key;
    }

    const std::wstring m_name;
    HKEY m_hMachine = nullptr;
    HKEY m_hUser = nullptr;
    HKEY m_hRealUser = nullptr;
    bool m_bRedirected = false;
};

}  // namespace support
