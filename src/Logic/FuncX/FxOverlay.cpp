#include "Logic/FuncX/FxOverlay.h"

#include "ZelMain.h"
#include "common/Status.h"

namespace {

constexpr LONG kOn = 0;
constexpr LONG kOff = 1;

}  // namespace

bool COverlayFunction::needRefreshSmallPng() {
    if (FAILED(getCurrentItem())) {
        LOG_DESCRIBED_STATUS(true);
        return true;
    }
    return m_lLastItem != m_lCurrentItem;
}

UINT COverlayFunction::getSmallPngID() {
    const UINT uOffPngId = m_rDescription.look.uSmallPngId;
    if (FAILED(getCurrentItem())) {
        LOG_DESCRIBED_STATUS(uOffPngId);
        return uOffPngId;
    }
    m_lLastItem = m_lCurrentItem;
    if (m_lCurrentItem != kOn && m_lCurrentItem != kOff) {
        LOG_DESCRIBED_ASSERT(L"!\"Wrong current item.\"");
    }
    return m_lCurrentItem == kOn ? m_uOnPngId : uOffPngId;
}

bool COverlayFunction::containsHotkeyCode(DWORD dwCode) const {
    const BOOL bMouseOperating = theApp.mouseOperating();
    LOG_DESCRIBED(::dbglog::Level::Trace, L"%s = %d", L"m_bMouseOperating", bMouseOperating);
    return bMouseOperating == FALSE && CCircleFunction::containsHotkeyCode(dwCode);
}
