#include "Elevation.h"

#include <windows.h>

#include <bcrypt.h>
#include <shellapi.h>

#include <algorithm>
#include <array>

#include "Allowed.h"
#include "ChangeFile.h"
#include "common/Handle.h"
#include "common/ProgramPath.h"

namespace settings {
namespace {

constexpr DWORD kPatienceMs = 60000;

struct AlgorithmTraits : common::NullIsNone<BCRYPT_ALG_HANDLE> {
    static void close(type value) noexcept { ::BCryptCloseAlgorithmProvider(value, 0); }
};
struct HashTraits : common::NullIsNone<BCRYPT_HASH_HANDLE> {
    static void close(type value) noexcept { ::BCryptDestroyHash(value); }
};

// A file that is there for as long as the object.
class CTemporaryFile {
 public:
    CTemporaryFile() {
        wchar_t folder[MAX_PATH] = L"";
        wchar_t file[MAX_PATH] = L"";
        if (::GetTempPathW(MAX_PATH, folder) != 0 && ::GetTempFileNameW(folder, L"fen", 0, file) != 0) {
            m_strPath = file;
        }
    }
    ~CTemporaryFile() { ::DeleteFileW(m_strPath.c_str()); }
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;

    [[nodiscard]] const std::wstring& path() const { return m_strPath; }

 private:
    std::wstring m_strPath;
};

LSTATUS runElevated(const std::wstring& arguments) {
    const std::wstring program = common::programPath();
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    info.lpVerb = L"runas";
    info.lpFile = program.c_str();
    info.lpParameters = arguments.c_str();
    info.nShow = SW_HIDE;
    if (::ShellExecuteExW(&info) == FALSE || info.hProcess == nullptr) {
        return static_cast<LSTATUS>(::GetLastError());
    }
    const common::UniqueHandle process(info.hProcess);
    DWORD code = ERROR_TIMEOUT;
    if (::WaitForSingleObject(process.get(), kPatienceMs) == WAIT_OBJECT_0) {
        ::GetExitCodeProcess(process.get(), &code);
    }
    return static_cast<LSTATUS>(code);
}

bool mayBeWritten(const Changes& changes) {
    return std::ranges::all_of(changes, [](const auto& change) {
        return change.first.root != Root::User && isAllowed(change.first, change.second);
    });
}

}  // namespace

std::wstring sumOf(const std::wstring& text) {
    common::UniqueAny<AlgorithmTraits> algorithm;
    common::UniqueAny<HashTraits> hash;
    std::array<UCHAR, 32> sum{};
    std::wstring bytes = text;
    if (::BCryptOpenAlgorithmProvider(algorithm.put(), BCRYPT_SHA256_ALGORITHM, nullptr, 0) < 0 ||
        ::BCryptCreateHash(algorithm.get(), hash.put(), nullptr, 0, nullptr, 0, 0) < 0 ||
        ::BCryptHashData(hash.get(), reinterpret_cast<UCHAR*>(bytes.data()),
                         static_cast<ULONG>(bytes.size() * sizeof(wchar_t)), 0) < 0 ||
        ::BCryptFinishHash(hash.get(), sum.data(), static_cast<ULONG>(sum.size()), 0) < 0) {
        return {};
    }
    constexpr wchar_t kDigits[] = L"0123456789abcdef";
    std::wstring digits;
    for (const UCHAR byte : sum) {
        digits += kDigits[byte >> 4];
        digits += kDigits[byte & 0xF];
    }
    return digits;
}

LSTATUS writeElevated(const Changes& changes) {
    const CTemporaryFile file;
    const std::wstring text = fileText(changes);
    const std::wstring sum = sumOf(text);
    if (const LSTATUS error = writeTextFile(file.path(), text); error != ERROR_SUCCESS || sum.empty()) {
        return error != ERROR_SUCCESS ? error : ERROR_NOT_SUPPORTED;
    }
    return runElevated(std::wstring(kWriteArgument) + L" " + sum + L" \"" + file.path() + L"\"");
}

LSTATUS carryOut(IStore& store, const std::wstring& sum, const std::wstring& path) {
    std::wstring text;
    if (const LSTATUS error = readTextFile(path, text); error != ERROR_SUCCESS) {
        return error;
    }
    std::size_t line = 0;
    const std::optional<Changes> changes = parseFile(text, line);
    if (sum.empty() || sumOf(text) != sum || !changes || !mayBeWritten(*changes)) {
        return ERROR_INVALID_DATA;
    }
    for (const auto& [place, content] : *changes) {
        if (const LSTATUS error = store.write(place, content); error != ERROR_SUCCESS) {
            return error;
        }
    }
    return ERROR_SUCCESS;
}

}  // namespace settings
