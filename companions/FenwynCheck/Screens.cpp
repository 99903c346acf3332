#include "Screens.h"

#include <algorithm>
#include <cwchar>
#include <thread>

#include "Inspection.h"
#include "Outside.h"
#include "ScreenBrightness.h"
#include "common/Handle.h"

namespace machine {

namespace {

constexpr DWORD kPercent = 100;

// By number, as listed, or by path.
std::optional<std::wstring> pathOf(const std::vector<ActiveScreen>& screens, const std::wstring& screen) {
    wchar_t* end = nullptr;
    const unsigned long number = std::wcstoul(screen.c_str(), &end, 10);
    if (*end == L'\0') {
        return number >= 1 && number <= screens.size() ? std::optional(screens[number - 1].path) : std::nullopt;
    }
    const auto found = std::ranges::find(screens, screen, &ActiveScreen::path);
    return found != screens.end() ? std::optional(found->path) : std::nullopt;
}

LSTATUS storePermission(const std::wstring& path, bool allowed) {
    if (!allowed) {
        const LSTATUS error = RegDeleteKeyValueW(HKEY_CURRENT_USER, FENWYN_REG_ALLOWED_SCREENS, path.c_str());
        return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
    }
    constexpr DWORD kAllowed = 1;
    return RegSetKeyValueW(HKEY_CURRENT_USER, FENWYN_REG_ALLOWED_SCREENS, path.c_str(), REG_DWORD, &kAllowed,
                           sizeof kAllowed);
}

}  // namespace

std::optional<DWORD> percentageOf(const BrightnessRange& range) {
    if (range.most <= range.least) {
        return std::nullopt;
    }
    const DWORD now = std::clamp(range.now, range.least, range.most);
    const auto width = static_cast<int>(range.most - range.least);
    return static_cast<DWORD>(MulDiv(static_cast<int>(now - range.least), kPercent, width));
}

DWORD valueAt(DWORD percentage, const BrightnessRange& range) {
    const auto width = static_cast<int>(range.most - range.least);
    return range.least + static_cast<DWORD>(MulDiv(static_cast<int>(percentage), width, kPercent));
}

DWORD screenBrightness(IScreenControl& control, const std::wstring& path, std::optional<DWORD> percentage) {
    if (!screenAllowed(path)) {
        return fenwyn::kScreenNotAllowed;
    }
    const std::vector<ActiveScreen> screens = control.screens();
    if (std::ranges::count(screens, path, &ActiveScreen::path) != 1) {
        return fenwyn::kScreenNotThere;
    }
    const std::optional<BrightnessRange> range = control.brightness(path);
    const std::optional<DWORD> now = range ? percentageOf(*range) : std::nullopt;
    if (!now) {
        return fenwyn::kScreenRefuses;
    }
    if (!percentage) {
        return *now;
    }
    return control.setBrightness(path, valueAt(*percentage, *range)) ? 0 : fenwyn::kScreenRefuses;
}

void limitOwnLife(DWORD milliseconds) {
    std::thread([milliseconds] {
        Sleep(milliseconds);
        TerminateProcess(GetCurrentProcess(), fenwyn::kScreenTookTooLong);
    }).detach();
}

bool screenAllowed(const std::wstring& path) {
    DWORD allowed = 0;
    DWORD size = sizeof allowed;
    return RegGetValueW(HKEY_CURRENT_USER, FENWYN_REG_ALLOWED_SCREENS, path.c_str(), RRF_RT_REG_DWORD | RRF_NOEXPAND,
                        nullptr, &allowed, &size) == ERROR_SUCCESS &&
           allowed != 0;
}

int listScreens(IScreenControl& control, const Tell& tell) {
    const std::vector<ActiveScreen> screens = control.screens();
    for (std::size_t i = 0; i < screens.size(); ++i) {
        tell(std::to_wstring(i + 1) + L"  " + screens[i].name + (screenAllowed(screens[i].path) ? L"  allowed" : L"") +
             L"\n   " + screens[i].path + L"\n");
    }
    return screens.empty() ? kNothingToDo : kWell;
}

int allowScreen(IScreenControl& control, const std::wstring& screen, bool allowed, const Tell& tell) {
    std::optional<std::wstring> path = pathOf(control.screens(), screen);
    if (!path && !allowed && screenAllowed(screen)) {
        path = screen;  // one that is not connected now
    }
    if (!path) {
        tell(L"There is no such screen; --screens lists them.\n");
        return kNothingToDo;
    }
    if (storePermission(*path, allowed) != ERROR_SUCCESS) {
        tell(L"The permission could not be stored.\n");
        return kNotWritten;
    }
    forgetOffer(L"WinBrightness");  // it may be offered by this screen alone
    tell(*path + (allowed ? L"\nFenwyn changes its brightness, from its next start on.\n"
                          : L"\nFenwyn leaves its brightness alone.\n"));
    return kWell;
}

}  // namespace machine
