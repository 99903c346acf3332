#include "keyboard/OwnModule.h"

namespace keyboard {

HMODULE ownModule() noexcept {
    HMODULE hModule = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                         reinterpret_cast<LPCWSTR>(&ownModule), &hModule);
    return hModule;
}

}  // namespace keyboard
