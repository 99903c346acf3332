// The binding between a window and its object, and the list of all bindings of a thread. Private to the framework.
#pragma once

#include <memory>

#include "framework/Wnd.h"

namespace framework {

// A message that is being handled; they nest when a handler sends messages to its own window.
struct Dispatch {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    const Dispatch* outer;
};

// Lives as long as the window, even if the object is deleted by one of its own handlers.
struct Binding {
    CWnd* object;  // null once the object has been deleted
    WNDPROC superProcedure;
    bool ownsWindow;
    bool destroying = false;  // the system is already destroying the window
    const Dispatch* current = nullptr;
    int fontDpi = 0;  // 0: the system's
};

// Marks a message as the current one, to which CWnd::Default refers.
class CDispatchScope {
 public:
    CDispatchScope(std::shared_ptr<Binding> binding, UINT message, WPARAM wParam, LPARAM lParam)
        : m_pBinding(std::move(binding)), m_dispatch{message, wParam, lParam, m_pBinding->current} {
        m_pBinding->current = &m_dispatch;
    }
    ~CDispatchScope() { m_pBinding->current = m_dispatch.outer; }
    CDispatchScope(const CDispatchScope&) = delete;
    CDispatchScope& operator=(const CDispatchScope&) = delete;

 private:
    const std::shared_ptr<Binding> m_pBinding;  // the handler may delete the object and destroy the window
    const Dispatch m_dispatch;
};

// The bindings of the calling thread: windows belong to the thread that created them, and so do their objects.
[[nodiscard]] std::shared_ptr<Binding> findBinding(HWND window);
void addBinding(HWND window, std::shared_ptr<Binding> binding);  // throws std::bad_alloc, and then has no effect
void removeBinding(HWND window);

}  // namespace framework
