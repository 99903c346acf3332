// The test's own registry and record file, for this process and every library in it.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "support/RegistryRoom.h"

namespace plugintest {

class Sandbox {
 public:
    Sandbox();
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    [[nodiscard]] const std::wstring& recordFile() const { return m_strRecordFile; }

    // The record's lines, split at the tabs: time, function, export, arguments, result, thread.
    [[nodiscard]] std::vector<std::vector<std::string>> record() const;

 private:
    std::wstring m_strFolder;
    std::wstring m_strRecordFile;
    support::RegistryRoom m_registry;
};

}  // namespace plugintest
