// A state of the machine that is slow to read and slow to change.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "keyboard/Lock.h"
#include "system/OfferMemory.h"
#include "system/SleepNews.h"
#include "system/Worker.h"

namespace win {

// How long an initialisation waits for the machine's answer, which decides whether there is a card: very briefly if
// the answer of an earlier start is known, which then counts.
inline constexpr DWORD kFirstAnswerMs = 1000;
inline constexpr DWORD kNewAnswerMs = 25;
// How long a card that opens waits for a new look at the machine.
inline constexpr DWORD kFreshReadMs = 30;
inline constexpr wchar_t kNoAnswerInTime[] = L"The system did not answer in time.";
inline constexpr wchar_t kEarlierAnswer[] = L" At an earlier start: ";

// Why there is no card when the machine has not answered in time; empty if the answer of an earlier start, `offered`,
// stands in for it. `pszMissing`: what the machine answered then.
[[nodiscard]] inline std::wstring reasonWithoutAnswer(std::optional<bool> offered, const wchar_t* pszMissing) {
    if (!offered) {
        return kNoAnswerInTime;
    }
    return *offered ? std::wstring() : std::wstring(kNoAnswerInTime) + kEarlierAnswer + pszMissing;
}

// Reads return the known state at once and start a new read in the background. Changes are made in the background too;
// of several waiting ones only the latest is made. `read` and the changes run on the worker's thread and own what they
// use.
template <typename State>
class CSlowState {
 public:
    explicit CSlowState(std::function<std::optional<State>()> read)
        : m_pShared(std::make_shared<Shared>(std::move(read))), m_worker([pShared = m_pShared] { pShared->turn(); }) {}

    // Before everything else: where the machine's answers are kept for the next start.
    void remember(const std::shared_ptr<IOfferMemory>& pMemory) { m_pShared->pMemory = pMemory; }

    // Before waitForFirst(), on a thread that handles messages: from then on reads again whenever the machine has
    // slept, so that the next card to open need not show what was before.
    void refreshAfterSleep() { m_bRefreshAfterSleep = true; }

    // For an initialisation: waits for the machine's first answer, or takes that of an earlier start for it. Empty: it
    // has what the function needs; otherwise the reason, which is `pszMissing` if the machine answered.
    [[nodiscard]] std::wstring waitForFirst(const wchar_t* pszMissing, DWORD dwTimeoutMs = kFirstAnswerMs) {
        std::wstring reason = _firstAnswer(pszMissing, dwTimeoutMs);
        // Not before: a process may make its first window for it, and one system here locks itself up when another
        // thread starts its management service meanwhile. And without a card nobody needs the news.
        if (reason.empty() && m_bRefreshAfterSleep) {
            m_sleepNews.emplace([this] { refresh(); });
        }
        return reason;
    }

    // Whether the machine has answered at least once.
    [[nodiscard]] bool answered() const {
        return ::WaitForSingleObject(m_pShared->hAnswered.get(), 0) == WAIT_OBJECT_0;
    }

    // The last known state, or the expected one after pending changes.
    [[nodiscard]] std::optional<State> known() const {
        const keyboard::CExclusiveLock guard(m_pShared->lock);
        return m_pShared->known;
    }

    // The same, after a brief wait for a read that refresh() asked for: for what a card shows when it opens. The state
    // that is expected after a change needs no wait.
    [[nodiscard]] std::optional<State> fresh() const {
        ::WaitForSingleObject(m_pShared->hFresh.get(), kFreshReadMs);
        return known();
    }

    // Reads again in the background.
    void refresh() {
        m_pShared->ask();
        m_worker.wake();
    }

    // Makes a change in the background. Until then `expected` counts as the state; afterwards the machine is read
    // again.
    bool change(const std::function<void()>& make, State expected) {
        {
            const keyboard::CExclusiveLock guard(m_pShared->lock);
            m_pShared->change = make;
            m_pShared->known = std::move(expected);
            ::SetEvent(m_pShared->hFresh.get());
        }
        return m_worker.wake();
    }

 private:
    [[nodiscard]] std::wstring _firstAnswer(const wchar_t* pszMissing, DWORD dwTimeoutMs) {
        const std::optional<bool> before = m_pShared->pMemory ? m_pShared->pMemory->offered() : std::nullopt;
        refresh();
        if (::WaitForSingleObject(m_pShared->hAnswered.get(), before ? kNewAnswerMs : dwTimeoutMs) == WAIT_OBJECT_0) {
            return known() ? L"" : pszMissing;
        }
        return reasonWithoutAnswer(before, pszMissing);
    }

    struct Shared {
        explicit Shared(std::function<std::optional<State>()> reader) : read(std::move(reader)) {}

        void turn() {
            if (const std::function<void()> latest = takeChange()) {
                latest();
            }
            const ULONG uAnswered = asked();
            std::optional<State> now = read();
            tellMemory(now.has_value());
            const keyboard::CExclusiveLock guard(lock);
            // A newer change has set the expected state; its own turn reads the real one.
            if (!change) {
                known = std::move(now);
            }
            ::SetEvent(hAnswered.get());
            if (uAnswered == uAsked) {
                ::SetEvent(hFresh.get());
            }
        }

        void ask() {
            const keyboard::CExclusiveLock guard(lock);
            ++uAsked;
            ::ResetEvent(hFresh.get());
        }

        [[nodiscard]] ULONG asked() const {
            const keyboard::CExclusiveLock guard(lock);
            return uAsked;
        }

        // Also if the initialisation did not wait for it: the next one goes by it. A device that is missing later, such
        // as a screen that is still waking, is no reason for the next start to do without the card.
        void tellMemory(bool bOffered) {
            if (pMemory && told != bOffered && (bOffered || !told)) {
                told = bOffered;
                pMemory->store(bOffered);
            }
        }

        [[nodiscard]] std::function<void()> takeChange() {
            const keyboard::CExclusiveLock guard(lock);
            return std::exchange(change, nullptr);
        }

        const std::function<std::optional<State>()> read;
        std::shared_ptr<IOfferMemory> pMemory;  // set before the worker starts
        std::optional<bool> told;               // of the worker's thread
        mutable SRWLOCK lock = SRWLOCK_INIT;
        std::function<void()> change;
        std::optional<State> known;
        ULONG uAsked = 0;                                                           // reads
        common::UniqueHandle hFresh{::CreateEventW(nullptr, TRUE, TRUE, nullptr)};  // none of them is under way
        common::UniqueHandle hAnswered{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    };

    std::shared_ptr<Shared> m_pShared;
    CWorker m_worker;
    bool m_bRefreshAfterSleep = false;
    std::optional<CSleepNews> m_sleepNews;  // goes first: it wakes the worker
};

}  // namespace win
