#include "NameMessage.h"

#include "SetupIds.h"

namespace setup {

UINT nameMessage(NameVerdict verdict) {
    switch (verdict) {
        case NameVerdict::Empty:
            return IDS_ERROR_NAME_EMPTY;
        case NameVerdict::TooLong:
            return IDS_ERROR_NAME_LONG;
        case NameVerdict::Taken:
            return IDS_ERROR_NAME_TAKEN;
        case NameVerdict::Good:
            break;
    }
    return 0;
}

std::wstring controlText(HWND control) {
    std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(control)), L'\0');
    // Includes the terminating zero.
    text.resize(static_cast<std::size_t>(::GetWindowTextW(control, text.data(), static_cast<int>(text.size()) + 1)));
    return text;
}

}  // namespace setup
