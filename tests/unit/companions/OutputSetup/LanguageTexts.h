// The texts of the resources in a language of the test's choice.
#pragma once

#include <string>
#include <vector>

#include "common/UiLanguage.h"

inline std::wstring textOf(UINT id, WORD language) {
    return common::textIn(nullptr, id, language);
}

// A text in every language that it exists in.
inline std::vector<std::wstring> textsOf(UINT id) {
    std::vector<std::wstring> texts;
    for (const LANGID language : common::languagesOfText(nullptr, id)) {
        texts.push_back(textOf(id, language));
    }
    return texts;
}
