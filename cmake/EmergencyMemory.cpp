// The C++ runtime that is linked into each library takes 72 KB when the library is loaded, to throw exceptions from when
// there is no other memory, and does not give it back: without this, every plug-in that is unloaded would leave it.
namespace __gnu_cxx {

// The runtime's own function, for programs that look for leaks; declared in none of its headers.
void __freeres();  // NOLINT(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)

}  // namespace __gnu_cxx

namespace {

// Runs after the destructors of all static objects.
[[gnu::destructor]] void freeEmergencyMemory() {
    __gnu_cxx::__freeres();
}

}  // namespace
