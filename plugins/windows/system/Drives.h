// Optical drives.
#pragma once

#include <memory>
#include <optional>
#include <vector>

namespace win {

struct OpticalDrive {
    wchar_t chLetter = L'\0';
    bool bMountedImage = false;  // a file that the system shows as a disc
};

// Any thread; a drive may take seconds to answer.
class IDrives {
 public:
    virtual ~IDrives() = default;

    // Drives with a known connection, in the order of their letters.
    [[nodiscard]] virtual std::vector<OpticalDrive> opticalDrives() = 0;
    virtual void eject(wchar_t chLetter) = 0;
    // The lowest speed, until the disc is changed.
    virtual void makeQuiet(wchar_t chLetter) = 0;
};

[[nodiscard]] std::shared_ptr<IDrives> makeWindowsDrives();

}  // namespace win
