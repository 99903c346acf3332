// Lock: item 0 locks the session, item 1 does nothing.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Lock.h"

namespace win {

class CLock final : public IFunction {
 public:
    explicit CLock(std::unique_ptr<ILock> pLock);

    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::unique_ptr<ILock> m_pLock;
};

}  // namespace win
