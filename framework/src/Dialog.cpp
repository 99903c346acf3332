#include "framework/Dialog.h"

#include "framework/WinApp.h"

bool CDialog::Create(HWND parent) {
    if (m_hWnd != nullptr) {
        ::SetLastError(ERROR_ALREADY_EXISTS);
        return false;
    }
    m_bInitFailed = false;
    const CCreationScope scope(*this);
    return scope.confirm(::CreateDialogParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(m_uTemplateId), parent,
                                              &CDialog::_dialogProcedure, 0)) &&
           _initialized();
}

// No result of WM_INITDIALOG refuses the dialog, so a partially initialised one is destroyed here.
bool CDialog::_initialized() {
    if (!m_bInitFailed) {
        return true;
    }
    DestroyWindow();
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return false;
}

// Tab, arrow and Enter keys move between the controls of a dialog.
bool CDialog::PreTranslateMessage(MSG& message) {
    const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    return key && m_hWnd != nullptr && ::IsDialogMessageW(m_hWnd, &message) != FALSE;
}

// Everything else goes through the object's message map before the system's dialog procedure calls this.
INT_PTR CALLBACK CDialog::_dialogProcedure(HWND dialog, UINT message, WPARAM /*wParam*/, LPARAM /*lParam*/) noexcept {
    if (message != WM_INITDIALOG) {
        return FALSE;
    }
    auto* object = dynamic_cast<CDialog*>(fromHandle(dialog));
    if (object != nullptr) {
        object->noteFont();
    }
    try {
        return object == nullptr || object->OnInitDialog() ? TRUE : FALSE;
    } catch (...) {
        CWinApp::reportException();
        if (auto* alive = dynamic_cast<CDialog*>(fromHandle(dialog)); alive != nullptr) {
            alive->m_bInitFailed = true;
        }
        return FALSE;
    }
}
