#include "CardList.h"

#include <algorithm>

#include "Data/RegistryPaths.h"
#include "FenwynFunctions.h"
#include "KeyTable.h"
#include "captions/Captions.h"
#include "common/ProgramPath.h"
#include "common/UiLanguage.h"

namespace settings {
namespace {

// Fenwyn has as many cards at most as a keyboard has keys.
constexpr std::size_t kMostCards = 256;

Place placeOf(const CModel& model, const std::wstring& function, const wchar_t* name) {
    return {model.listRoot(), std::wstring(regpath::kHotkeyKey) + L"\\" + function, name};
}

std::wstring textAt(const CModel& model, const Place& place) {
    const Content content = model.content(place);
    return content ? textOf(*content) : std::wstring();
}

std::wstring expanded(const std::wstring& path) {
    wchar_t result[MAX_PATH * 4] = L"";
    const DWORD length = ::ExpandEnvironmentStringsW(path.c_str(), result, static_cast<DWORD>(std::size(result)));
    return length != 0 && length <= std::size(result) ? result : path;
}

bool areCustomised(const std::vector<DWORD>& codes, const std::vector<CustomKey>& keys) {
    return !codes.empty() && std::ranges::all_of(codes, [&](DWORD code) {
        return std::ranges::find(keys, code, &CustomKey::code) != keys.end();
    });
}

Card cardOf(const CModel& model, const std::vector<CustomKey>& customised, const std::wstring& name, bool isListed) {
    Card card;
    card.name = name;
    card.isListed = isListed;
    card.isKnown = fenwyn::findFunction(name) != nullptr;
    card.codes = numbersOf(model.content(placeOf(model, name, regpath::kCode)).value_or(Data{}));
    card.startsPrograms = areCustomised(card.codes, customised);
    card.caption = textAt(model, placeOf(model, name, regpath::kCaption));
    card.plugin = textAt(model, placeOf(model, name, regpath::kFuncDll));
    card.pluginFile = expanded(card.plugin);
    if (card.caption.empty() && !isListed) {
        card.caption = captions::captionOf(name, common::wantedLanguage());
    }
    return card;
}

// A name without its semicolon is none, as in the program.
std::vector<std::wstring> listedNames(const CModel& model) {
    const std::wstring list = textAt(model, {model.listRoot(), regpath::kHotkeyKey, regpath::kFuncList});
    std::vector<std::wstring> names;
    std::size_t start = 0;
    for (std::size_t end = list.find(L';'); end != std::wstring::npos && names.size() < kMostCards;
         end = list.find(L';', start)) {
        if (end != start) {
            names.push_back(list.substr(start, end - start));
        }
        start = end + 1;
    }
    return names;
}

void setIfMissing(CModel& model, const Place& place, const std::wstring& text) {
    if (!text.empty() && !model.content(place)) {
        model.set(place, textData(text));
    }
}

}  // namespace

std::vector<Card> cards(const CModel& model) {
    const std::vector<CustomKey> customised = customKeysInForce(model);
    std::vector<Card> list;
    for (const std::wstring& name : listedNames(model)) {
        list.push_back(cardOf(model, customised, name, true));
    }
    for (const fenwyn::Function& function : fenwyn::kFunctions) {
        const bool isListed =
            std::ranges::any_of(list, [&](const Card& card) { return fenwyn::equalNames(card.name, function.name); });
        if (!isListed) {
            list.push_back(cardOf(model, customised, function.name, false));
        }
    }
    return list;
}

void setList(CModel& model, const std::vector<Card>& list) {
    std::wstring names;
    for (const Card& card : list) {
        names += card.isListed ? card.name + L";" : L"";
    }
    model.set({model.listRoot(), regpath::kHotkeyKey, regpath::kFuncList}, textData(names));
}

void switchCard(CModel& model, std::vector<Card> list, std::size_t index, bool on) {
    Card card = list[index];
    card.isListed = on;
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(index));
    const auto end = std::ranges::find(list, false, &Card::isListed);
    list.insert(end, card);
    if (on) {
        const std::wstring folder = common::programFolder();
        setIfMissing(model, placeOf(model, card.name, regpath::kCaption), card.caption);
        setIfMissing(model, placeOf(model, card.name, regpath::kFuncDll),
                     folder + L"\\plugins\\Win" + card.name + L".dll");
        setIfMissing(model, {model.listRoot(), regpath::kProgramKey, regpath::kInstallPath}, folder);
    }
    setList(model, list);
}

void moveCard(CModel& model, std::vector<Card> list, std::size_t from, std::size_t to) {
    const Card card = list[from];
    list.erase(list.begin() + static_cast<std::ptrdiff_t>(from));
    list.insert(list.begin() + static_cast<std::ptrdiff_t>(to), card);
    setList(model, list);
}

void setCaption(CModel& model, const Card& card, const std::wstring& caption) {
    model.set(placeOf(model, card.name, regpath::kCaption), textData(caption));
}

void setPlugin(CModel& model, const Card& card, const std::wstring& path) {
    model.set(placeOf(model, card.name, regpath::kFuncDll), textData(path));
}

}  // namespace settings
