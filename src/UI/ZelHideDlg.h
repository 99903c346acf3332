// The hover strip: four pixels at the screen edge that call the cards up when the mouse rests on them.
#pragma once

#include <memory>
#include <vector>

#include "UI/CardInput.h"
#include "common/GdiPlus.h"
#include "common/LayeredWnd.h"
#include "framework/Dialog.h"

class CZelHideDlg : public CCardInput<CDialog> {
 public:
    explicit CZelHideDlg(int nCardCount);
    ~CZelHideDlg() override;

    // Takes a new number of cards and places the strip again.
    HRESULT refresh(int nCardCount);
    bool DestroyWindow() override;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    friend struct HideDlgSeam;

    HRESULT _setDlgPos();
    HRESULT _showBlackCardsBoder();
    void OnPaint();
    void OnShowWindow(bool bShow);
    void OnMouseMove(POINT point);
    void OnMouseLeave();
    LRESULT OnMouseActivate(WPARAM wParam, LPARAM lParam);
    void OnTimer(UINT_PTR uId);

    std::unique_ptr<CLayeredWnd> m_pLyrWndBlkCards;
    std::unique_ptr<Gdiplus::Image> m_pBorderImage;
    int m_nCardCount;
    std::vector<RECT> m_vecSegments;
    bool m_bTimerRunning = false;
    bool m_bTracking = false;
};
