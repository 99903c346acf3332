#include "Registration.h"

#include "FenwynRegistry.h"
#include "FunctionListRoot.h"
#include "MachineCheck.h"
#include "SampleList.h"
#include "captions/Captions.h"
#include "common/UiLanguage.h"

namespace machine {

namespace {

HKEY rootOf(const Options& options) {
    return options.forUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

// Empty when the list may be written.
std::wstring objection(const Options& options) {
    if (options.forUser && fenwyn::hasFunctionList(HKEY_LOCAL_MACHINE)) {
        return L"This machine has a function list; the user's own would not be looked at.\n";
    }
    if (!options.replace && fenwyn::hasFunctionList(rootOf(options))) {
        return L"There is a function list already; it stays as it is. --replace writes over it.\n";
    }
    return {};
}

std::vector<std::wstring> offeredNames(const Outside& outside) {
    std::vector<std::wstring> names;
    for (const Entry& entry : family(outside.folder)) {
        if (!entry.codes.empty() && inspectApart(entry, outside).outcome == Outcome::Offered) {
            names.push_back(entry.name);
        }
    }
    return names;
}

std::wstring joined(const std::vector<std::wstring>& names) {
    std::wstring list;
    for (const std::wstring& name : names) {
        list += name + L";";
    }
    return list;
}

// Empty when the list can have all of `names`, and there are some.
std::wstring unknownNames(std::span<const std::wstring> names) {
    std::wstring words = names.empty() ? L"No function is named.\n" : L"";
    for (const std::wstring& name : names) {
        if (listedNames({&name, 1}).empty()) {
            words += L"There is no function \"" + name + L"\" for the list.\n";
        }
    }
    return words.empty() ? words : words + L"The functions are: " + joined(listableNames()) + L"\n";
}

ExitCode refused(LSTATUS error, const Outside& outside) {
    outside.tell(error == ERROR_ACCESS_DENIED
                     ? L"Nothing was written: that takes administrator rights. With --user it does not.\n"
                     : L"The registry refused (error " + std::to_wstring(error) + L").\n");
    return kNotWritten;
}

// Once more with administrator rights; not from a process that should have them.
ExitCode elevate(const Options& options, const std::wstring& arguments, const Outside& outside) {
    const std::optional<DWORD> code = options.elevated ? std::nullopt : outside.runElevated(arguments + L" --elevated");
    return code == DWORD{kWell} ? kWell : refused(ERROR_ACCESS_DENIED, outside);
}

std::wstring storedList(HKEY root) {
    wchar_t list[4096];
    DWORD size = sizeof list;
    return RegGetValueW(root, FENWYN_REG_HOTKEY, FENWYN_VALUE_FUNC_LIST, RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, list,
                        &size) == ERROR_SUCCESS
               ? list
               : L"";
}

}  // namespace

ExitCode registerFunctions(const Options& options, const Outside& outside) {
    const std::vector<std::wstring> wanted = namesOf(options.functions);
    if (const std::wstring words = unknownNames(wanted); !options.functions.empty() && !words.empty()) {
        outside.tell(words);
        return kWrongUse;
    }
    if (const std::wstring why = objection(options); !why.empty()) {
        outside.tell(why);
        return kNothingToDo;
    }
    const std::vector<std::wstring> names = listedNames(options.functions.empty() ? offeredNames(outside) : wanted);
    const std::vector<common::Setting> settings = sampleSettings(outside.folder, names, common::wantedLanguage());
    if (names.empty()) {
        outside.tell(L"This machine offers none of the functions; nothing was written.\n");
        return kNothingToDo;
    }
    const LSTATUS error = outside.writeSettings(rootOf(options), settings);
    ExitCode code = kWell;
    if (error == ERROR_ACCESS_DENIED && !options.forUser) {
        code = elevate(options,
                       std::wstring(L"--register --functions ") + common::quotedArgument(joined(names)) +
                           (options.replace ? L" --replace" : L""),
                       outside);
    } else if (error != ERROR_SUCCESS) {
        code = refused(error, outside);
    }
    if (code == kWell) {
        outside.tell(L"The function list is written: " + joined(names) + L"\n");
    }
    return code;
}

ExitCode unregisterFunctions(const Options& options, const Outside& outside) {
    const HKEY root = rootOf(options);
    const std::vector<std::wstring> names = namesOf(storedList(root));
    LSTATUS error = ERROR_SUCCESS;
    // The captions may be in any language; a value that does not match in one language stays and is compared in the
    // next.
    for (const LANGID language : captions::languages()) {
        const LSTATUS status = outside.removeSettings(root, sampleSettings(outside.folder, names, language));
        error = error == ERROR_SUCCESS ? status : error;
    }
    if (error == ERROR_ACCESS_DENIED && !options.forUser) {
        return elevate(options, L"--unregister", outside);
    }
    return error == ERROR_SUCCESS ? kWell : refused(error, outside);
}

}  // namespace machine
