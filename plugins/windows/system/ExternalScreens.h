// The brightness of the external screens that the user lets Fenwyn change.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace win {

// One thread at a time, which may wait: each call takes as long as a screen, but not longer than the patience given.
class IExternalScreens {
 public:
    virtual ~IExternalScreens() = default;

    // Paths of their devices; also of those that are not connected.
    [[nodiscard]] virtual std::vector<std::wstring> allowed() = 0;
    // In percent. Nothing: the screen refused, or did not answer in time.
    [[nodiscard]] virtual std::optional<BYTE> read(const std::wstring& path) = 0;
    [[nodiscard]] virtual bool set(const std::wstring& path, BYTE nPercent) = 0;
};

// By a process for each call, `program` (companions/include/ScreenBrightness.h), which is ended when it does not end by
// itself in time: a call to a screen may never return, and then nothing else can end it.
inline constexpr DWORD kScreenPatienceMs = 3000;
[[nodiscard]] std::shared_ptr<IExternalScreens> makeWindowsExternalScreens(std::wstring program, DWORD dwPatienceMs);
// By the program in the folder above this library's.
[[nodiscard]] std::shared_ptr<IExternalScreens> makeWindowsExternalScreens();

// When something happened, in ms, and how long the machine had slept until then.
struct WakeTime {
    ULONGLONG ullNow = 0;
    ULONGLONG ullAsleep = 0;
};
[[nodiscard]] WakeTime wakeTime();

}  // namespace win
