#include <utility>

#include "framework/Wnd.h"

namespace {

thread_local CCreationScope* g_pCurrentScope = nullptr;

// An input method may create its own window during the creation of ours. Its second class is "MSCTFIME UI"; seven
// characters identify it.
bool isInputMethodWindow(HWND window) {
    wchar_t name[8] = {};
    ::GetClassNameW(window, name, 8);
    return ::lstrcmpW(name, L"IME") == 0 || ::lstrcmpW(name, L"MSCTFIM") == 0;
}

}  // namespace

CCreationScope::CCreationScope(CWnd& object)
    : m_pObject(&object),
      m_pOuter(g_pCurrentScope),
      m_hHook(::SetWindowsHookExW(WH_CBT, &CCreationScope::_hook, nullptr, ::GetCurrentThreadId())) {
    g_pCurrentScope = this;
}

CCreationScope::~CCreationScope() {
    const DWORD error = ::GetLastError();
    g_pCurrentScope = m_pOuter;
    if (m_hHook != nullptr) {
        ::UnhookWindowsHookEx(m_hHook);
    }
    // Another hook may have refused the window after we bound it, without notifying the window.
    if (m_hBound != nullptr && ::IsWindow(m_hBound) == FALSE) {
        CWnd::_unbind(m_hBound);
    }
    ::SetLastError(error);
}

bool CCreationScope::confirm(HWND window) const {
    if (window == nullptr || ::IsWindow(window) == FALSE) {
        return false;
    }
    if (window != m_hBound) {
        ::DestroyWindow(window);
        ::SetLastError(ERROR_HOOK_NOT_INSTALLED);
        return false;
    }
    return true;
}

LRESULT CALLBACK CCreationScope::_hook(int code, WPARAM wParam, LPARAM lParam) noexcept {
    const auto window = reinterpret_cast<HWND>(wParam);
    if (code == HCBT_CREATEWND && g_pCurrentScope != nullptr && !isInputMethodWindow(window)) {
        // Only the first window is ours, not those that its creation handlers create.
        CCreationScope* scope = std::exchange(g_pCurrentScope, nullptr);
        if (scope->m_pObject->_bind(window, true)) {
            scope->m_hBound = window;
        }
    }
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}
