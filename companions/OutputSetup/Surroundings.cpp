#include "Surroundings.h"

#include "SetupIds.h"
#include "Texts.h"

namespace setup {
namespace {

int messageBox(HWND owner, const std::wstring& message, UINT style) {
    return ::MessageBoxW(owner, message.c_str(), text(IDS_PROGRAM).c_str(), style | MB_SETFOREGROUND);
}

}  // namespace

Surroundings realSurroundings() {
    return {
        &attachedDisplays,
        &applyArrangement,
        [](HWND owner, const std::wstring& message) { messageBox(owner, message, MB_OK | MB_ICONWARNING); },
        [](HWND owner, const std::wstring& message) {
            return messageBox(owner, message, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
        },
    };
}

}  // namespace setup
