// One thread for calls that may take noticeably long.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>

#include "keyboard/LibraryThread.h"

namespace win {

// Runs its turn on a thread of its own, once for each wake(); several wakes during a turn count as one. The thread
// starts with the first wake. A turn that hangs in the system keeps the library mapped, however early the library's
// user releases it.
class CWorker {
 public:
    // `turn` may outlive this object: it owns what it uses.
    explicit CWorker(std::function<void()> turn);
    // Ends the thread after the current turn. Waits for it, but never longer than kEndWaitMs.
    ~CWorker();
    CWorker(const CWorker&) = delete;
    CWorker& operator=(const CWorker&) = delete;

    // False: there is no thread, and none can be created.
    bool wake();

    // Users notice more; the thread needs nobody to wait for it.
    static constexpr DWORD kEndWaitMs = 25;

 private:
    struct Shared;

    std::shared_ptr<Shared> m_pShared;
    keyboard::CLibraryThread m_thread;
    bool m_bStarted = false;
};

}  // namespace win
