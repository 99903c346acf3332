#include "plugins/simulated/Sandbox.h"

#include <sstream>
#include <stdexcept>

#include "State.h"

namespace plugintest {

namespace {

std::wstring ownFolder() {
    wchar_t temporary[MAX_PATH];
    GetTempPathW(MAX_PATH, temporary);
    return std::wstring(temporary) + L"fenwyn-plugins-" + std::to_wstring(GetCurrentProcessId());
}

}  // namespace

Sandbox::Sandbox() : m_strFolder(ownFolder()), m_strRecordFile(m_strFolder + L"\\record\\calls.txt") {
    if (!m_registry.redirected()) {
        throw std::runtime_error("the registry cannot be redirected");
    }
    sim::writeText({}, L"RecordFile", m_strRecordFile);
}

Sandbox::~Sandbox() {
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
