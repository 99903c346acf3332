// The radios of the machine.
#pragma once

#include <memory>
#include <vector>

namespace win {

// In the order of the wireless function's states for them.
enum class RadioKind { Wlan = 0, Bluetooth = 1 };

struct Radio {
    RadioKind kind;
    bool bOn;
    bool bSwitchable;  // false: a hardware switch, or a policy, keeps it off
};

// One thread; answers come from services and may take long.
class IRadios {
 public:
    virtual ~IRadios() = default;

    // One entry for each kind that the machine has.
    [[nodiscard]] virtual std::vector<Radio> radios() = 0;
    // All radios of that kind.
    virtual void set(RadioKind kind, bool bOn) = 0;
};

// Only radio states: networks are neither searched for nor read.
[[nodiscard]] std::shared_ptr<IRadios> makeWindowsRadios();

}  // namespace win
