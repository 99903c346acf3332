// Wireless: for each radio its possible change is offered.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Radios.h"
#include "system/SlowState.h"

namespace win {

using RadioList = std::vector<Radio>;

// The states that the card offers. For a radio that is on: switch it off; for one that is off: switch it on. With two
// or more radios also all at once, in the directions that would change something. "Cancel" always.
[[nodiscard]] ULONG offeredStates(const RadioList& rRadios);
// The radios after a state was chosen; nothing if it is not offered.
[[nodiscard]] std::optional<RadioList> afterState(const RadioList& rRadios, LONG lState);

class CWireless final : public IFunction {
 public:
    explicit CWireless(std::shared_ptr<IRadios> pRadios);

    void remember(const std::shared_ptr<IOfferMemory>& pMemory) override { m_state.remember(pMemory); }
    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<ULONG> items() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<IRadios> m_pRadios;
    CSlowState<RadioList> m_state;
};

}  // namespace win
