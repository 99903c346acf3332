#include "Logic/Faults/Succession.h"

#include <dbghelp.h>

#include <algorithm>
#include <cwchar>
#include <vector>

#include "Logic/Faults/FaultHandler.h"
#include "common/DebugLog.h"
#include "common/Handle.h"
#include "common/SystemLibrary.h"

namespace faults {

namespace {

// Of a successor: the id of its predecessor, followed by '.' if it is not to go on in its place.
constexpr wchar_t kPredecessor[] = L"FENWYN_PREDECESSOR";
constexpr DWORD kEndWaitMs = 10000;

bool startedSafely() noexcept {
    const wchar_t* const pszCommand = ::GetCommandLineW();
    const wchar_t* const pszLast = std::wcsrchr(pszCommand, L' ');
    return pszLast != nullptr && isSwitch(pszLast + 1, kSafeSwitch);
}

// The fault as the predecessor noted it; zero if the file cannot be read.
FaultEntry noticedFault(const std::wstring& strFile) {
    const common::UniqueFile file(::CreateFileW(strFile.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    Section section{};
    DWORD dwRead = 0;
    const bool bWhole = file && ::ReadFile(file.get(), &section, sizeof(section), &dwRead, nullptr) != FALSE &&
                        dwRead == sizeof(section);
    return bWhole ? section.fault : FaultEntry{};
}

// What the files of a fault have in common.
std::wstring fileStem() {
    SYSTEMTIME now{};
    ::GetLocalTime(&now);
    wchar_t name[64];
    ::_snwprintf(name, ARRAYSIZE(name), L"fault-%04d%02d%02d-%02d%02d%02d", now.wYear, now.wMonth, now.wDay, now.wHour,
                 now.wMinute, now.wSecond);
    return name;
}

bool writeDump(HANDLE hProcess, DWORD dwProcess, const FaultEntry& fault, const std::wstring& strFile) {
    const common::UniqueModule library = loadSystemLibrary(L"dbghelp.dll");
    const auto pfWrite = reinterpret_cast<decltype(&::MiniDumpWriteDump)>(
        reinterpret_cast<void*>(library ? ::GetProcAddress(library.get(), "MiniDumpWriteDump") : nullptr));
    if (pfWrite == nullptr) {
        return false;
    }
    const common::UniqueFile file(::CreateFileW(strFile.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    MINIDUMP_EXCEPTION_INFORMATION exception{
        fault.thread, reinterpret_cast<EXCEPTION_POINTERS*>(static_cast<ULONG_PTR>(fault.pointers)), TRUE};
    return file && pfWrite(hProcess, dwProcess, file.get(), MiniDumpNormal, fault.pointers != 0 ? &exception : nullptr,
                           nullptr, nullptr) != FALSE;
}

std::vector<std::wstring> filesLike(const std::wstring& strPattern) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW data{};
    const HANDLE hFind = ::FindFirstFileW(strPattern.c_str(), &data);
    if (hFind == INVALID_HANDLE_VALUE) {
        return names;
    }
    do {
        names.emplace_back(data.cFileName);
    } while (::FindNextFileW(hFind, &data) != FALSE);
    ::FindClose(hFind);
    return names;
}

void dumpAndEnd(DWORD dwProcess, const std::wstring& strLogFile) {
    const common::UniqueHandle process(::OpenProcess(
        PROCESS_QUERY_INFORMATION | PROCESS_VM_READ | PROCESS_DUP_HANDLE | PROCESS_TERMINATE | SYNCHRONIZE, FALSE,
        dwProcess));
    if (!process) {
        return;  // it is gone already
    }
    const std::wstring strFolder = folderOf(strLogFile);
    const std::wstring strStem = strFolder + fileStem();
    ::CopyFileW(strLogFile.c_str(), (strStem + L".txt").c_str(), FALSE);  // the first line of this process empties it
    const std::wstring strDump = strStem + L".dmp";
    if (!writeDump(process.get(), dwProcess, noticedFault(strFolder + kSectionFile), strDump)) {
        ::DeleteFileW(strDump.c_str());
    }
    pruneFaultFiles(strFolder);
    ::TerminateProcess(process.get(), 3);
    ::WaitForSingleObject(process.get(), kEndWaitMs);
}

}  // namespace

bool isSwitch(const wchar_t* pszArgument, const wchar_t* pszSwitch) noexcept {
    return ::CompareStringOrdinal(pszArgument, -1, pszSwitch, -1, TRUE) == CSTR_EQUAL;
}

bool startSuccessor(bool bGoOn) noexcept {
    wchar_t program[kPathChars];
    const DWORD dwLength = ::GetModuleFileNameW(nullptr, program, kPathChars);
    if (dwLength == 0 || dwLength >= kPathChars) {
        return false;
    }
    wchar_t number[16];
    ::_snwprintf(number, ARRAYSIZE(number), bGoOn ? L"%u" : L"%u.", static_cast<unsigned>(::GetCurrentProcessId()));
    ::SetEnvironmentVariableW(kPredecessor, number);
    wchar_t command[kPathChars + 16];
    ::_snwprintf(command, ARRAYSIZE(command), L"\"%s\" %s", program, startedSafely() ? kSafeSwitch : kQuietSwitch);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    if (!::CreateProcessW(program, command, nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        return false;
    }
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return true;
}

Predecessor takeOver(const std::wstring& strLogFile) {
    wchar_t number[16] = L"";
    Predecessor predecessor;
    const DWORD dwLength = ::GetEnvironmentVariableW(kPredecessor, number, ARRAYSIZE(number));
    if (dwLength == 0 || dwLength >= ARRAYSIZE(number)) {
        return predecessor;
    }
    ::SetEnvironmentVariableW(kPredecessor, nullptr);  // not for programs that this one starts
    wchar_t* pszEnd = nullptr;
    const DWORD dwProcess = std::wcstoul(number, &pszEnd, 10);
    predecessor = {true, *pszEnd != L'.'};
    dumpAndEnd(dwProcess, strLogFile);
    return predecessor;
}

std::optional<fenwyn::PluginFault> faultLeftIn(const Section& left, ULONGLONG ullTickNow) {
    if (left.running == FALSE) {
        return std::nullopt;
    }
    FaultEntry found = left.fault;
    if (found.reason == Reason::None) {
        const CallEntry* const pCall = newestCall(left, 0);
        // A machine that was switched off is no fault of the plug-in that was at work.
        if (pCall == nullptr || ullTickNow < left.startTick || pCall->plugin >= kMaxPlugins) {
            return std::nullopt;
        }
        found = {};
        found.reason = Reason::Gone;
        found.known = TRUE;
        found.call = *pCall;
        found.plugin = left.plugin[pCall->plugin];
        found.time = left.startTime + (pCall->since - left.startTick) * 10'000;
    }
    if (found.known == FALSE) {
        return std::nullopt;
    }
    wchar_t reason[kNameChars];
    describeFault(found.reason, found.code, reason, kNameChars);
    const std::string name(found.call.name, ::strnlen(found.call.name, kExportChars));
    fenwyn::PluginFault fault;
    fault.plugin.assign(found.plugin.path, ::wcsnlen(found.plugin.path, kPathChars));
    fault.function.assign(found.plugin.function, ::wcsnlen(found.plugin.function, kNameChars));
    fault.exportName.assign(name.begin(), name.end());
    fault.reason = reason;
    fault.time = found.time;
    fault.setAside = found.call.phase == Phase::Initialising || found.reason == Reason::Hang;
    return fault;
}

std::wstring folderOf(const std::wstring& strFile) {
    return strFile.substr(0, strFile.find_last_of(L"\\/") + 1);
}

void pruneFaultFiles(const std::wstring& strFolder) {
    for (const wchar_t* const pszPattern : kKeptPatterns) {
        std::vector<std::wstring> names = filesLike(strFolder + pszPattern);
        std::sort(names.rbegin(), names.rend());  // the newest first, by the time in their names
        for (std::size_t i = kFaultsKept; i < names.size(); ++i) {
            ::DeleteFileW((strFolder + names[i]).c_str());
        }
    }
}

}  // namespace faults
