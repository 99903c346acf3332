// The application as its windows need it, without a start-up: GDI+, the real pictures, the default settings, the card
// strip (without cards) and the hover strip. One at a time, on the thread with the windows.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "Data/ZelConfig.h"
#include "Logic/Placement.h"

class CBlackCard;
class CZelMainDlg;

namespace support {

class AppRoom {
 public:
    // Stops the test if something is missing.
    explicit AppRoom(double ratio = 1.0);
    ~AppRoom();
    AppRoom(const AppRoom&) = delete;
    AppRoom& operator=(const AppRoom&) = delete;

    // The settings that the program sees; reset to the defaults by the next object.
    [[nodiscard]] QrdConfig& config() const;
    [[nodiscard]] CZelMainDlg& strip() const;
    [[nodiscard]] HWND stripWindow() const;
    [[nodiscard]] HWND hoverWindow() const;
    // A card of the strip, which owns it; its function is not loaded yet.
    CBlackCard& addCard();
    // The place of the cards: on the primary screen, with the test's ratio and edge.
    [[nodiscard]] const Placement& placement() const;
    void setRatio(double ratio);
    // Setting and placement, as after the layout that follows a change of the setting.
    void setBottom(bool bottom);
    void setMouseOperating(bool operating);

    // From now on, loading pictures fails.
    void withoutPictures();

    [[nodiscard]] static std::wstring artPath();
};

// Handles all pending messages.
void pump();
// Handles messages until the condition holds; false at the deadline.
[[nodiscard]] bool pumpUntil(const std::function<bool()>& condition, DWORD milliseconds = 5000);

// Windows of this thread, including hidden ones, except those that the system creates for itself.
[[nodiscard]] std::size_t threadWindows();

[[nodiscard]] RECT windowRect(HWND window);

// A window of another process: that of the desktop.
[[nodiscard]] HWND foreignWindow();

}  // namespace support
