#include "Allowed.h"

#include <algorithm>

#include "Data/RegistryPaths.h"
#include "FenwynFunctions.h"
#include "ZelHotkey.h"

namespace settings {
namespace {

constexpr std::size_t kLongestName = 64;  // of a function or a button
constexpr std::size_t kMostCodes = 16;
constexpr std::size_t kLongestProgram = 960;  // characters; more is not started
constexpr DWORD kHighestFunction = 0xFFFF;    // of the button utility

constexpr const wchar_t* kLanguages[] = {L"en", L"de", L"fr", L"es", L"it", L"pt-BR", L"nl",
                                         L"pl", L"tr", L"ru", L"uk", L"ja", L"zh-CN", L"ko"};

bool isNumber(const Data& data, DWORD lowest, DWORD highest) {
    const std::optional<DWORD> number = numberOf(data);
    return data.type == REG_DWORD && data.bytes.size() == sizeof(DWORD) && *number >= lowest && *number <= highest;
}

bool isTextUpTo(const Data& data, std::size_t longest) {
    const std::wstring text = textOf(data);
    const bool printable = std::ranges::none_of(text, [](wchar_t c) { return c < L' ' || c == L'\x7F'; });
    return (data.type == REG_SZ || data.type == REG_EXPAND_SZ) && text.size() <= longest && printable;
}

bool isWord(const std::wstring& text) {
    return !text.empty() && text.size() <= kLongestName && std::ranges::all_of(text, [](wchar_t c) {
        return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || (c >= L'0' && c <= L'9') || c == L'_';
    });
}

// Names, each followed by a semicolon.
bool isList(const Data& data) {
    const std::wstring list = textOf(data);
    if (data.type != REG_SZ || (!list.empty() && list.back() != L';')) {
        return false;
    }
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t end = list.find(L';', start);
        if (!isWord(list.substr(start, end - start))) {
            return false;
        }
        start = end + 1;
    }
    return true;
}

bool areCodes(const Data& data) {
    const std::vector<DWORD> codes = numbersOf(data);
    return (data.type == REG_BINARY || data.type == REG_DWORD) && data.bytes.size() == codes.size() * sizeof(DWORD) &&
           !codes.empty() && codes.size() <= kMostCodes && std::ranges::all_of(codes, &isCode);
}

// Of a function of the list.
bool isOfFunction(const std::wstring& name, const Data& data) {
    if (name == ZEL_VALUE_CODE) {
        return areCodes(data);
    }
    if (name == ZEL_VALUE_FUNC_DLL) {
        return isTextUpTo(data, kLongestPath) && isPath(textOf(data));
    }
    return name == regpath::kCaption && isTextUpTo(data, kLongestCaption);
}

bool isOfButton(const std::wstring& name, const Data& data) {
    if (name == regpath::kIsQrdControl) {
        return isNumber(data, 0, 1);
    }
    return (name == regpath::kMakeFunction || name == regpath::kMakeValue) && isNumber(data, 0, kHighestFunction);
}

bool isOfUserSetting(const std::wstring& name, const Data& data) {
    if (name == regpath::kOption1) {
        return isTextUpTo(data, kLongestProgram) && !textOf(data).empty();
    }
    return name == regpath::kOption2 && isTextUpTo(data, kLongestProgram);
}

bool isDecimal(const std::wstring& text) {
    return !text.empty() && text.size() <= 5 && text.find_first_not_of(L"0123456789") == std::wstring::npos;
}

constexpr wchar_t kLogFileName[] = L"LogFile";
constexpr const wchar_t* kLogNames[] = {L"Level", L"Destination", L"SourceFileFormat", L"TimeDateFormat", L"Flush",
                                        kLogFileName};
constexpr wchar_t kHighestOfLog[] = {L'3', L'4', L'1', L'3', L'1'};  // of the numbers, in that order

bool isLogName(const std::wstring& name) {
    return std::ranges::any_of(kLogNames, [&](const wchar_t* known) { return name == known; });
}

bool isOfLog(const std::wstring& name, const Data& data) {
    const std::wstring text = textOf(data);
    if (name == kLogFileName) {
        return isTextUpTo(data, kLongestPath) && isPath(text);
    }
    for (std::size_t i = 0; i < std::size(kHighestOfLog); ++i) {
        if (name == kLogNames[i]) {
            return text.size() == 1 && text[0] >= L'0' && text[0] <= kHighestOfLog[i];
        }
    }
    return false;
}

const Family kFamilies[] = {
    {regpath::kHotkeyKey,
     [](const std::wstring& name) { return fenwyn::findFunction(name) != nullptr; },
     {ZEL_VALUE_CODE, ZEL_VALUE_FUNC_DLL, regpath::kCaption},
     &isOfFunction,
     true},
    {regpath::kButtonsKey,
     &isWord,
     {regpath::kIsQrdControl, regpath::kMakeFunction, regpath::kMakeValue},
     &isOfButton,
     false},
    {regpath::kUserSettingKey, &isDecimal, {regpath::kOption1, regpath::kOption2}, &isOfUserSetting, false},
};

bool isAllowedValue(const Value& value, const Place& place, const Content& content) {
    return place.key == keyOf(value.scope) && (place.root == Root::Machine || value.scope != Scope::Machine) &&
           (content ? isGood(value, *content) : mayBeAbsent(value));
}

bool isAllowedInFamily(const Family& family, const Place& place, const Content& content) {
    const std::wstring below = std::wstring(family.parent) + L"\\";
    const bool named = std::ranges::any_of(
        family.names, [&](const wchar_t* name) { return name != nullptr && place.name == name; });
    return named && place.key.starts_with(below) && family.isKey(place.key.substr(below.size())) &&
           (place.root == Root::Machine || family.forUsers) &&
           (!content || family.isContent(place.name, *content));
}

}  // namespace

std::span<const Family> families() {
    return kFamilies;
}

std::span<const wchar_t* const> logNames() {
    return kLogNames;
}

std::span<const wchar_t* const> languageNames() {
    return kLanguages;
}

bool isCode(DWORD code) {
    const DWORD plain = code & ~ZEL_CODE_ALONE;
    return (plain >= 0x01 && plain <= 0xFF) || (plain > ZEL_CODE_EXTENDED && plain <= ZEL_CODE_EXTENDED + 0xFF) ||
           (plain > ZEL_CODE_VIRTUAL_KEY && plain <= ZEL_CODE_VIRTUAL_KEY + 0xFE);
}

bool isPath(const std::wstring& text) {
    return !text.empty() && text.size() <= kLongestPath && text.find_first_of(L"\"<>|*?") == std::wstring::npos;
}

const wchar_t* keyOf(Scope scope) {
    switch (scope) {
        case Scope::UserElseMachine:
        case Scope::Machine:
            return regpath::kConfigKey;
        case Scope::Language:
        case Scope::Product:
            return regpath::kProgramKey;
        case Scope::Start:
            return kStartKey;
        case Scope::List:
            break;
    }
    return regpath::kHotkeyKey;
}

bool isGood(const Value& value, const Data& data) {
    switch (value.kind) {
        case Kind::Language: {
            const std::wstring name = textOf(data);
            return data.type == REG_SZ && std::ranges::any_of(kLanguages, [&](const wchar_t* known) {
                       return name == known;
                   });
        }
        case Kind::Path:
            return isTextUpTo(data, kLongestPath) && isPath(textOf(data));
        case Kind::YesNo:
        case Kind::Position:
            return isNumber(data, 0, MAXDWORD);  // everything but 0 means the same
        default:
            return isNumber(data, value.lowest, value.highest);
    }
}

bool isAllowed(const Place& place, const Content& content) {
    if (place.root == Root::LogFile) {
        return place.key == kLogSection && (content ? isOfLog(place.name, *content) : isLogName(place.name));
    }
    if (const Value* const value = findValue(place.name); value != nullptr) {
        return isAllowedValue(*value, place, content);
    }
    if (place.key == regpath::kHotkeyKey) {
        return place.name == regpath::kFuncList && content && isList(*content);
    }
    return std::ranges::any_of(
        kFamilies, [&](const Family& family) { return isAllowedInFamily(family, place, content); });
}

}  // namespace settings
