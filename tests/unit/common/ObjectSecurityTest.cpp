#include "common/ObjectSecurity.h"

#include <aclapi.h>
#include <gtest/gtest.h>
#include <sddl.h>

#include <array>
#include <set>
#include <string>

#include "common/Handle.h"

namespace {

// "type;rights;who" of each entry of an object's list.
std::set<std::wstring> entriesOf(HANDLE hObject) {
    PACL pList = nullptr;
    PSECURITY_DESCRIPTOR pDescriptor = nullptr;
    EXPECT_EQ(::GetSecurityInfo(hObject, SE_KERNEL_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &pList, nullptr,
                                &pDescriptor),
              DWORD{ERROR_SUCCESS});
    std::set<std::wstring> entries;
    for (DWORD i = 0; pList != nullptr && i < pList->AceCount; ++i) {
        ACCESS_ALLOWED_ACE* pEntry = nullptr;
        EXPECT_TRUE(::GetAce(pList, i, reinterpret_cast<void**>(&pEntry)));
        wchar_t* pszSid = nullptr;
        EXPECT_TRUE(::ConvertSidToStringSidW(&pEntry->SidStart, &pszSid));
        entries.insert(std::to_wstring(pEntry->Header.AceType) + L";" + pszSid);
        ::LocalFree(pszSid);
    }
    ::LocalFree(pDescriptor);
    return entries;
}

std::wstring userSid() {
    common::UniqueHandle token;
    EXPECT_TRUE(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, token.put()));
    alignas(TOKEN_USER) std::array<BYTE, 256> user{};
    DWORD dwBytes = 0;
    EXPECT_TRUE(::GetTokenInformation(token.get(), TokenUser, user.data(), static_cast<DWORD>(user.size()), &dwBytes));
    wchar_t* pszSid = nullptr;
    EXPECT_TRUE(::ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid, &pszSid));
    std::wstring sid = pszSid;
    ::LocalFree(pszSid);
    return sid;
}

constexpr wchar_t kAllowed[] = L"0;";
constexpr wchar_t kSystem[] = L"S-1-5-18";

TEST(ObjectSecurity, UserAndSystemAndNobodyElse) {
    const common::UniqueHandle mutex(::CreateMutexW(common::OnlyForTheUser().get(), FALSE, L"FenwynTestsSecurity"));
    ASSERT_TRUE(mutex);
    EXPECT_EQ(entriesOf(mutex.get()), (std::set<std::wstring>{kAllowed + userSid(), std::wstring(kAllowed) + kSystem}));
    const common::UniqueHandle again(::OpenMutexW(MUTEX_ALL_ACCESS, FALSE, L"FenwynTestsSecurity"));
    EXPECT_TRUE(again) << "the user's own programs open it";
}

TEST(ObjectSecurity, IsNotInherited) {
    common::OnlyForTheUser security;
    ASSERT_NE(security.get(), nullptr);
    EXPECT_FALSE(security.get()->bInheritHandle);
}

}  // namespace
