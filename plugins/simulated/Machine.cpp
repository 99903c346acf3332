#include "Machine.h"

#include "OutputEntries.h"
#include "State.h"
#include "Words.h"

namespace sim {

namespace {

constexpr DWORD kPairedStates = 12;      // wireless: even states switch a radio off, odd ones on
constexpr DWORD kCancelState = 14;       // wireless
constexpr DWORD kAllRadiosOn = 12;       // wireless
constexpr DWORD kAllRadiosOff = 13;      // wireless
constexpr DWORD kLastOfFirstMask = 18;   // older output
constexpr DWORD kSecondMask = 32;        // older output: number of the second mask's bit 0
constexpr DWORD kLastOfSecondMask = 57;  // older output
constexpr DWORD kSecondMaskTopBit = 63;  // older output: number of the second mask's bit 31
constexpr const wchar_t* kRadioNames[] = {L"LAN", L"short-range", L"mobile", L"satellite", L"near-field", L"display"};
constexpr DWORD kDefaultTimer = 15;  // keyboard light, seconds
constexpr DWORD kDriveCancel = 4;
constexpr DWORD kDefaultRadios = 0x1;  // the first radio is on,
constexpr DWORD kFittedRadios = 0x3;   // two exist

DWORD items(const Function& function) {
    return readNumber(function.name, L"Items", function.items);
}
DWORD items2(const Function& function) {
    return readNumber(function.name, L"Items2", function.items2);
}
DWORD storedItem(const Function& function) {
    return readNumber(function.name, L"Item", function.firstItem);
}
bool storeItem(const Function& function, DWORD item) {
    return writeNumber(function.name, L"Item", item);
}

bool countOne(const Function& function, const wchar_t* value) {
    return writeNumber(function.name, value, readNumber(function.name, value, 0) + 1);
}

bool hasBit(DWORD mask, DWORD bit) {
    return bit < 32 && ((mask >> bit) & 1U) != 0;
}

// For each radio the opposite of its state; one can always cancel.
DWORD offeredStates(const Function& function) {
    const DWORD radios = readNumber(function.name, L"Radios", kDefaultRadios);
    const DWORD fitted = readNumber(function.name, L"Fitted", kFittedRadios);
    DWORD states = function.items;
    for (DWORD radio = 0; radio < std::size(kRadioNames); ++radio) {
        if (hasBit(fitted, radio)) {
            states |= 1U << (2 * radio + (hasBit(radios, radio) ? 0 : 1));
        }
    }
    return readNumber(function.name, L"Items", states);
}

// The item at a position among the existing ones; false if there are fewer.
bool itemAt(DWORD mask, LONG position, DWORD& item) {
    LONG seen = 0;
    for (DWORD bit = 0; bit < 32; ++bit) {
        if (hasBit(mask, bit) && seen++ == position) {
            item = bit;
            return true;
        }
    }
    return false;
}

bool maskHasArrangement(const Function& function, DWORD number) {
    if (number <= kLastOfFirstMask) {
        return hasBit(items(function), number);
    }
    const bool second = (number >= kSecondMask && number <= kLastOfSecondMask) || number == kSecondMaskTopBit;
    return second && hasBit(items2(function), number - kSecondMask);
}

bool selectRadios(const Function& function, DWORD state) {
    if (!hasBit(offeredStates(function), state) || state > kCancelState) {
        return false;
    }
    const DWORD radio = 1U << (state / 2);
    const DWORD fitted = readNumber(function.name, L"Fitted", kFittedRadios);
    DWORD radios = readNumber(function.name, L"Radios", kDefaultRadios);
    if (state < kPairedStates) {
        radios = state % 2 == 0 ? radios & ~radio : radios | radio;
    } else if (state == kAllRadiosOn || state == kAllRadiosOff) {
        radios = state == kAllRadiosOn ? fitted : 0;
    }
    return writeNumber(function.name, L"Radios", radios) && storeItem(function, state);
}

bool selectEntry(const Function& function, DWORD index) {
    const std::vector<OutputEntry> entries = outputEntries();
    return index < entries.size() && canBeChosen(entries[index]) && storeItem(function, index);
}

bool selectPosition(const Function& function, LONG position) {
    DWORD item = 0;
    return itemAt(items(function), position, item) && storeItem(function, item);
}

bool selectDriveItem(const Function& function, DWORD item) {
    return hasBit(items(function), item) && (item == kDriveCancel || storeItem(function, item));
}

bool selectAction(const Function& function, DWORD item) {
    return hasBit(items(function), item) && (item != 0 || countOne(function, L"Count"));
}

std::wstring itemName(const Function& function, DWORD item) {
    const bool known = item < kMaxItemNames && function.itemNames[item] != nullptr;
    return known ? word(function.itemNames[item]) : word(L"item %1", {std::to_wstring(item)});
}

std::wstring radiosText(const Function& function) {
    if (readNumber(function.name, L"ErrorMode", 0) != 0) {
        return word(L"states unknown");
    }
    const DWORD radios = readNumber(function.name, L"Radios", kDefaultRadios);
    const DWORD fitted = readNumber(function.name, L"Fitted", kFittedRadios);
    std::wstring text;
    for (DWORD radio = 0; radio < std::size(kRadioNames); ++radio) {
        if (hasBit(fitted, radio)) {
            text += (text.empty() ? L"" : L", ") +
                    word(hasBit(radios, radio) ? L"%1 on" : L"%1 off", {word(kRadioNames[radio])});
        }
    }
    return text.empty() ? word(L"no radio") : text;
}

std::wstring levelText(const Function& function) {
    const std::wstring levels = std::to_wstring(items(function));
    const std::wstring first = std::to_wstring(storedItem(function));
    if (!dualControl(function)) {
        return word(L"level %1 of %2", {first, levels});
    }
    const DWORD second = readNumber(function.name, L"Item2", function.firstItem);
    return word(L"level %1 and %2 of %3", {first, std::to_wstring(second), levels});
}

std::wstring backlightText(const Function& function) {
    const std::wstring name = itemName(function, storedItem(function));
    const DWORD seconds = readNumber(function.name, L"Timer", kDefaultTimer);
    return storedItem(function) == 0 ? word(L"%1, %2 s", {name, std::to_wstring(seconds)}) : name;
}

std::wstring entryText() {
    const std::vector<OutputEntry> entries = outputEntries();
    return entries[static_cast<std::size_t>(currentOutputEntry(entries))].text;
}

std::wstring countText(const Function& function) {
    const DWORD count = readNumber(function.name, L"Count", 0);
    if (count == 0) {
        return word(L"not yet");
    }
    return count == 1 ? word(L"1 time") : word(L"%1 times", {std::to_wstring(count)});
}

// The older output: what its numbers mean. A plus sign is the same picture on both, an arrow a desktop that goes on.
std::wstring arrangementText(DWORD number) {
    static constexpr const wchar_t* kFirstMaskTexts[] = {
        L"LCD",       L"CRT",        L"DVI",       L"HDMI",       L"DP",        L"TV",        L"LCD + CRT",
        L"LCD + DVI", L"LCD + HDMI", L"LCD + DP",  L"LCD + TV",   L"LCD › CRT", L"LCD › DVI", L"LCD › HDMI",
        L"LCD › DP",  L"LCD › TV",   L"CRT + DVI", L"CRT + HDMI", L"DVI + HDMI"};
    static constexpr const wchar_t* kSecondMaskTexts[] = {L"CRT › LCD",
                                                          L"DVI › LCD",
                                                          L"HDMI › LCD",
                                                          L"DP › LCD",
                                                          L"TV › LCD",
                                                          L"CRT + DP",
                                                          L"DVI + DP",
                                                          L"HDMI + DP",
                                                          L"CRT + TV",
                                                          L"CRT › DVI",
                                                          L"CRT › HDMI",
                                                          L"DVI › HDMI",
                                                          L"CRT › DP",
                                                          L"DVI › DP",
                                                          L"HDMI › DP",
                                                          L"CRT › TV",
                                                          L"DVI › CRT",
                                                          L"HDMI › CRT",
                                                          L"HDMI › DVI",
                                                          L"DP › CRT",
                                                          L"DP › DVI",
                                                          L"DP › HDMI",
                                                          L"TV › CRT",
                                                          L"all displays, same picture",
                                                          L"all displays, extended",
                                                          L"automatic"};
    static_assert(std::size(kFirstMaskTexts) == kLastOfFirstMask + 1);
    static_assert(std::size(kSecondMaskTexts) == kLastOfSecondMask - kSecondMask + 1);
    if (number <= kLastOfFirstMask) {
        return kFirstMaskTexts[number];
    }
    if (number >= kSecondMask && number <= kLastOfSecondMask) {
        return word(kSecondMaskTexts[number - kSecondMask]);
    }
    return number == kSecondMaskTopBit ? word(L"swapped") : word(L"item %1", {std::to_wstring(number)});
}

}  // namespace

bool itemInfo(const Function& function, ItemInfo& info) {
    if (function.kind == Kind::Radios) {
        info = {offeredStates(function), 0};
        return readNumber(function.name, L"ErrorMode", 0) == 0;
    }
    info = {items(function), items2(function)};
    return true;
}

LONG currentItem(const Function& function) {
    const DWORD item = storedItem(function);
    switch (function.kind) {
        case Kind::Backlight:
            return static_cast<LONG>((item & 0xFFFF) | readNumber(function.name, L"Timer", kDefaultTimer) << 16);
        case Kind::Slider:
            return static_cast<LONG>(dualControl(function)
                                         ? (item & 0xFF) |
                                               (readNumber(function.name, L"Item2", function.firstItem) & 0xFF) << 8
                                         : item);
        case Kind::Favourites:
            return currentOutputEntry(outputEntries());
        default:
            return static_cast<LONG>(item);
    }
}

bool selectItem(const Function& function, LONG item) {
    const auto number = static_cast<DWORD>(item);
    switch (function.kind) {
        case Kind::Action:
            return selectAction(function, number);
        case Kind::Positions:
        case Kind::Backlight:
            return selectPosition(function, item);
        case Kind::Drive:
            return selectDriveItem(function, number);
        case Kind::Radios:
            return selectRadios(function, number);
        case Kind::Masks:
            return maskHasArrangement(function, number) && storeItem(function, number);
        case Kind::Favourites:
            return selectEntry(function, number);
        case Kind::Toggle:
        case Kind::Plans:
            return hasBit(items(function), number) && storeItem(function, number);
        case Kind::Slider:
            break;
    }
    return false;
}

bool focusItem(const Function& function, LONG level) {
    if (level == kNoChoice) {
        return true;
    }
    const auto number = static_cast<DWORD>(level);
    if (number > items(function)) {
        return false;
    }
    return storeItem(function, number) && (!dualControl(function) || writeNumber(function.name, L"Item2", number));
}

bool dualControl(const Function& function) {
    return readNumber(function.name, L"Dual", 0) != 0;
}

std::wstring planName(const Function& function, DWORD plan) {
    const std::wstring value = L"Name" + std::to_wstring(plan);
    return readText(function.name, value.c_str(), itemName(function, plan));
}

std::wstring stateText(const Function& function) {
    switch (function.kind) {
        case Kind::Action:
            return countText(function);
        case Kind::Backlight:
            return backlightText(function);
        case Kind::Plans:
            return planName(function, storedItem(function));
        case Kind::Radios:
            return radiosText(function);
        case Kind::Slider:
            return levelText(function);
        case Kind::Masks:
            return arrangementText(storedItem(function));
        case Kind::Favourites:
            return entryText();
        default:
            return itemName(function, storedItem(function));
    }
}

}  // namespace sim
