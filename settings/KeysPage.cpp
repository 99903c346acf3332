#include "Pages.h"
#include "SettingsIds.h"

namespace settings {
namespace {

class CKeysPage : public CPage {
 public:
    CKeysPage(CModel& model, const Surroundings& surroundings) : CPage(IDD_PAGE_KEYS, model, surroundings) {}

    void load() override {}
};

}  // namespace

std::unique_ptr<CPage> makeKeysPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CKeysPage>(model, surroundings);
}

}  // namespace settings
