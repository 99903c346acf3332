// Calls back when Print Screen is pressed, and delays the key until the callback has returned.
#pragma once

#include <windows.h>

#include <atomic>
#include <memory>

#include "PressFilter.h"
#include "common/Handle.h"
#include "include/PrtHook.h"
#include "keyboard/HookThread.h"
#include "keyboard/LibraryThread.h"

namespace prtscreen {

// Its threads hold references to it.
class CPrintScreenHook : public keyboard::IHookClient, public std::enable_shared_from_this<CPrintScreenHook> {
 public:
    explicit CPrintScreenHook(PrtHookCallback callback) noexcept;

    // Once. After a failure nothing keeps running. Throws std::bad_alloc.
    [[nodiscard]] HRESULT start();
    // False if a thread still runs after a second; it makes no more callbacks.
    [[nodiscard]] bool stop() noexcept;
    [[nodiscard]] bool isCallingBack() const noexcept { return m_helper.isCurrent(); }

    [[nodiscard]] bool handleKey(const keyboard::KeyEvent& event) noexcept override;

 private:
    void _help() noexcept;

    PrtHookCallback m_callback;
    CPressFilter m_filter;
    common::UniqueHandle m_hPressed;  // auto reset: call back
    common::UniqueHandle m_hDone;     // auto reset: the callback has returned
    std::atomic<bool> m_bStopping{false};
    keyboard::CHookThread m_hook;
    keyboard::CLibraryThread m_helper;
};

}  // namespace prtscreen
