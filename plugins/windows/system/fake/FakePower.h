// Lock and sleep for tests: requests are counted.
#pragma once

#include <windows.h>

#include <atomic>
#include <memory>

#include "system/Lock.h"
#include "system/Suspend.h"

namespace win {

struct LockState {
    bool bForbidden = false;
    bool bRefuses = false;
    int nLocks = 0;
};

class CFakeLock final : public ILock {
 public:
    explicit CFakeLock(std::shared_ptr<LockState> pState) : m_pState(std::move(pState)) {}

    bool forbidden() override { return m_pState->bForbidden; }
    bool lock() override {
        m_pState->nLocks += m_pState->bRefuses ? 0 : 1;
        return !m_pState->bRefuses;
    }

 private:
    std::shared_ptr<LockState> m_pState;
};

class CFakeSuspend final : public ISuspend {
 public:
    std::optional<SleepAbilities> abilities() override { return able; }
    void sleep() override { _fallAsleep(nSleeps); }
    void hibernate() override { _fallAsleep(nHibernations); }
    void displayOff() override { _fallAsleep(nDisplaysOff); }

    // Set before the function under test gets it; the counters are written by its worker.
    std::optional<SleepAbilities> able = SleepAbilities{};
    HANDLE hWakeUp = nullptr;  // if set: the calls return when it is signalled
    std::atomic<int> nSleeps = 0;
    std::atomic<int> nHibernations = 0;
    std::atomic<int> nDisplaysOff = 0;

 private:
    void _fallAsleep(std::atomic<int>& rCount) {
        ++rCount;
        if (hWakeUp != nullptr) {
            ::WaitForSingleObject(hWakeUp, 10000);
        }
    }
};

}  // namespace win
