#include "system/OverlayKeys.h"

#include <algorithm>

namespace win {

namespace {

// Identified by position, whatever the layout prints on the keys: the number pad is where notebooks usually have it,
// the arrows form a cross below it.
// clang-format off
constexpr OverlayRow kNumericRows[] = {
    {0x08, VK_NUMPAD7, {0x47, false}},   // 7
    {0x09, VK_NUMPAD8, {0x48, false}},   // 8
    {0x0A, VK_NUMPAD9, {0x49, false}},   // 9
    {0x0B, VK_MULTIPLY, {0x37, false}},  // 0
    {0x16, VK_NUMPAD4, {0x4B, false}},   // U
    {0x17, VK_NUMPAD5, {0x4C, false}},   // I
    {0x18, VK_NUMPAD6, {0x4D, false}},   // O
    {0x19, VK_SUBTRACT, {0x4A, false}},  // P
    {0x24, VK_NUMPAD1, {0x4F, false}},   // J
    {0x25, VK_NUMPAD2, {0x50, false}},   // K
    {0x26, VK_NUMPAD3, {0x51, false}},   // L
    {0x27, VK_ADD, {0x4E, false}},       // ;
    {0x32, VK_NUMPAD0, {0x52, false}},   // M
    {0x34, VK_DECIMAL, {0x53, false}},   // .
    {0x35, VK_DIVIDE, {0x35, true}},     // /
};
constexpr OverlayRow kCursorRows[] = {
    {0x16, VK_HOME, {0x47, true}},    // U
    {0x17, VK_UP, {0x48, true}},      // I
    {0x18, VK_END, {0x4F, true}},     // O
    {0x19, VK_PRIOR, {0x49, true}},   // P
    {0x24, VK_LEFT, {0x4B, true}},    // J
    {0x25, VK_DOWN, {0x50, true}},    // K
    {0x26, VK_RIGHT, {0x4D, true}},   // L
    {0x27, VK_NEXT, {0x51, true}},    // ;
    {0x34, VK_DELETE, {0x53, true}},  // .
};
// clang-format on

}  // namespace

std::span<const OverlayRow> overlayRows(OverlayKind kind) {
    switch (kind) {
        case OverlayKind::Cursor:
            return kCursorRows;
        case OverlayKind::Numeric:
            return kNumericRows;
        case OverlayKind::None:
            break;
    }
    return {};
}

COverlayKeys::COverlayKeys(OverlayKind kind, const std::function<bool(WORD wScan)>& isHeld)
    : m_rows(overlayRows(kind)) {
    static_assert(std::size(kNumericRows) <= kMaxRows && std::size(kCursorRows) <= kMaxRows);
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        m_held[i] = isHeld(m_rows[i].wScan) ? Held::AsItself : Held::No;
    }
}

COverlayKeys::Answer COverlayKeys::handle(ScanKey key, bool bUp, bool bModifier) {
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [&](const OverlayRow& candidate) {
        return candidate.wScan == key.wScan && !key.bExtended;
    });
    if (row == m_rows.end()) {
        return {false, std::nullopt};
    }
    Held& rHeld = m_held[static_cast<std::size_t>(row - m_rows.begin())];
    if (!bUp && rHeld == Held::No) {
        rHeld = m_bOn && !bModifier ? Held::Translated : Held::AsItself;
    }
    const Held held = rHeld;
    if (bUp) {
        rHeld = Held::No;
    }
    const bool bTranslated = held == Held::Translated;
    return {bTranslated || held == Held::Ended,
            bTranslated ? std::optional<Output>({row->wVirtualKey, row->sent, bUp}) : std::nullopt};
}

COverlayKeys::Ups COverlayKeys::end() noexcept {
    m_bOn = false;
    Ups ups;
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        if (m_held[i] == Held::Translated) {
            ups.add({m_rows[i].wVirtualKey, m_rows[i].sent, true});
            m_held[i] = Held::Ended;
        }
    }
    return ups;
}

bool COverlayKeys::holds() const {
    return std::find(m_held.begin(), m_held.end(), Held::Translated) != m_held.end();
}

bool COverlayKeys::drains() const {
    return std::find(m_held.begin(), m_held.end(), Held::Ended) != m_held.end();
}

}  // namespace win
