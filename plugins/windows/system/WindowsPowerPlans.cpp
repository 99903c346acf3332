#include <windows.h>

#include <powrprof.h>

#include <array>

#include "common/Handle.h"
#include "system/PowerPlans.h"

namespace win {

namespace {

constexpr ULONG kMostPlans = 64;  // more than any real list has; guards against a system that never reports the end

std::wstring nameOf(const GUID& rId) {
    std::array<wchar_t, 256> text{};
    DWORD dwBytes = sizeof(text);
    const DWORD dwResult =
        ::PowerReadFriendlyName(nullptr, &rId, nullptr, nullptr, reinterpret_cast<UCHAR*>(text.data()), &dwBytes);
    text.back() = L'\0';
    return dwResult == ERROR_SUCCESS ? std::wstring(text.data()) : std::wstring();
}

class CWindowsPowerPlans final : public IPowerPlans {
 public:
    std::vector<PowerPlan> plans() override {
        std::vector<PowerPlan> found;
        for (ULONG i = 0; i < kMostPlans; ++i) {
            GUID id{};
            DWORD dwBytes = sizeof(id);
            if (::PowerEnumerate(nullptr, nullptr, nullptr, ACCESS_SCHEME, i, reinterpret_cast<UCHAR*>(&id),
                                 &dwBytes) != ERROR_SUCCESS) {
                break;
            }
            found.push_back({id, nameOf(id)});
        }
        return found;
    }

    std::optional<GUID> active() override {
        GUID* pId = nullptr;
        if (::PowerGetActiveScheme(nullptr, &pId) != ERROR_SUCCESS || pId == nullptr) {
            return std::nullopt;
        }
        const GUID id = *pId;
        ::LocalFree(pId);
        return id;
    }

    void activate(const GUID& rId) override { ::PowerSetActiveScheme(nullptr, &rId); }
};

}  // namespace

std::shared_ptr<IPowerPlans> makeWindowsPowerPlans() {
    return std::make_shared<CWindowsPowerPlans>();
}

}  // namespace win
