// The pages, in the order of their tabs. A new page is one source file, a line here and a row in Pages.cpp.
#pragma once

#include <memory>
#include <span>

#include "Page.h"

namespace settings {

struct PageEntry {
    UINT title;
    std::unique_ptr<CPage> (*make)(CModel& model, const Surroundings& surroundings);
};

[[nodiscard]] std::span<const PageEntry> pages();

[[nodiscard]] std::unique_ptr<CPage> makeCardsPage(CModel& model, const Surroundings& surroundings);
[[nodiscard]] std::unique_ptr<CPage> makeKeysPage(CModel& model, const Surroundings& surroundings);
[[nodiscard]] std::unique_ptr<CPage> makeBehaviourPage(CModel& model, const Surroundings& surroundings);
[[nodiscard]] std::unique_ptr<CPage> makeButtonsPage(CModel& model, const Surroundings& surroundings);
[[nodiscard]] std::unique_ptr<CPage> makeLogPage(CModel& model, const Surroundings& surroundings);

}  // namespace settings
