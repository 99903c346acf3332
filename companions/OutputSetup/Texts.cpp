#include "Texts.h"

#include "SetupIds.h"
#include "common/UiLanguage.h"

namespace setup {

std::wstring text(UINT id) {
    return common::textOf(nullptr, id);
}

std::wstring text(UINT id, const std::wstring& argument) {
    std::wstring result = text(id);
    if (const std::size_t mark = result.find(L"%1"); mark != std::wstring::npos) {
        result.replace(mark, 2, argument);
    }
    return result;
}

std::wstring systemErrorText(DWORD error) {
    wchar_t buffer[512] = {};
    const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                                          buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    std::wstring words(buffer, length);
    words.erase(words.find_last_not_of(L" \r\n") + 1);
    return words.empty() ? std::to_wstring(error) : words + L" (" + std::to_wstring(error) + L")";
}

std::wstring modeText(LONG mode) {
    const LONG id = IDS_MODE + mode;
    return mode >= 0 && id <= IDS_MODE_LAST ? text(static_cast<UINT>(id)) : text(IDS_MODE_OTHER, std::to_wstring(mode));
}

}  // namespace setup
