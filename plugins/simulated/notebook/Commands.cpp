#include "Commands.h"

#include <windows.h>

#include "Functions.h"
#include "Machine.h"
#include "SampleSettings.h"
#include "Session.h"
#include "State.h"
#include "common/UiLanguage.h"

namespace sim {

namespace {

using Arguments = std::vector<std::wstring>;

constexpr unsigned long kEndPatience = 5000;  // ms
constexpr wchar_t kWholeMachine[] = L".";     // /set's name for the state key itself

ExitCode refused(LSTATUS error, std::wstring& answer) {
    answer = error == ERROR_ACCESS_DENIED ? L"The settings are the machine's: run this as administrator.\n"
                                          : L"The registry refused (error " + std::to_wstring(error) + L").\n";
    return kRegistryRefused;
}

ExitCode onRegister(const Arguments& arguments, std::wstring& answer) {
    const bool all = arguments.size() == 2 && arguments[1] == L"/all";
    const bool keep = arguments.size() == 2 && arguments[1] == L"/keep";
    if (arguments.size() > 1 && !all && !keep) {
        return kWrongUse;
    }
    const ListState list = keep ? listState(HKEY_LOCAL_MACHINE, programFolder()) : ListState::None;
    if (list == ListState::Other) {
        answer = L"The function list is not the sample any more: it stays as it is.\n";
        return kDone;
    }
    // A sample that is there already is written again: of an older version, or in another language.
    const LSTATUS error = registerSample(HKEY_LOCAL_MACHINE, programFolder(), all || list == ListState::WholeSample,
                                         common::wantedLanguage());
    return error == ERROR_SUCCESS ? kDone : refused(error, answer);
}

ExitCode onOffer(const Arguments& arguments, std::wstring& answer) {
    if (arguments.size() != 3) {
        return kWrongUse;
    }
    // In any letter case, as in the function list.
    const fenwyn::Function* const known = fenwyn::findFunction(arguments[1]);
    const Function* const function = known == nullptr ? nullptr : findFunction(known->name);
    if (function == nullptr) {
        answer = L"There is no function \"" + arguments[1] + L"\". There are:";
        for (const Function& other : kFunctions) {
            answer += std::wstring(L" ") + other.name;
        }
        answer += L"\n";
        return kWrongUse;
    }
    LSTATUS error = ERROR_SUCCESS;
    if (listState(HKEY_LOCAL_MACHINE, programFolder()) == ListState::None) {
        error = registerSample(HKEY_LOCAL_MACHINE, programFolder(), false, common::wantedLanguage());
    }
    if (error == ERROR_SUCCESS) {
        error = offerFunction(HKEY_LOCAL_MACHINE, *function, arguments[2], common::wantedLanguage());
    }
    return error == ERROR_SUCCESS ? kDone : refused(error, answer);
}

ExitCode onUnregister(const Arguments&, std::wstring& answer) {
    const LSTATUS error = unregisterSample(HKEY_LOCAL_MACHINE, programFolder());
    return error == ERROR_SUCCESS ? kDone : refused(error, answer);
}

ExitCode onEnd(const Arguments&, std::wstring& answer) {
    if (endFenwyn(kEndPatience)) {
        return kDone;
    }
    answer = L"Fenwyn still runs.\n";
    return kStillRunning;
}

ExitCode onReset(const Arguments&, std::wstring& answer) {
    return resetState() ? kDone : refused(ERROR_ACCESS_DENIED, answer);
}

// Decimal or 0x..., with an optional sign; negative numbers as their 32-bit pattern.
bool parseNumber(const std::wstring& text, DWORD& number) {
    wchar_t* end = nullptr;
    const long long value = wcstoll(text.c_str(), &end, 0);
    if (text.empty() || *end != L'\0' || value < INT32_MIN || value > UINT32_MAX) {
        return false;
    }
    number = static_cast<DWORD>(value);
    return true;
}

ExitCode onSet(const Arguments& arguments, std::wstring& answer) {
    if (arguments.size() != 4) {
        return kWrongUse;
    }
    const std::wstring function = arguments[1] == kWholeMachine ? std::wstring() : arguments[1];
    if (!function.empty() && findFunction(function) == nullptr) {
        answer = L"There is no function \"" + function + L"\".\n";
        return kWrongUse;
    }
    DWORD number = 0;
    const wchar_t* value = arguments[2].c_str();
    const bool written = parseNumber(arguments[3], number) ? writeNumber(function, value, number)
                                                           : writeText(function, value, arguments[3]);
    return written ? kDone : refused(ERROR_ACCESS_DENIED, answer);
}

ExitCode onState(const Arguments&, std::wstring& answer) {
    for (const Function& function : kFunctions) {
        answer += std::wstring(function.name) + L"\t" + stateText(function) + L"\n";
    }
    return kDone;
}

struct Command {
    const wchar_t* name;
    ExitCode (*run)(const Arguments& arguments, std::wstring& answer);
    const wchar_t* use;
};

constexpr Command kCommands[] = {
    {L"/register", onRegister,
     L"/register [/all|/keep]: make Fenwyn show this notebook's functions; /all: the older output too; /keep: not "
     L"in place of a list that somebody changed"},
    {L"/offer", onOffer,
     L"/offer <function> <plug-in>: make this plug-in, an absolute path, carry out the function, and add the function "
     L"to the list if it is not there; the rest of the list stays"},
    {L"/unregister", onUnregister, L"/unregister: take these settings out again"},
    {L"/end", onEnd, L"/end: end Fenwyn and wait until it is gone"},
    {L"/reset", onReset, L"/reset: a new machine"},
    {L"/set", onSet, L"/set <function> <name> <value>: change a state value; function \".\" is the machine"},
    {L"/state", onState, L"/state: tell the state of every function"},
};

std::wstring usage() {
    std::wstring text = L"NotebookSim: the simulated notebook's window\n";
    for (const Command& command : kCommands) {
        text += std::wstring(L"NotebookSim ") + command.use + L"\n";
    }
    return text;
}

}  // namespace

ExitCode runCommand(const Arguments& arguments, std::wstring& answer) {
    for (const Command& command : kCommands) {
        if (!arguments.empty() && arguments[0] == command.name) {
            const ExitCode code = command.run(arguments, answer);
            if (code == kWrongUse && answer.empty()) {
                answer = usage();
            }
            return code;
        }
    }
    answer = usage();
    return kWrongUse;
}

}  // namespace sim
