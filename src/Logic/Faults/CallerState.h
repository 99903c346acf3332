// What a plug-in may change while it runs, and must not leave changed: the state of the thread and of the process that
// call it. Whatever is found changed after a call is put back, with a line in the log that names the plug-in.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>

#include "Logic/Faults/CallSection.h"

namespace faults {

// The thread's priority, error mode, DPI awareness and COM apartment; the error mode and the current folder of the
// process. The initialisation of a plug-in may enter an apartment, and its end may leave it.
class CKeepCallerState {
 public:
    CKeepCallerState(DWORD plugin, const char* pszExport, Phase phase) noexcept;
    ~CKeepCallerState();
    CKeepCallerState(const CKeepCallerState&) = delete;
    CKeepCallerState& operator=(const CKeepCallerState&) = delete;

    static constexpr std::size_t kOfThread = 4;

 private:
    void _restore(std::size_t uProperty) const noexcept;
    void _report(const wchar_t* pszWhat) const noexcept;

    DWORD m_plugin;
    const char* m_pszExport;
    Phase m_phase;
    std::array<ULONG_PTR, kOfThread> m_before{};
};

// Returns once this thread has had the lock of the process heap: never, if somebody has lost it.
void touchHeap() noexcept;

// The line in the log for an export that wrote beyond one of its out values.
void reportWideWrite(DWORD plugin, const char* pszExport) noexcept;

}  // namespace faults
