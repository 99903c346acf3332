#include "functions/Sleep.h"

#include <utility>

#include "functions/Action.h"

namespace win {

namespace {

constexpr wchar_t kUntold[] = L"The system does not tell which sleeping states this computer has.";

bool act(CWorker& rWorker, LONG lItem) {
    return lItem == kItemDo ? rWorker.wake() : lItem == kItemCancel;
}

}  // namespace

SleepWay sleepWay(const SleepAbilities& abilities) {
    if (abilities.bModernStandby) {
        return SleepWay::DisplayOff;
    }
    return abilities.bStandby ? SleepWay::Standby : SleepWay::None;
}

CSleep::CSleep(std::shared_ptr<ISuspend> pSuspend) : m_pSuspend(std::move(pSuspend)) {}

std::wstring CSleep::initialize() {
    const std::optional<SleepAbilities> abilities = m_pSuspend->abilities();
    if (!abilities) {
        return kUntold;
    }
    const SleepWay way = sleepWay(*abilities);
    if (way == SleepWay::None) {
        return L"This computer has none of the sleeping states S1 to S3, and no modern standby.";
    }
    m_pWorker = std::make_unique<CWorker>([pSuspend = m_pSuspend, way] {
        if (way == SleepWay::DisplayOff) {
            pSuspend->displayOff();
        } else {
            pSuspend->sleep();
        }
    });
    return {};
}

bool CSleep::select(LONG lItem) {
    return m_pWorker != nullptr && act(*m_pWorker, lItem);
}

CHibernate::CHibernate(std::shared_ptr<ISuspend> pSuspend)
    : m_pSuspend(std::move(pSuspend)), m_worker([pSuspend = m_pSuspend] { pSuspend->hibernate(); }) {}

std::wstring CHibernate::initialize() {
    const std::optional<SleepAbilities> abilities = m_pSuspend->abilities();
    if (!abilities) {
        return kUntold;
    }
    if (!abilities->bHibernation) {
        return L"This computer cannot hibernate (it has no state S4).";
    }
    return abilities->bHibernationFile ? L"" : L"Hibernation is switched off: there is no hibernation file.";
}

bool CHibernate::select(LONG lItem) {
    return act(m_worker, lItem);
}

}  // namespace win
