// What the program needs of the world outside; tests put something else in its place.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "OwnProcess.h"
#include "common/SettingsRecipe.h"

namespace machine {

struct Outside {
    std::wstring folder;  // where Fenwyn stands, without a backslash at its end
    std::function<ChildResult(const std::wstring& arguments, DWORD patience)> runSelf;
    // This program with administrator rights: its exit code, or nothing when the user refused.
    std::function<std::optional<DWORD>(const std::wstring& arguments)> runElevated;
    // Of common/SettingsRecipe.h: users who are not administrators are refused.
    std::function<LSTATUS(HKEY root, std::span<const common::Setting> settings)> writeSettings;
    std::function<LSTATUS(HKEY root, std::span<const common::Setting> settings)> removeSettings;
    std::function<bool(const std::wstring& question)> ask;  // a question that is answered by yes or no
    std::function<void(const std::wstring& text)> tell;
};

enum ExitCode : int { kWell = 0, kFaulty = 1, kWrongUse = 2, kNotWritten = 3, kNothingToDo = 4 };

}  // namespace machine
