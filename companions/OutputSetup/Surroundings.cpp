#include "Surroundings.h"

#include "DisplaySourceLibrary.h"
#include "SetupIds.h"
#include "Texts.h"
#include "common/DialogFont.h"

namespace setup {
namespace {

int messageBox(HWND owner, const std::wstring& message, UINT style) {
    return ::MessageBoxW(owner, message.c_str(), text(IDS_PROGRAM).c_str(), style | MB_SETFOREGROUND);
}

// One that cannot be used is told of; the system's displays are better than none.
void takeDisplaySource(Surroundings& surroundings) {
    const std::wstring path = displaySourcePath();
    if (path.empty()) {
        return;
    }
    DWORD error = ERROR_SUCCESS;
    const std::shared_ptr<CDisplaySource> source = CDisplaySource::load(path, error);
    if (!source) {
        surroundings.warning = text(IDS_ERROR_SOURCE, path + L"\n" + systemErrorText(error));
        return;
    }
    surroundings.displays = [source] { return source->displays(); };
    surroundings.apply = [source](LONG arrangement) { return source->apply(arrangement); };
}

}  // namespace

Surroundings realSurroundings() {
    Surroundings surroundings{
        &attachedDisplays,
        &applyArrangement,
        [](HWND owner, const std::wstring& message) { messageBox(owner, message, MB_OK | MB_ICONWARNING); },
        [](HWND owner, const std::wstring& message) {
            return messageBox(owner, message, MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES;
        },
        [] { return common::messageFont(); },
        {},
    };
    takeDisplaySource(surroundings);
    return surroundings;
}

}  // namespace setup
