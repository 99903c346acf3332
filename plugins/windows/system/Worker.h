// One thread for what may take longer than a person notices.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>

#include "common/Handle.h"

namespace win {

// Runs its turn on a thread of its own, once for each wake(); wakes that come while a turn runs are one. The thread
// starts with the first wake. A turn that hangs in the system keeps the library mapped, however early the library's
// user gives it up.
class CWorker {
 public:
    // `turn` may outlive this object: it owns what it uses.
    explicit CWorker(std::function<void()> turn);
    // Ends the thread after the turn that runs. Waits for it, but never longer than kEndWaitMs.
    ~CWorker();
    CWorker(const CWorker&) = delete;
    CWorker& operator=(const CWorker&) = delete;

    // False: there is no thread, and none can be made.
    bool wake();

    static constexpr DWORD kEndWaitMs = 500;

 private:
    struct Shared;

    std::shared_ptr<Shared> m_pShared;
    common::UniqueHandle m_hThread;
};

}  // namespace win
