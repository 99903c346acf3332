// The one place through which every plug-in export is called, and every plug-in loaded and unloaded.
#pragma once

#include <windows.h>

#ifdef __SSE__
#include <xmmintrin.h>
#endif

#include <algorithm>
#include <array>
#include <cstddef>
#include <type_traits>

#include "Logic/Faults/CallSection.h"
#include "Logic/Faults/CallerState.h"

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

// An argument as the plug-in gets it: numbers and callbacks as they are.
template <typename Argument>
class CArgument {
 public:
    explicit CArgument(Argument value) noexcept : m_value(value) {}
    [[nodiscard]] Argument passed() noexcept { return m_value; }
    [[nodiscard]] static bool takeBack() noexcept { return true; }

 private:
    Argument m_value;
};

// Out values: the plug-in gets one of its own, between bytes that show and absorb what is written beyond it. A byte has
// room for a larger boolean.
template <typename Value>
requires(!std::is_function_v<Value>) class CArgument<Value*> {
 public:
    explicit CArgument(Value* pValue) noexcept : m_pValue(pValue) {
        m_bytes.fill(kGuard);
        std::fill_n(m_bytes.begin() + kGuardSize, kRoom, BYTE{0});
        if (pValue != nullptr) {
            *_value() = *pValue;
        }
    }
    [[nodiscard]] Value* passed() noexcept { return m_pValue != nullptr ? _value() : nullptr; }
    // The caller gets the value. False: more was written.
    [[nodiscard]] bool takeBack() noexcept {
        if (m_pValue != nullptr) {
            *m_pValue = *_value();
        }
        const auto isGuard = [](BYTE b) { return b == kGuard; };
        return std::all_of(m_bytes.begin(), m_bytes.begin() + kGuardSize, isGuard) &&
               std::all_of(m_bytes.begin() + kGuardSize + kRoom, m_bytes.end(), isGuard);
    }

 private:
    static constexpr BYTE kGuard = 0xA5;
    static constexpr std::size_t kGuardSize = 32;
    static constexpr std::size_t kRoom = std::max(sizeof(Value), sizeof(ULONG));

    [[nodiscard]] Value* _value() noexcept { return reinterpret_cast<Value*>(m_bytes.data() + kGuardSize); }

    Value* m_pValue;
    alignas(16) std::array<BYTE, kGuardSize + kRoom + kGuardSize> m_bytes;
};

// Has a frame of its own, with the boundary as its handler. Nothing in it needs a clean-up, or the compiler would put a
// handler there itself.
template <typename Result, typename... Arguments>
[[gnu::noinline]] Result callGuarded(Result(WINAPI* pfFunction)(Arguments...), Arguments... arguments) {
#ifdef _WIN64
    asm volatile(".seh_handler FenwynPluginBoundary, @except");
#endif
    // Volatile, so that nothing of it becomes a part of this frame.
    Result(WINAPI* volatile pfCalled)(Arguments...) = pfFunction;
    const Result result = pfCalled(arguments...);
    // Keeps the compiler from leaving the frame before the call, and the system from taking the return address for a
    // part of the epilogue, where no handler is called.
    asm volatile("nop" ::: "memory");
    return result;
}

template <typename Work>
LONG WINAPI doWork(Work* pWork) {
    (*pWork)();
    return 0;
}

// Reads or frees what an export has handed out, as a part of its call: if a pointer is bad, the plug-in is at fault. An
// exception of `work` would be taken for the plug-in's; it needs no memory, therefore.
template <typename Work>
void asPartOfCall(PluginId plugin, const char* pszExport, Work work) noexcept {
    const CPluginCall call(plugin, pszExport, phaseOf(pszExport));
    callGuarded(&doWork<Work>, &work);
}

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
        const Phase phase = phaseOf(m_pszName);
        const CPluginCall call(m_plugin, m_pszName, phase);
        const CKeepCallerState keep(m_plugin, m_pszName, phase);
        return _guarded(CArgument<Arguments>(arguments)...);
    }

 private:
    Result _guarded(CArgument<Arguments>... arguments) const noexcept {
        const Result result = [&] {
            const CKeepFloatingPoint keep;
            return callGuarded(m_pfExport, arguments.passed()...);
        }();
        if (!(static_cast<int>(arguments.takeBack()) & ... & 1)) {
            reportWideWrite(m_plugin, m_pszName);
        }
        return result;
    }

    Function m_pfExport;
    PluginId m_plugin;
    const char* m_pszName;
};

}  // namespace faults
