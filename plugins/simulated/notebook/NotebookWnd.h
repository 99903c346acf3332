// The window of the simulated notebook. It keeps the keyboard focus, shows the machine's state as it changes, and ends
// Fenwyn when it is closed.
#pragma once

#include "NotebookView.h"
#include "RegistryWatch.h"
#include "framework/FrameWnd.h"

namespace sim {

class CNotebookWnd : public CFrameWnd {
 public:
    CNotebookWnd();

    // Creates, places and shows the window. False: the system refused.
    bool create();

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;

 private:
    void OnPaint();
    LRESULT OnEraseBackground(WPARAM wParam, LPARAM lParam);
    LRESULT OnChanged(WPARAM wParam, LPARAM lParam);
    LRESULT OnKeyDown(WPARAM wParam, LPARAM lParam);
    LRESULT OnSysCommand(WPARAM wParam, LPARAM lParam);
    void OnKillFocus(HWND other);
    void OnTakeFocus();
    void OnClose();

    void _show(NotebookModel model);

    CNotebookView m_view;
    NotebookModel m_model;
    CRegistryWatch m_watch;
};

}  // namespace sim
