// Which key opens which card, and which keys start other programs, as the model has them.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "companions/hotkey/KeyTracker.h"
#include "Model.h"

namespace settings {

struct FunctionKeys {
    std::wstring name;     // as in the function list
    std::wstring caption;  // for people: the card's, or the name if it has none
    std::vector<DWORD> codes;
};

// In the order of the list; a function that is listed twice is here once.
[[nodiscard]] std::vector<FunctionKeys> functionKeys(const CModel& model);
void setFunctionCodes(CModel& model, const std::wstring& name, const std::vector<DWORD>& codes);

// The number of a setting directly in the key of the function list; `otherwise` if there is none.
[[nodiscard]] DWORD keyNumber(const CModel& model, const wchar_t* name, DWORD otherwise);
void setKeyNumber(CModel& model, const wchar_t* name, DWORD number);

// A key that starts a program instead of opening a card.
struct CustomKey {
    std::wstring button;  // its key below the button utility's
    DWORD function = 0;   // the number that the program is stored under
    DWORD code = 0;       // 0x01 to 0x7F
    std::wstring program;
    std::wstring parameters;
};

// Buttons that this program makes begin with this, so that it removes no others.
inline constexpr wchar_t kOwnButton[] = L"Fenwyn_";

// The highest code that a customised key can have: the button utility keeps seven bits.
inline constexpr DWORD kHighestCustomCode = 0x7F;

// Those with a program, in the order in which Fenwyn finds them: of two with the same code the first one counts.
[[nodiscard]] std::vector<CustomKey> customKeys(const CModel& model);
// Gives a program to a key, in place of the one that it may have.
void setCustomKey(CModel& model, DWORD code, const std::wstring& program, const std::wstring& parameters);
// The key opens its card again. A button of the utility's own stays, without a program.
void removeCustomKey(CModel& model, const CustomKey& key);
// Removes those whose buttons are not among these values.
void removeOtherCustomKeys(CModel& model, const Changes& kept);
[[nodiscard]] bool areKeysProgrammable(const CModel& model);
// Those that start something: none while keys may not be customised.
[[nodiscard]] std::vector<CustomKey> customKeysInForce(const CModel& model);
void setKeysProgrammable(CModel& model, bool programmable);

// How the hotkey library would treat the keys after Apply, if the cards are not switched off.
[[nodiscard]] hotkey::TrackerSettings trackerSettings(const CModel& model);

// The function that a key opens already; null: it is free. The function list may name the key by its
// scan code or by its virtual key.
[[nodiscard]] const FunctionKeys* takenBy(const std::vector<FunctionKeys>& functions, std::size_t slot,
                                          DWORD virtualKey, bool alone);

}  // namespace settings
