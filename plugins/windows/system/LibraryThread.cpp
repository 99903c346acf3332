#include "system/LibraryThread.h"

#include <memory>
#include <utility>

namespace win {

namespace {

struct Start {
    std::function<void()> body;
    common::UniqueModule hModule;
};

DWORD WINAPI threadProcedure(void* pArgument) noexcept {
    HMODULE hModule = nullptr;
    {
        const std::unique_ptr<Start> pStart(static_cast<Start*>(pArgument));
        try {
            pStart->body();
        } catch (...) {
            // Memory has run out, and there is nobody here who could be told.
        }
        hModule = pStart->hModule.release();
    }
    // Nothing of this library may run after its last reference is gone, not even the end of this function.
    ::FreeLibraryAndExitThread(hModule, 0);
}

}  // namespace

common::UniqueHandle startLibraryThread(std::function<void()> body) {
    auto pStart = std::make_unique<Start>();
    pStart->body = std::move(body);
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         reinterpret_cast<const wchar_t*>(reinterpret_cast<void*>(&threadProcedure)),
                         pStart->hModule.put());
    common::UniqueHandle hThread(::CreateThread(nullptr, 0, &threadProcedure, pStart.get(), 0, nullptr));
    if (hThread) {
        static_cast<void>(pStart.release());  // the thread's now
    }
    return hThread;
}

}  // namespace win
