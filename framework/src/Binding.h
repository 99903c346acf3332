// What ties a window to its object, and the list of all ties of a thread. Private to the framework.
#pragma once

#include <memory>

#include "framework/Wnd.h"

namespace framework {

// One message being handled; they nest when a handler sends messages to its own window.
struct Dispatch {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    const Dispatch* outer;
};

// Lives as long as the window does, even when the object is deleted by one of its own handlers.
struct Binding {
    CWnd* object;  // null once the object is gone
    WNDPROC superProcedure;
    bool ownsWindow;
    bool destroying = false;  // the system is taking the window down already
    const Dispatch* current = nullptr;
};

// Marks a message as the one being handled, which is what CWnd::Default asks for.
class DispatchScope {
 public:
    DispatchScope(std::shared_ptr<Binding> binding, UINT message, WPARAM wParam, LPARAM lParam)
        : m_pBinding(std::move(binding)), m_dispatch{message, wParam, lParam, m_pBinding->current} {
        m_pBinding->current = &m_dispatch;
    }
    ~DispatchScope() { m_pBinding->current = m_dispatch.outer; }
    DispatchScope(const DispatchScope&) = delete;
    DispatchScope& operator=(const DispatchScope&) = delete;

 private:
    const std::shared_ptr<Binding> m_pBinding;  // the handler may delete the object and end the window
    const Dispatch m_dispatch;
};

// The ties of the calling thread: windows belong to the thread that made them, and so do their objects.
[[nodiscard]] std::shared_ptr<Binding> findBinding(HWND window);
void addBinding(HWND window, std::shared_ptr<Binding> binding);  // throws std::bad_alloc, and has no effect then
void removeBinding(HWND window);

}  // namespace framework
