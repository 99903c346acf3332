// An object of the whole process that other threads may use until the very end, in static memory.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace common {

// Meant for static variables inside functions, which are constructed at their first use.
template <typename Type>
class NeverDestroyed {
 public:
    template <typename... Arguments>
    explicit NeverDestroyed(Arguments&&... arguments) {
        ::new (m_place) Type(std::forward<Arguments>(arguments)...);
    }
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;

    [[nodiscard]] Type& get() noexcept { return *std::launder(reinterpret_cast<Type*>(m_place)); }

 private:
    alignas(Type) std::byte m_place[sizeof(Type)];
};

}  // namespace common
