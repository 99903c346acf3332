// Common to the program's windows: texts, icon, the list of displays, buttons, and the message that closes them from
// outside.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "Surroundings.h"
#include "common/Handle.h"
#include "framework/Dialog.h"

namespace setup {

struct ControlText {
    int control;
    UINT text;
};

struct Column {
    UINT text;
    int percent;  // of the list's width
};

// The rows of a list in report view, each a text per column.
using Rows = std::vector<std::vector<std::wstring>>;

void setColumns(HWND list, std::initializer_list<Column> columns);
// Keeps the selected position as long as enough rows remain.
void setRows(HWND list, const Rows& rows);
[[nodiscard]] int selectedRow(HWND list);  // -1: none
void selectRow(HWND list, int row);

class CSetupDlg : public CDialog {
 public:
    // `surroundings` outlives the window.
    CSetupDlg(UINT templateId, const wchar_t* className, const Surroundings& surroundings)
        : CDialog(templateId), m_pszClass(className), m_surroundings(surroundings) {}

    // Registers the window class that the template names, creates the window and shows it in front. False: the last
    // system error tells why.
    bool open();

    [[nodiscard]] const wchar_t* className() const { return m_pszClass; }

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;

    // Before everything else that a window does: its font and sizes.
    bool OnInitDialog() override;

    // Texts of the window itself and of its controls; control 0 is the window.
    void setTexts(std::initializer_list<ControlText> texts) const;
    [[nodiscard]] HWND control(int id) const { return ::GetDlgItem(m_hWnd, id); }

    // The current displays, in the list with the standard columns. They are read again when they change and when the
    // user returns to the window, because the system does not report changes by a display source.
    void prepareDisplayList() const;
    virtual void showDisplays();

    // A button or another control: its id and notification code. The base closes the window for IDCANCEL.
    virtual void onControl(UINT id, UINT code);

    [[nodiscard]] const Surroundings& surroundings() const { return m_surroundings; }
    void tell(const std::wstring& message) const { m_surroundings.tell(m_hWnd, message); }
    void tellStoreError(LSTATUS error) const;

    std::vector<Display> m_vecDisplays;

 private:
    LRESULT OnControl(WPARAM wParam, LPARAM lParam);
    void OnClose() { DestroyWindow(); }
    void OnDisplayChange();
    LRESULT OnActivate(WPARAM wParam, LPARAM lParam);

    const wchar_t* m_pszClass;
    const Surroundings& m_surroundings;
    common::UniqueFont m_font;
    bool m_bLeft = false;  // another window is or was active since the displays were read
};

}  // namespace setup
