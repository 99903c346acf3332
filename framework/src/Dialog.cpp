#include "framework/Dialog.h"

bool CDialog::Create(HWND parent) {
    if (m_hWnd != nullptr) {
        ::SetLastError(ERROR_ALREADY_EXISTS);
        return false;
    }
    const CreationScope scope(*this);
    return scope.confirm(::CreateDialogParamW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(m_uTemplateId), parent,
                                              &CDialog::dialogProcedure, 0));
}

// Tab, arrow and Enter keys move between the controls of a dialog.
bool CDialog::PreTranslateMessage(MSG& message) {
    const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    return key && m_hWnd != nullptr && ::IsDialogMessageW(m_hWnd, &message) != FALSE;
}

// Everything else goes through the object's message map before the system's dialog procedure asks here.
INT_PTR CALLBACK CDialog::dialogProcedure(HWND dialog, UINT message, WPARAM /*wParam*/, LPARAM /*lParam*/) {
    if (message != WM_INITDIALOG) {
        return FALSE;
    }
    auto* object = dynamic_cast<CDialog*>(fromHandle(dialog));
    return object == nullptr || object->OnInitDialog() ? TRUE : FALSE;
}
