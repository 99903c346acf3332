#include "system/Audio.h"

#include <windows.h>

#include <endpointvolume.h>
#include <mmdeviceapi.h>

#include "system/Com.h"

namespace win {

namespace {

// Defined here by value, so that no library of constants must be linked.
constexpr CLSID kDeviceEnumerator = {0xBCDE0395, 0xE52F, 0x467C, {0x8E, 0x3D, 0xC4, 0x57, 0x92, 0x91, 0x69, 0x2E}};
constexpr IID kIidDeviceEnumerator = {0xA95664D2, 0x9614, 0x4F35, {0xA7, 0x46, 0xDE, 0x8D, 0xB6, 0x36, 0x17, 0xE6}};
constexpr IID kIidEndpointVolume = {0x5CDF2C82, 0x841E, 0x4546, {0x97, 0x22, 0x0C, 0xF7, 0x40, 0x78, 0x22, 0x9A}};

// The volume of the current default endpoint; empty if there is none.
CComRef<IAudioEndpointVolume> defaultVolume() {
    CComRef<IMMDeviceEnumerator> enumerator;
    CComRef<IMMDevice> device;
    CComRef<IAudioEndpointVolume> volume;
    if (SUCCEEDED(
            ::CoCreateInstance(kDeviceEnumerator, nullptr, CLSCTX_ALL, kIidDeviceEnumerator, enumerator.putVoid())) &&
        SUCCEEDED(enumerator->GetDefaultAudioEndpoint(eRender, eConsole, device.put()))) {
        device->Activate(kIidEndpointVolume, CLSCTX_ALL, nullptr, volume.putVoid());
    }
    return volume;
}

class CWindowsAudio final : public IAudio {
 public:
    std::optional<bool> muted() override {
        const CComScope com(COINIT_APARTMENTTHREADED);
        const CComRef<IAudioEndpointVolume> volume = defaultVolume();
        BOOL bMuted = FALSE;
        if (!volume || FAILED(volume->GetMute(&bMuted))) {
            return std::nullopt;
        }
        return bMuted != FALSE;
    }

    bool setMuted(bool bMuted) override {
        const CComScope com(COINIT_APARTMENTTHREADED);
        const CComRef<IAudioEndpointVolume> volume = defaultVolume();
        // S_FALSE: no change.
        return volume && SUCCEEDED(volume->SetMute(bMuted ? TRUE : FALSE, nullptr));
    }
};

}  // namespace

std::unique_ptr<IAudio> makeWindowsAudio() {
    return std::make_unique<CWindowsAudio>();
}

}  // namespace win
