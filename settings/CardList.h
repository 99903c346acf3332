// The function list as the page Cards shows it: the cards that there are, in their order, and the functions that have none.
#pragma once

#include <string>
#include <vector>

#include "Model.h"

namespace settings {

struct Card {
    std::wstring name;           // of the function, as in the list
    bool isListed = false;       // switched on
    bool isKnown = true;         // Fenwyn has such a function
    std::vector<DWORD> codes;    // empty: no key is set
    bool startsPrograms = false;  // each of them starts a program instead of showing the card
    std::wstring caption;        // as stored, or the usual one of a function that is not listed
    std::wstring plugin;         // as stored; empty: none
    std::wstring pluginFile;     // the same with its environment variables replaced
};

// The listed ones in their order (a name may be listed twice), then the others that Fenwyn knows.
[[nodiscard]] std::vector<Card> cards(const CModel& model);

// Makes these the list, in their order; the cards that are switched off do not count.
void setList(CModel& model, const std::vector<Card>& list);

// Switches a card on or off. One that is switched on for the first time gets the caption and the plug-in that come with
// Fenwyn; it becomes the last of the list.
void switchCard(CModel& model, std::vector<Card> list, std::size_t index, bool on);

// Gives the card at `from` the place of the one at `to`; both are switched on.
void moveCard(CModel& model, std::vector<Card> list, std::size_t from, std::size_t to);

void setCaption(CModel& model, const Card& card, const std::wstring& caption);
void setPlugin(CModel& model, const Card& card, const std::wstring& path);

}  // namespace settings
