// Mute: the sound of the current default device.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Audio.h"
#include "system/SlowState.h"

namespace win {

class CMute final : public IFunction {
 public:
    explicit CMute(std::shared_ptr<IAudio> pAudio);

    void remember(const std::shared_ptr<IOfferMemory>& pMemory) override { m_first.remember(pMemory); }
    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<IAudio> m_pAudio;
    CSlowState<bool> m_first;  // what the first call finds: it starts the sound system, and takes its time
};

}  // namespace win
