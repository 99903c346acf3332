#include "Logic/Faults/FaultHandler.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <exception>

#include "Logic/Faults/PluginCall.h"
#include "common/DebugLog.h"

namespace faults {

namespace {

// How long the successor may take to look at this process before it ends itself.
constexpr DWORD kPatienceMs = 30000;
// How long it may take until somebody begins to start it.
constexpr DWORD kBeginMs = 3000;
constexpr DWORD kGccException = 0x20474343;
constexpr DWORD kMsvcException = 0xE06D7363;
// What an overflowing stack keeps for the handlers.
constexpr ULONG kStackReserve = 32 * 1024;

Successor g_successor{};
HANDLE g_hFault = nullptr;
LONG g_lFaults = 0;
bool g_bEndIsNear = false;

struct CodeName {
    DWORD code;
    const wchar_t* name;
};

constexpr CodeName kCodeNames[] = {
    {EXCEPTION_ACCESS_VIOLATION, L"an access violation"},
    {EXCEPTION_STACK_OVERFLOW, L"a stack overflow"},
    {EXCEPTION_ILLEGAL_INSTRUCTION, L"an illegal instruction"},
    {EXCEPTION_PRIV_INSTRUCTION, L"a privileged instruction"},
    {EXCEPTION_INT_DIVIDE_BY_ZERO, L"a division by zero"},
    {EXCEPTION_BREAKPOINT, L"a breakpoint"},
    {EXCEPTION_IN_PAGE_ERROR, L"a page that could not be read"},
    {EXCEPTION_DATATYPE_MISALIGNMENT, L"a misaligned access"},
    {0xC0000374, L"a damaged heap"},
};

const wchar_t* nameOf(DWORD dwCode) noexcept {
    for (const CodeName& row : kCodeNames) {
        if (row.code == dwCode) {
            return row.name;
        }
    }
    return L"an exception";
}

Reason reasonOf(DWORD dwCode) noexcept {
    return dwCode == kGccException || dwCode == kMsvcException ? Reason::Thrown : Reason::Exception;
}

// The plug-in whose code failed on a thread of its own; null: none.
const PluginEntry* pluginAt(const EXCEPTION_POINTERS* pPointers) noexcept {
    if (pPointers == nullptr) {
        return nullptr;
    }
    const auto address = reinterpret_cast<ULONG_PTR>(pPointers->ExceptionRecord->ExceptionAddress);
    for (const PluginEntry& rPlugin : section().plugin) {
        if (rPlugin.base <= address && address < rPlugin.end) {
            return &rPlugin;
        }
    }
    return nullptr;
}

void blame(FaultEntry& rFault, const CallEntry* pCall, const PluginEntry* pOwner) noexcept {
    rFault.known = pCall != nullptr || pOwner != nullptr ? TRUE : FALSE;
    if (pCall != nullptr) {
        rFault.call = *pCall;
        rFault.plugin = section().plugin[pCall->plugin];
    } else if (pOwner != nullptr) {
        rFault.plugin = *pOwner;
        rFault.call.phase = Phase::InUse;
        rFault.call.since = ::GetTickCount64();
        std::strncpy(rFault.call.name, "a thread of its own", kExportChars - 1);
    }
}

// The call of the thread that failed is to blame, or the plug-in whose thread it is.
void note(Reason reason, DWORD dwCode, DWORD dwThread, const CallEntry* pCall, EXCEPTION_POINTERS* pPointers) noexcept {
    FaultEntry& rFault = section().fault;
    rFault.code = dwCode;
    rFault.thread = dwThread;
    rFault.pointers = reinterpret_cast<ULONG_PTR>(pPointers);
    rFault.time = timeNow();
    blame(rFault, pCall, pluginAt(pPointers));
    rFault.reason = reason;  // last: with it the entry counts
}

void writeLastLine() noexcept {
    const FaultEntry& rFault = section().fault;
    wchar_t how[kNameChars];
    describeFault(rFault.reason, rFault.code, how, kNameChars);
    if (rFault.known == FALSE) {
        LOG_LAST(L"The program ends: %s, in no call of a plug-in.", how);
        return;
    }
    wchar_t name[kExportChars];
    widen(rFault.call, name);
    LOG_LAST(L"The program ends: %s in %s of function %s, plug-in %s, %u ms after the call began.", how, name,
             rFault.plugin.function, rFault.plugin.path, static_cast<unsigned>(::GetTickCount64() - rFault.call.since));
}

[[noreturn]] void endProcess() noexcept {
    ::TerminateProcess(::GetCurrentProcess(), 3);
    for (;;) {
        ::Sleep(INFINITE);
    }
}

LONG WINAPI unhandled(EXCEPTION_POINTERS* pPointers) noexcept {
    const DWORD dwCode = pPointers->ExceptionRecord->ExceptionCode;
    endByFault(reasonOf(dwCode), dwCode, pPointers);
}

void terminated() noexcept {
    endByFault(Reason::Thrown, 0, nullptr);
}

void aborted(int /*signal*/) noexcept {
    endByFault(Reason::Abort, 0, nullptr);
}

// exit() within a plug-in call; that of the program itself comes when no call is in progress.
void exited() noexcept {
    if (newestCall(::GetCurrentThreadId()) != nullptr) {
        endByFault(Reason::Exit, 0, nullptr);
    }
}

}  // namespace

bool installFaultHandlers(const Successor& successor) noexcept {
    g_successor = successor;
    g_hFault = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (g_hFault == nullptr) {
        return false;
    }
    std::set_terminate(&terminated);
    static_cast<void>(std::atexit(&exited));  // without it, exit() is seen by the next start only
    renewFaultHandlers();
    ULONG uReserve = kStackReserve;
    ::SetThreadStackGuarantee(&uReserve);
    return true;
}

void renewFaultHandlers() noexcept {
    if (g_hFault != nullptr) {
        ::SetUnhandledExceptionFilter(&unhandled);
        static_cast<void>(std::signal(SIGABRT, &aborted));
    }
}

void endByFault(Reason reason, DWORD dwCode, EXCEPTION_POINTERS* pPointers) noexcept {
    if (g_hFault == nullptr) {
        endProcess();
    }
    if (::InterlockedIncrement(&g_lFaults) == 1) {
        const DWORD dwThread = ::GetCurrentThreadId();
        note(reason, dwCode, dwThread, newestCall(dwThread), pPointers);
        ::SetEvent(g_hFault);
    }
    ::Sleep(kPatienceMs);
    endProcess();
}

void endByHang(const CallEntry& rCall) noexcept {
    if (::InterlockedIncrement(&g_lFaults) == 1) {
        note(Reason::Hang, 0, static_cast<DWORD>(rCall.thread), &rCall, nullptr);
    }
    handleFault();
}

void exceptionLeftPlugin(EXCEPTION_POINTERS& rPointers) noexcept {
    if (g_hFault != nullptr) {
        const DWORD dwCode = rPointers.ExceptionRecord->ExceptionCode;
        endByFault(reasonOf(dwCode), dwCode, &rPointers);
    }
}

void endIsNear() noexcept {
    g_bEndIsNear = true;
}

void endIsReached() noexcept {
    section().running = FALSE;
}

HANDLE faultEvent() noexcept {
    return g_hFault;
}

void handleFault() noexcept {
    writeLastLine();
    const Section& rSection = section();
    // Without a plug-in to blame, a second process would be likely to end in the same way.
    const bool bGoOn = !g_bEndIsNear && (rSection.fault.known != FALSE || rSection.ownRestart == FALSE);
    g_successor.call(bGoOn);
    if (g_successor.comes(kBeginMs)) {
        ::Sleep(kPatienceMs);
    }
    endProcess();
}

void describeFault(Reason reason, DWORD dwCode, wchar_t* pszText, std::size_t cchText) noexcept {
    const wchar_t* pszWords = L"the process ended";
    switch (reason) {
        case Reason::Exception:
            ::_snwprintf(pszText, cchText - 1, L"%s (0x%08X)", nameOf(dwCode), static_cast<unsigned>(dwCode));
            pszText[cchText - 1] = L'\0';
            return;
        case Reason::Thrown:
            pszWords = L"a C++ exception";
            break;
        case Reason::Abort:
            pszWords = L"abort()";
            break;
        case Reason::Exit:
            pszWords = L"exit()";
            break;
        case Reason::Hang:
            pszWords = L"a call that did not return";
            break;
        case Reason::None:
        case Reason::Gone:
            break;
    }
    std::wcsncpy(pszText, pszWords, cchText - 1);
    pszText[cchText - 1] = L'\0';
}

}  // namespace faults
