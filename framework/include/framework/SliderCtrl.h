// The system's trackbar control.
#pragma once

#include "framework/Wnd.h"

class CSliderCtrl : public CWnd {
 public:
    [[nodiscard]] int GetPos() const { return static_cast<int>(_send(TBM_GETPOS)); }
    void SetPos(int position) { _send(TBM_SETPOS, TRUE, position); }
    void SetRangeMin(int minimum, bool redraw = false) { _send(TBM_SETRANGEMIN, redraw ? TRUE : FALSE, minimum); }
    void SetRangeMax(int maximum, bool redraw = false) { _send(TBM_SETRANGEMAX, redraw ? TRUE : FALSE, maximum); }
    void SetThumbLength(int pixels) { _send(TBM_SETTHUMBLENGTH, static_cast<WPARAM>(pixels)); }
    [[nodiscard]] RECT GetChannelRect() const {
        RECT rect{};
        _send(TBM_GETCHANNELRECT, 0, reinterpret_cast<LPARAM>(&rect));
        return rect;
    }

 private:
    LRESULT _send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendMessageW(m_hWnd, message, wParam, lParam);
    }
};
