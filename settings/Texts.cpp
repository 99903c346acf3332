#include "Texts.h"

#include "common/UiLanguage.h"

namespace settings {

std::wstring text(UINT id) {
    return common::textOf(nullptr, id);
}

std::wstring text(UINT id, std::initializer_list<std::wstring> arguments) {
    const std::wstring pattern = text(id);
    std::wstring result;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const std::size_t number = i + 1 < pattern.size() ? static_cast<std::size_t>(pattern[i + 1]) - L'1' : 0;
        if (pattern[i] == L'%' && i + 1 < pattern.size() && number < arguments.size()) {
            result += arguments.begin()[number];
            ++i;
        } else {
            result += pattern[i];
        }
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

}  // namespace settings
