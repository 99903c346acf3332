#include "common/DirectFile.h"

#include <winternl.h>

#include <cwchar>

namespace common {

namespace {

constexpr wchar_t kUnc[] = L"\\\\";
constexpr wchar_t kNative[] = L"\\??\\";
constexpr wchar_t kNativeUnc[] = L"\\??\\UNC\\";

template <typename Function>
Function ofNtdll(const char* pszName) noexcept {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), pszName)));
}

}  // namespace

DirectFile::DirectFile(const wchar_t* pszPath) noexcept {
    wchar_t full[MAX_PATH];
    const DWORD dwLength = ::GetFullPathNameW(pszPath, MAX_PATH, full, nullptr);
    if (pszPath[0] == L'\0' || dwLength == 0 || dwLength >= MAX_PATH) {
        return;
    }
    // Paths that begin with \\?\ or \\.\ name what follows; the others with two backslashes, a server.
    const bool bTwo = std::wcsncmp(full, kUnc, 2) == 0;
    const bool bDevice = bTwo && (full[2] == L'?' || full[2] == L'.') && full[3] == L'\\';
    std::wcscpy(m_native.data(), bTwo && !bDevice ? kNativeUnc : kNative);
    std::wcscat(m_native.data(), full + (bDevice ? 4 : bTwo ? 2 : 0));
}

UniqueFile DirectFile::openForAppending(bool bEmpty) const noexcept {
    static const auto pfCreate = ofNtdll<decltype(&::NtCreateFile)>("NtCreateFile");
    static const auto pfError = ofNtdll<decltype(&::RtlNtStatusToDosError)>("RtlNtStatusToDosError");
    if (m_native[0] == L'\0' || pfCreate == nullptr || pfError == nullptr) {
        ::SetLastError(ERROR_BAD_PATHNAME);
        return {};
    }
    const auto uBytes = static_cast<USHORT>(std::wcslen(m_native.data()) * sizeof(wchar_t));
    UNICODE_STRING name{uBytes, uBytes, const_cast<wchar_t*>(m_native.data())};
    OBJECT_ATTRIBUTES attributes{};
    InitializeObjectAttributes(&attributes, &name, OBJ_CASE_INSENSITIVE, nullptr, nullptr);
    IO_STATUS_BLOCK block{};
    HANDLE hFile = INVALID_HANDLE_VALUE;
    const NTSTATUS status =
        pfCreate(&hFile, FILE_APPEND_DATA | SYNCHRONIZE, &attributes, &block, nullptr, FILE_ATTRIBUTE_NORMAL,
                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, bEmpty ? FILE_OVERWRITE_IF : FILE_OPEN_IF,
                 FILE_SYNCHRONOUS_IO_NONALERT | FILE_NON_DIRECTORY_FILE, nullptr, 0);
    ::SetLastError(pfError(status));
    return UniqueFile(status >= 0 ? hFile : INVALID_HANDLE_VALUE);
}

}  // namespace common
