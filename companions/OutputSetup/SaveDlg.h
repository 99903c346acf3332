// The window that names the current arrangement and stores it as a favourite.
#pragma once

#include "SetupDlg.h"

namespace setup {

class CSaveDlg : public CSetupDlg {
 public:
    explicit CSaveDlg(const Surroundings& surroundings);

 protected:
    bool OnInitDialog() override;
    void showDisplays() override;
    void onControl(UINT id, UINT code) override;

 private:
    void _save();
    void _askForAnotherName(UINT message);
};

}  // namespace setup
