// Locking the session.
#pragma once

#include <memory>

namespace win {

class ILock {
 public:
    virtual ~ILock() = default;

    // Whether a policy for this user or this machine keeps it from being locked.
    [[nodiscard]] virtual bool forbidden() = 0;
    // Asks for the lock; it comes a moment later. False: the system refused.
    [[nodiscard]] virtual bool lock() = 0;
};

[[nodiscard]] std::unique_ptr<ILock> makeWindowsLock();

}  // namespace win
