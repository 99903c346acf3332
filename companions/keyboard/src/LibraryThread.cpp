#include "keyboard/LibraryThread.h"

#include <memory>
#include <utility>

namespace keyboard {
namespace {

struct StartBlock {
    std::function<void()> body;
    common::UniqueModule self;
};

DWORD WINAPI threadMain(void* parameter) noexcept {
    HMODULE hSelf = nullptr;
    {
        // Everything with a destructor ends before the last step, which never returns.
        const std::unique_ptr<StartBlock> block(static_cast<StartBlock*>(parameter));
        try {
            block->body();
        } catch (...) {
            // There is nobody to report the failure to.
        }
        block->body = nullptr;
        hSelf = block->self.release();
    }
    ::FreeLibraryAndExitThread(hSelf, 0);
}

}  // namespace

HRESULT CLibraryThread::start(std::function<void()> body) {
    if (m_hThread) {
        return E_UNEXPECTED;
    }
    auto block = std::make_unique<StartBlock>();
    block->body = std::move(body);
    if (!::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCWSTR>(&threadMain),
                              block->self.put())) {
        return HRESULT_FROM_WIN32(::GetLastError());
    }
    m_hThread.reset(::CreateThread(nullptr, 0, &threadMain, block.get(), 0, &m_nId));
    if (!m_hThread) {
        m_nId = 0;
        return HRESULT_FROM_WIN32(::GetLastError());
    }
    block.release();  // belongs to the thread now
    return S_OK;
}

bool CLibraryThread::wait(DWORD milliseconds) const noexcept {
    return !m_hThread || ::WaitForSingleObject(m_hThread.get(), milliseconds) == WAIT_OBJECT_0;
}

}  // namespace keyboard
