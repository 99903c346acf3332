#include "Pages.h"
#include "SettingsIds.h"

namespace settings {
namespace {

class CCardsPage : public CPage {
 public:
    CCardsPage(CModel& model, const Surroundings& surroundings) : CPage(IDD_PAGE_CARDS, model, surroundings) {}

    void load() override {}
};

}  // namespace

std::unique_ptr<CPage> makeCardsPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CCardsPage>(model, surroundings);
}

}  // namespace settings
