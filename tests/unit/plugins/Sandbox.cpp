#include "Sandbox.h"

#include <sstream>

#include "State.h"

namespace plugintest {

namespace {

constexpr wchar_t kScratchKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn Test\\Scratch";
constexpr wchar_t kTestKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn Test";

common::UniqueRegKey scratch(const wchar_t* name) {
    common::UniqueRegKey key;
    RegCreateKeyExW(HKEY_CURRENT_USER, (std::wstring(kScratchKey) + L"\\" + name).c_str(), 0, nullptr, 0,
                    KEY_ALL_ACCESS, nullptr, key.put(), nullptr);
    return key;
}

std::wstring ownFolder() {
    wchar_t temporary[MAX_PATH];
    GetTempPathW(MAX_PATH, temporary);
    return std::wstring(temporary) + L"fenwyn-plugins-" + std::to_wstring(GetCurrentProcessId());
}

}  // namespace

Sandbox::Sandbox() : m_strFolder(ownFolder()), m_strRecordFile(m_strFolder + L"\\record\\calls.txt") {
    RegDeleteTreeW(HKEY_CURRENT_USER, kScratchKey);
    m_user = scratch(L"User");
    m_machine = scratch(L"Machine");
    RegOverridePredefKey(HKEY_CURRENT_USER, m_user.get());
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_machine.get());
    sim::writeText({}, L"RecordFile", m_strRecordFile);
}

Sandbox::~Sandbox() {
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    m_user.reset();
    m_machine.reset();
    RegDeleteTreeW(HKEY_CURRENT_USER, kScratchKey);
    RegDeleteKeyW(HKEY_CURRENT_USER, kTestKey);  // only when nothing else is in it
    DeleteFileW(m_strRecordFile.c_str());
    RemoveDirectoryW((m_strFolder + L"\\record").c_str());
    RemoveDirectoryW(m_strFolder.c_str());
}

std::vector<std::vector<std::string>> Sandbox::record() const {
    FILE* const file = _wfopen(m_strRecordFile.c_str(), L"rb");
    std::string text;
    for (int c = file != nullptr ? std::fgetc(file) : EOF; c != EOF; c = std::fgetc(file)) {
        text += static_cast<char>(c);
    }
    if (file != nullptr) {
        std::fclose(file);
    }
    std::vector<std::vector<std::string>> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        std::vector<std::string> fields(1);
        for (const char c : line) {
            if (c == '\t') {
                fields.emplace_back();
            } else {
                fields.back() += c;
            }
        }
        lines.push_back(std::move(fields));
    }
    return lines;
}

}  // namespace plugintest
