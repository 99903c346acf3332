// Wireless: each radio is offered the change that it can make.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Radios.h"
#include "system/SlowState.h"

namespace win {

using RadioList = std::vector<Radio>;

// The states that the card offers. For a radio that is on: to switch it off; for one that is off: to switch it on. With
// two radios or more also all at once, in the directions in which something would change. "Cancel" always.
[[nodiscard]] ULONG offeredStates(const RadioList& rRadios);
// The radios after a state was chosen; nothing when it is not offered.
[[nodiscard]] std::optional<RadioList> afterState(const RadioList& rRadios, LONG lState);

class CWireless final : public IFunction {
 public:
    explicit CWireless(std::shared_ptr<IRadios> pRadios);

    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<ULONG> items() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<IRadios> m_pRadios;
    CSlowState<RadioList> m_state;
};

}  // namespace win
