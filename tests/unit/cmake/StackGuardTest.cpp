// The canary of the stack protector, and what becomes of a function that damages its frame.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>

#include "common/Handle.h"

// The name is the compiler's.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" std::uintptr_t __stack_chk_guard;

namespace {

constexpr DWORD kStopped = 42;
constexpr DWORD kWentOn = 1;

[[gnu::noinline]] void write(std::size_t uBytes) {
    char buffer[16];
    volatile char* const pBuffer = buffer;
    for (std::size_t i = 0; i < uBytes; ++i) {
        pBuffer[i] = 'x';
    }
}

LONG CALLBACK endThread(EXCEPTION_POINTERS* pPointers) {
    if (pPointers->ExceptionRecord->ExceptionCode == static_cast<DWORD>(EXCEPTION_ILLEGAL_INSTRUCTION)) {
        ::ExitThread(kStopped);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

// How a thread ends that writes that many bytes into a buffer of sixteen.
DWORD resultOfWriting(std::size_t uBytes) {
    void* const pHandler = ::AddVectoredExceptionHandler(1, &endThread);
    const common::UniqueHandle thread(::CreateThread(
        nullptr, 0,
        [](void* pBytes) -> DWORD {
            write(reinterpret_cast<std::size_t>(pBytes));
            return kWentOn;
        },
        reinterpret_cast<void*>(uBytes), 0, nullptr));
    ::WaitForSingleObject(thread.get(), INFINITE);
    ::RemoveVectoredExceptionHandler(pHandler);
    DWORD dwResult = 0;
    ::GetExitCodeThread(thread.get(), &dwResult);
    return dwResult;
}

TEST(StackGuard, AFunctionThatDamagesItsFrameIsNotLeft) {
    EXPECT_EQ(resultOfWriting(16), kWentOn);
    EXPECT_EQ(resultOfWriting(48), kStopped);
}

TEST(StackGuard, NoTextCanWriteTheCanary) {
    EXPECT_EQ(__stack_chk_guard & 0xFF, 0U);
}

TEST(StackGuard, TheCanaryIsRandom) {
    constexpr std::uintptr_t kWithoutRandomNumber = 0xFF0A0D00;
    EXPECT_NE(__stack_chk_guard, kWithoutRandomNumber);
    EXPECT_NE(__stack_chk_guard >> 8, 0U);
}

// What the compiler's own canary would load into each program and library that starts.
TEST(StackGuard, NoCryptographicProviderIsLoaded) {
    EXPECT_EQ(::GetModuleHandleW(L"rsaenh.dll"), nullptr);
}

}  // namespace
