// Mute: the sound of the current default device.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Audio.h"

namespace win {

class CMute final : public IFunction {
 public:
    explicit CMute(std::unique_ptr<IAudio> pAudio);

    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::unique_ptr<IAudio> m_pAudio;
};

}  // namespace win
