#include "Pages.h"
#include "SettingsIds.h"

namespace settings {
namespace {

class CBehaviourPage : public CPage {
 public:
    CBehaviourPage(CModel& model, const Surroundings& surroundings) : CPage(IDD_PAGE_BEHAVIOUR, model, surroundings) {}

    void load() override {}
};

}  // namespace

std::unique_ptr<CPage> makeBehaviourPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CBehaviourPage>(model, surroundings);
}

}  // namespace settings
