// The window that lists the displays and the favourites, which can be renamed and deleted here.
#pragma once

#include "Favourites.h"
#include "SetupDlg.h"

namespace setup {

class CConfigDlg : public CSetupDlg {
 public:
    explicit CConfigDlg(const Surroundings& surroundings);

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    bool OnInitDialog() override;
    void onControl(UINT id, UINT code) override;

 private:
    LRESULT OnNotify(WPARAM wParam, LPARAM lParam);
    void onListKey(WORD key);
    // The user has entered a new name; null if they cancelled.
    void rename(int row, const wchar_t* typed);
    void deleteSelected();
    void showFavourites();
    void enableButtons() const;

    Favourites m_vecFavourites;  // as shown
};

}  // namespace setup
