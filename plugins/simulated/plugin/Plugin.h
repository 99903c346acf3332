// Common to all exports of a simulated plug-in: configured delay and result, record of the call, and a border that no
// exception crosses.
#pragma once

#include <initializer_list>
#include <new>
#include <string>

#include "CallRecord.h"
#include "FenwynPlugin.h"
#include "Functions.h"

namespace sim {

// The row of the table that this library was built for.
[[nodiscard]] const Function& self() noexcept;

inline constexpr LONG kFailed = 1;

// The kind of call: the notebook's window shows calls that change the machine.
enum class Effect { Question, Change };

struct Outcome {
    LONG result;
    std::wstring arguments;
};

[[nodiscard]] std::wstring joined(std::initializer_list<long long> arguments);

// The configured result of an export after its configured delay; 0 if the export is to work.
[[nodiscard]] LONG configuredResult(const wchar_t* exportName);
void finishCall(const wchar_t* exportName, Effect effect, const Outcome& outcome);

// Runs `body` (which returns an Outcome) unless a result is configured, and records the call. The border of every
// export: everything that needs memory is done in here.
template <typename Body>
LONG perform(const wchar_t* exportName, Effect effect, std::initializer_list<long long> argumentsIfSkipped,
             Body body) noexcept {
    try {
        const LONG configured = configuredResult(exportName);
        const Outcome outcome = configured != 0 ? Outcome{configured, joined(argumentsIfSkipped)} : body();
        finishCall(exportName, effect, outcome);
        return outcome.result;
    } catch (...) {
        return -kFailed;  // GetDisplayItemInfo fails only with negative results, every other export with any
    }
}

}  // namespace sim
