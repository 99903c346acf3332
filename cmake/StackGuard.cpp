// What code compiled with a stack protector needs: the canary, and what happens when it is damaged. The compiler's own
// version opens a cryptographic provider in every program and library that starts, which costs several milliseconds for
// each plug-in; this one asks for eight bytes.
#include <windows.h>
// After windows.h, whose types it uses.
#include <ntsecapi.h>

#include <cstdint>

// The names are the compiler's.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" {

extern std::uintptr_t __stack_chk_guard;
// A text that runs over its buffer cannot write a zero, so one byte is zero even if there is no random number.
std::uintptr_t __stack_chk_guard = static_cast<std::uintptr_t>(0xFF0A0D00);

[[noreturn]] void __stack_chk_fail() {
    __builtin_trap();  // an exception for whoever handles those of the process; the caller cannot be returned to
}

}  // extern "C"

namespace {

// Runs with the other constructors of the program or library, in the thread that loads it. No protected function is
// active then, which would find the canary changed when it is left.
[[gnu::constructor, gnu::no_stack_protector]] void fillCanary() noexcept {
    std::uintptr_t random = 0;
    if (::RtlGenRandom(&random, sizeof(random)) != FALSE) {
        constexpr std::uintptr_t kZeroByte = 0xFF;
        __stack_chk_guard = random & ~kZeroByte;
    }
}

}  // namespace
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
