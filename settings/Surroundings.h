// What the windows request from the machine and the person. Tests supply their own implementation.
#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string>

#include "PluginState.h"

namespace settings {

// A question for a file: its title and the kinds of files, as in the common dialogs ("Plug-ins\0*.dll\0\0").
struct FileQuestion {
    std::wstring title;
    std::wstring kinds;
    std::wstring extension;  // that a name without one gets
    bool save = false;       // the file may be new
};

struct Surroundings {
    // A message for the person, and a question with the answers yes (true) and no. Both return when the person has
    // answered.
    std::function<void(HWND owner, const std::wstring& text)> tell;
    std::function<bool(HWND owner, const std::wstring& text)> ask;
    // A file; nothing when the person chose none.
    std::function<std::optional<std::wstring>(HWND owner, const FileQuestion& question)> chooseFile;
    // What a plug-in says of itself. Takes half a minute at most. Thread: any.
    std::function<PluginAnswer(const std::wstring& function, const std::wstring& plugin)> askPlugin;
    // The font of the windows on a screen of that dpi; its height is in pixels.
    std::function<LOGFONTW(UINT dpi)> font;
};

// The machine that the program runs on.
[[nodiscard]] Surroundings realSurroundings();

}  // namespace settings
