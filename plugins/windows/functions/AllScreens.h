// The brightness of the built-in screen and of the external ones that may be changed, as that of one screen.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "system/Backlight.h"
#include "system/ExternalScreens.h"
#include "system/Worker.h"

namespace win {

// A screen that failed is left alone for some time: it may keep each call waiting until the patience ends. After the
// machine's sleep it is asked again, because cables and screens are often changed then; and again and again for a
// moment, while it may still be waking. Any thread.
class CPatientScreens {
 public:
    static constexpr ULONGLONG kPauseMs = 600000;
    static constexpr ULONGLONG kWakingMs = 15000;

    CPatientScreens(std::shared_ptr<IExternalScreens> pScreens, std::function<WakeTime()> time);

    // Of the first that answers.
    [[nodiscard]] std::optional<BYTE> read();
    // Of all of them.
    void set(BYTE nPercent);

 private:
    // The time; notes whether the machine has slept since the last look.
    [[nodiscard]] WakeTime _look();
    [[nodiscard]] bool _mayAsk(const std::wstring& path, const WakeTime& now) const;
    void _noteFailure(const std::wstring& path);

    const std::shared_ptr<IExternalScreens> m_pScreens;
    const std::function<WakeTime()> m_time;
    SRWLOCK m_lock = SRWLOCK_INIT;
    std::map<std::wstring, WakeTime> m_failures;
    ULONGLONG m_ullAsleep;  // in total, when last looked at
    std::optional<ULONGLONG> m_woken;
};

// With a built-in screen its brightness counts, and the others follow on a thread of their own, so that a slow one does
// not hold it up. Without one the first external screen counts.
class CAllScreens final : public IBacklight {
 public:
    CAllScreens(std::shared_ptr<IBacklight> pBuiltIn, std::shared_ptr<IExternalScreens> pExternal,
                std::function<WakeTime()> time = &wakeTime);

    [[nodiscard]] std::optional<Backlight> read() override;
    void set(BYTE nPercent) override;

 private:
    const std::shared_ptr<IBacklight> m_pBuiltIn;
    const std::shared_ptr<CPatientScreens> m_pExternal;
    const std::shared_ptr<std::atomic<BYTE>> m_pWanted = std::make_shared<std::atomic<BYTE>>();  // of the external ones
    CWorker m_follower;
    bool m_bBuiltIn = false;
};

}  // namespace win
