// What programs that help people to use the computer, such as screen readers, learn about the windows of the cards:
// the system's interface IAccessible, answered from what the windows show. Nothing here asks a plug-in. User-interface
// thread only.
#pragma once

#include <windows.h>

#include <oleacc.h>

#include <string>
#include <vector>

namespace accessible {

// What all windows of one kind have in common.
struct Kind {
    LONG role;           // ROLE_SYSTEM_...
    LONG partRole;       // of its parts that are no windows; 0: it has none
    LONG state;          // STATE_SYSTEM_... that always holds, for the window itself
    bool windowPressed;  // it has a default action
    bool partsPressed;
};

inline constexpr Kind kStrip{ROLE_SYSTEM_TOOLBAR, ROLE_SYSTEM_PUSHBUTTON, 0, false, true};
inline constexpr Kind kHoverStrip{ROLE_SYSTEM_PUSHBUTTON, 0, 0, true, false};
inline constexpr Kind kEnlargedCard{ROLE_SYSTEM_LIST, 0, 0, false, false};
inline constexpr Kind kItem{ROLE_SYSTEM_LISTITEM, 0, STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE, true, false};
inline constexpr Kind kSlider{ROLE_SYSTEM_SLIDER, 0, STATE_SYSTEM_FOCUSABLE, false, false};
inline constexpr Kind kNotice{ROLE_SYSTEM_ALERT, 0, STATE_SYSTEM_READONLY, false, false};
inline constexpr Kind kNote{ROLE_SYSTEM_STATICTEXT, 0, STATE_SYSTEM_READONLY, false, false};

// What a window or a part of one says of itself. Empty texts are none.
struct Facts {
    std::wstring name;
    std::wstring value;
    std::wstring description;
    LONG state = 0;  // in addition to that of its kind
};

// A window as the object reads it. A part is a number from 1; CHILDID_SELF is the window itself.
class ITarget {
 public:
    virtual ~ITarget() = default;

    [[nodiscard]] virtual HWND accessibleWindow() const = 0;
    [[nodiscard]] virtual const Kind& accessibleKind() const = 0;
    [[nodiscard]] virtual Facts accessibleFacts(LONG nPart) const = 0;
    [[nodiscard]] virtual LONG accessibleParts() const = 0;
    [[nodiscard]] virtual RECT accessiblePlace(LONG nPart) const = 0;  // screen coordinates
    // Windows that belong below this one, although they are no children of it for the system; and the one above.
    [[nodiscard]] virtual std::vector<ITarget*> accessibleChildren() const = 0;
    [[nodiscard]] virtual ITarget* accessibleParent() const = 0;
    // The window's object with a reference for the caller; null without memory.
    [[nodiscard]] virtual IAccessible* accessibleObject() = 0;
};

// The object of one window, made when somebody asks for it. After its end the object lives on as long as others hold
// it, and answers CO_E_OBJNOTCONNECTED.
class CObjectOwner {
 public:
    CObjectOwner() = default;
    ~CObjectOwner() { disconnect(); }
    CObjectOwner(const CObjectOwner&) = delete;
    CObjectOwner& operator=(const CObjectOwner&) = delete;

    [[nodiscard]] IAccessible* get(ITarget& target);
    void disconnect() noexcept;

 private:
    class CObject* m_pObject = nullptr;
};

// WM_GETOBJECT for a window with this object. False: the window's default answer applies.
[[nodiscard]] bool answer(ITarget& target, WPARAM wParam, LPARAM lParam, LRESULT& rResult);

// To the window of the object, which was asked to do something: wParam is one of these, lParam its argument. Posted,
// so that it happens when the call that asked has returned.
inline constexpr WPARAM kPress = 0;     // lParam: the part
inline constexpr WPARAM kSetValue = 1;  // lParam: the new value

// Tells the programs that listen what happened to a part of a window. Costs nothing if there is none.
void announce(HWND hWnd, DWORD dwEvent, LONG nPart = CHILDID_SELF) noexcept;
// The same for the focus. The system's own stays where it is: the announced one is given back to it by giveFocusBack().
void announceFocus(HWND hWnd) noexcept;
// If the focus was announced somewhere: announces where it really is.
void giveFocusBack() noexcept;

// The end of the program: releases what the first answer had to initialise. Objects must be disconnected by then.
void stop() noexcept;

}  // namespace accessible
