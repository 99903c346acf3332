#include "system/WindowsDisplays.h"

namespace win {

namespace {

class CWindowsDisplays final : public IDisplays {
 public:
    DisplayState read() override {
        m_bOlder = !m_configuration.canChange();
        DisplayState state = m_bOlder ? m_settings.read() : m_configuration.read();
        state.bRemote = ::GetSystemMetrics(SM_REMOTESESSION) != 0;
        return state;
    }

    bool apply(Topology topology) override { return !m_bOlder && m_configuration.apply(topology); }

    bool apply(const Layout& rLayout) override {
        if (!m_bOlder) {
            const Layout before = layoutOf(m_configuration.read().screens);
            if (m_configuration.apply(rLayout) &&
                (before == rLayout || layoutOf(m_configuration.read().screens) != before)) {
                return true;
            }
        }
        return m_settings.apply(rLayout);
    }

 private:
    CDisplayConfiguration m_configuration;
    CDisplaySettings m_settings;
    bool m_bOlder = false;  // the configuration knows of nothing that it could change
};

}  // namespace

Layout layoutOf(const std::vector<Screen>& rScreens) {
    Layout layout;
    for (const Screen& screen : rScreens) {
        if (screen.bActive) {
            layout.push_back({screen.display.path, screen.display.place});
        }
    }
    return layout;
}

std::shared_ptr<IDisplays> makeWindowsDisplays() {
    return std::make_shared<CWindowsDisplays>();
}

}  // namespace win
