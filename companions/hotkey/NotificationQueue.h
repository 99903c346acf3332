// Passes makes and breaks from the hook's thread to the delivery thread.
#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <optional>

#include "KeyTracker.h"
#include "common/Handle.h"

namespace hotkey {

struct Notification {
    DWORD code = 0;
    bool isBreak = false;

    friend bool operator==(const Notification&, const Notification&) = default;
};

// A ring buffer of fixed size: the hook's thread neither allocates nor waits for a slow callback. Thread-safe for one
// writing and one reading thread.
class CNotificationQueue : public INotificationSink {
 public:
    static constexpr std::size_t kCapacity = 1024;

    CNotificationQueue() noexcept;

    // False (nothing stored) unless there is space for this make, its break and the breaks of all makes before it.
    [[nodiscard]] bool make(DWORD code) noexcept override;
    [[nodiscard]] bool promiseBreak() noexcept override;
    void breakOf(DWORD code) noexcept override;
    void latchChanged(bool bLatched) noexcept override;
    void hookRenewed(DWORD why) noexcept override;

    [[nodiscard]] std::optional<Notification> pop() noexcept;
    // The current state of the latch, if it was not requested before.
    [[nodiscard]] std::optional<bool> takeLatchChange() noexcept;

    // Why the hook was installed anew the last time, when that was not asked before.
    [[nodiscard]] std::optional<DWORD> takeHookNews() noexcept;

    // Auto-reset event: something was stored. Null if the system refused it.
    [[nodiscard]] HANDLE filledEvent() const noexcept { return m_hFilled.get(); }

 private:
    void _store(const Notification& notification) noexcept;

    SRWLOCK m_lock = SRWLOCK_INIT;
    common::UniqueHandle m_hFilled;
    std::array<Notification, kCapacity> m_ring{};
    std::size_t m_nFirst = 0;
    std::size_t m_nCount = 0;
    std::size_t m_nOpen = 0;  // breaks that are due and have not been stored yet
    bool m_bLatched = false;
    bool m_bLatchNews = false;
    std::optional<DWORD> m_hookNews;
};

}  // namespace hotkey
