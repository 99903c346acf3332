// A top-level window of a class that the program registered itself.
#pragma once

#include "framework/Wnd.h"

class CFrameWnd : public CWnd {
 public:
    // A rectangle whose left is CW_USEDEFAULT lets the system choose size and place.
    static constexpr RECT kDefaultRect{CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT};

    virtual bool Create(const wchar_t* className, const wchar_t* title, DWORD style, const RECT& place = kDefaultRect,
                        HWND parent = nullptr);

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    // WM_CLOSE destroys the frame through DestroyWindow, so that overrides of it run.
    void OnClose();
};
