// What there is to see of the simulated notebook, in words.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace sim {

struct NotebookRow {
    std::wstring function;
    std::wstring keys;
    std::wstring caption;  // as the card has it
    std::wstring state;
    bool changed = false;  // by the latest change

    bool operator==(const NotebookRow&) const = default;
};

struct NotebookModel {
    std::vector<NotebookRow> rows;  // of the functions in the function list; of all in the sample when there is no list
    bool latched = false;           // the modifier stays down without being held
    std::wstring hint;              // what to do with the modifier
    std::wstring lastChoice;        // what came of the last call that was to change the machine
    std::wstring typed;             // the last key that reached the window; empty when there was none

    bool operator==(const NotebookModel&) const = default;
};

// Reads the machine as it is now. Rows whose state differs from `previous` are marked; when none differs, the marks
// stay as they were. A machine that was reset has no marks.
[[nodiscard]] NotebookModel readNotebook(const NotebookModel& previous);

}  // namespace sim
