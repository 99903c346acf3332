// The security of the named objects that the programs of a session share.
#pragma once

#include <windows.h>

#include <array>

namespace common {

// For CreateMutex, CreateEvent and CreateFileMapping with a name: only the user and the system may open the object,
// whatever the default of the process is. Without a label of its own, an object may not be changed by programs of lower
// integrity. Any thread.
class OnlyForTheUser {
 public:
    OnlyForTheUser() noexcept;
    OnlyForTheUser(const OnlyForTheUser&) = delete;
    OnlyForTheUser& operator=(const OnlyForTheUser&) = delete;

    // Null, which means the default, if the system does not tell who the user is. Valid as long as this object.
    [[nodiscard]] SECURITY_ATTRIBUTES* get() noexcept {
        return m_attributes.lpSecurityDescriptor ? &m_attributes : nullptr;
    }

 private:
    [[nodiscard]] bool _fill() noexcept;

    static constexpr DWORD kListBytes = sizeof(ACL) + 2 * (sizeof(ACCESS_ALLOWED_ACE) + SECURITY_MAX_SID_SIZE);

    alignas(ACL) std::array<BYTE, kListBytes> m_list{};
    SECURITY_DESCRIPTOR m_descriptor{};
    SECURITY_ATTRIBUTES m_attributes{sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

}  // namespace common
