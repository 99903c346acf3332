// Screens that do what they are told, or what a test wants instead.
#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <utility>

#include "system/Displays.h"

namespace win {

// A screen of the size 1000 x 800, or another one.
inline Screen fakeScreen(const std::wstring& path, const std::wstring& connector, bool bBuiltIn, bool bActive,
                         RECT place = {0, 0, 1000, 800}) {
    Screen screen;
    screen.display.path = path;
    screen.display.connector = connector;
    screen.display.builtIn = bBuiltIn;
    screen.display.place = place;
    screen.bActive = bActive;
    return screen;
}

// A notebook whose own screen is on, with a monitor that is connected and off.
inline DisplayState fakeNotebook() {
    DisplayState state;
    state.screens = {fakeScreen(L"own", L"LCD", true, true),
                     fakeScreen(L"monitor", L"HDMI 1", false, false, {0, 0, 1600, 900})};
    state.nConnectors = 2;
    return state;
}

class CFakeDisplays final : public IDisplays {
 public:
    explicit CFakeDisplays(DisplayState state) : m_state(std::move(state)) {}

    DisplayState read() override {
        const std::lock_guard guard(m_lock);
        return m_state;
    }

    bool apply(Topology topology) override {
        const std::lock_guard guard(m_lock);
        m_strAsked += "ICEX"[static_cast<std::size_t>(topology)];
        if (refused.contains(topology) || bTopologiesRefused) {
            return false;
        }
        if (!lying.contains(topology)) {
            _arrange(topology);
        }
        return true;
    }

    bool apply(const Layout& rLayout) override {
        const std::lock_guard guard(m_lock);
        m_strAsked += '(';
        for (const PlacedScreen& screen : rLayout) {
            m_strAsked += std::string(screen.path.begin(), screen.path.end()) + " ";
        }
        m_strAsked.back() = ')';
        const bool bBroken = std::any_of(rLayout.begin(), rLayout.end(),
                                         [this](const PlacedScreen& screen) { return broken.contains(screen.path); });
        if (bLayoutsRefused || bBroken) {
            return false;
        }
        if (bLayoutsIgnored) {
            return true;
        }
        for (Screen& rScreen : m_state.screens) {
            const auto placed = std::find_if(rLayout.begin(), rLayout.end(), [&rScreen](const PlacedScreen& other) {
                return other.path == rScreen.display.path;
            });
            rScreen.bActive = placed != rLayout.end();
            if (rScreen.bActive) {
                const RECT now = rScreen.display.place;
                rScreen.display.place = placed->place;
                if (::IsRectEmpty(&placed->place) != FALSE) {
                    rScreen.display.place = {0, 0, now.right - now.left, now.bottom - now.top};
                }
            }
        }
        return true;
    }

    void set(DisplayState state) {
        const std::lock_guard guard(m_lock);
        m_state = std::move(state);
    }
    // What was asked for, in order: I, C, E, X for a topology, the paths of a layout in brackets.
    [[nodiscard]] std::string asked() {
        const std::lock_guard guard(m_lock);
        return m_strAsked;
    }
    // Which screens are on, in their order.
    [[nodiscard]] std::string active() {
        std::string names;
        for (const Screen& screen : read().screens) {
            if (screen.bActive) {
                names += std::string(screen.display.path.begin(), screen.display.path.end()) + " ";
            }
        }
        return names;
    }

    // Set before the function under test gets it.
    std::set<Topology> refused;
    std::set<Topology> lying;       // accepted, and nothing happens
    std::set<std::wstring> broken;  // no layout with one of these is accepted
    std::atomic<bool> bTopologiesRefused = false;
    std::atomic<bool> bLayoutsRefused = false;
    std::atomic<bool> bLayoutsIgnored = false;  // accepted, and nothing happens

 private:
    void _arrange(Topology topology) {
        LONG lLeft = 0;
        for (Screen& rScreen : m_state.screens) {
            rScreen.bActive = topology == Topology::Internal   ? rScreen.display.builtIn
                              : topology == Topology::External ? !rScreen.display.builtIn
                                                               : true;
            const RECT place = rScreen.display.place;
            if (rScreen.bActive) {
                rScreen.display.place = {lLeft, 0, lLeft + place.right - place.left, place.bottom - place.top};
                lLeft = topology == Topology::Clone ? 0 : rScreen.display.place.right;
            }
        }
    }

    std::mutex m_lock;
    DisplayState m_state;
    std::string m_strAsked;
};

}  // namespace win
