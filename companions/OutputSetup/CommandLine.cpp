#include "CommandLine.h"

#include <cstdint>

namespace setup {
namespace {

struct Verb {
    std::wstring_view name;
    Task task;
};

constexpr Verb kVerbs[] = {
    {OUTPUT_SETUP_VERB_OUTPUT, Task::Output},
    {OUTPUT_SETUP_VERB_CONFIG, Task::Config},
    {OUTPUT_SETUP_VERB_SAVE, Task::Save},
};

constexpr std::wstring_view kBlanks = L" \t";
constexpr unsigned kWholeMask = (1U << kMaskBits) - 1;
constexpr std::uint64_t kLargestNumber = 0x7FFFFFFF;

constexpr wchar_t lower(wchar_t letter) {
    return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter - L'A' + L'a') : letter;
}

bool sameVerb(std::wstring_view text, std::wstring_view verb) {
    if (text.size() != verb.size()) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (lower(text[i]) != lower(verb[i])) {
            return false;
        }
    }
    return true;
}

std::wstring_view trimmed(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::wstring_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<std::uint64_t> number(std::wstring_view digits) {
    std::uint64_t value = 0;
    for (const wchar_t digit : digits) {
        if (digit < L'0' || digit > L'9') {
            return std::nullopt;
        }
        value = value * 10 + static_cast<std::uint64_t>(digit - L'0');
        if (value > kLargestNumber) {
            return std::nullopt;
        }
    }
    return digits.empty() ? std::nullopt : std::optional(value);
}

std::optional<Request> outputRequest(std::wstring_view argument) {
    const std::optional<std::uint64_t> value = number(argument);
    if (!value) {
        return std::nullopt;
    }
    const auto mode = static_cast<int>(*value >> kMaskBits);
    const auto mask = static_cast<unsigned>(*value & kWholeMask);
    if (mode >= kMaskBits || ((mask >> mode) & 1U) == 0) {
        return std::nullopt;
    }
    return Request{Task::Output, mode, mask};
}

}  // namespace

std::optional<Request> parseCommandLine(std::wstring_view commandLine) {
    const std::wstring_view line = trimmed(commandLine);
    const std::size_t end = line.find_first_of(kBlanks);
    const std::wstring_view argument = end == std::wstring_view::npos ? L"" : trimmed(line.substr(end));
    for (const Verb& verb : kVerbs) {
        if (!sameVerb(line.substr(0, end), verb.name)) {
            continue;
        }
        if (verb.task == Task::Output) {
            return outputRequest(argument);
        }
        return argument.empty() ? std::optional(Request{verb.task}) : std::nullopt;
    }
    return std::nullopt;
}

}  // namespace setup
