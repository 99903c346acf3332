#include "Logic/Faults/PluginCall.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "Logic/Faults/FaultHandler.h"
#include "Logic/Faults/HangWatch.h"
#include "plugins/sdk/FenwynPlugin.h"

namespace faults {

namespace {

DWORD g_dwWatchedThread = 0;

template <std::size_t N>
void copyText(wchar_t (&target)[N], const wchar_t* pszText) noexcept {
    std::wcsncpy(target, pszText, N - 1);
    target[N - 1] = L'\0';
}

CallEntry* claimEntry(DWORD dwThread) noexcept {
    for (CallEntry& call : section().calls) {
        if (::InterlockedCompareExchange(&call.thread, static_cast<LONG>(dwThread), 0) == 0) {
            return &call;
        }
    }
    return nullptr;
}

}  // namespace

PluginId knowPlugin(const wchar_t* pszPath, const wchar_t* pszFunction, const wchar_t* pszCaption) noexcept {
    Section& rSection = section();
    PluginId id = 0;
    while (id < static_cast<PluginId>(rSection.plugins) && ::lstrcmpiW(rSection.plugin[id].path, pszPath) != 0) {
        ++id;
    }
    if (id == kMaxPlugins) {
        --id;  // more than ever fit on a screen: the last ones share an entry
    }
    PluginEntry& rEntry = rSection.plugin[id];
    copyText(rEntry.path, pszPath);
    copyText(rEntry.function, pszFunction);
    copyText(rEntry.caption, pszCaption);
    if (id == static_cast<PluginId>(rSection.plugins)) {
        ++rSection.plugins;
    }
    return id;
}

void placePlugin(PluginId plugin, HMODULE hModule) noexcept {
    PluginEntry& rEntry = section().plugin[plugin];
    rEntry.base = reinterpret_cast<ULONG_PTR>(hModule);
    rEntry.end = rEntry.base;
    if (hModule != nullptr) {
        const auto* const pBase = reinterpret_cast<const BYTE*>(hModule);
        const auto* const pDos = reinterpret_cast<const IMAGE_DOS_HEADER*>(pBase);
        rEntry.end += reinterpret_cast<const IMAGE_NT_HEADERS*>(pBase + pDos->e_lfanew)->OptionalHeader.SizeOfImage;
    }
}

CPluginCall::CPluginCall(PluginId plugin, const char* pszName, Phase phase) noexcept
    : m_pCall(claimEntry(::GetCurrentThreadId())) {
    if (m_pCall == nullptr) {
        return;
    }
    m_pCall->order = ::InterlockedIncrement(&section().order);
    m_pCall->plugin = plugin;
    m_pCall->phase = phase;
    m_pCall->since = ::GetTickCount64();
    std::strncpy(m_pCall->name, pszName, kExportChars - 1);
    if (m_pCall->thread == static_cast<LONG>(g_dwWatchedThread)) {
        ++section().signs;
        wakeHangWatch();
    }
}

CPluginCall::~CPluginCall() {
    if (m_pCall == nullptr) {
        return;
    }
    if (static_cast<DWORD>(m_pCall->thread) == g_dwWatchedThread) {
        section().last = *m_pCall;
        ++section().signs;
    }
    ::InterlockedExchange(&m_pCall->thread, 0);
}

bool isAtWork(PluginId plugin) noexcept {
    return std::ranges::any_of(section().calls,
                               [plugin](const CallEntry& call) { return call.thread != 0 && call.plugin == plugin; });
}

void forgetCallsOf(DWORD dwThread) noexcept {
    for (CallEntry& call : section().calls) {
        ::InterlockedCompareExchange(&call.thread, 0, static_cast<LONG>(dwThread));
    }
}

void watchThisThread() noexcept {
    g_dwWatchedThread = ::GetCurrentThreadId();
}

void noteSignOfLife() noexcept {
    if (::GetCurrentThreadId() == g_dwWatchedThread) {
        ++section().signs;
    }
}

Phase phaseOf(const char* pszExport) noexcept {
    for (const char* pszInitial : {FENWYN_INITIALIZE, FENWYN_FNF5_INITIALIZE, FENWYN_GET_UNSUPPORTED_REASON}) {
        if (std::strcmp(pszExport, pszInitial) == 0) {
            return Phase::Initialising;
        }
    }
    return std::strcmp(pszExport, FENWYN_FINALIZE) == 0 ? Phase::Ending : Phase::InUse;
}

}  // namespace faults

#ifdef _WIN64
extern "C" EXCEPTION_DISPOSITION FenwynPluginBoundary(EXCEPTION_RECORD* pRecord, void* /*pFrame*/, CONTEXT* pContext,
                                                      void* /*pDispatcher*/) {
    // Not while frames are being removed, as by longjmp.
    if ((pRecord->ExceptionFlags & (EXCEPTION_UNWINDING | EXCEPTION_EXIT_UNWIND)) == 0) {
        EXCEPTION_POINTERS pointers{pRecord, pContext};
        faults::exceptionLeftPlugin(pointers);
    }
    return ExceptionContinueSearch;
}
#endif
