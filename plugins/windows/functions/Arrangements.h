// Arrangements of screens: which there are, which is in force, and what makes one. Rules on numbers only.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "OutputFavourites.h"
#include "system/Displays.h"

namespace win {

// The screen that counts as the notebook's own: the one that is built in, else the first. There is at least one screen.
[[nodiscard]] std::size_t ownScreen(const std::vector<Screen>& rScreens);

// The arrangement (FENWYN_MODE_...) in force. Nothing while no screen is on.
[[nodiscard]] std::optional<LONG> arrangementOf(const std::vector<Screen>& rScreens);

// The arrangements to choose between, the one in force among them, in the order of the card.
[[nodiscard]] std::vector<LONG> offeredArrangements(const DisplayState& rState);

// The screens that an arrangement uses, where they go. Nothing when the connected screens cannot make it.
[[nodiscard]] std::optional<Layout> layoutFor(LONG lArrangement, const std::vector<Screen>& rScreens);
// What the system calls it. Nothing when it has no word for it.
[[nodiscard]] std::optional<Topology> topologyFor(LONG lArrangement);

// The screens and places that a favourite names. Nothing when one of them is not connected, or when the favourite names
// none: only its arrangement is known then.
[[nodiscard]] std::optional<Layout> layoutFor(const favourites::Favourite& rFavourite,
                                              const std::vector<Screen>& rScreens);

// Whether this is in force. A layout is when its screens are on, the others off, and those that are on have the sizes
// and the places that it says, except for small moves: the system may have moved them together.
[[nodiscard]] bool isInForce(LONG lArrangement, const std::vector<Screen>& rScreens);
[[nodiscard]] bool isInForce(const Layout& rLayout, const std::vector<Screen>& rScreens);

// Whether setting this up would change nothing: a layout also has to agree to the pixel.
[[nodiscard]] bool isExactly(LONG lArrangement, const std::vector<Screen>& rScreens);
[[nodiscard]] bool isExactly(const Layout& rLayout, const std::vector<Screen>& rScreens);

// The older display output numbers arrangements by connector: of the own screen and the first other one. Nothing where
// it has no number.
[[nodiscard]] std::optional<LONG> olderNumber(LONG lArrangement, const std::vector<Screen>& rScreens);

}  // namespace win
