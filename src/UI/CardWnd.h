// A card window is a pair. The dialog is the mouse surface: practically invisible (layered, with an alpha of 1), it
// only takes the mouse. What the user sees are its pictures, layered windows above it that let the mouse through. This
// class handles every event of one of the pair that concerns the other. User-interface thread only.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "UI/CardInput.h"
#include "UI/PopupDlg.h"
#include "common/LayeredWnd.h"

class CCardWnd : public CCardInput<CPopupDlg> {
 public:
    // Destroys an existing window, its pictures first. Owners call DestroyWindow() before, because the overrides of
    // derived classes no longer run here.
    ~CCardWnd() override;

    // Destroys the pictures, then the window.
    bool DestroyWindow() override;

    // Whether the mouse is on the window itself: on the part of it that takes the mouse, with nothing above.
    [[nodiscard]] bool mouseIsOn() const;

 protected:
    // Which part of the window takes the mouse.
    enum class Takes {
        Everything,
        AllButColourKey,
        VisiblePixels,  // all but the colour key as well; the window is its own picture
    };
    // The properties of the pair.
    struct Pair {
        UINT uTemplateId;
        Takes takes;
        DWORD exStyle;  // of the surface, in addition to WS_EX_LAYERED
        std::size_t pictures;
        contrast::Tone lastTone = contrast::Tone::Plain;  // of the last picture in high contrast; the others are plain
    };

    // pTextPainter draws text on the pictures; null: no text.
    explicit CCardWnd(const Pair& pair, IDrawTextOnLayeredWnd* pTextPainter = nullptr);

    // Creates the surface and the pictures. A picture has no window before it is painted or asked for one.
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;
    void makeSurface() const;
    void makePictures();
    void dropPictures() { m_vecPictures.clear(); }
    // For a window that is handed on: without its pictures it has none, until it gets them back.
    [[nodiscard]] std::vector<std::unique_ptr<CLayeredWnd>> takePictures() { return std::move(m_vecPictures); }
    void setPictures(std::vector<std::unique_ptr<CLayeredWnd>> vecPictures) { m_vecPictures = std::move(vecPictures); }

    // Null while there is none: before the window is created, after its end, and between dropping and making.
    [[nodiscard]] CLayeredWnd* picture(std::size_t uIndex = 0) const;
    void hidePictures() const;
    // One image as the first picture. S_FALSE while the window is hidden or has no picture.
    [[nodiscard]] HRESULT paintPicture(Gdiplus::Image* pImage) const;
    // Card images side by side as the first picture, each with its place and opacity. Only the band of nRows of every
    // image next to the screen edge is shown: the upper rows at the bottom, the lower ones at the top.
    [[nodiscard]] HRESULT paintBand(const std::vector<Gdiplus::Image*>& vecImages,
                                    const std::vector<DWORD>& vecOpacities, std::vector<const RECT*>& vecPlaces,
                                    bool bBottom, int nRows) const;
    // The same without showing it, so that it needs not be composed when it is to be shown.
    [[nodiscard]] HRESULT prepareBand(const std::vector<Gdiplus::Image*>& vecImages,
                                      const std::vector<DWORD>& vecOpacities, const std::vector<const RECT*>& vecPlaces,
                                      bool bBottom, int nRows) const;

    // Requests one WM_MOUSELEAVE. Handlers of that message clear m_bTracking.
    void trackMouse();

    virtual void OnPaint();
    // The pictures are hidden with the window.
    virtual void OnShowWindow(bool bShow);

    bool m_bTracking = false;  // a WM_MOUSELEAVE is pending

 private:
    const Pair m_pair;
    IDrawTextOnLayeredWnd* const m_pTextPainter;
    std::vector<std::unique_ptr<CLayeredWnd>> m_vecPictures;
};
