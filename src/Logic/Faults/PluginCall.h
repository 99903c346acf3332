// The one place through which every plug-in export is called, and every plug-in loaded and unloaded.
#pragma once

#include <windows.h>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

#include <cstddef>

#include "Logic/Faults/CallSection.h"

namespace faults {

// A plug-in's number in the section; the same path has the same number. Texts that do not fit are cut.
using PluginId = DWORD;
[[nodiscard]] PluginId knowPlugin(const wchar_t* pszPath, const wchar_t* pszFunction,
                                  const wchar_t* pszCaption) noexcept;

// Where its library lies now; null: nowhere. For faults on threads of its own.
void placePlugin(PluginId plugin, HMODULE hModule) noexcept;

// Notes a call for as long as it exists. Any thread; calls of one thread may be nested.
class CPluginCall {
 public:
    // `pszName`: the export, or what else of the plug-in is about to run.
    CPluginCall(PluginId plugin, const char* pszName, Phase phase = Phase::InUse) noexcept;
    ~CPluginCall();
    CPluginCall(const CPluginCall&) = delete;
    CPluginCall& operator=(const CPluginCall&) = delete;

 private:
    CallEntry* const m_pCall;  // null: too many at a time, so that this one is not noted
};

// Whether a call of the plug-in is in progress, on any thread.
[[nodiscard]] bool isAtWork(PluginId plugin) noexcept;

// A thread was terminated within its calls: they are over.
void forgetCallsOf(DWORD dwThread) noexcept;

// The thread whose signs of life are counted: it shows one with every call that it begins or ends, and in between with
// noteSignOfLife().
void watchThisThread() noexcept;
void noteSignOfLife() noexcept;

// The phase of an export by its name.
[[nodiscard]] Phase phaseOf(const char* pszExport) noexcept;

#ifdef _WIN64
// Receives every exception that leaves a plug-in, before anybody further out could take it for handled.
extern "C" EXCEPTION_DISPOSITION FenwynPluginBoundary(EXCEPTION_RECORD* pRecord, void* pFrame, CONTEXT* pContext,
                                                      void* pDispatcher);
#endif

// Puts the floating-point state of the thread back as it was: rounding and exceptions of a plug-in would change what
// the program computes.
class CKeepFloatingPoint {
 public:
    CKeepFloatingPoint() noexcept {
        asm volatile("fnstcw %0" : "=m"(m_uX87));
#ifdef __SSE__
        m_uSse = _mm_getcsr();
#endif
    }
    ~CKeepFloatingPoint() {
        asm volatile("fldcw %0" : : "m"(m_uX87));
#ifdef __SSE__
        if (((_mm_getcsr() ^ m_uSse) & kSseControl) != 0) {
            _mm_setcsr(m_uSse);
        }
#endif
    }
    CKeepFloatingPoint(const CKeepFloatingPoint&) = delete;
    CKeepFloatingPoint& operator=(const CKeepFloatingPoint&) = delete;

 private:
    unsigned short m_uX87 = 0;
#ifdef __SSE__
    static constexpr unsigned kSseControl = ~0x3FU;  // the rest are flags that every computation sets
    unsigned m_uSse = 0;
#endif
};

template <typename Function>
class CPluginExport;

// An export, called like a function; null like a pointer.
template <typename Result, typename... Arguments>
class CPluginExport<Result(WINAPI*)(Arguments...)> {
 public:
    using Function = Result(WINAPI*)(Arguments...);

    CPluginExport(FARPROC pfExport, PluginId plugin, const char* pszName) noexcept
        : m_pfExport(reinterpret_cast<Function>(reinterpret_cast<void*>(pfExport))),
          m_plugin(plugin),
          m_pszName(pszName) {}

    explicit operator bool() const noexcept { return m_pfExport != nullptr; }
    bool operator==(std::nullptr_t) const noexcept { return m_pfExport == nullptr; }

    // No exception comes out: one that leaves the plug-in ends the program.
    Result operator()(Arguments... arguments) const noexcept {
        const CPluginCall call(m_plugin, m_pszName, phaseOf(m_pszName));
        const CKeepFloatingPoint keep;
        return _call(m_pfExport, arguments...);
    }

 private:
    // Has a frame of its own, with the boundary as its handler. Nothing in it needs a clean-up, or the compiler would
    // put a handler there itself.
    [[gnu::noinline]] static Result _call(Function pfExport, Arguments... arguments) {
#ifdef _WIN64
        asm volatile(".seh_handler FenwynPluginBoundary, @except");
#endif
        const Result result = pfExport(arguments...);
        // Keeps the compiler from leaving the frame before the call, and the system from taking the return address for
        // a part of the epilogue, where no handler is called.
        asm volatile("nop" ::: "memory");
        return result;
    }

    Function m_pfExport;
    PluginId m_plugin;
    const char* m_pszName;
};

}  // namespace faults
