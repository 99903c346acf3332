#include "CallRecord.h"

#include <cstdio>

#include "State.h"
#include "common/Handle.h"
#include "common/ObjectSecurity.h"

namespace sim {

namespace {

constexpr wchar_t kDefaultFile[] = L"%LocalAppData%\\KESTOVA\\Simulated Notebook\\calls.txt";
constexpr wchar_t kMutexName[] = L"KESTOVA_SimulatedNotebook_Record";
constexpr DWORD kMutexPatience = 1000;  // ms

// Holds the record's mutex for a scope. Continues without it if another holds it too long: a line out of order is
// better than a plug-in that hangs.
class CRecordLock {
 public:
    CRecordLock() : m_hMutex(CreateMutexW(common::OnlyForTheUser().get(), FALSE, kMutexName)) {
        const DWORD wait = m_hMutex ? WaitForSingleObject(m_hMutex.get(), kMutexPatience) : WAIT_FAILED;
        m_bOwned = wait == WAIT_OBJECT_0 || wait == WAIT_ABANDONED;
    }
    ~CRecordLock() {
        if (m_bOwned) {
            ReleaseMutex(m_hMutex.get());
        }
    }
    CRecordLock(const CRecordLock&) = delete;
    CRecordLock& operator=(const CRecordLock&) = delete;

 private:
    common::UniqueHandle m_hMutex;
    bool m_bOwned = false;
};

void createFoldersOf(const std::wstring& file) {
    for (std::size_t slash = file.find(L'\\', 3); slash != std::wstring::npos; slash = file.find(L'\\', slash + 1)) {
        CreateDirectoryW(file.substr(0, slash).c_str(), nullptr);
    }
}

common::UniqueFile openForAppend(const std::wstring& file) {
    constexpr DWORD share = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const auto open = [&] {
        return common::UniqueFile(
            CreateFileW(file.c_str(), FILE_APPEND_DATA, share, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    };
    common::UniqueFile handle = open();
    if (!handle && GetLastError() == ERROR_PATH_NOT_FOUND) {
        createFoldersOf(file);
        handle = open();
    }
    return handle;
}

std::wstring lineOf(const Call& call) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    wchar_t time[32];
    std::swprintf(time, std::size(time), L"%04u-%02u-%02uT%02u:%02u:%02u.%03u", now.wYear, now.wMonth, now.wDay,
                  now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
    return std::wstring(time) + L'\t' + call.function + L'\t' + call.exportName + L'\t' + call.arguments + L'\t' +
           std::to_wstring(call.result) + L'\t' + std::to_wstring(GetCurrentThreadId()) + L'\n';
}

std::string utf8Of(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, result.data(), bytes, nullptr, nullptr);
    return result;
}

}  // namespace

std::wstring recordFilePath() {
    const std::wstring configured = readText({}, L"RecordFile", kDefaultFile);
    wchar_t path[1024];
    const DWORD length = ExpandEnvironmentStringsW(configured.c_str(), path, static_cast<DWORD>(std::size(path)));
    return length == 0 || length > std::size(path) ? configured : std::wstring(path);
}

void recordCall(const Call& call) {
    appendCall(recordFilePath(), call);
}

void appendCall(const std::wstring& file, const Call& call) {
    const std::string line = utf8Of(lineOf(call));
    const CRecordLock lock;
    const common::UniqueFile handle = openForAppend(file);
    DWORD written = 0;
    if (handle) {
        WriteFile(handle.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    }
}

}  // namespace sim
