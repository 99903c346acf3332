// One page of the window: a child dialog behind a tab. What it shows is in the model; nothing but the model reads or
// writes the settings themselves.
#pragma once

#include <string>

#include "Surroundings.h"
#include "framework/Dialog.h"

namespace fenwyn {
struct Function;
}

namespace settings {

class CModel;

// To the window: the page with the title wParam comes to the front and shows the card of the function that has the number
// lParam in fenwyn::kFunctions.
inline constexpr UINT kMsgGoTo = WM_APP + 1;

class CPage : public CDialog {
 public:
    // Model and surroundings outlive the page.
    CPage(UINT templateId, CModel& model, const Surroundings& surroundings)
        : CDialog(templateId), m_model(model), m_surroundings(surroundings) {}

    // Shows what the model holds: after the page was made, and whenever something else than the page changed the model.
    virtual void load() = 0;

    // Puts into the model what is still being typed. False: that cannot be; the person has been told, and the place has
    // the focus. The window has brought the page to the front.
    [[nodiscard]] virtual bool store() { return true; }

    // Shows or hides the page. A page that listens to keys or waits for something begins and ends that here.
    virtual void setShown(bool shown);

    // A change of the screen's scale: the controls have their new places already.
    virtual void scaleChanged() {}

    // Selects the card of a function that Fenwyn has.
    virtual void showCard(const fenwyn::Function& /*function*/) {}

    // A control that a page has and that tells it something through the window: its id and notification code.
    virtual void onControl(UINT /*id*/, UINT /*code*/) {}

    // Keys go to the window, whose Tab key walks through the page too.
    bool PreTranslateMessage(MSG& /*message*/) override { return false; }

 protected:
    [[nodiscard]] const MessageMap& messageMap() const override;

    // WM_NOTIFY from one of the page's controls.
    virtual LRESULT onNotify(const NMHDR& header);

    [[nodiscard]] HWND control(int id) const { return ::GetDlgItem(m_hWnd, id); }
    [[nodiscard]] CModel& model() const { return m_model; }
    [[nodiscard]] const Surroundings& surroundings() const { return m_surroundings; }
    void tell(const std::wstring& message) const;
    // Brings the page with that title to the front, and selects the card of that function there.
    void goTo(UINT title, const std::wstring& function) const;
    [[nodiscard]] bool ask(const std::wstring& question) const;

 private:
    LRESULT OnControl(WPARAM wParam, LPARAM lParam);
    LRESULT OnNotify(WPARAM wParam, LPARAM lParam);

    CModel& m_model;
    const Surroundings& m_surroundings;
};

// Gives every control of a dialog the text that has its number.
void setControlTexts(HWND dialog);

}  // namespace settings
