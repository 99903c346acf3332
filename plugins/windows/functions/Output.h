// Display output: arrangements of the screens, with favourites or as the older function numbers them.
#pragma once

#include <memory>

#include "functions/PictureKeeper.h"
#include "plugin/Function.h"

namespace win {

// How long the initialisation waits for the first look at the screens, if no earlier start has had one: it decides
// whether there is a card, and screens that are waking up answer late.
inline constexpr DWORD kFirstLookMs = 3000;
// How long bringing a picture back may take before it counts as failed.
inline constexpr DWORD kPanicMs = 30000;

// What both functions share: whether the machine has screens to choose between.
class COutputBase : public IFunction {
 public:
    explicit COutputBase(PictureTools tools);

    void remember(const std::shared_ptr<IOfferMemory>& pMemory) override;
    [[nodiscard]] std::wstring initialize() override;
    [[nodiscard]] bool bringPictureBack() override;

 protected:
    CPictureKeeper m_keeper;

 private:
    std::shared_ptr<IOfferMemory> m_pMemory;
};

// Output_2
class COutputWithFavourites final : public COutputBase {
 public:
    using COutputBase::COutputBase;

    [[nodiscard]] std::vector<OutputEntry> entries() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    // What an entry sets up; nothing for those that open the display-configuration program.
    std::vector<std::optional<WantedPicture>> m_wanted;
    std::optional<WantedPicture> m_chosen;
};

// Output
class COlderOutput final : public COutputBase {
 public:
    explicit COlderOutput(PictureTools tools);

    [[nodiscard]] std::optional<ULONG> items() override;
    [[nodiscard]] std::optional<LONG> currentItem() override;
    // On another thread than the function's own it is the held key's order to bring a picture back, whatever the item.
    [[nodiscard]] bool select(LONG lItem) override;

 private:
    const DWORD m_dwThread = ::GetCurrentThreadId();
};

}  // namespace win
