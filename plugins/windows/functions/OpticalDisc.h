// ODD: ejects the disc of the first optical drive, or makes the drive quiet. Only administrators may switch a drive on
// and off.
#pragma once

#include <memory>

#include "plugin/Function.h"
#include "system/Drives.h"
#include "system/SlowState.h"

namespace win {

// The first real drive; nothing if there are only mounted images.
[[nodiscard]] std::optional<wchar_t> realDrive(const std::vector<OpticalDrive>& rDrives);

class COpticalDisc final : public IFunction {
 public:
    explicit COpticalDisc(std::shared_ptr<IDrives> pDrives);

    void remember(const std::shared_ptr<IOfferMemory>& pMemory) override { m_drive.remember(pMemory); }
    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] std::optional<ULONG> items() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    std::shared_ptr<IDrives> m_pDrives;
    CSlowState<wchar_t> m_drive;
};

}  // namespace win
