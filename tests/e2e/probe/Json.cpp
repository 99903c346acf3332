#include "Json.h"

#include <windows.h>

#include <cstdio>

namespace probe {

std::string utf8(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int bytes = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string result(static_cast<std::size_t>(bytes), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, result.data(), bytes, nullptr, nullptr);
    return result;
}

std::wstring wide(std::string_view text) {
    const int length = static_cast<int>(text.size());
    const int chars = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring result(static_cast<std::size_t>(chars), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, text.data(), length, result.data(), chars);
    return result;
}

std::string quoted(std::wstring_view text) {
    std::string result = "\"";
    for (const char c : utf8(text)) {
        if (c == '"' || c == '\\') {
            result += '\\';
            result += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
            result += escaped;
        } else {
            result += c;
        }
    }
    return result + '"';
}

std::string array(const std::vector<std::string>& values) {
    std::string result = "[";
    for (const std::string& value : values) {
        result += (result.size() > 1 ? "," : "") + value;
    }
    return result + "]";
}

std::string object(const std::vector<Member>& members) {
    std::string result = "{";
    for (const Member& member : members) {
        result += (result.size() > 1 ? ",\"" : "\"") + std::string(member.name) + "\":" + member.value;
    }
    return result + "}";
}

std::string error(std::wstring_view what) {
    return object({{"error", quoted(what)}});
}

}  // namespace probe
