// What a function of the real machine does behind the exports of its plug-in. Rules only: the machine itself is reached
// through the interfaces of system/, so that tests can put a fake in their place.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "FenwynPlugin.h"

namespace win {

// All calls come on one thread, Fenwyn's user-interface thread, and none of them may take longer than a person notices.
// The destructor gives up every thread, hook and window; it returns within a second.
class IFunction {
 public:
    virtual ~IFunction() = default;

    // Called once, first. Empty: the machine has the function. Otherwise one sentence that says why it has not; nothing
    // else is called then.
    [[nodiscard]] virtual std::wstring initialize() = 0;
    // The first value of GetDisplayItemInfo; none: the state of the machine cannot be told now.
    [[nodiscard]] virtual std::optional<ULONG> items() { return FENWYN_TWO_ITEMS; }
    [[nodiscard]] virtual std::optional<LONG> currentItem() { return std::nullopt; }
    // SelectItem, and FocusItem of the brightness. False: it was not done.
    [[nodiscard]] virtual bool select(LONG lItem) = 0;
    // The name of an item that has one of its own.
    [[nodiscard]] virtual std::optional<std::wstring> itemText(ULONG /*uItem*/) { return std::nullopt; }
};

// Defined once in each library: its function on the real machine.
[[nodiscard]] std::unique_ptr<IFunction> makeFunction();

}  // namespace win
