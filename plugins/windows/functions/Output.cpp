#include "functions/Output.h"

#include <algorithm>
#include <utility>

#include "functions/Arrangements.h"
#include "system/SlowState.h"

namespace win {

namespace {

constexpr wchar_t kRemote[] = L"The session is shown on the screens of another machine.";
constexpr wchar_t kOneConnector[] = L"There are not two screens or connectors for screens.";

bool choosable(const DisplayState& rState) {
    return rState.nConnectors >= 2 && !rState.screens.empty();
}

ULONG extent(LONG lFirst, LONG lLast) {
    return static_cast<ULONG>(std::max<LONG>(lLast - lFirst, 0));
}

// What the preview under an entry shows of the screens that it uses.
std::vector<FenwynDisplayRecord> recordsOf(const Layout& rLayout, const std::vector<Screen>& rScreens) {
    std::vector<FenwynDisplayRecord> records;
    for (std::size_t i = 0; i < rScreens.size(); ++i) {
        const displays::Display& rDisplay = rScreens[i].display;
        const auto placed = std::find_if(rLayout.begin(), rLayout.end(),
                                         [&](const PlacedScreen& other) { return other.path == rDisplay.path; });
        if (placed != rLayout.end()) {
            const RECT& rPlace = ::IsRectEmpty(&placed->place) == FALSE ? placed->place : rDisplay.place;
            records.push_back(favourites::displayRecord(rDisplay.connector, static_cast<ULONG>(i),
                                                        extent(rPlace.left, rPlace.right),
                                                        extent(rPlace.top, rPlace.bottom)));
        }
    }
    return records;
}

OutputEntry arrangementEntry(LONG lArrangement, const std::vector<Screen>& rScreens) {
    // The one in force may be one that this plug-in cannot set up.
    const Layout layout =
        isInForce(lArrangement, rScreens) ? layoutOf(rScreens) : layoutFor(lArrangement, rScreens).value_or(Layout());
    const ULONG uFlags = lArrangement == FENWYN_MODE_CLONE ? 0 : FENWYN_ENTRY_SHOW_RESOLUTION;
    return {lArrangement, uFlags, {}, recordsOf(layout, rScreens)};
}

}  // namespace

COutputBase::COutputBase(PictureTools tools) : m_keeper(std::move(tools)) {}

// A look that comes too late for the initialisation counts at the next one.
void COutputBase::remember(const std::shared_ptr<IOfferMemory>& pMemory) {
    m_pMemory = pMemory;
    m_keeper.onLook([pMemory](const DisplayState& rState) {
        if (!rState.bRemote && pMemory->offered() != choosable(rState)) {
            pMemory->store(choosable(rState));
        }
    });
}

std::wstring COutputBase::initialize() {
    const std::optional<bool> before = m_pMemory ? m_pMemory->offered() : std::nullopt;
    const std::optional<DisplayState> state = m_keeper.state(before ? kNewAnswerMs : kFirstLookMs);
    if (!state) {
        return reasonWithoutAnswer(before, kOneConnector);
    }
    if (state->bRemote) {
        return kRemote;
    }
    return choosable(*state) ? L"" : kOneConnector;
}

bool COutputBase::bringPictureBack() {
    return m_keeper.panic(kPanicMs);
}

std::vector<OutputEntry> COutputWithFavourites::entries() {
    std::vector<OutputEntry> entries;
    std::vector<std::optional<WantedPicture>> wanted;
    const DisplayState state = m_keeper.state(kFreshReadMs).value_or(DisplayState());
    for (const LONG lArrangement : offeredArrangements(state)) {
        entries.push_back(arrangementEntry(lArrangement, state.screens));
        wanted.emplace_back(lArrangement);
    }
    for (favourites::Favourite& rFavourite : favourites::load()) {
        const std::optional<Layout> layout = layoutFor(rFavourite, state.screens);
        const bool bArrangementOnly =
            rFavourite.positions.empty() && topologyFor(rFavourite.mode) && layoutFor(rFavourite.mode, state.screens);
        if (layout || bArrangementOnly) {
            entries.push_back({rFavourite.mode, FENWYN_ENTRY_CUSTOM | FENWYN_ENTRY_SHOW_RESOLUTION,
                               std::move(rFavourite.text), std::move(rFavourite.displays)});
            wanted.emplace_back(layout ? WantedPicture(*layout) : WantedPicture(rFavourite.mode));
        }
    }
    for (const LONG lProgram : {FENWYN_MODE_CONFIGURE, FENWYN_MODE_SAVE}) {
        entries.push_back({lProgram, 0, {}, {}});
        wanted.emplace_back();
    }
    m_wanted = std::move(wanted);
    return entries;
}

// A favourite looks like the arrangement that it makes: it is current when it was chosen last and is still in force.
std::optional<LONG> COutputWithFavourites::currentItem() {
    const std::optional<DisplayState> state = m_keeper.state();
    if (!state) {
        return std::nullopt;
    }
    const auto inForce = [&state](const std::optional<WantedPicture>& wanted) {
        return wanted &&
               std::visit([&state](const auto& rWanted) { return isInForce(rWanted, state->screens); }, *wanted);
    };
    auto found = inForce(m_chosen) ? std::find(m_wanted.begin(), m_wanted.end(), m_chosen) : m_wanted.end();
    if (found == m_wanted.end()) {
        found = std::find_if(m_wanted.begin(), m_wanted.end(), inForce);
    }
    return found == m_wanted.end() ? std::nullopt : std::optional<LONG>(static_cast<LONG>(found - m_wanted.begin()));
}

bool COutputWithFavourites::select(LONG lItem) {
    if (lItem < 0 || static_cast<std::size_t>(lItem) >= m_wanted.size()) {
        return false;
    }
    const std::optional<WantedPicture>& rWanted = m_wanted[static_cast<std::size_t>(lItem)];
    if (!rWanted || !m_keeper.change(*rWanted)) {
        return false;
    }
    m_chosen = rWanted;
    return true;
}

COlderOutput::COlderOutput(PictureTools tools) : COutputBase(std::move(tools)) {}

std::optional<ULONG> COlderOutput::items() {
    const std::optional<DisplayState> state = m_keeper.state(kFreshReadMs);
    if (!state) {
        return std::nullopt;
    }
    ULONG uItems = 0;
    for (const LONG lArrangement : offeredArrangements(*state)) {
        if (const std::optional<LONG> number = olderNumber(lArrangement, state->screens)) {
            uItems |= 1U << static_cast<unsigned>(*number);
        }
    }
    return uItems;
}

std::optional<LONG> COlderOutput::currentItem() {
    const std::optional<DisplayState> state = m_keeper.state();
    const std::optional<LONG> now = state ? arrangementOf(state->screens) : std::nullopt;
    return now ? olderNumber(*now, state->screens) : std::nullopt;
}

bool COlderOutput::select(LONG lItem) {
    if (::GetCurrentThreadId() != m_dwThread) {
        return m_keeper.panic(kPanicMs);
    }
    const std::optional<DisplayState> state = m_keeper.state();
    if (!state) {
        return false;
    }
    // One number stands for an extended desktop to whatever side: the one in force counts first.
    std::vector<LONG> offered = offeredArrangements(*state);
    if (const std::optional<LONG> now = arrangementOf(state->screens)) {
        offered.insert(offered.begin(), *now);
    }
    const auto chosen = std::find_if(offered.begin(), offered.end(), [&](LONG lArrangement) {
        return olderNumber(lArrangement, state->screens) == lItem;
    });
    return chosen != offered.end() && m_keeper.change(*chosen);
}

}  // namespace win
