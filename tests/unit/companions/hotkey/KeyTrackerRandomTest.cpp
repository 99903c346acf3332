// Long random histories, compared with a slow, independent model and with rules that apply to every history.
#include <algorithm>
#include <map>
#include <random>

#include "ZelHotkey.h"
#include "companions/hotkey/TrackerFixture.h"

namespace companions {
namespace {

constexpr std::size_t kMute = 0x120;  // acts without the modifier
constexpr std::size_t kKeys[] = {kF1, kF2, kF3, kA, kLeftArrow, kMute};

std::string word(const char* mark, std::size_t code) {
    char buffer[16];
    std::snprintf(buffer, sizeof(buffer), "%s%zx", mark, code);
    return buffer;
}

// Remembers histories instead of states: when each key was pressed, and what was reported since. F2 acts with the
// modifier and without it; the mute key is listed for use without it only.
class CModel {
 public:
    explicit CModel(const hotkey::TrackerSettings& settings)
        : m_listed(settings.listed), m_alone(settings.alone), m_bSticky(settings.sticky) {}

    bool key(std::size_t slot, bool bDown, DWORD time) {
        const bool bHeld = m_mapSince.contains(slot);
        const bool bHeldOn = bHeld && time - m_mapSince[slot] <= keyboard::kRepeatGap;
        if (bDown && !bHeldOn) {
            m_setHidden.erase(std::remove(m_setHidden.begin(), m_setHidden.end(), slot), m_setHidden.end());
            _break(slot);
            if (m_bActive) {
                _make(slot, m_alone.test(slot) && !m_listed.test(slot), m_listed.test(slot) || m_alone.test(slot));
                m_bAlone = false;
            } else if (m_alone.test(slot)) {
                _make(slot, true, true);
                m_bOwed = true;
            }
        }
        const auto hidden = std::find(m_setHidden.begin(), m_setHidden.end(), slot);
        const bool bSwallow = hidden != m_setHidden.end();
        if (bDown) {
            m_mapSince[slot] = time;
            return bSwallow;
        }
        m_mapSince.erase(slot);
        if (bSwallow) {
            m_setHidden.erase(hidden);
        }
        _break(slot);
        return bSwallow;
    }

    void modifier(bool bDown, DWORD time) {
        const bool bRepeat = bDown && m_bHeld && time - m_nSince <= keyboard::kRepeatGap;
        if (bDown && m_bHeld && !bRepeat) {
            finish();
        }
        m_nSince = bDown ? time : m_nSince;
        if (bRepeat) {
            return;
        }
        if (bDown) {
            m_bHeld = true;
            m_bAlone = !m_bActive;
            if (!m_bActive) {
                _close();
                m_bActive = true;
                out.push_back("0");
            }
            return;
        }
        m_bHeld = false;
        if (m_bActive && m_bSticky && m_bAlone) {
            m_bAlone = true;
            m_bLatched = true;
        } else {
            finish();
        }
    }

    void cancel() {
        if (m_bLatched && m_bHeld) {
            m_bLatched = false;
            m_bAlone = false;
        } else if (m_bLatched) {
            finish();
        }
    }

    void finish() {
        m_bHeld = false;
        m_bLatched = false;
        _close();
    }

    // The time after the last key without the modifier is over, if the last one was released.
    void timeIsOver() {
        if (m_bOwed && m_vecDue.empty()) {
            _close();
        }
    }

    std::vector<std::string> out;

 private:
    void _make(std::size_t slot, bool bWithoutModifier, bool bHidden) {
        const std::size_t code = keyboard::codeOfSlot(slot) | (bWithoutModifier ? ZEL_CODE_ALONE : 0);
        out.push_back(word("", code));
        m_vecDue.emplace_back(slot, code);
        if (bHidden) {
            m_setHidden.push_back(slot);
        }
    }

    void _break(std::size_t slot) {
        const auto due =
            std::find_if(m_vecDue.begin(), m_vecDue.end(), [slot](auto& entry) { return entry.first == slot; });
        if (due != m_vecDue.end()) {
            out.push_back(word("/", due->second));
            m_vecDue.erase(due);
        }
    }

    // The modifier's break, if one is due, after those of all keys.
    void _close() {
        if (!m_bActive && !m_bOwed) {
            return;
        }
        m_bActive = false;
        m_bOwed = false;
        while (!m_vecDue.empty()) {
            _break(m_vecDue.front().first);
        }
        out.push_back("/0");
    }

    keyboard::KeySet m_listed;
    keyboard::KeySet m_alone;
    bool m_bSticky;
    bool m_bHeld = false;
    bool m_bActive = false;
    bool m_bLatched = false;
    bool m_bAlone = false;  // nothing else since the modifier went down
    bool m_bOwed = false;   // the modifier's break, for keys without it
    DWORD m_nSince = 0;
    std::map<std::size_t, DWORD> m_mapSince;
    std::vector<std::pair<std::size_t, std::size_t>> m_vecDue;  // slot and reported code, in the order of the makes
    std::vector<std::size_t> m_setHidden;
};

std::vector<std::string> words(const std::string& text) {
    std::vector<std::string> result;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        result.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return result;
}

// Makes and breaks alternate for each code. Every key is between the modifier's make and break; where the first key of
// such a time needs no modifier, there is the break only.
void expectWellFormed(const std::vector<std::string>& history) {
    constexpr std::size_t kAloneLetters = 5;  // "10020": longer than every code of a key with the modifier
    std::vector<std::string> open;
    bool owed = false;
    for (const std::string& entry : history) {
        if (entry[0] != '/') {
            ASSERT_EQ(std::count(open.begin(), open.end(), entry), 0) << entry;
            const bool alone = entry.size() == kAloneLetters;
            ASSERT_TRUE(entry == "0" ? open.empty() && !owed : alone || open.front() == "0") << entry;
            owed = owed || (alone && (open.empty() || open.front() != "0"));
            open.push_back(entry);
            continue;
        }
        if (entry == "/0" && owed) {
            ASSERT_TRUE(open.empty()) << "keys must be broken before the modifier";
            owed = false;
            continue;
        }
        const auto made = std::find(open.begin(), open.end(), entry.substr(1));
        ASSERT_NE(made, open.end()) << entry;
        ASSERT_TRUE(entry != "/0" || open.size() == 1) << "keys must be broken before the modifier";
        open.erase(made);
    }
    EXPECT_TRUE(open.empty()) << open.front() << " never got its break";
    EXPECT_FALSE(owed) << "the modifier never got its break";
}

}  // namespace

class KeyTrackerHistory : public TrackerTest, public testing::WithParamInterface<bool> {
 protected:
    // The reports since the last comparison are added to `history`.
    void compare(std::vector<std::string>& history, CModel& model, int event) {
        const std::vector<std::string> reported = words(m_report.take());
        EXPECT_EQ(reported, std::exchange(model.out, {})) << "event " << event;
        history.insert(history.end(), reported.begin(), reported.end());
    }
};

std::string nameOf(const testing::TestParamInfo<bool>& parameter) {
    return parameter.param ? "Sticky" : "Held";
}

TEST_P(KeyTrackerHistory, FollowsTheModelAndKeepsMakesAndBreaksPaired) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::printf("seed %u\n", seed);
    std::mt19937 random(seed);
    m_settings.alone.set(kF2).set(kMute);
    setSticky(GetParam());
    CModel model(m_settings);
    std::vector<std::string> history;

    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        m_nTime += random() % 50 == 0 ? 3000 : random() % 40;
        const bool bDown = random() % 2 == 0;
        const unsigned nChoice = random() % 16;
        if (nChoice < 5) {
            EXPECT_FALSE(m_tracker.handle({kModifier, 0x11D, bDown, m_nTime}));
            model.modifier(bDown, m_nTime);
        } else if (nChoice == 14) {
            m_tracker.endAlone();
            model.timeIsOver();
        } else if (nChoice == 15) {
            m_tracker.cancelLatch();
            model.cancel();
        } else {
            const std::size_t slot = kKeys[random() % std::size(kKeys)];
            const bool bSwallowed = m_tracker.handle({virtualKey(slot), slot, bDown, m_nTime});
            EXPECT_EQ(bSwallowed, model.key(slot, bDown, m_nTime)) << "event " << i;
        }
        compare(history, model, i);
    }
    m_tracker.releaseAll();
    model.finish();
    compare(history, model, -1);
    expectWellFormed(history);
}

INSTANTIATE_TEST_SUITE_P(Random, KeyTrackerHistory, testing::Bool(), &nameOf);

}  // namespace companions
