// Whether the machine had a function when it was asked last. With it an initialisation needs no slow answer.
#pragma once

#include <memory>
#include <optional>

namespace win {

// Any thread.
class IOfferMemory {
 public:
    virtual ~IOfferMemory() = default;

    // Nothing: the machine has never answered, or somebody wants it to be asked anew.
    [[nodiscard]] virtual std::optional<bool> offered() = 0;
    virtual void store(bool bOffered) = 0;
};

// In the user's part of the registry, for the plug-in that this code is linked into.
[[nodiscard]] std::shared_ptr<IOfferMemory> makeWindowsOfferMemory();

}  // namespace win
