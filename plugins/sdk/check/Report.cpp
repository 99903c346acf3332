#include "Report.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

namespace check {

namespace {

const wchar_t* label(Weight weight) {
    switch (weight) {
        case Weight::Error:
            return L"ERROR    ";
        case Weight::Warning:
            return L"warning  ";
        case Weight::Note:
            break;
    }
    return L"         ";
}

}  // namespace

std::size_t CReport::count(Weight weight) const {
    return static_cast<std::size_t>(std::count_if(m_vecFindings.begin(), m_vecFindings.end(),
                                                  [&](const Finding& finding) { return finding.weight == weight; }));
}

std::wstring CReport::text() const {
    std::wstring text;
    for (const Finding& finding : m_vecFindings) {
        text += label(finding.weight) + finding.text + L"\n";
    }
    const std::size_t errors = count(Weight::Error);
    const std::wstring warnings = std::to_wstring(count(Weight::Warning)) + L" warning(s).\n";
    return text + (errors == 0 ? L"The plug-in keeps the contract. " + warnings
                               : std::to_wstring(errors) + L" error(s), " + warnings);
}

std::wstring wide(const char* name) {
    return {name, name + std::strlen(name)};
}

std::string utf8(const std::wstring& text) {
    const int length = static_cast<int>(text.size());
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, result.data(), bytes, nullptr, nullptr);
    return result;
}

std::wstring hex(unsigned long value) {
    wchar_t text[16];
    std::swprintf(text, std::size(text), L"0x%lX", value);
    return text;
}

}  // namespace check
