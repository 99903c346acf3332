#include "Pages.h"
#include "SettingsIds.h"

namespace settings {
namespace {

class CLogPage : public CPage {
 public:
    CLogPage(CModel& model, const Surroundings& surroundings) : CPage(IDD_PAGE_LOG, model, surroundings) {}

    void load() override {}
};

}  // namespace

std::unique_ptr<CPage> makeLogPage(CModel& model, const Surroundings& surroundings) {
    return std::make_unique<CLogPage>(model, surroundings);
}

}  // namespace settings
