#include "system/BluetoothRadio.h"
#include "system/Radios.h"
#include "system/WlanRadio.h"

namespace win {

namespace {

class CWindowsRadios final : public IRadios {
 public:
    std::vector<Radio> radios() override {
        std::vector<Radio> found;
        for (const std::optional<Radio>& radio : {wlanRadio(), bluetoothRadio()}) {
            if (radio) {
                found.push_back(*radio);
            }
        }
        return found;
    }

    void set(RadioKind kind, bool bOn) override {
        if (kind == RadioKind::Wlan) {
            setWlanRadio(bOn);
        } else {
            setBluetoothRadio(bOn);
        }
    }
};

}  // namespace

std::shared_ptr<IRadios> makeWindowsRadios() {
    return std::make_shared<CWindowsRadios>();
}

}  // namespace win
