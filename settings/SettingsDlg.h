// The window: tabs with one page each, and the buttons below them.
#pragma once

#include <memory>
#include <vector>

#include "Page.h"
#include "common/Handle.h"
#include "framework/Dialog.h"

namespace settings {

class CSettingsDlg : public CDialog {
 public:
    // Model and surroundings outlive the window.
    CSettingsDlg(CModel& model, const Surroundings& surroundings);
    ~CSettingsDlg() override;

    // Creates the window with all pages and shows it in front. False: the last system error tells why.
    bool open();

    bool PreTranslateMessage(MSG& message) override;

    // Brings a page to the front and gives its first control the focus.
    void select(std::size_t page);
    [[nodiscard]] std::size_t selected() const { return m_uSelected; }
    [[nodiscard]] CPage& page(std::size_t index) const { return *m_vecPages[index]; }

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;
    bool OnInitDialog() override;

 private:
    LRESULT OnControl(WPARAM wParam, LPARAM lParam);
    LRESULT OnNotify(WPARAM wParam, LPARAM lParam);
    LRESULT OnGoTo(WPARAM wParam, LPARAM lParam);
    LRESULT OnDpiChanged(WPARAM wParam, LPARAM lParam);
    void OnClose() { _cancel(); }

    [[nodiscard]] HWND _control(int id) const { return ::GetDlgItem(m_hWnd, id); }
    [[nodiscard]] bool _createPages();
    void _placePages() const;
    void _show(std::size_t page);
    void _loadPages() const;
    [[nodiscard]] bool _storePages();
    void _press(UINT id);
    [[nodiscard]] bool _apply();
    void _cancel();
    void _export();
    void _import();
    void _showButtons() const;
    void _turn(int by);
    void _setFont(UINT dpi);

    CModel& m_model;
    const Surroundings& m_surroundings;
    std::vector<std::unique_ptr<CPage>> m_vecPages;
    std::size_t m_uSelected = 0;
    common::UniqueFont m_font;
};

}  // namespace settings
