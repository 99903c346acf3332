// The function behind the exports of a plug-in for real machines. It contains rules only and reaches the machine
// through the interfaces of system/, so that tests can use a fake.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "FenwynPlugin.h"
#include "system/OfferMemory.h"

namespace win {

// An entry of the display output with favourites; FenwynPlugin.h says what the numbers mean.
struct OutputEntry {
    LONG lMode = 0;
    ULONG uFlags = 0;
    std::wstring text;  // of a custom entry
    std::vector<FenwynDisplayRecord> records;
};

// All calls come on one thread, Fenwyn's user-interface thread, and none of them may take noticeably long. The
// destructor ends every thread, hook and window; it returns within a second.
class IFunction {
 public:
    virtual ~IFunction() = default;

    // Called before initialize(), if at all: where a function whose machine answers slowly keeps what it answered.
    virtual void remember(const std::shared_ptr<IOfferMemory>& /*pMemory*/) {}
    // Called once, first. Empty: the machine has the function. Otherwise one sentence that gives the reason; nothing
    // else is called then.
    [[nodiscard]] virtual std::wstring initialize() = 0;
    // The first value of GetDisplayItemInfo; none: the state of the machine is currently unknown.
    [[nodiscard]] virtual std::optional<ULONG> items() { return FENWYN_TWO_ITEMS; }
    [[nodiscard]] virtual std::optional<LONG> currentItem() { return std::nullopt; }
    // SelectItem, and FocusItem of brightness. False: failed.
    [[nodiscard]] virtual bool select(LONG lItem) = 0;
    // The entries of the display output with favourites, each number of an item being a place in it.
    [[nodiscard]] virtual std::vector<OutputEntry> entries() { return {}; }
    // Brings back a picture that can be seen. Comes on another thread, at any time between the initialisation and the
    // destructor, and may take long.
    [[nodiscard]] virtual bool bringPictureBack() { return false; }
    // The name of an item that has its own.
    [[nodiscard]] virtual std::optional<std::wstring> itemText(ULONG /*uItem*/) { return std::nullopt; }
};

// Defined once in each library: its function for the real machine.
[[nodiscard]] std::unique_ptr<IFunction> makeFunction();

}  // namespace win
