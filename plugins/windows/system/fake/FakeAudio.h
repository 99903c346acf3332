// A sound output for tests.
#pragma once

#include <memory>

#include "system/Audio.h"

namespace win {

struct AudioState {
    bool bDevice = true;
    bool bMuted = false;
    bool bRefuses = false;
};

class CFakeAudio final : public IAudio {
 public:
    explicit CFakeAudio(std::shared_ptr<AudioState> pState) : m_pState(std::move(pState)) {}

    std::optional<bool> muted() override {
        return m_pState->bDevice ? std::optional<bool>(m_pState->bMuted) : std::nullopt;
    }
    bool setMuted(bool bMuted) override {
        const bool bDone = m_pState->bDevice && !m_pState->bRefuses;
        m_pState->bMuted = bDone ? bMuted : m_pState->bMuted;
        return bDone;
    }

 private:
    std::shared_ptr<AudioState> m_pState;
};

}  // namespace win
