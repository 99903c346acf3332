#include "functions/Lock.h"

#include <utility>

#include "functions/Action.h"

namespace win {

CLock::CLock(std::unique_ptr<ILock> pLock) : m_pLock(std::move(pLock)) {}

std::wstring CLock::initialize() {
    return m_pLock->forbidden() ? L"A policy forbids locking this computer." : L"";
}

bool CLock::select(LONG lItem) {
    return lItem == kItemDo ? m_pLock->lock() : lItem == kItemCancel;
}

}  // namespace win
