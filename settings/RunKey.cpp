#include "RunKey.h"

#include "FenwynRegistry.h"
#include "common/Handle.h"
#include "common/ProgramPath.h"

namespace settings {
namespace {

constexpr wchar_t kRunKey[] = FENWYN_REG_SOFTWARE L"\\Microsoft\\Windows\\CurrentVersion\\Run";

// The installer writes to the 64-bit view, whichever programs it installs.
constexpr REGSAM kView = KEY_WOW64_64KEY;

}  // namespace

std::wstring commandOf(const StartedProgram& program) {
    return L'"' + common::programFolder() + L'\\' + program.file + L'"' + program.arguments;
}

bool startsWithWindows(HKEY root, const StartedProgram& program) {
    common::UniqueRegKey key;
    return ::RegOpenKeyExW(root, kRunKey, 0, KEY_QUERY_VALUE | kView, key.put()) == ERROR_SUCCESS &&
           ::RegQueryValueExW(key.get(), program.value, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

LSTATUS setStartWithWindows(HKEY root, const StartedProgram& program, bool starts) {
    common::UniqueRegKey key;
    if (const LSTATUS error = ::RegCreateKeyExW(root, kRunKey, 0, nullptr, 0, KEY_SET_VALUE | kView, nullptr,
                                                key.put(), nullptr);
        error != ERROR_SUCCESS) {
        return error;
    }
    if (starts) {
        const std::wstring command = commandOf(program);
        return ::RegSetValueExW(key.get(), program.value, 0, REG_SZ, reinterpret_cast<const BYTE*>(command.c_str()),
                                static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t)));
    }
    const LSTATUS error = ::RegDeleteValueW(key.get(), program.value);
    return error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error;
}

}  // namespace settings
