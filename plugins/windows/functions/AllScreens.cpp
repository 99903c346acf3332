#include "functions/AllScreens.h"

#include <utility>

#include "functions/Brightness.h"
#include "keyboard/Lock.h"

namespace win {

namespace {

constexpr ULONGLONG kRealSleepMs = 1000;  // the two clocks never agree to the millisecond

// What a screen over a cable can be set to, for the card's levels.
std::vector<BYTE> everyLevel() {
    std::vector<BYTE> levels;
    for (int nPercent = 0; nPercent <= 100; nPercent += 100 / kBrightnessLevels) {
        levels.push_back(static_cast<BYTE>(nPercent));
    }
    return levels;
}

}  // namespace

CPatientScreens::CPatientScreens(std::shared_ptr<IExternalScreens> pScreens, std::function<WakeTime()> time)
    : m_pScreens(std::move(pScreens)), m_time(std::move(time)), m_ullAsleep(m_time().ullAsleep) {}

std::optional<BYTE> CPatientScreens::read() {
    const keyboard::CExclusiveLock guard(m_lock);
    const WakeTime now = _look();
    for (const std::wstring& path : m_pScreens->allowed()) {
        if (!_mayAsk(path, now)) {
            continue;
        }
        if (const std::optional<BYTE> percent = m_pScreens->read(path)) {
            m_failures.erase(path);
            return percent;
        }
        _noteFailure(path);
    }
    return std::nullopt;
}

void CPatientScreens::set(BYTE nPercent) {
    const keyboard::CExclusiveLock guard(m_lock);
    const WakeTime now = _look();
    for (const std::wstring& path : m_pScreens->allowed()) {
        if (!_mayAsk(path, now)) {
            continue;
        }
        if (m_pScreens->set(path, nPercent)) {
            m_failures.erase(path);
        } else {
            _noteFailure(path);
        }
    }
}

WakeTime CPatientScreens::_look() {
    const WakeTime now = m_time();
    if (now.ullAsleep > m_ullAsleep + kRealSleepMs) {
        m_ullAsleep = now.ullAsleep;
        m_woken = now.ullNow;
    }
    return now;
}

void CPatientScreens::_noteFailure(const std::wstring& path) {
    const WakeTime now = m_time();  // the call may have taken long
    if (m_woken && now.ullNow - *m_woken < kWakingMs) {
        m_failures.erase(path);
    } else {
        m_failures[path] = now;
    }
}

bool CPatientScreens::_mayAsk(const std::wstring& path, const WakeTime& now) const {
    const auto failure = m_failures.find(path);
    if (failure == m_failures.end()) {
        return true;
    }
    return now.ullNow - failure->second.ullNow >= kPauseMs || now.ullAsleep > failure->second.ullAsleep + kRealSleepMs;
}

CAllScreens::CAllScreens(std::shared_ptr<IBacklight> pBuiltIn, std::shared_ptr<IExternalScreens> pExternal,
                         std::function<WakeTime()> time)
    : m_pBuiltIn(std::move(pBuiltIn)),
      m_pExternal(std::make_shared<CPatientScreens>(std::move(pExternal), std::move(time))),
      m_follower([pExternal = m_pExternal, pWanted = m_pWanted] { pExternal->set(*pWanted); }) {}

std::optional<Backlight> CAllScreens::read() {
    std::optional<Backlight> screen = m_pBuiltIn->read();
    m_bBuiltIn = screen.has_value();
    if (!screen) {
        if (const std::optional<BYTE> percent = m_pExternal->read()) {
            screen = Backlight{everyLevel(), *percent};
        }
    }
    return screen;
}

void CAllScreens::set(BYTE nPercent) {
    if (!m_bBuiltIn) {
        m_pExternal->set(nPercent);
        return;
    }
    m_pBuiltIn->set(nPercent);
    *m_pWanted = nPercent;
    m_follower.wake();
}

}  // namespace win
