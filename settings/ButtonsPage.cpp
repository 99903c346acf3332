#include "Pages.h"
#include "SettingsIds.h"

namespace settings {
namespace {

class CButtonsPage : public CPage {
 public:
    CButtonsPage(CModel& model, const Surroundings& surroundings) : CPage(IDD_PAGE_BUTTONS, model, surroundings) {}

    void load() override {}
};

}  // namespace

std::unique_ptr<CPage> makeButtonsPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CButtonsPage>(model, surroundings);
}

}  // namespace settings
