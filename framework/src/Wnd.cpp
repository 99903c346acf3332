#include "framework/Wnd.h"

#include <utility>

#include "Binding.h"
#include "FontDpi.h"
#include "framework/WinApp.h"

using framework::Binding;
using framework::CDispatchScope;
using framework::Dispatch;

CWnd::CWnd() = default;

CWnd::~CWnd() {
    if (m_pBinding != nullptr) {
        // From here on the window's messages find no object; the binding itself ends with the window.
        const std::shared_ptr<Binding> keep = std::move(m_pBinding);
        keep->object = nullptr;
        if (keep->ownsWindow && !keep->destroying) {
            ::DestroyWindow(m_hWnd);
        }
    }
    CWinApp::windowGone(*this);
}

CWnd* CWnd::fromHandle(HWND window) {
    const std::shared_ptr<Binding> binding = framework::findBinding(window);
    return binding == nullptr ? nullptr : binding->object;
}

// Called by a hook of the system: no exception leaves it.
bool CWnd::_bind(HWND window, bool ownsWindow) noexcept {
    if (m_pBinding != nullptr || framework::findBinding(window) != nullptr) {
        return false;
    }
    std::shared_ptr<Binding> binding;
    try {
        binding = std::make_shared<Binding>(Binding{this, nullptr, ownsWindow});
        framework::addBinding(window, binding);
    } catch (...) {
        CWinApp::reportException();
        return false;
    }
    const LONG_PTR super = ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CWnd::_procedure));
    if (super == 0) {
        framework::removeBinding(window);
        return false;
    }
    binding->superProcedure = reinterpret_cast<WNDPROC>(super);
    m_pBinding = std::move(binding);
    m_hWnd = window;
    return true;
}

// Detaches the object, if it still exists, from a window that is destroyed or being destroyed.
void CWnd::_unbind(HWND window) {
    const std::shared_ptr<Binding> binding = framework::findBinding(window);
    if (binding == nullptr) {
        return;
    }
    if (reinterpret_cast<WNDPROC>(::GetWindowLongPtrW(window, GWLP_WNDPROC)) == &CWnd::_procedure) {
        ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(binding->superProcedure));
    }
    if (binding->object != nullptr) {
        binding->object->m_hWnd = nullptr;
        binding->object->m_pBinding.reset();
    }
    framework::removeBinding(window);
}

bool CWnd::SubclassWindow(HWND window) {
    return window != nullptr && ::GetWindowThreadProcessId(window, nullptr) == ::GetCurrentThreadId() &&
           _bind(window, false);
}

bool CWnd::CreateEx(DWORD exStyle, const wchar_t* className, const wchar_t* title, DWORD style, const RECT& place,
                    HWND parent, HMENU menuOrId) {
    if (m_hWnd != nullptr) {
        ::SetLastError(ERROR_ALREADY_EXISTS);
        return false;
    }
    const CCreationScope scope(*this);
    const bool anywhere = place.left == CW_USEDEFAULT;
    const int width = anywhere ? CW_USEDEFAULT : place.right - place.left;
    const int height = anywhere ? CW_USEDEFAULT : place.bottom - place.top;
    return scope.confirm(::CreateWindowExW(exStyle, className, title, style, place.left, place.top, width, height,
                                           parent, menuOrId, ::GetModuleHandleW(nullptr), nullptr));
}

bool CWnd::takeWindow(CWnd& other) noexcept {
    if (m_pBinding != nullptr || other.m_pBinding == nullptr) {
        return false;
    }
    m_pBinding = std::move(other.m_pBinding);
    m_pBinding->object = this;
    m_hWnd = std::exchange(other.m_hWnd, nullptr);
    return true;
}

bool CWnd::DestroyWindow() {
    return m_hWnd != nullptr && ::DestroyWindow(m_hWnd) != FALSE;
}

bool CWnd::PreTranslateMessage(MSG& /*message*/) {
    return false;
}

RECT CWnd::clientRect() const {
    RECT rect{};
    ::GetClientRect(m_hWnd, &rect);
    return rect;
}

RECT CWnd::windowRect() const {
    RECT rect{};
    ::GetWindowRect(m_hWnd, &rect);
    return rect;
}

void CWnd::addExStyle(DWORD bits) const {
    ::SetWindowLongPtrW(m_hWnd, GWL_EXSTYLE, ::GetWindowLongPtrW(m_hWnd, GWL_EXSTYLE) | static_cast<LONG_PTR>(bits));
}

int CWnd::fontDpi() const {
    return m_pBinding == nullptr || m_pBinding->fontDpi == 0 ? framework::systemDpi() : m_pBinding->fontDpi;
}

void CWnd::noteFont() const {
    if (m_pBinding != nullptr) {
        m_pBinding->fontDpi = framework::newFontDpi(m_hWnd);
    }
}

const MessageMap& CWnd::messageMap() const {
    static constexpr MessageMap kMap{nullptr, {}};
    return kMap;
}

const MessageEntry* CWnd::_findEntry(UINT message, UINT notifyCode, bool reflected) const {
    for (const MessageMap* map = &messageMap(); map != nullptr; map = map->base) {
        for (const MessageEntry& entry : map->entries) {
            if (entry.message == message && entry.notifyCode == notifyCode && entry.reflected == reflected) {
                return &entry;
            }
        }
    }
    return nullptr;
}

namespace {

// Any program may post any number in place of the address, where the system lets it.
bool isNotification(LPARAM lParam) {
    NMHDR header{};
    return ::ReadProcessMemory(::GetCurrentProcess(), reinterpret_cast<const void*>(lParam), &header, sizeof header,
                               nullptr) != FALSE;
}

}  // namespace

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    if (message == WM_NOTIFY && !isNotification(lParam)) {
        return 0;
    }
    if (message == WM_NOTIFY && _reflectNotify(wParam, lParam, result)) {
        return result;
    }
    const MessageEntry* entry = _findEntry(message, 0, false);
    return entry == nullptr ? DefWindowProc(message, wParam, lParam) : entry->invoke(*this, wParam, lParam);
}

// Offers a control's notification to the control's own object.
bool CWnd::_reflectNotify(WPARAM wParam, LPARAM lParam, LRESULT& result) {
    const auto* header = reinterpret_cast<const NMHDR*>(lParam);
    CWnd* sender = fromHandle(header->hwndFrom);
    const MessageEntry* entry = sender == nullptr ? nullptr : sender->_findEntry(WM_NOTIFY, header->code, true);
    if (entry == nullptr) {
        return false;
    }
    // The control may be handling another message, such as painting: Default() must not refer to that one.
    const CDispatchScope scope(sender->m_pBinding, WM_NOTIFY, wParam, lParam);
    result = entry->invoke(*sender, wParam, lParam);
    return true;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return m_pBinding == nullptr ? 0 : ::CallWindowProcW(m_pBinding->superProcedure, m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default() {
    const Dispatch* current = m_pBinding == nullptr ? nullptr : m_pBinding->current;
    return current == nullptr ? 0 : DefWindowProc(current->message, current->wParam, current->lParam);
}

LRESULT CALLBACK CWnd::_procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    const std::shared_ptr<Binding> binding = framework::findBinding(window);
    if (binding == nullptr) {
        return ::DefWindowProcW(window, message, wParam, lParam);
    }
    binding->destroying |= message == WM_DESTROY || message == WM_NCDESTROY;
    LRESULT result = 0;
    try {
        result = _dispatch(binding, window, {message, wParam, lParam});
    } catch (...) {
        CWinApp::reportException();
        result = _afterException(window, message);
    }
    if (message == WM_NCDESTROY) {
        _windowDestroyed(window);
    }
    return result;
}

LRESULT CWnd::_dispatch(const std::shared_ptr<Binding>& binding, HWND window, const Received& received) {
    if (binding->object == nullptr) {
        return ::CallWindowProcW(binding->superProcedure, window, received.message, received.wParam, received.lParam);
    }
    // The handler may delete the object: only the binding is safe to use then.
    const CDispatchScope scope(binding, received.message, received.wParam, received.lParam);
    return binding->object->WindowProc(received.message, received.wParam, received.lParam);
}

// The result of a message whose handler failed.
LRESULT CWnd::_afterException(HWND window, UINT message) noexcept {
    switch (message) {
        case WM_PAINT:
            ::ValidateRect(window, nullptr);  // otherwise the system would ask for it again at once, endlessly
            return 0;
        case WM_CREATE:
            return -1;  // no window
        case WM_QUERYENDSESSION:
            return TRUE;  // never refuse the end of the session
        default:
            return 0;
    }
}

void CWnd::_windowDestroyed(HWND window) noexcept {
    const std::shared_ptr<Binding> binding = framework::findBinding(window);
    CWnd* object = binding == nullptr ? nullptr : binding->object;
    _unbind(window);
    if (object == nullptr) {
        return;
    }
    CWinApp::windowGone(*object);
    try {
        object->PostNcDestroy();
    } catch (...) {
        CWinApp::reportException();
    }
}
