// The window that sets up the displays in one of several arrangements.
#pragma once

#include "CommandLine.h"
#include "SetupDlg.h"

namespace setup {

class COutputDlg : public CSetupDlg {
 public:
    COutputDlg(const Request& request, const Surroundings& surroundings);

    // The number from a second start, sent to the existing window as (mask, mode).
    static constexpr UINT kRequestMessage = WM_USER + 110;

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    bool OnInitDialog() override;
    void onControl(UINT id, UINT code) override;

 private:
    LRESULT OnRequest(WPARAM mask, LPARAM mode);
    void _showModes();
    void _apply();

    Request m_request;
};

}  // namespace setup
