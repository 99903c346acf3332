#include "Logic/Faults/CallerState.h"

#include <objbase.h>

#include <algorithm>
#include <cstring>
#include <iterator>

#include "common/DebugLog.h"

namespace faults {

namespace {

// Windows 10 has them.
using GetDpiContext = HANDLE(WINAPI*)();
using SetDpiContext = HANDLE(WINAPI*)(HANDLE);

template <typename Function>
Function ofUser32(const char* pszName) noexcept {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"user32.dll"), pszName)));
}

ULONG_PTR priority() noexcept {
    return static_cast<ULONG_PTR>(::GetThreadPriority(::GetCurrentThread()));
}
void setPriority(ULONG_PTR before) noexcept {
    ::SetThreadPriority(::GetCurrentThread(), static_cast<int>(before));
}

ULONG_PTR threadErrorMode() noexcept {
    return ::GetThreadErrorMode();
}
void setThreadErrorMode(ULONG_PTR before) noexcept {
    ::SetThreadErrorMode(static_cast<DWORD>(before), nullptr);
}

ULONG_PTR dpiContext() noexcept {
    static const auto pfGet = ofUser32<GetDpiContext>("GetThreadDpiAwarenessContext");
    return pfGet != nullptr ? reinterpret_cast<ULONG_PTR>(pfGet()) : 0;
}
void setDpiContext(ULONG_PTR before) noexcept {
    static const auto pfSet = ofUser32<SetDpiContext>("SetThreadDpiAwarenessContext");
    if (pfSet != nullptr) {
        pfSet(reinterpret_cast<HANDLE>(before));
    }
}

// 0: none. The apartment that a thread shares only because others have made it is none of its own.
ULONG_PTR apartment() noexcept {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    const bool bNone = FAILED(::CoGetApartmentType(&type, &qualifier)) || qualifier == APTTYPEQUALIFIER_IMPLICIT_MTA;
    return bNone ? 0 : static_cast<ULONG_PTR>(type) + 1;
}
void setApartment(ULONG_PTR before) noexcept {
    constexpr int kMostEntries = 16;  // each has to be left once
    for (int i = 0; i < kMostEntries && apartment() != before && apartment() != 0; ++i) {
        ::CoUninitialize();
    }
    if (before != 0 && apartment() == 0) {
        const bool bMta = before == static_cast<ULONG_PTR>(APTTYPE_MTA) + 1;
        static_cast<void>(::CoInitializeEx(nullptr, bMta ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED));
    }
}

struct Property {
    const wchar_t* name;
    ULONG_PTR (*read)() noexcept;
    void (*write)(ULONG_PTR) noexcept;
};

constexpr Property kProperties[CKeepCallerState::kOfThread] = {
    {L"priority of the thread", &priority, &setPriority},
    {L"error mode of the thread", &threadErrorMode, &setThreadErrorMode},
    {L"DPI awareness of the thread", &dpiContext, &setDpiContext},
    {L"COM apartment of the thread", &apartment, &setApartment},
};
constexpr std::size_t kApartment = 3;

// The process has these for good; nobody but a plug-in changes them. They are not compared with what was there before
// the call, because another thread's plug-in may be at work.
struct OfProcess {
    UINT errorMode = ::GetErrorMode();
    std::array<wchar_t, MAX_PATH + 1> folder{};

    OfProcess() noexcept {
        const DWORD dwLength = ::GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data());
        folder[dwLength < folder.size() ? dwLength : 0] = L'\0';  // one that does not fit is left alone
    }
    [[nodiscard]] bool folderChanged() const noexcept {
        std::array<wchar_t, MAX_PATH + 1> now;
        const DWORD dwLength = ::GetCurrentDirectoryW(static_cast<DWORD>(now.size()), now.data());
        return folder[0] != L'\0' && (dwLength >= now.size() || std::wcscmp(now.data(), folder.data()) != 0);
    }
};

const OfProcess& ofProcess() noexcept {
    static const OfProcess atFirst;
    return atFirst;
}

void exportName(const char* pszExport, wchar_t (&rName)[kExportChars]) noexcept {
    std::fill(std::begin(rName), std::end(rName), L'\0');
    std::copy_n(pszExport, std::min(std::strlen(pszExport), kExportChars - 1), rName);
}

}  // namespace

CKeepCallerState::CKeepCallerState(DWORD plugin, const char* pszExport, Phase phase) noexcept
    : m_plugin(plugin), m_pszExport(pszExport), m_phase(phase) {
    std::ranges::transform(kProperties, m_before.begin(), [](const Property& property) { return property.read(); });
    static_cast<void>(ofProcess());
}

// If the lock is lost, the program stops here, while it is known whose call it was.
CKeepCallerState::~CKeepCallerState() {
    touchHeap();
    for (std::size_t i = 0; i < kOfThread; ++i) {
        const ULONG_PTR now = kProperties[i].read();
        // What a plug-in does to have COM for its whole life.
        const bool bAllowed = i == kApartment && (now == 0 ? m_phase == Phase::Ending : m_phase == Phase::Initialising);
        if (now != m_before[i] && !bAllowed) {
            _restore(i);
        }
    }
    if (::GetErrorMode() != ofProcess().errorMode) {
        ::SetErrorMode(ofProcess().errorMode);
        _report(L"error mode of the process");
    }
    if (ofProcess().folderChanged()) {
        ::SetCurrentDirectoryW(ofProcess().folder.data());
        _report(L"current folder");
    }
}

void CKeepCallerState::_restore(std::size_t uProperty) const noexcept {
    kProperties[uProperty].write(m_before[uProperty]);
    _report(kProperties[uProperty].name);
}

void CKeepCallerState::_report(const wchar_t* pszWhat) const noexcept {
    wchar_t name[kExportChars];
    exportName(m_pszExport, name);
    const PluginEntry& rPlugin = section().plugin[m_plugin];
    LOG_WARNING(L"%s of function %s, plug-in %s, has changed the %s. It is put back.", name, rPlugin.function,
                rPlugin.path, pszWhat);
}

void touchHeap() noexcept {
    const HANDLE hHeap = ::GetProcessHeap();
    ::HeapFree(hHeap, 0, ::HeapAlloc(hHeap, 0, 1));
}

void reportWideWrite(DWORD plugin, const char* pszExport) noexcept {
    wchar_t name[kExportChars];
    exportName(pszExport, name);
    const PluginEntry& rPlugin = section().plugin[plugin];
    LOG_WARNING(L"%s of function %s, plug-in %s, has written more than its out value has room for.", name,
                rPlugin.function, rPlugin.path);
}

}  // namespace faults
