// External screens for tests.
#pragma once

#include <map>
#include <mutex>

#include "system/ExternalScreens.h"

namespace win {

class CFakeExternalScreens final : public IExternalScreens {
 public:
    std::vector<std::wstring> allowed() override {
        const std::lock_guard guard(m_lock);
        std::vector<std::wstring> paths;
        for (const auto& [path, percent] : m_screens) {
            paths.push_back(path);
        }
        return paths;
    }
    std::optional<BYTE> read(const std::wstring& path) override {
        const std::lock_guard guard(m_lock);
        ++m_nAsked;
        return m_screens[path];
    }
    bool set(const std::wstring& path, BYTE nPercent) override {
        const std::lock_guard guard(m_lock);
        ++m_nAsked;
        if (!m_screens[path]) {
            return false;
        }
        m_screens[path] = nPercent;
        return true;
    }

    // Nothing: one that fails.
    void put(const std::wstring& path, std::optional<BYTE> percent) {
        const std::lock_guard guard(m_lock);
        m_screens[path] = percent;
    }
    [[nodiscard]] std::optional<BYTE> percentOf(const std::wstring& path) {
        const std::lock_guard guard(m_lock);
        return m_screens[path];
    }
    // How often a screen was asked or set since the last call.
    int asked() {
        const std::lock_guard guard(m_lock);
        return std::exchange(m_nAsked, 0);
    }

 private:
    std::mutex m_lock;
    std::map<std::wstring, std::optional<BYTE>> m_screens;
    int m_nAsked = 0;
};

}  // namespace win
