#include "Logic/HotkeyEventHandler.h"

#include "ZelMain.h"
#include "common/SiblingLibrary.h"
#include "common/Status.h"
#include "companions/hotkey/include/ZelHotkey.h"

namespace {

// The hotkey library stays loaded to the end of the process: a callback may still be on its way out of it.
struct HotkeyLibrary {
    common::UniqueModule module;
    bool started = false;
};

HotkeyLibrary& hotkeyLibrary() {
    static HotkeyLibrary library;
    return library;
}

}  // namespace

HRESULT CHotkeyEventHandler::startHotkeyEventLoop() {
    LOG_ENTER_LEAVE();
    HotkeyLibrary& library = hotkeyLibrary();
    library.module = loadSibling(ZEL_MAIN_LIBRARY);
    if (!library.module) {
        RETURN_LOGGED(E_FAIL);
    }
    const auto start = findExport<ZelStart>(library.module, ZEL_START);
    const auto enable = findExport<ZelEnableHotkey>(library.module, ZEL_ENABLE_HOTKEY);
    if (start == nullptr || enable == nullptr) {
        RETURN_LOGGED(E_FAIL);
    }
    if (start(&CHotkeyEventHandler::_hotkeyNotify, &CHotkeyEventHandler::_changeConfigNotify) != S_OK) {
        RETURN_LOGGED(E_FAIL);
    }
    library.started = true;
    if (enable() != S_OK) {
        RETURN_LOGGED(E_FAIL);
    }
    return S_OK;
}

void CHotkeyEventHandler::stopHotkeyEventLoop() {
    LOG_ENTER_LEAVE();
    HotkeyLibrary& library = hotkeyLibrary();
    if (!library.started) {
        return;
    }
    library.started = false;
    const auto stop = findExport<ZelStop>(library.module, ZEL_STOP);
    if (stop == nullptr || stop() != S_OK) {
        LOG_STATUS(E_FAIL);
    }
}

void CHotkeyEventHandler::cancelHotkeyIOEvent() {
    LOG_ENTER_LEAVE();
    const common::UniqueModule module = loadSibling(ZEL_EVNT_LIBRARY);
    const auto cancel = module ? findExport<ZelCancelQueryEvent>(module, ZEL_CANCEL_QUERY_EXPORT) : nullptr;
    if (cancel == nullptr || cancel() != S_OK) {
        LOG_STATUS(E_FAIL);
    }
}

void WINAPI CHotkeyEventHandler::_hotkeyNotify(DWORD code, DWORD modifier) {
    LOG_INFO(L"Get hotkey code:0x%x, modifier:0x%x", static_cast<unsigned>(code), static_cast<unsigned>(modifier));
    if (modifier != ZEL_MAKE && modifier != ZEL_BREAK) {
        LOG_ASSERT(L"!\"Wrong hotkey make/break status.\"");
        return;
    }
    theApp.handleHotkey(code, modifier != ZEL_MAKE);
}

void WINAPI CHotkeyEventHandler::_changeConfigNotify(DWORD code) {
    LOG_ENTER_LEAVE();
    if (theApp.m_pMainWnd == nullptr) {
        LOG_ASSERT(L"NULL != theApp.m_pMainWnd");
        return;
    }
    if (code == ZEL_CONFIG_CHANGED || code == ZEL_CONFIG_CHANGED_ALT) {
        theApp.postToFrame(kMsgReloadConfig);
    } else if (code == ZEL_CONFIG_END) {
        theApp.postToFrame(WM_CLOSE);
    }
}
