// Registry values, fast enough to write a whole configuration before each test.
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "Commands.h"
#include "Json.h"

namespace probe {

namespace {

HKEY rootOf(const std::wstring& name) {
    return name == L"HKLM" ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

struct Data {
    DWORD type = REG_NONE;
    std::vector<std::uint8_t> bytes;
};

std::vector<std::uint8_t> fromHex(const std::wstring& text) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::wcstoul(text.substr(i, 2).c_str(), nullptr, 16)));
    }
    return bytes;
}

Data parse(const std::wstring& type, const std::wstring& text) {
    if (type == L"dword") {
        const auto value = static_cast<std::uint32_t>(toNumber(text));
        Data data{REG_DWORD, std::vector<std::uint8_t>(sizeof value)};
        std::memcpy(data.bytes.data(), &value, sizeof value);
        return data;
    }
    if (type == L"sz") {
        const std::size_t length = (text.size() + 1) * sizeof(wchar_t);
        Data data{REG_SZ, std::vector<std::uint8_t>(length)};
        std::memcpy(data.bytes.data(), text.c_str(), length);
        return data;
    }
    return {REG_BINARY, fromHex(text)};
}

std::string done(LSTATUS status) {
    return status == ERROR_SUCCESS ? boolean(true) : error(L"registry error " + std::to_wstring(status));
}

}  // namespace

std::string setValue(const Arguments& arguments) {
    const Data data = parse(arguments[3], arguments[4]);
    return done(::RegSetKeyValueW(rootOf(arguments[0]), arguments[1].c_str(), arguments[2].c_str(), data.type,
                                  data.bytes.data(), static_cast<DWORD>(data.bytes.size())));
}

std::string getValue(const Arguments& arguments) {
    std::vector<std::uint8_t> bytes(1U << 16);
    auto length = static_cast<DWORD>(bytes.size());
    DWORD type = REG_NONE;
    const LSTATUS status = ::RegGetValueW(rootOf(arguments[0]), arguments[1].c_str(), arguments[2].c_str(),
                                          RRF_RT_ANY | RRF_NOEXPAND, &type, bytes.data(), &length);
    if (status != ERROR_SUCCESS) {
        return error(L"registry error " + std::to_wstring(status));
    }
    std::wstring hex;
    for (DWORD i = 0; i < length; ++i) {
        wchar_t digits[4];
        std::swprintf(digits, std::size(digits), L"%02x", static_cast<unsigned>(bytes[i]));
        hex += digits;
    }
    return object({{"type", number(type)}, {"hex", quoted(hex)}});
}

std::string deleteKey(const Arguments& arguments) {
    const LSTATUS status = ::RegDeleteTreeW(rootOf(arguments[0]), arguments[1].c_str());
    return done(status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status);
}

std::string deleteValue(const Arguments& arguments) {
    return done(::RegDeleteKeyValueW(rootOf(arguments[0]), arguments[1].c_str(), arguments[2].c_str()));
}

}  // namespace probe
