#include "common/UiLanguage.h"

#include <algorithm>
#include <string_view>

#include "companions/include/FenwynRegistry.h"

namespace common {

namespace {

constexpr UINT kTextsOfTable = 16;  // the system stores texts in tables of sixteen, empty ones included

LPCWSTR tableOf(UINT id) noexcept {
    return MAKEINTRESOURCEW(id / kTextsOfTable + 1);
}

BOOL CALLBACK addLanguage(HMODULE /*module*/, LPCWSTR /*type*/, LPCWSTR /*name*/, WORD language, LONG_PTR list) {
    reinterpret_cast<std::vector<LANGID>*>(list)->push_back(language);
    return TRUE;
}

// The language that the setting below `root` names; 0 if there is none.
LANGID languageOfSetting(HKEY root) noexcept {
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = L"";
    DWORD size = sizeof name;
    if (::RegGetValueW(root, FENWYN_REG_PRODUCT, FENWYN_VALUE_LANGUAGE, RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, name,
                       &size) != ERROR_SUCCESS ||
        name[0] == L'\0') {  // an empty name is one of the system's
        return 0;
    }
    return LANGIDFROMLCID(::LocaleNameToLCID(name, 0));
}

}  // namespace

LANGID wantedLanguage() noexcept {
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        if (const LANGID language = languageOfSetting(root); language != 0) {
            return language;
        }
    }
    return ::GetUserDefaultUILanguage();
}

LANGID nearestLanguage(std::span<const LANGID> there, LANGID wanted) noexcept {
    if (std::ranges::find(there, wanted) != there.end()) {
        return wanted;
    }
    for (const int primary : {PRIMARYLANGID(wanted), LANG_ENGLISH}) {
        const auto found =
            std::ranges::find_if(there, [primary](LANGID language) { return PRIMARYLANGID(language) == primary; });
        if (found != there.end()) {
            return *found;
        }
    }
    return there.empty() ? LANGID{0} : there.front();
}

std::vector<LANGID> languagesOfText(HMODULE module, UINT id) {
    std::vector<LANGID> languages;
    ::EnumResourceLanguagesW(module, RT_STRING, tableOf(id), &addLanguage, reinterpret_cast<LONG_PTR>(&languages));
    return languages;
}

std::wstring textIn(HMODULE module, UINT id, LANGID language) {
    const HRSRC table = ::FindResourceExW(module, RT_STRING, tableOf(id), language);
    const HGLOBAL loaded = table != nullptr ? ::LoadResource(module, table) : nullptr;
    const auto* const units = loaded != nullptr ? static_cast<const wchar_t*>(::LockResource(loaded)) : nullptr;
    // A damaged library's lengths may lead out of the table.
    std::wstring_view rest(units, units != nullptr ? ::SizeofResource(module, table) / sizeof(wchar_t) : 0);
    for (UINT i = 0; i < id % kTextsOfTable && !rest.empty(); ++i) {
        rest.remove_prefix(
            std::min<std::size_t>(rest.size(), std::size_t{1} + rest.front()));  // it begins with its length
    }
    return rest.empty() ? std::wstring() : std::wstring(rest.substr(1, rest.front()));
}

std::wstring textNear(HMODULE module, UINT id, LANGID wanted) {
    const LANGID language = nearestLanguage(languagesOfText(module, id), wanted);
    return language != 0 ? textIn(module, id, language) : std::wstring();
}

std::wstring textOf(HMODULE module, UINT id) {
    static const LANGID wanted = wantedLanguage();
    return textNear(module, id, wanted);
}

}  // namespace common
