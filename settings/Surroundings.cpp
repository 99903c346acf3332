#include "Surroundings.h"

#include <commdlg.h>

#include <vector>

#include "SettingsIds.h"
#include "Texts.h"
#include "common/DialogFont.h"

namespace settings {
namespace {

constexpr DWORD kLongestPath = 32768;

int messageBox(HWND owner, const std::wstring& message, UINT style) {
    return ::MessageBoxW(owner, message.c_str(), text(IDS_PROGRAM).c_str(), style | MB_SETFOREGROUND);
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
    const BOOL chosen = question.save ? ::GetSaveFileNameW(&dialog) : ::GetOpenFileNameW(&dialog);
    return chosen != FALSE ? std::optional<std::wstring>(path.data()) : std::nullopt;
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
