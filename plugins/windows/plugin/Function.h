// The function behind the exports of a plug-in for real machines. It contains rules only and reaches the machine
// through the interfaces of system/, so that tests can use a fake.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "FenwynPlugin.h"

namespace win {

// All calls come on one thread, Fenwyn's user-interface thread, and none of them may take noticeably long. The
// destructor ends every thread, hook and window; it returns within a second.
class IFunction {
 public:
    virtual ~IFunction() = default;

    // Called once, first. Empty: the machine has the function. Otherwise one sentence that gives the reason; nothing
    // else is called then.
    [[nodiscard]] virtual std::wstring initialize() = 0;
    // The first value of GetDisplayItemInfo; none: the state of the machine is currently unknown.
    [[nodiscard]] virtual std::optional<ULONG> items() { return FENWYN_TWO_ITEMS; }
    [[nodiscard]] virtual std::optional<LONG> currentItem() { return std::nullopt; }
    // SelectItem, and FocusItem of brightness. False: failed.
    [[nodiscard]] virtual bool select(LONG lItem) = 0;
    // The name of an item that has its own.
    [[nodiscard]] virtual std::optional<std::wstring> itemText(ULONG /*uItem*/) { return std::nullopt; }
};

// Defined once in each library: its function for the real machine.
[[nodiscard]] std::unique_ptr<IFunction> makeFunction();

}  // namespace win
