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
    void _onListKey(WORD key);
    // The user has entered a new name; null if they cancelled.
    void _rename(int row, const wchar_t* typed);
    void _deleteSelected();
    void _showFavourites();
    void _enableButtons() const;

    Favourites m_vecFavourites;  // as shown
};

}  // namespace setup
