#include "functions/Arrangements.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace win {

namespace {

struct ArrangementRow {
    LONG lArrangement;
    Topology topology;
    bool bOffered;  // with two screens; the others only while they are in force
    bool bEvery;    // needs an interface that can set every arrangement up
};

constexpr ArrangementRow kRows[] = {
    {FENWYN_MODE_INTERNAL, Topology::Internal, true, false},
    {FENWYN_MODE_CLONE, Topology::Clone, true, true},
    {FENWYN_MODE_EXTEND_RIGHT, Topology::Extend, true, false},
    {FENWYN_MODE_EXTEND_LEFT, Topology::Extend, true, false},
    {FENWYN_MODE_EXTEND_ABOVE, Topology::Extend, false, false},
    {FENWYN_MODE_EXTEND_BELOW, Topology::Extend, false, false},
    {FENWYN_MODE_EXTERNAL, Topology::External, true, true},
};

// The numbers that the older display output has for a kind of connector.
struct OlderRow {
    const wchar_t* pszConnector;
    LONG lAlone;
    LONG lClone;
    LONG lExtend;
};

// The system closes gaps and removes overlaps: that far it may move a screen, in pixels.
constexpr LONG kSmallMove = 64;

constexpr LONG kOlderOwn = 0;
constexpr OlderRow kOlderRows[] = {
    {L"RGB", 1, 6, 11}, {L"DVI", 2, 7, 12}, {L"HDMI", 3, 8, 13}, {L"DisplayPort", 4, 9, 14}};

// The displays that are on, the own one marked as such.
std::vector<displays::Display> activeDisplays(const std::vector<Screen>& rScreens) {
    std::vector<displays::Display> active;
    for (std::size_t i = 0; i < rScreens.size(); ++i) {
        if (rScreens[i].bActive) {
            active.push_back(rScreens[i].display);
            active.back().builtIn = i == ownScreen(rScreens);
        }
    }
    return active;
}

RECT movedTo(const RECT& rPlace, POINT corner) {
    return {corner.x, corner.y, corner.x + rPlace.right - rPlace.left, corner.y + rPlace.bottom - rPlace.top};
}

// The screens except the own one in a row; the first begins the desktop.
Layout othersInARow(const std::vector<Screen>& rScreens) {
    Layout layout;
    POINT corner{};
    for (std::size_t i = 0; i < rScreens.size(); ++i) {
        if (i != ownScreen(rScreens)) {
            const RECT place = movedTo(rScreens[i].display.place, corner);
            layout.push_back({rScreens[i].display.path, place});
            corner.x = place.right;
        }
    }
    return layout;
}

// All show what the own screen shows; the system finds the size that all of them have.
Layout allTheSame(const std::vector<Screen>& rScreens) {
    Layout layout;
    for (const Screen& screen : rScreens) {
        layout.push_back({screen.display.path, RECT{}});
    }
    return layout;
}

Layout extended(LONG lArrangement, const std::vector<Screen>& rScreens) {
    std::vector<displays::Display> all;
    for (std::size_t i = 0; i < rScreens.size(); ++i) {
        all.push_back(rScreens[i].display);
        all.back().builtIn = i == ownScreen(rScreens);
        if (!rScreens[i].bActive) {
            // The desktop begins at a screen that is on already.
            ::OffsetRect(&all.back().place, 1, 1);
        }
    }
    const std::vector<POINT> corners = displays::placesFor(lArrangement, all);
    Layout layout;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        layout.push_back({all[i].path, movedTo(all[i].place, corners[i])});
    }
    return layout;
}

// As the layout would have it.
std::vector<Screen> screensIn(const Layout& rLayout, std::vector<Screen> screens) {
    for (Screen& rScreen : screens) {
        const auto placed = std::find_if(rLayout.begin(), rLayout.end(), [&rScreen](const PlacedScreen& other) {
            return other.path == rScreen.display.path;
        });
        rScreen.bActive = placed != rLayout.end();
        if (rScreen.bActive) {
            rScreen.display.place = placed->place;
        }
    }
    return screens;
}

bool beginsDesktop(const RECT& rPlace) {
    return rPlace.left == 0 && rPlace.top == 0;
}

bool nearlySame(LONG lOne, LONG lOther) {
    return std::abs(lOne - lOther) <= kSmallMove;
}

// The same size, nearly the same place, and the main screen stays the main one.
bool liesAsWanted(const PlacedScreen& wanted, const RECT& rNow) {
    const RECT& rPlace = wanted.place;
    return ::IsRectEmpty(&rPlace) != FALSE ||
           (rPlace.right - rPlace.left == rNow.right - rNow.left &&
            rPlace.bottom - rPlace.top == rNow.bottom - rNow.top && nearlySame(rPlace.left, rNow.left) &&
            nearlySame(rPlace.top, rNow.top) && (!beginsDesktop(rPlace) || beginsDesktop(rNow)));
}

std::vector<bool> activeFlags(const std::vector<Screen>& rScreens) {
    std::vector<bool> flags;
    flags.reserve(rScreens.size());
    for (const Screen& screen : rScreens) {
        flags.push_back(screen.bActive);
    }
    return flags;
}

}  // namespace

std::size_t ownScreen(const std::vector<Screen>& rScreens) {
    const auto found =
        std::find_if(rScreens.begin(), rScreens.end(), [](const Screen& screen) { return screen.display.builtIn; });
    return found == rScreens.end() ? 0 : static_cast<std::size_t>(found - rScreens.begin());
}

std::optional<LONG> arrangementOf(const std::vector<Screen>& rScreens) {
    const std::vector<displays::Display> active = activeDisplays(rScreens);
    if (active.empty()) {
        return std::nullopt;
    }
    return rScreens[ownScreen(rScreens)].bActive ? displays::arrangementOf(active) : LONG{FENWYN_MODE_EXTERNAL};
}

std::vector<LONG> offeredArrangements(const DisplayState& rState) {
    const std::optional<LONG> now = arrangementOf(rState.screens);
    std::vector<LONG> offered;
    for (const ArrangementRow& row : kRows) {
        const bool bPossible = rState.screens.size() > 1 && row.bOffered && (rState.bEveryArrangement || !row.bEvery);
        if (bPossible || row.lArrangement == now) {
            offered.push_back(row.lArrangement);
        }
    }
    if (now == FENWYN_MODE_SEVERAL) {
        offered.push_back(*now);
    }
    return offered;
}

std::optional<Layout> layoutFor(LONG lArrangement, const std::vector<Screen>& rScreens) {
    if (rScreens.empty() || (rScreens.size() < 2 && lArrangement != FENWYN_MODE_INTERNAL)) {
        return std::nullopt;
    }
    Layout layout;
    switch (lArrangement) {
        case FENWYN_MODE_INTERNAL: {
            const displays::Display& rOwn = rScreens[ownScreen(rScreens)].display;
            layout = {{rOwn.path, movedTo(rOwn.place, {})}};
            break;
        }
        case FENWYN_MODE_EXTERNAL:
            layout = othersInARow(rScreens);
            break;
        case FENWYN_MODE_CLONE:
            layout = allTheSame(rScreens);
            break;
        default:
            layout = extended(lArrangement, rScreens);
            break;
    }
    return layout.empty() ? std::nullopt : std::optional<Layout>(std::move(layout));
}

std::optional<Topology> topologyFor(LONG lArrangement) {
    const auto row = std::find_if(std::begin(kRows), std::end(kRows), [lArrangement](const ArrangementRow& other) {
        return other.lArrangement == lArrangement;
    });
    return row == std::end(kRows) ? std::nullopt : std::optional<Topology>(row->topology);
}

std::optional<Layout> layoutFor(const favourites::Favourite& rFavourite, const std::vector<Screen>& rScreens) {
    Layout layout;
    for (std::size_t i = 0; i < rFavourite.positions.size(); ++i) {
        const favourites::Position& rPosition = rFavourite.positions[i];
        if (std::none_of(rScreens.begin(), rScreens.end(),
                         [&rPosition](const Screen& screen) { return screen.display.path == rPosition.path; })) {
            return std::nullopt;
        }
        const FenwynDisplayRecord& rRecord = rFavourite.displays[i];
        const POINT corner = rPosition.corner;
        layout.push_back({rPosition.path,
                          {corner.x, corner.y, corner.x + static_cast<LONG>(rRecord.uWidth),
                           corner.y + static_cast<LONG>(rRecord.uHeight)}});
    }
    return layout.empty() ? std::nullopt : std::optional<Layout>(std::move(layout));
}

bool isInForce(LONG lArrangement, const std::vector<Screen>& rScreens) {
    return arrangementOf(rScreens) == lArrangement;
}

bool isInForce(const Layout& rLayout, const std::vector<Screen>& rScreens) {
    const std::vector<Screen> wanted = screensIn(rLayout, rScreens);
    const Layout now = layoutOf(rScreens);
    return layoutOf(wanted).size() == rLayout.size() && activeFlags(wanted) == activeFlags(rScreens) &&
           arrangementOf(wanted) == arrangementOf(rScreens) &&
           std::all_of(rLayout.begin(), rLayout.end(), [&now](const PlacedScreen& screen) {
               return std::any_of(now.begin(), now.end(), [&screen](const PlacedScreen& other) {
                   return other.path == screen.path && liesAsWanted(screen, other.place);
               });
           });
}

bool isExactly(LONG lArrangement, const std::vector<Screen>& rScreens) {
    return isInForce(lArrangement, rScreens);
}

bool isExactly(const Layout& rLayout, const std::vector<Screen>& rScreens) {
    const Layout now = layoutOf(rScreens);
    return std::is_permutation(rLayout.begin(), rLayout.end(), now.begin(), now.end());
}

std::optional<LONG> olderNumber(LONG lArrangement, const std::vector<Screen>& rScreens) {
    if (lArrangement == FENWYN_MODE_INTERNAL) {
        return kOlderOwn;
    }
    for (std::size_t i = 0; i < rScreens.size(); ++i) {
        const auto row = std::find_if(std::begin(kOlderRows), std::end(kOlderRows), [&](const OlderRow& other) {
            return i != ownScreen(rScreens) && rScreens[i].display.connector.starts_with(other.pszConnector);
        });
        if (row != std::end(kOlderRows)) {
            return lArrangement == FENWYN_MODE_EXTERNAL ? row->lAlone
                   : lArrangement == FENWYN_MODE_CLONE  ? row->lClone
                                                        : row->lExtend;
        }
    }
    return std::nullopt;
}

}  // namespace win
