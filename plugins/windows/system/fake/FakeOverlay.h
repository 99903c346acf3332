// Two overlays, at most one of which is on, for tests.
#pragma once

#include <memory>

#include "system/Overlay.h"

namespace win {

struct OverlayRoom {
    OverlayKind current = OverlayKind::None;
    bool bRefuses = false;
};

class CFakeOverlay final : public IOverlay {
 public:
    CFakeOverlay(OverlayKind kind, std::shared_ptr<OverlayRoom> pRoom) : m_kind(kind), m_pRoom(std::move(pRoom)) {}

    bool isOn() override { return m_pRoom->current == m_kind; }
    bool turn(bool bOn) override {
        if (m_pRoom->bRefuses) {
            return false;
        }
        if (bOn || isOn()) {
            m_pRoom->current = bOn ? m_kind : OverlayKind::None;
        }
        return true;
    }

 private:
    OverlayKind m_kind;
    std::shared_ptr<OverlayRoom> m_pRoom;
};

}  // namespace win
