#include "Surroundings.h"

#include <commdlg.h>

#include <vector>

#include "SettingsIds.h"
#include "Texts.h"
#include "common/DialogFont.h"
#include "common/SystemLibrary.h"

namespace settings {
namespace {

constexpr DWORD kLongestPath = 32768;

int messageBox(HWND owner, const std::wstring& message, UINT style) {
    return ::MessageBoxW(owner, message.c_str(), text(IDS_PROGRAM).c_str(), style | MB_SETFOREGROUND);
}

// Loaded when it is needed: the icon in the notification area is this program too, and would have the library in memory
// for good.
BOOL askForFile(OPENFILENAMEW& dialog, bool save) {
    const common::UniqueModule library = loadSystemLibrary(L"comdlg32.dll");
    if (!library) {
        return FALSE;
    }
    const auto ask = reinterpret_cast<decltype(&::GetOpenFileNameW)>(reinterpret_cast<void*>(
        ::GetProcAddress(library.get(), save ? "GetSaveFileNameW" : "GetOpenFileNameW")));
    return ask != nullptr ? ask(&dialog) : FALSE;
}

std::optional<std::wstring> chooseFile(HWND owner, const FileQuestion& question) {
    std::vector<wchar_t> path(kLongestPath, L'\0');
    OPENFILENAMEW dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = question.kinds.c_str();
    dialog.lpstrFile = path.data();
    dialog.nMaxFile = kLongestPath;
    dialog.lpstrTitle = question.title.c_str();
    dialog.lpstrDefExt = question.extension.c_str();
    dialog.Flags = OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST |
                   (question.save ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST);
    return askForFile(dialog, question.save) != FALSE ? std::optional<std::wstring>(path.data()) : std::nullopt;
}

}  // namespace

Surroundings realSurroundings() {
    return {
        [](HWND owner, const std::wstring& message) { messageBox(owner, message, MB_OK | MB_ICONWARNING); },
        [](HWND owner, const std::wstring& message) {
            return messageBox(owner, message, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
        },
        &chooseFile,
        &askPlugin,
        [](UINT dpi) { return common::messageFont(dpi); },
    };
}

}  // namespace settings
