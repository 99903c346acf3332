// FenwynCheck.exe: for the owner of a machine. Which functions it offers, in words and as a report; a function list for
// it. CommandLine.cpp has the usage.
#include <windows.h>

#include <shellapi.h>

#include <iostream>

#include "CommandLine.h"
#include "DisplayQuestion.h"
#include "Forgiveness.h"
#include "Inspection.h"
#include "MachineCheck.h"
#include "Outside.h"
#include "Registration.h"
#include "ScreenBrightness.h"
#include "Screens.h"
#include "Trial.h"
#include "common/Handle.h"
#include "common/LibrarySearch.h"
#include "common/ObjectSecurity.h"
#include "plugins/sdk/check/Console.h"

namespace {

bool ask(const std::wstring& question) {
    check::tell(question + L" [y/N] ");
    std::string answer;
    std::getline(std::cin, answer);
    return !answer.empty() && (answer[0] == 'y' || answer[0] == 'Y');
}

std::optional<DWORD> runElevated(const std::wstring& arguments) {
    const std::wstring program = machine::programPath();
    SHELLEXECUTEINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.lpVerb = L"runas";
    info.lpFile = program.c_str();
    info.lpParameters = arguments.c_str();
    info.nShow = SW_HIDE;
    if (ShellExecuteExW(&info) == FALSE || info.hProcess == nullptr) {
        return std::nullopt;
    }
    const common::UniqueHandle process(info.hProcess);
    WaitForSingleObject(process.get(), INFINITE);
    DWORD code = 0;
    return GetExitCodeProcess(process.get(), &code) != FALSE ? std::optional<DWORD>(code) : std::nullopt;
}

// A plug-in that is loaded for a look must not take back a change of the displays. Held until this process ends,
// because a plug-in's thread may live as long.
void leaveDisplaysAlone() {
    static common::UniqueHandle question;
    question.reset(CreateEventW(common::OnlyForTheUser().get(), TRUE, FALSE, fenwyn::kDisplayQuestionEvent));
}

int look(const machine::Finding& finding) {
    check::tell(finding.text);
    return static_cast<int>(finding.outcome);
}

int runForScreens(const machine::Options& options) {
    using machine::Command;
    if (options.command == Command::ScreenBrightness) {
        machine::limitOwnLife(fenwyn::kBrightnessProcessMs);
    }
    const std::unique_ptr<machine::IScreenControl> control = machine::makeScreenControl();
    switch (options.command) {
        case Command::ListScreens:
            return machine::listScreens(*control, check::tell);
        case Command::ScreenBrightness:
            return static_cast<int>(machine::screenBrightness(*control, options.screen, options.percentage));
        default:
            return machine::allowScreen(*control, options.screen, options.command == Command::AllowScreen, check::tell);
    }
}

int run(const machine::Options& options) {
    using machine::Command;
    const machine::Outside outside{machine::programFolder(),
                                   machine::runSelf,
                                   runElevated,
                                   common::writeSettings,
                                   common::removeSettings,
                                   ask,
                                   check::tell};
    switch (options.command) {
        case Command::CheckMachine:
            return machine::checkMachine(options, outside);
        case Command::Register:
            return machine::registerFunctions(options, outside);
        case Command::Unregister:
            return machine::unregisterFunctions(options, outside);
        case Command::Forgive:
            return machine::forgivePlugins(outside);
        case Command::Ask:
            return machine::askPlugin(options, outside);
        case Command::Inspect:
            check::tellCrashes();
            check::tellHangs(machine::kInspectMs);
            leaveDisplaysAlone();
            return look(machine::inspect(options.function, options.plugin));
        case Command::Try:
            check::tellCrashes();
            check::tellHangs(machine::kTryMs);
            leaveDisplaysAlone();
            return look(machine::tryChange(options.function, options.plugin));
        case Command::ListScreens:
        case Command::AllowScreen:
        case Command::ForbidScreen:
        case Command::ScreenBrightness:
            return runForScreens(options);
    }
    return machine::kWrongUse;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    prepareLibraryLoading();
    const std::vector<std::wstring> arguments(argv + 1, argv + argc);
    const std::optional<machine::Options> options = machine::parseCommandLine(arguments);
    if (!options) {
        check::tell(machine::usage());
        return machine::kWrongUse;
    }
    return run(*options);
}
