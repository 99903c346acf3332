#include "common/ObjectSecurity.h"

#include "common/Handle.h"

namespace common {

OnlyForTheUser::OnlyForTheUser() noexcept {
    if (_fill()) {
        m_attributes.lpSecurityDescriptor = &m_descriptor;
    }
}

bool OnlyForTheUser::_fill() noexcept {
    UniqueHandle token;
    alignas(TOKEN_USER) std::array<BYTE, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
    alignas(SID) std::array<BYTE, SECURITY_MAX_SID_SIZE> system{};
    DWORD dwUser = 0;
    auto dwSystem = static_cast<DWORD>(system.size());
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, token.put()) ||
        !::GetTokenInformation(token.get(), TokenUser, user.data(), static_cast<DWORD>(user.size()), &dwUser) ||
        !::CreateWellKnownSid(WinLocalSystemSid, nullptr, system.data(), &dwSystem)) {
        return false;
    }
    auto* const pList = reinterpret_cast<ACL*>(m_list.data());
    PSID pUser = reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid;
    return ::InitializeAcl(pList, kListBytes, ACL_REVISION) &&
           ::AddAccessAllowedAce(pList, ACL_REVISION, GENERIC_ALL, system.data()) &&
           ::AddAccessAllowedAce(pList, ACL_REVISION, GENERIC_ALL, pUser) &&
           ::InitializeSecurityDescriptor(&m_descriptor, SECURITY_DESCRIPTOR_REVISION) &&
           ::SetSecurityDescriptorDacl(&m_descriptor, TRUE, pList, FALSE) &&
           ::SetSecurityDescriptorControl(&m_descriptor, SE_DACL_PROTECTED, SE_DACL_PROTECTED);
}

}  // namespace common
