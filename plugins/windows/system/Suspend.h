// Sending the machine to sleep.
#pragma once

#include <memory>
#include <optional>

namespace win {

// The capabilities of the machine, as the system reports them.
struct SleepAbilities {
    bool bStandby = false;          // one of the sleeping states S1 to S3
    bool bModernStandby = false;    // sleeps by itself while the display is off
    bool bHibernation = false;      // the state S4
    bool bHibernationFile = false;  // required for S4
};

// Any thread. The calls that send the machine to sleep return after it has woken up.
class ISuspend {
 public:
    virtual ~ISuspend() = default;

    [[nodiscard]] virtual std::optional<SleepAbilities> abilities() = 0;
    virtual void sleep() = 0;
    virtual void hibernate() = 0;
    // Switches off the display; a machine with modern standby sleeps then.
    virtual void displayOff() = 0;
};

// Shared, because a pending call outlives the function that made it.
[[nodiscard]] std::shared_ptr<ISuspend> makeWindowsSuspend();

}  // namespace win
