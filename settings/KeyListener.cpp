#include "KeyListener.h"

#include <bitset>
#include <optional>

#include "companions/hotkey/Alarm.h"
#include "ZelHotkey.h"
#include "common/ObjectSecurity.h"
#include "keyboard/HookThread.h"
#include "keyboard/OwnInput.h"

namespace settings {
namespace {

constexpr DWORD kStopMs = 1000;

class CPoster : public hotkey::INotificationSink, public hotkey::IKeyPresser {
 public:
    explicit CPoster(HWND hTold) : m_hTold(hTold) {}

    bool make(DWORD code) noexcept override {
        _post(code, Tried::Make);
        return true;
    }
    bool promiseBreak() noexcept override { return true; }
    void breakOf(DWORD code) noexcept override { _post(code, Tried::Break); }
    void latchChanged(bool bLatched) noexcept override { _post(0, bLatched ? Tried::Latched : Tried::Unlatched); }
    void hookRenewed(DWORD /*why*/) noexcept override {}
    void tap(DWORD virtualKey) noexcept override { keyboard::tapKey(virtualKey); }

 private:
    void _post(DWORD code, Tried what) const noexcept {
        ::PostMessageW(m_hTold, kMsgKeyTried, code, static_cast<LPARAM>(what));
    }

    HWND m_hTold;
};

}  // namespace

// Lives until the hook's thread has ended, which holds a reference to it.
class CKeyListener::CSession : public keyboard::IHookClient {
 public:
    explicit CSession(HWND hTold)
        : m_hTold(hTold),
          m_trial(::CreateEventW(common::OnlyForTheUser().get(), TRUE, FALSE, ZEL_KEY_TRIAL_EVENT)),
          m_poster(hTold) {
        for (std::size_t key = 0; key < m_heldBefore.size(); ++key) {
            m_heldBefore[key] = ::GetAsyncKeyState(static_cast<int>(key)) < 0;
        }
    }

    // Before the hook's thread starts.
    void tryOut(const hotkey::TrackerSettings& settings) noexcept {
        m_tracker.emplace(m_poster, m_poster);
        m_tracker->setSettings(settings);
        m_tracker->enable();
        m_nReleaseDelay = settings.releaseDelay;
    }
    [[nodiscard]] keyboard::CHookThread& hook() noexcept { return m_hook; }

    bool handleKey(const keyboard::KeyEvent& event) noexcept override {
        if (m_tracker) {
            const bool swallow = m_tracker->handle(event);
            _setAlarm();
            return swallow;
        }
        if (_belongsToOthers(event)) {
            return false;
        }
        ::PostMessageW(m_hTold, kMsgKeyHeard, event.virtualKey | static_cast<WPARAM>(event.slot) << 16,
                       event.down ? 1 : 0);
        return true;
    }
    void handleTick() noexcept override {
        if (m_tracker && m_aloneEnd.takeIfDue(::GetTickCount64())) {
            m_tracker->endAlone();
        }
    }
    DWORD timeToTick() const noexcept override { return m_aloneEnd.timeLeft(::GetTickCount64()); }
    void handleEnd() noexcept override {
        if (m_tracker) {
            m_tracker->releaseAll();
        }
    }

 private:
    // A key that was down before, such as those that opened this, repeats and goes up for those who saw it go down:
    // otherwise the system would take it for held from then on.
    bool _belongsToOthers(const keyboard::KeyEvent& event) noexcept {
        const std::size_t key = event.virtualKey % m_heldBefore.size();
        const bool others = m_heldBefore[key] || (!event.down && !m_hidden[key]);
        m_heldBefore[key] = m_heldBefore[key] && event.down;
        m_hidden[key] = !others && event.down;
        return others;
    }

    void _setAlarm() noexcept {
        if (m_tracker->alone() == hotkey::CKeyTracker::Alone::Released) {
            m_aloneEnd.set(::GetTickCount64() + m_nReleaseDelay);
        } else {
            m_aloneEnd.cancel();
        }
    }

    HWND m_hTold;
    common::UniqueHandle m_trial;
    CPoster m_poster;
    std::bitset<256> m_heldBefore;  // by virtual key
    std::bitset<256> m_hidden;      // whose going down only we heard of
    std::optional<hotkey::CKeyTracker> m_tracker;  // none: every key is told
    hotkey::CAlarm m_aloneEnd;
    DWORD m_nReleaseDelay = 0;  // ms
    keyboard::CHookThread m_hook;
};

bool CKeyListener::_start(std::shared_ptr<CSession> session) {
    stop();
    if (FAILED(session->hook().start(*session, session))) {
        return false;
    }
    m_pSession = std::move(session);
    return true;
}

bool CKeyListener::hear(HWND hTold) {
    return _start(std::make_shared<CSession>(hTold));
}

bool CKeyListener::tryOut(HWND hTold, const hotkey::TrackerSettings& settings) {
    auto session = std::make_shared<CSession>(hTold);
    session->tryOut(settings);
    return _start(std::move(session));
}

void CKeyListener::stop() noexcept {
    if (const std::shared_ptr<CSession> session = std::move(m_pSession)) {
        session->hook().requestStop();
        static_cast<void>(session->hook().wait(kStopMs));  // it ends by itself, however late
    }
}

}  // namespace settings
