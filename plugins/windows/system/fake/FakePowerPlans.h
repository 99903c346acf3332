// Power plans for tests.
#pragma once

#include <windows.h>

#include <atomic>
#include <mutex>

#include "system/PowerPlans.h"

namespace win {

class CFakePowerPlans final : public IPowerPlans {
 public:
    std::vector<PowerPlan> plans() override {
        ::Sleep(dwReadMs);
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_plans;
    }
    std::optional<GUID> active() override {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_active;
    }
    void activate(const GUID& rId) override {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (!m_bRefuses) {
            m_active = rId;
        }
    }

    void set(std::vector<PowerPlan> plans, std::optional<GUID> active, bool bRefuses = false) {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_plans = std::move(plans);
        m_active = active;
        m_bRefuses = bRefuses;
    }

    std::atomic<DWORD> dwReadMs = 0;  // how long an answer takes

 private:
    std::mutex m_mutex;
    std::vector<PowerPlan> m_plans;
    std::optional<GUID> m_active;
    bool m_bRefuses = false;
};

}  // namespace win
