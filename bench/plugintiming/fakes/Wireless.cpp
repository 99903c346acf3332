#include "functions/Wireless.h"
#include "fakes/Answer.h"
#include "system/fake/FakeRadios.h"

namespace win {

std::unique_ptr<IFunction> makeFunction() {
    auto pRadios =
        std::make_shared<CFakeRadios>(RadioList{{RadioKind::Wlan, true, true}, {RadioKind::Bluetooth, false, true}});
    pRadios->dwReadMs = kAnswerMs;
    return std::make_unique<CWireless>(std::move(pRadios));
}

}  // namespace win
