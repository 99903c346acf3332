// Keeps the last good arrangement of the screens, to which the program can go back.
#pragma once

#include <memory>
#include <optional>

#include "system/Displays.h"

namespace win {

// One thread.
class ILastGood {
 public:
    virtual ~ILastGood() = default;

    // Keeps it, as the one to go back to when the change that follows is not confirmed: not even after an end without
    // notice.
    virtual void save(const Layout& rLayout) = 0;
    // The change was confirmed or taken back.
    virtual void settle() = 0;
    // The layout that was saved last.
    [[nodiscard]] virtual std::optional<Layout> load() = 0;
    // Whether there was a change that nobody confirmed or took back, and nobody is about to.
    [[nodiscard]] virtual bool wasLeftUnsettled() = 0;
};

// In the user's part of the registry.
[[nodiscard]] std::unique_ptr<ILastGood> makeWindowsLastGood();

}  // namespace win
