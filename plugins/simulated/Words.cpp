#include "Words.h"

#include "common/UiLanguage.h"

namespace sim {

namespace {

struct Row {
    std::wstring_view english;
    std::wstring_view german;
};

#define FUNCTION(...)
#define WORD_ROW(english, german) {L"" english, L"" german},
constexpr Row kRows[] = {
#include "Functions.inc"
#include "Words.inc"
};
#undef WORD_ROW
#undef FUNCTION

constexpr bool rowsAreThereOnce() {
    for (const Row& row : kRows) {
        int found = 0;
        for (const Row& other : kRows) {
            found += row.english == other.english ? 1 : 0;
        }
        if (found != 1 || row.german.empty()) {
            return false;
        }
    }
    return true;
}
static_assert(rowsAreThereOnce());

}  // namespace

Language uiLanguage() noexcept {
    return PRIMARYLANGID(common::wantedLanguage()) == LANG_GERMAN ? Language::German : Language::English;
}

std::wstring word(std::wstring_view english, Language language) {
    if (language == Language::German) {
        for (const Row& row : kRows) {
            if (row.english == english) {
                return std::wstring(row.german);
            }
        }
    }
    return std::wstring(english);
}

std::wstring word(std::wstring_view english) {
    return word(english, uiLanguage());
}

std::wstring word(std::wstring_view english, std::initializer_list<std::wstring> arguments) {
    const std::wstring pattern = word(english);
    std::wstring text;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool mark =
            pattern[i] == L'%' && i + 1 < pattern.size() && pattern[i + 1] >= L'1' && pattern[i + 1] <= L'9';
        if (!mark) {
            text += pattern[i];
            continue;
        }
        const auto number = static_cast<std::size_t>(pattern[++i] - L'1');
        text += number < arguments.size() ? arguments.begin()[number] : L"";
    }
    return text;
}

}  // namespace sim
