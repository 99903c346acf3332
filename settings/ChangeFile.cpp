#include "ChangeFile.h"

#include <algorithm>
#include <cwchar>
#include <string_view>

#include "common/Handle.h"
#include "companions/include/FenwynRegistry.h"

namespace settings {
namespace {

constexpr std::wstring_view kFirstLine = L"Fenwyn settings 1";
constexpr std::wstring_view kBelow = FENWYN_REG_MAKER L"\\";
constexpr LONGLONG kLongestFile = 1024 * 1024;

struct RootName {
    Root root;
    std::wstring_view name;
};
constexpr RootName kRoots[] = {{Root::Machine, L"Machine"}, {Root::User, L"User"}, {Root::LogFile, L"Log"}};

struct TypeName {
    DWORD type;
    std::wstring_view name;
};
constexpr TypeName kTypes[] = {
    {REG_DWORD, L"number:"}, {REG_BINARY, L"numbers:"}, {REG_SZ, L"text:"}, {REG_EXPAND_SZ, L"path:"}};
constexpr std::wstring_view kNone = L"none";

std::wstring hex(DWORD number) {
    wchar_t digits[16];
    std::swprintf(digits, std::size(digits), L"%lX", static_cast<unsigned long>(number));
    return digits;
}

std::wstring wordsOf(const Data& data) {
    if (data.type == REG_DWORD) {
        return std::to_wstring(numberOf(data).value_or(0));
    }
    if (data.type != REG_BINARY) {
        return textOf(data);
    }
    std::wstring words;
    for (const DWORD number : numbersOf(data)) {
        words += (words.empty() ? L"" : L" ") + hex(number);
    }
    return words;
}

std::wstring lineOf(const Content& content) {
    if (!content) {
        return std::wstring(kNone);
    }
    const auto type = std::ranges::find_if(kTypes, [&](const TypeName& row) { return row.type == content->type; });
    return type != std::end(kTypes) ? std::wstring(type->name) + wordsOf(*content) : std::wstring(kNone);
}

std::wstring sectionOf(const Place& place) {
    const auto root = std::ranges::find_if(kRoots, [&](const RootName& row) { return row.root == place.root; });
    const std::wstring key = place.key.starts_with(kBelow) ? place.key.substr(kBelow.size()) : place.key;
    return L"[" + std::wstring(root->name) + L"\\" + key + L"]";
}

// Digits only, and no more than 32 bits.
std::optional<DWORD> parseNumber(const std::wstring& word, int base) {
    const wchar_t* const digits = base == 10 ? L"0123456789" : L"0123456789ABCDEFabcdef";
    if (word.empty() || word.size() > 10 || word.find_first_not_of(digits) != std::wstring::npos) {
        return std::nullopt;
    }
    const unsigned long long number = std::wcstoull(word.c_str(), nullptr, base);
    return number <= MAXDWORD ? std::optional<DWORD>(static_cast<DWORD>(number)) : std::nullopt;
}

std::optional<Data> parseNumbers(const std::wstring& words) {
    std::vector<DWORD> numbers;
    for (std::size_t start = 0; start <= words.size();) {
        const std::size_t end = std::min(words.find(L' ', start), words.size());
        const std::optional<DWORD> number = parseNumber(words.substr(start, end - start), 16);
        if (!number) {
            return std::nullopt;
        }
        numbers.push_back(*number);
        start = end + 1;
    }
    return numbersData(numbers);
}

std::optional<Data> parseData(DWORD type, const std::wstring& words) {
    if (type == REG_DWORD) {
        const std::optional<DWORD> number = parseNumber(words, 10);
        return number ? std::optional<Data>(numberData(*number)) : std::nullopt;
    }
    if (type == REG_BINARY) {
        return parseNumbers(words);
    }
    Data data = textData(words);
    data.type = type;
    return data;
}

// False: this is no content at all.
bool parseContent(const std::wstring& line, Content& content) {
    if (line == kNone) {
        content = std::nullopt;
        return true;
    }
    const auto type = std::ranges::find_if(kTypes, [&](const TypeName& row) { return line.starts_with(row.name); });
    if (type == std::end(kTypes)) {
        return false;
    }
    content = parseData(type->type, line.substr(type->name.size()));
    return content.has_value();
}

// Takes the lines one by one.
class CParser {
 public:
    // False: there is something wrong with the line.
    [[nodiscard]] bool take(const std::wstring& line) {
        if (!m_bBegun) {
            m_bBegun = line == kFirstLine;
            return m_bBegun;
        }
        if (line.empty() || line.front() == L';') {
            return true;
        }
        return line.front() == L'[' ? _takeSection(line) : _takeValue(line);
    }

    [[nodiscard]] bool isBegun() const { return m_bBegun; }
    [[nodiscard]] Changes& changes() { return m_changes; }

 private:
    bool _takeSection(const std::wstring& line) {
        const std::size_t end = line.find(L'\\');
        if (line.back() != L']' || end == std::wstring::npos || end + 2 >= line.size()) {
            return false;
        }
        const auto root = std::ranges::find_if(
            kRoots, [&](const RootName& row) { return line.compare(1, end - 1, row.name) == 0; });
        if (root == std::end(kRoots)) {
            return false;
        }
        m_section.root = root->root;
        m_section.key = (root->root == Root::LogFile ? L"" : std::wstring(kBelow)) +
                        line.substr(end + 1, line.size() - end - 2);
        return true;
    }

    bool _takeValue(const std::wstring& line) {
        const std::size_t equals = line.find(L'=');
        Content content;
        if (m_section.key.empty() || equals == std::wstring::npos || equals == 0 ||
            !parseContent(line.substr(equals + 1), content)) {
            return false;
        }
        Place place = m_section;
        place.name = line.substr(0, equals);
        return m_changes.emplace(std::move(place), std::move(content)).second;
    }

    bool m_bBegun = false;
    Place m_section;
    Changes m_changes;
};

std::wstring fromUtf8(const std::string& bytes) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    const std::string_view rest = std::string_view(bytes).substr(bytes.starts_with(kMark) ? kMark.size() : 0);
    const int size = static_cast<int>(rest.size());
    const int chars = ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, rest.data(), size, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(chars), L'\0');
    ::MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, rest.data(), size, text.data(), chars);
    return text;
}

std::wstring fromUtf16(const std::string& bytes) {
    std::wstring text;
    for (std::size_t i = 2; i + 1 < bytes.size(); i += 2) {
        const auto low = static_cast<unsigned char>(bytes[i]);
        const auto high = static_cast<unsigned char>(bytes[i + 1]);
        text += static_cast<wchar_t>(low | high << 8);
    }
    return text;
}

}  // namespace

std::wstring fileText(const Changes& changes) {
    std::wstring text = std::wstring(kFirstLine) + L"\r\n";
    std::wstring section;
    for (const auto& [place, content] : changes) {
        if (const std::wstring next = sectionOf(place); next != section) {
            section = next;
            text += L"\r\n" + section + L"\r\n";
        }
        text += place.name + L"=" + lineOf(content) + L"\r\n";
    }
    return text;
}

std::optional<Changes> parseFile(const std::wstring& text, std::size_t& errorLine) {
    CParser parser;
    errorLine = 1;
    for (std::size_t start = 0; start < text.size(); ++errorLine) {
        const std::size_t end = std::min(text.find(L'\n', start), text.size());
        std::wstring line = text.substr(start, end - start);
        if (!line.empty() && line.back() == L'\r') {
            line.pop_back();
        }
        if (!parser.take(line)) {
            return std::nullopt;
        }
        start = end + 1;
    }
    return parser.isBegun() ? std::optional<Changes>(std::move(parser.changes())) : std::nullopt;
}

LSTATUS writeTextFile(const std::wstring& path, const std::wstring& text) {
    const int chars = static_cast<int>(text.size());
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), chars, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.c_str(), chars, bytes.data(), size, nullptr, nullptr);
    const common::UniqueFile file(
        ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    if (!file || ::WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) == FALSE) {
        return static_cast<LSTATUS>(::GetLastError());
    }
    return ERROR_SUCCESS;
}

LSTATUS readTextFile(const std::wstring& path, std::wstring& text) {
    const common::UniqueFile file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                                FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    if (!file || ::GetFileSizeEx(file.get(), &size) == FALSE) {
        return static_cast<LSTATUS>(::GetLastError());
    }
    if (size.QuadPart > kLongestFile) {
        return ERROR_FILE_TOO_LARGE;
    }
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD read = 0;
    if (::ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) == FALSE) {
        return static_cast<LSTATUS>(::GetLastError());
    }
    bytes.resize(read);
    text = bytes.starts_with("\xFF\xFE") ? fromUtf16(bytes) : fromUtf8(bytes);
    return ERROR_SUCCESS;
}

}  // namespace settings
