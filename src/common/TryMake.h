// Making objects where the lack of memory has a status of its own instead of an exception.
#pragma once

#include <memory>
#include <new>
#include <utility>

namespace common {

// Null when there is no memory, neither for the object itself nor for what its constructor needs.
template <typename Type, typename... Arguments>
[[nodiscard]] std::unique_ptr<Type> tryMake(Arguments&&... arguments) {
    try {
        return std::make_unique<Type>(std::forward<Arguments>(arguments)...);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

}  // namespace common
