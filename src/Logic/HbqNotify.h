// The button utility's notification that customised keys have changed.
#pragma once

#include <windows.h>

inline constexpr wchar_t kHbqNotifyName[] = L"KESTOVA_HBQ_NOTIFY_5B0C7D2A-3E41-4F8B-9A16-2C7E0D94B1F3";

// The registered message's number; registered at the first call, the same in every process of the session.
[[nodiscard]] inline UINT hbqNotifyMessage() noexcept {
    static const UINT message = ::RegisterWindowMessageW(kHbqNotifyName);
    return message;
}
