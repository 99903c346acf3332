#include "Pages.h"

#include "SettingsIds.h"

namespace settings {
namespace {

constexpr PageEntry kPages[] = {
    {IDS_TAB_CARDS, &makeCardsPage},         {IDS_TAB_KEYS, &makeKeysPage}, {IDS_TAB_BEHAVIOUR, &makeBehaviourPage},
    {IDS_TAB_BUTTONS, &makeButtonsPage},     {IDS_TAB_LOG, &makeLogPage},
};

}  // namespace

std::span<const PageEntry> pages() {
    return kPages;
}

}  // namespace settings
