// Sleep and Hibernate: item 0 sends the machine to sleep, item 1 does nothing.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Suspend.h"
#include "system/Worker.h"

namespace win {

// How a machine is sent to sleep.
enum class SleepWay { None, Standby, DisplayOff };

// A machine with modern standby would hibernate if told to stand by: instead its display is switched off, and the
// machine sleeps by itself.
[[nodiscard]] SleepWay sleepWay(const SleepAbilities& abilities);

class CSleep final : public IFunction {
 public:
    explicit CSleep(std::shared_ptr<ISuspend> pSuspend);

    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<ISuspend> m_pSuspend;
    std::unique_ptr<CWorker> m_pWorker;
};

class CHibernate final : public IFunction {
 public:
    explicit CHibernate(std::shared_ptr<ISuspend> pSuspend);

    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<ISuspend> m_pSuspend;
    CWorker m_worker;
};

}  // namespace win
