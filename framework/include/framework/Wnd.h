// The window object: a C++ object bound to a window from the first message of its creation to the last of its
// destruction. All calls must be made on the thread that created the window. No exception leaves its messages: if a
// handler throws, the application is notified (CWinApp::exceptionCaught), and the sender gets a harmless result. A
// window whose creation handlers throw is not created.
#pragma once

#include <memory>

#include "framework/MessageMap.h"

namespace framework {
struct Binding;
}

class CWnd {
 public:
    CWnd();
    // Destroys a window that this object created and that still exists; derived destruction code no longer runs then. A
    // subclassed window stays, without an object. Allowed inside the object's own handlers.
    virtual ~CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    // The object bound to a window of this thread; null if there is none.
    [[nodiscard]] static CWnd* fromHandle(HWND window);

    // CreateWindowEx with this object bound before WM_NCCREATE. False: the last system error tells why.
    bool CreateEx(DWORD exStyle, const wchar_t* className, const wchar_t* title, DWORD style, const RECT& place,
                  HWND parent, HMENU menuOrId);
    // Binds the object to an existing window of this thread that has no object, until one of the two is destroyed.
    bool SubclassWindow(HWND window);
    bool SubclassDlgItem(int id, const CWnd& dialog) { return SubclassWindow(::GetDlgItem(dialog.m_hWnd, id)); }

    // Takes the other object's window over, so that its messages come to this object from now on, without any message
    // about it. False, with no effect, if this object has a window or the other one has none.
    bool takeWindow(CWnd& other) noexcept;

    // Destroys the window; false if there was none.
    virtual bool DestroyWindow();

    // The message loop first offers each message to the objects of the target window and its ancestors; true: it has
    // been handled.
    virtual bool PreTranslateMessage(MSG& message);

    [[nodiscard]] bool isWindow() const { return m_hWnd != nullptr && ::IsWindow(m_hWnd) != FALSE; }
    [[nodiscard]] bool isVisible() const { return isWindow() && ::IsWindowVisible(m_hWnd) != FALSE; }
    [[nodiscard]] RECT clientRect() const;
    [[nodiscard]] RECT windowRect() const;  // screen coordinates
    void invalidate() const { ::InvalidateRect(m_hWnd, nullptr, TRUE); }
    void addExStyle(DWORD bits) const;
    // The dots per inch for which the system made the window's own font.
    [[nodiscard]] int fontDpi() const;

    HWND m_hWnd = nullptr;  // null before creation and after destruction

 protected:
    // Looks up the message in the map, then falls back to DefWindowProc. Overrides call it for messages they do not
    // handle.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // The window's behaviour without this object.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    // A dialog has been created: the system has made its font.
    void noteFont() const;
    // Default processing of the message being handled, with its own parameters.
    LRESULT Default();

    [[nodiscard]] virtual const MessageMap& messageMap() const;

    // The very last call: the window has been destroyed, m_hWnd is null. The object may delete itself here.
    virtual void PostNcDestroy() {}

 private:
    friend class CCreationScope;

    struct Received {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    };

    static LRESULT CALLBACK _procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    static LRESULT _dispatch(const std::shared_ptr<framework::Binding>& binding, HWND window, const Received& received);
    static LRESULT _afterException(HWND window, UINT message) noexcept;
    bool _bind(HWND window, bool ownsWindow) noexcept;
    static void _unbind(HWND window);
    static void _windowDestroyed(HWND window) noexcept;
    [[nodiscard]] const MessageEntry* _findEntry(UINT message, UINT notifyCode, bool reflected) const;
    static bool _reflectNotify(WPARAM wParam, LPARAM lParam, LRESULT& result);

    std::shared_ptr<framework::Binding> m_pBinding;
};

// During its lifetime, the next window that this thread creates is bound to the object. CWnd::CreateEx and CDialog use
// it; it is public for code that calls a creating function of the system itself.
class CCreationScope {
 public:
    explicit CCreationScope(CWnd& object);
    ~CCreationScope();
    CCreationScope(const CCreationScope&) = delete;
    CCreationScope& operator=(const CCreationScope&) = delete;

    // Takes the result of the creating function. True: the window exists and is bound to the object. A window that
    // could not be bound is destroyed. Safe after the object was deleted by its own creation handlers.
    [[nodiscard]] bool confirm(HWND window) const;

 private:
    static LRESULT CALLBACK _hook(int code, WPARAM wParam, LPARAM lParam) noexcept;

    CWnd* m_pObject;
    CCreationScope* m_pOuter;
    HHOOK m_hHook;
    HWND m_hBound = nullptr;
};
