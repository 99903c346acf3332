#include "functions/PictureKeeper.h"

#include <array>
#include <atomic>
#include <functional>
#include <utility>

#include "common/Handle.h"
#include "functions/Arrangements.h"
#include "keyboard/Lock.h"

namespace win {

namespace {

constexpr DWORD kSettlePollMs = 50;

// The order in which a picture is brought back.
constexpr std::array<LONG, 4> kPanicOrder{FENWYN_MODE_INTERNAL, FENWYN_MODE_EXTEND_RIGHT, FENWYN_MODE_CLONE,
                                          FENWYN_MODE_EXTERNAL};

// Told when a panic is over, also when it is dropped for something later.
class CPanicOutcome {
 public:
    void tell(bool bDone) {
        m_bDone = bDone;
        ::SetEvent(m_hOver.get());
    }
    [[nodiscard]] bool wait(DWORD dwMs) const {
        return ::WaitForSingleObject(m_hOver.get(), dwMs) == WAIT_OBJECT_0 && m_bDone;
    }

 private:
    std::atomic<bool> m_bDone = false;
    common::UniqueHandle m_hOver{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

struct Panic {
    std::shared_ptr<CPanicOutcome> pOutcome;  // null: nobody waits
};

}  // namespace

// What the thread and the keeper share. The thread's part uses the tools; everybody else only what is under the lock.
class CPictureKeeper::Core {
 public:
    using Job = std::variant<std::monostate, WantedPicture, Panic>;

    explicit Core(PictureTools tools) : m_tools(std::move(tools)) {}

    // Any thread
    void put(Job job) {
        Job dropped;
        {
            const keyboard::CExclusiveLock guard(m_lock);
            dropped = std::exchange(m_job, std::move(job));
        }
        _finish(dropped, false);
        ::SetEvent(m_hWake.get());
    }
    void onLook(std::function<void(const DisplayState&)> look) {
        const keyboard::CExclusiveLock guard(m_lock);
        m_look = std::move(look);
    }
    void end() {
        m_bEnd = true;
        ::SetEvent(m_hWake.get());
    }
    [[nodiscard]] std::optional<DisplayState> known() {
        const keyboard::CExclusiveLock guard(m_lock);
        return m_known;
    }
    void readAndWait(DWORD dwMs) {
        ::ResetEvent(m_hRead.get());
        ::SetEvent(m_hWake.get());
        ::WaitForSingleObject(m_hRead.get(), dwMs);
    }

    // The keeper's thread
    void run() {
        // Whoever waits for the first answer need not wait for screens that change.
        _guarded([this] { _publish(); });
        _guarded([this] { _takeBackWhatWasLeft(); });
        while (!m_bEnd) {
            const IPictureQuestion::Event event = m_tools.pQuestion->wait(m_hWake.get());
            if (!m_bEnd) {
                _guarded([this, event] { _handle(event); });
            }
        }
        _guarded([this] {
            m_tools.pQuestion->close();
            _goBackIfAsked();
        });
        _finish(_take(), false);
    }

 private:
    // Memory may run out; the next turn may fare better.
    template <typename Body>
    static void _guarded(Body body) noexcept {
        try {
            body();
        } catch (...) {
            return;
        }
    }

    static void _finish(const Job& job, bool bDone) {
        if (const Panic* const pPanic = std::get_if<Panic>(&job); pPanic != nullptr && pPanic->pOutcome) {
            pPanic->pOutcome->tell(bDone);
        }
    }

    [[nodiscard]] Job _take() {
        const keyboard::CExclusiveLock guard(m_lock);
        return std::exchange(m_job, Job());
    }

    void _publish() {
        DisplayState now = m_tools.pDisplays->read();
        std::function<void(const DisplayState&)> look;
        {
            const keyboard::CExclusiveLock guard(m_lock);
            m_known = now;
            look = m_look;
            ::SetEvent(m_hRead.get());
        }
        if (look) {
            look(now);
        }
    }

    void _handle(IPictureQuestion::Event event) {
        if (event == IPictureQuestion::Event::Keep) {
            _keep();
        } else if (event == IPictureQuestion::Event::GoBack) {
            _goBackIfAsked();
        }
        const Job job = _take();
        if (const auto* const pWanted = std::get_if<WantedPicture>(&job)) {
            _change(*pWanted);
        } else if (std::holds_alternative<Panic>(job)) {
            const bool bDone = _bringBack();
            _publish();
            _finish(job, bDone);
        }
        _publish();
    }

    void _change(const WantedPicture& wanted) {
        const std::vector<Screen> screens = m_tools.pDisplays->read().screens;
        if (std::visit([&screens](const auto& rWanted) { return isExactly(rWanted, screens); }, wanted)) {
            return;
        }
        m_tools.pQuestion->close();
        if (!m_bAsked) {
            m_before = layoutOf(screens);
            m_bAsked = true;
        }
        // Before anything changes: what was never confirmed does not become what one can go back to.
        m_tools.pLastGood->save(m_before);
        if (!_make(wanted)) {
            m_tools.pQuestion->tellFailure(_goBackIfAsked());
        } else if (!m_tools.pQuestion->ask()) {
            _goBackIfAsked();
        }
    }

    void _keep() {
        m_bAsked = false;
        m_tools.pLastGood->settle();
    }

    // Whether the screens are as they were.
    bool _goBackIfAsked() {
        if (!m_bAsked) {
            return true;
        }
        m_bAsked = false;
        // A screen of that arrangement may be gone by now.
        const bool bAsBefore = isExactly(m_before, m_tools.pDisplays->read().screens) || _make(m_before);
        if (!bAsBefore) {
            static_cast<void>(_bringBackByTheOrder());
        }
        m_tools.pLastGood->settle();
        return bAsBefore;
    }

    void _takeBackWhatWasLeft() {
        if (!m_tools.pLastGood->wasLeftUnsettled()) {
            return;
        }
        const std::optional<Layout> before = m_tools.pLastGood->load();
        m_bAsked = before.has_value();
        m_before = before.value_or(Layout());
        _goBackIfAsked();
        _publish();
    }

    [[nodiscard]] bool _bringBack() {
        m_tools.pQuestion->close();
        const bool bUnsettled = std::exchange(m_bAsked, false);
        bool bDone = _bringBackByTheOrder();
        if (!bDone) {
            const std::optional<Layout> last = m_tools.pLastGood->load();
            bDone = last && _make(*last);
        }
        if (bUnsettled) {
            m_tools.pLastGood->settle();
        }
        return bDone;
    }

    // An arrangement that seems to be active is set up again too: it may be the one that the user cannot see.
    [[nodiscard]] bool _bringBackByTheOrder() {
        for (const LONG lArrangement : kPanicOrder) {
            if (_make(lArrangement)) {
                return true;
            }
        }
        return false;
    }

    static bool _inForce(const WantedPicture& wanted, const std::vector<Screen>& rScreens) {
        return std::visit([&rScreens](const auto& rWanted) { return isInForce(rWanted, rScreens); }, wanted);
    }

    // Whether it came about.
    [[nodiscard]] bool _make(const WantedPicture& wanted) {
        const auto inForce = [&wanted](const std::vector<Screen>& rScreens) { return _inForce(wanted, rScreens); };
        if (const Layout* const pLayout = std::get_if<Layout>(&wanted)) {
            return m_tools.pDisplays->apply(*pLayout) && _settles(inForce);
        }
        // The system knows best which sizes the screens had in an arrangement of its own. To which side it extends the
        // desktop is up to it, and so is what "internal" means where no screen is built in: a layout says it exactly.
        const LONG lArrangement = std::get<LONG>(wanted);
        const std::optional<Topology> topology = topologyFor(lArrangement);
        const auto ofItsKind = [&topology](const std::vector<Screen>& rScreens) {
            const std::optional<LONG> now = arrangementOf(rScreens);
            return now && topologyFor(*now) == topology;
        };
        if (topology && m_tools.pDisplays->apply(*topology) && _settles(ofItsKind) &&
            inForce(m_tools.pDisplays->read().screens)) {
            return true;
        }
        const std::optional<Layout> layout = layoutFor(lArrangement, m_tools.pDisplays->read().screens);
        return layout && m_tools.pDisplays->apply(*layout) && _settles(inForce);
    }

    template <typename Condition>
    [[nodiscard]] bool _settles(Condition holds) {
        const ULONGLONG ullEnd = ::GetTickCount64() + m_tools.dwSettleMs;
        while (!holds(m_tools.pDisplays->read().screens)) {
            if (::GetTickCount64() >= ullEnd) {
                return false;
            }
            ::Sleep(kSettlePollMs);
        }
        return true;
    }

    PictureTools m_tools;
    bool m_bAsked = false;  // m_before is to come back unless the change is kept
    Layout m_before;

    common::UniqueHandle m_hWake{::CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    common::UniqueHandle m_hRead{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::atomic<bool> m_bEnd = false;
    SRWLOCK m_lock = SRWLOCK_INIT;
    Job m_job;
    std::optional<DisplayState> m_known;
    std::function<void(const DisplayState&)> m_look;
};

CPictureKeeper::CPictureKeeper(PictureTools tools) : m_pCore(std::make_shared<Core>(std::move(tools))) {
    m_bStarted = SUCCEEDED(m_thread.start([pCore = m_pCore] { pCore->run(); }));
}

CPictureKeeper::~CPictureKeeper() {
    m_pCore->end();
    static_cast<void>(m_thread.wait(kEndWaitMs));  // one that still changes screens ends by itself
}

void CPictureKeeper::onLook(std::function<void(const DisplayState&)> look) {
    m_pCore->onLook(std::move(look));
}

std::optional<DisplayState> CPictureKeeper::state(DWORD dwWaitMs) const {
    if (dwWaitMs != 0 && m_bStarted) {
        m_pCore->readAndWait(dwWaitMs);
    }
    return m_pCore->known();
}

bool CPictureKeeper::change(WantedPicture wanted) {
    if (m_bStarted) {
        m_pCore->put(std::move(wanted));
    }
    return m_bStarted;
}

bool CPictureKeeper::panic(DWORD dwWaitMs) {
    if (!m_bStarted) {
        return false;
    }
    const auto pOutcome = std::make_shared<CPanicOutcome>();
    m_pCore->put(Panic{pOutcome});
    return pOutcome->wait(dwWaitMs);
}

bool CPictureKeeper::beginPanic() {
    if (m_bStarted) {
        m_pCore->put(Panic{});
    }
    return m_bStarted;
}

}  // namespace win
