// The small subset of JSON that answers need.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace probe {

[[nodiscard]] std::string utf8(std::wstring_view text);
[[nodiscard]] std::wstring wide(std::string_view text);

[[nodiscard]] std::string quoted(std::wstring_view text);
[[nodiscard]] inline std::string number(std::int64_t value) {
    return std::to_string(value);
}
[[nodiscard]] inline std::string boolean(bool value) {
    return value ? "true" : "false";
}

// Of values that are JSON already.
[[nodiscard]] std::string array(const std::vector<std::string>& values);

struct Member {
    const char* name;
    std::string value;
};
[[nodiscard]] std::string object(const std::vector<Member>& members);

[[nodiscard]] std::string error(std::wstring_view what);

}  // namespace probe
