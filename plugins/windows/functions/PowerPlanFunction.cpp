#include "functions/PowerPlanFunction.h"

#include <algorithm>
#include <utility>

namespace win {

namespace {

constexpr std::size_t kOwnItem = 3;
constexpr std::size_t kEnoughPlans = 2;

// The documented identifiers of the standard plans.
constexpr std::array<GUID, kOwnItem> kKnownPlans{{
    {0x8C5E7FDA, 0xE8BF, 0x4A96, {0x9A, 0x85, 0xA6, 0xE2, 0x3A, 0x8C, 0x63, 0x5C}},  // high performance
    {0x381B4222, 0xF694, 0x41F0, {0x96, 0x85, 0xFF, 0x5B, 0xB2, 0x60, 0xDF, 0x2E}},  // balanced
    {0xA1841308, 0x3541, 0x4FAB, {0xBC, 0x81, 0xF7, 0x15, 0x56, 0xF2, 0x0B, 0x4A}},  // power saver
}};

bool isKnown(const GUID& rId) {
    return std::any_of(kKnownPlans.begin(), kKnownPlans.end(),
                       [&](const GUID& rKnown) { return ::IsEqualGUID(rKnown, rId) != FALSE; });
}

const PowerPlan* find(const std::vector<PowerPlan>& plans, const GUID& rId) {
    const auto found = std::find_if(plans.begin(), plans.end(),
                                    [&](const PowerPlan& rPlan) { return ::IsEqualGUID(rPlan.id, rId) != FALSE; });
    return found != plans.end() ? &*found : nullptr;
}

// The first free item for a plan without an item of its own; none: all are taken.
std::optional<std::size_t> freeItem(const PlanItems& rItems) {
    for (const std::size_t item : {kOwnItem, std::size_t{0}, std::size_t{1}, std::size_t{2}}) {
        if (!rItems.plans[item]) {
            return item;
        }
    }
    return std::nullopt;
}

// Nothing: there is nothing to choose between.
std::optional<PlanItems> read(IPowerPlans& rPlans) {
    const std::vector<PowerPlan> plans = rPlans.plans();
    return plans.size() >= kEnoughPlans ? std::optional<PlanItems>(arrangePlans(plans, rPlans.active())) : std::nullopt;
}

}  // namespace

ULONG PlanItems::mask() const {
    ULONG uMask = 0;
    for (std::size_t item = 0; item < plans.size(); ++item) {
        uMask |= plans[item] ? 1U << item : 0U;
    }
    return uMask;
}

PlanItems arrangePlans(const std::vector<PowerPlan>& plans, const std::optional<GUID>& active) {
    PlanItems items;
    for (std::size_t item = 0; item < kKnownPlans.size(); ++item) {
        if (const PowerPlan* const pPlan = find(plans, kKnownPlans[item])) {
            items.plans[item] = *pPlan;
        }
    }
    std::vector<PowerPlan> others;
    std::copy_if(plans.begin(), plans.end(), std::back_inserter(others),
                 [](const PowerPlan& rPlan) { return !isKnown(rPlan.id); });
    std::stable_partition(others.begin(), others.end(),
                          [&](const PowerPlan& rPlan) { return active && ::IsEqualGUID(rPlan.id, *active) != FALSE; });
    for (const PowerPlan& rPlan : others) {
        if (const std::optional<std::size_t> item = freeItem(items)) {
            items.plans[*item] = rPlan;
        }
    }
    for (std::size_t item = 0; item < items.plans.size(); ++item) {
        if (active && items.plans[item] && ::IsEqualGUID(items.plans[item]->id, *active) != FALSE) {
            items.active = static_cast<LONG>(item);
        }
    }
    return items;
}

CPowerPlan::CPowerPlan(std::shared_ptr<IPowerPlans> pPlans)
    : m_pPlans(std::move(pPlans)), m_state([pPlans = m_pPlans] { return read(*pPlans); }) {}

std::wstring CPowerPlan::initialize() {
    std::wstring reason = m_state.waitForFirst(L"There are not two power plans to choose between.");
    m_shown = m_state.known().value_or(PlanItems());
    return reason;
}

std::optional<ULONG> CPowerPlan::items() {
    m_state.refresh();
    if (const std::optional<PlanItems> items = m_state.fresh()) {
        m_shown = *items;
    }
    const ULONG uPlans = m_shown.mask();
    return uPlans != 0 ? std::optional<ULONG>(uPlans) : std::nullopt;
}

std::optional<LONG> CPowerPlan::currentItem() {
    const std::optional<PlanItems> items = m_state.known();
    return items ? items->active : std::nullopt;
}

bool CPowerPlan::select(LONG lItem) {
    const bool bThere = lItem >= 0 && lItem < static_cast<LONG>(kPlanItems);
    if (!bThere || !m_shown.plans[static_cast<std::size_t>(lItem)]) {
        return false;
    }
    const GUID id = m_shown.plans[static_cast<std::size_t>(lItem)]->id;
    PlanItems expected = m_shown;
    expected.active = lItem;
    return m_state.change([pPlans = m_pPlans, id] { pPlans->activate(id); }, std::move(expected));
}

std::optional<std::wstring> CPowerPlan::itemText(ULONG uItem) {
    if (uItem >= kPlanItems || !m_shown.plans[uItem]) {
        return std::nullopt;
    }
    const std::wstring& rName = m_shown.plans[uItem]->name;
    return rName.empty() ? std::nullopt : std::optional<std::wstring>(rName);
}

}  // namespace win
