// The visible picture of a card window: a click-through popup with per-pixel alpha exactly over the window it shadows,
// which only takes the mouse. User-interface thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/FrameBitmap.h"
#include "common/GdiPlus.h"

// Implemented by owners that draw text on their picture.
class IDrawTextOnLayeredWnd {
 public:
    virtual ~IDrawTextOnLayeredWnd() = default;

    // Called once per frame, after all images and before the frame is shown. The graphics draws into the frame, in
    // pixels from its top-left corner, and is valid during the call only. The status does not stop the frame.
    [[nodiscard]] virtual HRESULT drawText(Gdiplus::Graphics& graphics) = 0;
};

class CLayeredWnd {
 public:
    // The text painter is not owned, may be null, and must outlive the object. Creates no window yet.
    explicit CLayeredWnd(HWND hRealWnd, IDrawTextOnLayeredWnd* pTextPainter = nullptr);
    ~CLayeredWnd();
    CLayeredWnd(const CLayeredWnd&) = delete;
    CLayeredWnd& operator=(const CLayeredWnd&) = delete;

    // Creates the popup, hidden, over the shadowed window, which owns it; an existing popup is destroyed first.
    [[nodiscard]] HRESULT createWnd();
    // Destroys the popup and its class. S_OK if there was none.
    [[nodiscard]] HRESULT destroyWnd();

    // Composes the images in order, the first at the bottom, and shows the frame over the shadowed window; creates the
    // popup if there is none. One opacity (0..255) and one rectangle (client pixels; null: the whole window) belong to
    // each image; an empty rectangle sequence is filled with nulls. Null images are skipped. `pPosition` (screen
    // pixels, may be null) moves the frame. `nSourceTop` and `nSourceHeight` choose the rows taken from every image; a
    // height below 1 means all from the top row on.
    [[nodiscard]] HRESULT paint(const std::vector<Gdiplus::Image*>& vecImages, const std::vector<DWORD>& vecAlphas,
                                std::vector<const RECT*>& vecDrawRects, const POINT* pPosition, int nSourceTop,
                                int nSourceHeight);
    // One image; S_FALSE and no effect while the shadowed window is hidden.
    [[nodiscard]] HRESULT paint(Gdiplus::Image* pImage, DWORD dwAlpha, const POINT* pPosition, const RECT* pDrawRect);

    // Removes the picture from the screen until the next paint.
    void hide() const;

    [[nodiscard]] const std::wstring& className() const { return m_strClassName; }

    HWND m_hWnd = nullptr;  // the popup; null if there is none

 private:
    // The frame last passed to the window system.
    struct Shown {
        std::size_t pixels;  // their hash
        LONG x;
        LONG y;
        LONG width;
        LONG height;
        bool operator==(const Shown&) const = default;
    };

    [[nodiscard]] HRESULT _placeWnd();
    [[nodiscard]] HRESULT drawImage(Gdiplus::Image* pImage, DWORD dwAlpha, int nSourceHeight, int nSourceTop,
                                    const RECT* pDrawRect) const;
    [[nodiscard]] HRESULT updateLyrWnd(HDC hScreenDc, HDC hMemoryDc, const POINT* pPosition);
    void _prepareFrame();

    static unsigned s_nInstances;

    const HWND m_hRealWnd;
    const unsigned m_nInstance;
    const std::wstring m_strClassName;  // one window class per object
    IDrawTextOnLayeredWnd* const m_pTextPainter;
    std::unique_ptr<common::FrameBuffer> m_pFrame;  // kept from one paint to the next; null without memory
    std::optional<Shown> m_shown;                   // empty: the frame must be passed to the window system again
};
