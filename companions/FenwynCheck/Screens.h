// The screens of the machine, which of them Fenwyn may make brighter or darker, and their brightness by the cable that
// connects them.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace machine {

struct ActiveScreen {
    std::wstring path;  // of its device; stays the same for the same screen at the same connector
    std::wstring name;
};

// In the system's own units.
struct BrightnessRange {
    DWORD least = 0;
    DWORD now = 0;
    DWORD most = 0;
};

// One thread. Each call may take seconds, or never return.
class IScreenControl {
 public:
    virtual ~IScreenControl() = default;

    [[nodiscard]] virtual std::vector<ActiveScreen> screens() = 0;
    // Nothing: the screen is not there, or refuses, or the system has no way to it.
    [[nodiscard]] virtual std::optional<BrightnessRange> brightness(const std::wstring& path) = 0;
    [[nodiscard]] virtual bool setBrightness(const std::wstring& path, DWORD value) = 0;
};

[[nodiscard]] std::unique_ptr<IScreenControl> makeScreenControl();

// A range without width, or one that is upside down, has no percentages.
[[nodiscard]] std::optional<DWORD> percentageOf(const BrightnessRange& range);
[[nodiscard]] DWORD valueAt(DWORD percentage, const BrightnessRange& range);

// What the process that the brightness plug-in starts does; its exit code (companions/include/ScreenBrightness.h).
[[nodiscard]] DWORD screenBrightness(IScreenControl& control, const std::wstring& path,
                                     std::optional<DWORD> percentage);
// Ends this process after some time (ms), whatever its other threads wait for.
void limitOwnLife(DWORD milliseconds);

// The owner's permission for a screen.
[[nodiscard]] bool screenAllowed(const std::wstring& path);

// "1  Desk screen  allowed\n   \\?\DISPLAY#..."; changes nothing and asks no screen.
using Tell = std::function<void(const std::wstring& text)>;
[[nodiscard]] int listScreens(IScreenControl& control, const Tell& tell);
// `screen`: a number of the list, or a path. An exit code.
[[nodiscard]] int allowScreen(IScreenControl& control, const std::wstring& screen, bool allowed, const Tell& tell);

}  // namespace machine
