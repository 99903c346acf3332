// The hover strip: four pixels at the screen edge that bring up the cards when the mouse rests on them.
#pragma once

#include <vector>

#include "UI/CardWnd.h"
#include "common/ResourceFunc.h"

class CZelHideDlg : public CCardWnd {
 public:
    explicit CZelHideDlg(int nCardCount);

    // Sets a new number of cards and places the strip again.
    [[nodiscard]] HRESULT refresh(int nCardCount);

    [[nodiscard]] const accessible::Kind& accessibleKind() const override { return accessible::kHoverStrip; }
    [[nodiscard]] accessible::Facts accessibleFacts(LONG nPart) const override;

 protected:
    bool OnInitDialog() override;
    [[nodiscard]] const MessageMap& messageMap() const override;
    void accessiblePress(LONG nPart) override;

 private:
    friend struct HideDlgSeam;

    [[nodiscard]] HRESULT _setDlgPos();
    [[nodiscard]] HRESULT _showBlackCardsBoder();
    void OnPaint() override;
    void OnMouseMove(POINT point);
    void OnMouseLeave();
    LRESULT OnMouseActivate(WPARAM wParam, LPARAM lParam);
    void OnTimer(UINT_PTR uId);
    static void _showCards();

    LateImage m_borderImage;
    int m_nCardCount;
    std::vector<RECT> m_vecSegments;
    bool m_bTimerRunning = false;
};
