#include <windows.h>

#include <algorithm>
#include <array>
#include <vector>

#include "system/Touchpad.h"

namespace win {

namespace {

// Where the system stores the state that its own settings page shows.
constexpr wchar_t kStatusKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\PrecisionTouchPad\\Status";
constexpr wchar_t kStatusValue[] = L"Enabled";

// The usages of a precision touchpad: a digitiser that is a touch pad. Others appear as mice.
constexpr USHORT kDigitizerPage = 0x0D;
constexpr USHORT kTouchPadUsage = 0x05;

std::vector<RAWINPUTDEVICELIST> inputDevices() {
    UINT uCount = 0;
    ::GetRawInputDeviceList(nullptr, &uCount, sizeof(RAWINPUTDEVICELIST));
    std::vector<RAWINPUTDEVICELIST> devices(uCount);
    const UINT uRead = ::GetRawInputDeviceList(devices.data(), &uCount, sizeof(RAWINPUTDEVICELIST));
    devices.resize(uRead == static_cast<UINT>(-1) ? 0 : uRead);
    return devices;
}

bool isTouchpad(const RAWINPUTDEVICELIST& rDevice) {
    RID_DEVICE_INFO info{};
    info.cbSize = sizeof(info);
    UINT uBytes = sizeof(info);
    const UINT uResult = ::GetRawInputDeviceInfoW(rDevice.hDevice, RIDI_DEVICEINFO, &info, &uBytes);
    return uResult != 0 && uResult != static_cast<UINT>(-1) && info.dwType == RIM_TYPEHID &&
           info.hid.usUsagePage == kDigitizerPage && info.hid.usUsage == kTouchPadUsage;
}

INPUT keyEvent(WORD wVirtualKey, bool bUp) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = wVirtualKey;
    input.ki.dwFlags = (wVirtualKey == VK_LWIN ? KEYEVENTF_EXTENDEDKEY : 0U) | (bUp ? KEYEVENTF_KEYUP : 0U);
    return input;
}

class CWindowsTouchpad final : public ITouchpad {
 public:
    bool present() override {
        const std::vector<RAWINPUTDEVICELIST> devices = inputDevices();
        return std::any_of(devices.begin(), devices.end(), &isTouchpad);
    }

    std::optional<bool> enabled() override {
        DWORD dwEnabled = 0;
        DWORD dwBytes = sizeof(dwEnabled);
        if (::RegGetValueW(HKEY_CURRENT_USER, kStatusKey, kStatusValue, RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr,
                           &dwEnabled, &dwBytes) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        return dwEnabled != 0;
    }

    // Ctrl+Win+F24, the key that touchpads' own switches send.
    void toggle() override {
        std::array<INPUT, 6> keys{keyEvent(VK_CONTROL, false), keyEvent(VK_LWIN, false), keyEvent(VK_F24, false),
                                  keyEvent(VK_F24, true),      keyEvent(VK_LWIN, true),  keyEvent(VK_CONTROL, true)};
        ::SendInput(static_cast<UINT>(keys.size()), keys.data(), sizeof(INPUT));
    }
};

}  // namespace

std::shared_ptr<ITouchpad> makeWindowsTouchpad() {
    return std::make_shared<CWindowsTouchpad>();
}

}  // namespace win
