// Radios for tests.
#pragma once

#include <windows.h>

#include <atomic>
#include <mutex>

#include "system/Radios.h"

namespace win {

class CFakeRadios final : public IRadios {
 public:
    explicit CFakeRadios(std::vector<Radio> radios) : m_radios(std::move(radios)) {}

    std::vector<Radio> radios() override {
        ::Sleep(dwReadMs);
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_radios;
    }
    void set(RadioKind kind, bool bOn) override {
        const std::lock_guard<std::mutex> guard(m_mutex);
        for (Radio& rRadio : m_radios) {
            if (rRadio.kind == kind && rRadio.bSwitchable && !m_bRefuses) {
                rRadio.bOn = bOn;
            }
        }
    }
    // By a switch of the machine, or another program.
    void put(std::vector<Radio> radios) {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_radios = std::move(radios);
    }
    void refuse() {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_bRefuses = true;
    }

    std::atomic<DWORD> dwReadMs = 0;  // how long an answer takes

 private:
    std::mutex m_mutex;
    std::vector<Radio> m_radios;
    bool m_bRefuses = false;
};

}  // namespace win
