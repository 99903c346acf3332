#include "system/Worker.h"

#include <atomic>
#include <utility>

#include "system/LibraryThread.h"

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
    if (m_hThread) {
        ::SetEvent(m_pShared->hWake.get());
        ::WaitForSingleObject(m_hThread.get(), kEndWaitMs);
    }
}

bool CWorker::wake() {
    if (!m_hThread && m_pShared->hWake) {
        m_hThread = startLibraryThread([pShared = m_pShared] { pShared->run(); });
    }
    return m_hThread && ::SetEvent(m_pShared->hWake.get()) != FALSE;
}

}  // namespace win
