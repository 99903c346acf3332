#include "Logic/FuncX/FxKBB.h"

#include "common/ResourceFunc.h"

std::wstring CFxKBB::getCurrentStatus() {
    const std::wstring strStatus = CCircleFunction::getCurrentStatus();
    if (m_lCurrentItem == INVALID_CURRENT_ITEM || state() != functiontables::kKbbTimer) {
        return strStatus;
    }
    return strStatus + L"\r\n" + std::to_wstring(static_cast<DWORD>(m_lCurrentItem) >> 16) + L" " +
           loadResString(IDS_KBB_SECONDS);
}
