// The visible picture of a card window: a click-through popup with per-pixel alpha exactly over the window it shadows,
// which only takes the mouse. User-interface thread only.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/Contrast.h"
#include "common/FrameBitmap.h"
#include "common/GdiPlus.h"

// Implemented by owners that draw text on their picture.
class IDrawTextOnLayeredWnd {
 public:
    virtual ~IDrawTextOnLayeredWnd() = default;

    // Called once per frame that is composed, after all images and before the frame is shown. The graphics draws into
    // the frame, in pixels from its top-left corner, and is valid during the call only. A failure does not stop the
    // frame, but the next paint composes it again.
    [[nodiscard]] virtual HRESULT drawText(Gdiplus::Graphics& graphics) = 0;

    // Changes whenever drawText would draw something else; empty: nobody can tell, so the text is drawn for every
    // frame.
    [[nodiscard]] virtual std::optional<std::size_t> textState() const { return std::nullopt; }
};

class CLayeredWnd {
 public:
    // The text painter is not owned, may be null, and must outlive the object. Creates no window yet. The tone: which
    // colours the picture has in high contrast.
    explicit CLayeredWnd(HWND hRealWnd, IDrawTextOnLayeredWnd* pTextPainter = nullptr,
                         contrast::Tone tone = contrast::Tone::Plain);
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
    // Creates the popup and composes the frame without showing it, so that painting the same needs not compose it. One
    // opacity and one rectangle belong to each image. The paint reports failures.
    [[nodiscard]] HRESULT prepare(const std::vector<Gdiplus::Image*>& vecImages, const std::vector<DWORD>& vecAlphas,
                                  const std::vector<const RECT*>& vecDrawRects, int nSourceTop, int nSourceHeight);
    // One image; S_FALSE and no effect while the shadowed window is hidden.
    [[nodiscard]] HRESULT paint(Gdiplus::Image* pImage, DWORD dwAlpha, const POINT* pPosition, const RECT* pDrawRect);

    // Removes the picture from the screen until the next paint.
    void hide() const;

    // How many frames had to be composed.
    [[nodiscard]] int compositions() const { return m_nCompositions; }

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

    // All that a frame is composed of.
    struct Content {
        const std::vector<Gdiplus::Image*>& vecImages;
        const std::vector<DWORD>& vecAlphas;
        const std::vector<const RECT*>& vecDrawRects;
        int nSourceTop;
        int nSourceHeight;
    };

    [[nodiscard]] HRESULT _placeWnd(const POINT* pPosition);
    [[nodiscard]] HRESULT _compose(const Content& content);
    [[nodiscard]] HRESULT _draw(const Content& content, bool& rbComplete) const;
    [[nodiscard]] std::optional<std::vector<std::size_t>> _signature(const Content& content) const;
    [[nodiscard]] HRESULT drawImage(Gdiplus::Image* pImage, DWORD dwAlpha, int nSourceHeight, int nSourceTop,
                                    const RECT* pDrawRect) const;
    [[nodiscard]] HRESULT updateLyrWnd(HDC hScreenDc, HDC hMemoryDc, const POINT* pPosition);
    void _prepareFrame();

    static unsigned s_nInstances;

    const HWND m_hRealWnd;
    const unsigned m_nInstance;
    const std::wstring m_strClassName;  // one window class per object
    IDrawTextOnLayeredWnd* const m_pTextPainter;
    const contrast::Tone m_tone;
    std::unique_ptr<common::FrameBuffer> m_pFrame;  // kept from one paint to the next; null without memory
    std::size_t m_uPixels = 0;                      // their hash
    int m_nCompositions = 0;
    // What the frame was composed of, as numbers; empty: it must be composed again.
    std::optional<std::vector<std::size_t>> m_composed;
    std::optional<Shown> m_shown;  // empty: the frame must be passed to the window system again
};
