// Creates objects where out of memory has its own status instead of an exception.
#pragma once

#include <memory>
#include <new>
#include <utility>

namespace common {

// Null if there is no memory, either for the object itself or for what its constructor needs.
template <typename Type, typename... Arguments>
[[nodiscard]] std::unique_ptr<Type> tryMake(Arguments&&... arguments) {
    try {
        return std::make_unique<Type>(std::forward<Arguments>(arguments)...);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace common
