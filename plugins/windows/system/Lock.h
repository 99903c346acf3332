// Locking the session.
#pragma once

#include <memory>

namespace win {

class ILock {
 public:
    virtual ~ILock() = default;

    // Whether a policy for this user or this machine prevents locking.
    [[nodiscard]] virtual bool forbidden() = 0;
    // Requests the lock, which comes a moment later. False: the system refused.
    [[nodiscard]] virtual bool lock() = 0;
};

[[nodiscard]] std::unique_ptr<ILock> makeWindowsLock();

}  // namespace win
