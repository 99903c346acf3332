#include "Logic/HotkeyEventHandler.h"

#include <mutex>
#include <utility>

#include "Messages.h"
#include "ZelMain.h"
#include "common/SiblingLibrary.h"
#include "common/Status.h"
#include "companions/hotkey/include/ZelHotkey.h"

namespace {

// The bound hotkey library; null if there is none. The lock is for this state and for the calls that start and stop it.
std::mutex g_lock;
HMODULE g_hHotkeyLibrary = nullptr;
bool g_bKeysHandedBack = false;  // it is stopped until the cards answer again

// A bound library stays mapped until the process ends: a callback may still be returning into it.
HMODULE keepMapped(common::UniqueModule module) {
    return module.release();
}

}  // namespace

HRESULT CHotkeyEventHandler::startHotkeyEventLoop() {
    LOG_ENTER_LEAVE();
    common::UniqueModule module = loadSibling(ZEL_MAIN_LIBRARY);
    if (!module) {
        RETURN_LOGGED(E_FAIL);
    }
    const auto start = findExport<ZelStart>(module.get(), ZEL_START);
    const auto enable = findExport<ZelEnableHotkey>(module.get(), ZEL_ENABLE_HOTKEY);
    if (start == nullptr || enable == nullptr) {
        RETURN_LOGGED(E_FAIL);  // nothing of it runs, so that it need not stay
    }
    const std::lock_guard lock(g_lock);
    // From here on the library is stopped at the end: a failed start may have left half of it running.
    g_hHotkeyLibrary = keepMapped(std::move(module));
    g_bKeysHandedBack = false;
    RETURN_IF_FAILED(_start(g_hHotkeyLibrary));
    return S_OK;
}

HRESULT CHotkeyEventHandler::_start(HMODULE hLibrary) {
    const auto start = findExport<ZelStart>(hLibrary, ZEL_START);
    const auto enable = findExport<ZelEnableHotkey>(hLibrary, ZEL_ENABLE_HOTKEY);
    if (start == nullptr || enable == nullptr ||
        start(&CHotkeyEventHandler::_hotkeyNotify, &CHotkeyEventHandler::_changeConfigNotify) != S_OK ||
        enable() != S_OK) {
        return E_FAIL;
    }
    return S_OK;
}

HRESULT CHotkeyEventHandler::_stop(HMODULE hLibrary) {
    const auto stop = findExport<ZelStop>(hLibrary, ZEL_STOP);
    return stop != nullptr && stop() == S_OK ? S_OK : E_FAIL;
}

void CHotkeyEventHandler::stopHotkeyEventLoop() {
    LOG_ENTER_LEAVE();
    const std::lock_guard lock(g_lock);
    const HMODULE hLibrary = std::exchange(g_hHotkeyLibrary, nullptr);
    if (hLibrary != nullptr && !g_bKeysHandedBack && FAILED(_stop(hLibrary))) {
        LOG_STATUS(E_FAIL);
    }
}

// The keys come first: the thread that hangs may do so within the log.
void CHotkeyEventHandler::handBackKeys() {
    HRESULT status = S_OK;
    {
        const std::lock_guard lock(g_lock);
        if (g_hHotkeyLibrary != nullptr && !std::exchange(g_bKeysHandedBack, true)) {
            status = _stop(g_hHotkeyLibrary);
        }
    }
    LOG_ENTER_LEAVE();
    if (FAILED(status)) {
        LOG_STATUS(status);
    }
}

void CHotkeyEventHandler::takeKeysAgain() {
    LOG_ENTER_LEAVE();
    const std::lock_guard lock(g_lock);
    if (g_hHotkeyLibrary != nullptr && std::exchange(g_bKeysHandedBack, false) && FAILED(_start(g_hHotkeyLibrary))) {
        LOG_STATUS(E_FAIL);
    }
}

void CHotkeyEventHandler::cancelHotkeyIOEvent() {
    LOG_ENTER_LEAVE();
    common::UniqueModule module = loadSibling(ZEL_EVNT_LIBRARY);
    const auto cancel = module ? findExport<ZelCancelQueryEvent>(module.get(), ZEL_CANCEL_QUERY_EXPORT) : nullptr;
    if (cancel != nullptr) {
        keepMapped(std::move(module));
    }
    if (cancel == nullptr || cancel() != S_OK) {
        LOG_STATUS(E_FAIL);
    }
}

bool CHotkeyEventHandler::actsAlone(DWORD code) noexcept {
    return (code & ZEL_CODE_ALONE) != 0;
}

void WINAPI CHotkeyEventHandler::_hotkeyNotify(DWORD code, DWORD modifier) noexcept {
    LOG_INFO(L"Get hotkey code:0x%x, modifier:0x%x", static_cast<unsigned>(code), static_cast<unsigned>(modifier));
    if (modifier != ZEL_MAKE && modifier != ZEL_BREAK) {
        LOG_ASSERT(L"!\"Wrong hotkey make/break status.\"");
        return;
    }
    try {
        // The library has no use for the status, which is in the log.
        static_cast<void>(theApp.handleHotkey(code, modifier != ZEL_MAKE));
    } catch (...) {
        LOG_STATUS(common::caughtStatus());
    }
}

void WINAPI CHotkeyEventHandler::_changeConfigNotify(DWORD code) noexcept {
    LOG_ENTER_LEAVE();
    if (code == ZEL_CONFIG_LATCHED || code == ZEL_CONFIG_UNLATCHED) {
        theApp.postLatch(code == ZEL_CONFIG_LATCHED);
        return;
    }
    if (theApp.m_pMainWnd == nullptr) {
        LOG_ASSERT(L"NULL != theApp.m_pMainWnd");
        return;
    }
    if (code == ZEL_CONFIG_CHANGED || code == ZEL_CONFIG_CHANGED_ALT) {
        theApp.postToFrame(kMsgReloadConfig);
    } else if (code == ZEL_CONFIG_END) {
        theApp.postToFrame(WM_CLOSE);
    } else if (code == ZEL_CONFIG_HOOK_LOST) {
        LOG_WARNING(L"The keyboard hook was lost. It has been installed anew.");
    } else if (code == ZEL_CONFIG_HOOK_RENEWED) {
        LOG_INFO(L"The session or the machine was away. The keyboard hook has been installed anew.");
    }
}
