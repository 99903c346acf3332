// The power plans of the system.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace win {

struct PowerPlan {
    GUID id;
    std::wstring name;  // the system's, in its language
};

// Any thread.
class IPowerPlans {
 public:
    virtual ~IPowerPlans() = default;

    // In the system's order; empty if it has none or reports none.
    [[nodiscard]] virtual std::vector<PowerPlan> plans() = 0;
    [[nodiscard]] virtual std::optional<GUID> active() = 0;
    virtual void activate(const GUID& rId) = 0;
};

[[nodiscard]] std::shared_ptr<IPowerPlans> makeWindowsPowerPlans();

}  // namespace win
