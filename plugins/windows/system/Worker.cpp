#include "system/Worker.h"

#include <atomic>
#include <utility>

namespace win {

struct CWorker::Shared {
    std::function<void()> turn;
    common::UniqueHandle hWake{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    std::atomic<bool> bEnd = false;

    void run() {
        while (::WaitForSingleObject(hWake.get(), INFINITE) == WAIT_OBJECT_0 && !bEnd) {
            try {
                turn();
            } catch (...) {
                // Out of memory: the next turn may succeed.
                continue;
            }
        }
    }
};

CWorker::CWorker(std::function<void()> turn) : m_pShared(std::make_shared<Shared>()) {
    m_pShared->turn = std::move(turn);
}

CWorker::~CWorker() {
    m_pShared->bEnd = true;
    ::SetEvent(m_pShared->hWake.get());
    static_cast<void>(m_thread.wait(kEndWaitMs));  // a hanging one ends later
}

bool CWorker::wake() {
    if (!m_bStarted && m_pShared->hWake) {
        m_bStarted = SUCCEEDED(m_thread.start([pShared = m_pShared] { pShared->run(); }));
    }
    return m_bStarted && ::SetEvent(m_pShared->hWake.get()) != FALSE;
}

}  // namespace win
