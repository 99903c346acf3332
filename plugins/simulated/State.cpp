#include "State.h"

#include "OutputSetup.h"
#include "common/Handle.h"

namespace sim {

namespace {

constexpr wchar_t kRecordFile[] = L"RecordFile";

bool writeValue(const std::wstring& function, const wchar_t* value, DWORD type, const void* data, DWORD bytes) {
    return RegSetKeyValueW(HKEY_CURRENT_USER, stateKeyOf(function).c_str(), value, type, data, bytes) == ERROR_SUCCESS;
}

bool removeTree(const wchar_t* path) {
    const LSTATUS error = RegDeleteTreeW(HKEY_CURRENT_USER, path);
    return error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND;
}

}  // namespace

std::wstring stateKeyOf(const std::wstring& function) {
    return function.empty() ? std::wstring(kStateKey) : std::wstring(kStateKey) + L"\\" + function;
}

DWORD readNumber(const std::wstring& function, const wchar_t* value, DWORD fallback) {
    DWORD number = 0;
    DWORD bytes = sizeof number;
    const LSTATUS error = RegGetValueW(HKEY_CURRENT_USER, stateKeyOf(function).c_str(), value,
                                       RRF_RT_REG_DWORD | RRF_NOEXPAND, nullptr, &number, &bytes);
    return error == ERROR_SUCCESS ? number : fallback;
}

std::wstring readText(const std::wstring& function, const wchar_t* value, const std::wstring& fallback) {
    wchar_t text[1024];
    DWORD bytes = sizeof text;
    const LSTATUS error = RegGetValueW(HKEY_CURRENT_USER, stateKeyOf(function).c_str(), value,
                                       RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, text, &bytes);
    return error == ERROR_SUCCESS ? std::wstring(text) : fallback;
}

bool writeNumber(const std::wstring& function, const wchar_t* value, DWORD number) {
    return writeValue(function, value, REG_DWORD, &number, sizeof number);
}

bool writeText(const std::wstring& function, const wchar_t* value, const std::wstring& text) {
    const auto bytes = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    return writeValue(function, value, REG_SZ, text.c_str(), bytes);
}

bool isNewMachine() {
    common::UniqueRegKey key;
    DWORD functions = 0;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kStateKey, 0, KEY_READ, key.put()) == ERROR_SUCCESS) {
        RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &functions, nullptr, nullptr, nullptr, nullptr, nullptr,
                         nullptr, nullptr);
    }
    return functions == 0;
}

bool resetState() {
    const std::wstring recordFile = readText({}, kRecordFile, {});
    if (!removeTree(kStateKey) || !removeTree(OUTPUT_SETUP_REG_FAVOURITES)) {
        return false;
    }
    return recordFile.empty() || writeText({}, kRecordFile, recordFile);
}

}  // namespace sim
