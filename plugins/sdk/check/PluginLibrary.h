// The plug-in under test: its exports by name, timed calls, and out values that detect when too much is written.
#pragma once

#include <windows.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "Contract.h"
#include "Report.h"
#include "common/Handle.h"

namespace check {

// The export that is being called, for the message after a crash or from another thread. Null between calls.
[[nodiscard]] const char* exportInProgress() noexcept;

class CPluginLibrary {
 public:
    explicit CPluginLibrary(CReport& report) : m_report(report) {}

    // Searches for the library and its dependencies as the program does; the path is like the function list's, so a
    // relative one is not searched for in the current folder. Reports why a file cannot be loaded. False then.
    bool load(const std::wstring& path);
    void unload();

    [[nodiscard]] bool has(const char* exportName) const { return _address(exportName) != nullptr; }

    // Reports each missing export, with a similar name if there is one. False if any is missing.
    bool requireExports(const std::array<const char*, fenwyn::kMaxExports>& names);

    // Reports that the plug-in declined with this result, and its reason if it gives one.
    void reportUnsupported(const char* initializeName, LONG result);

    // Calls an existing export, and reports if that took too long. `Function` is its type in the contract.
    template <typename Function, typename... Arguments>
    LONG call(const char* exportName, Arguments... arguments) {
        const CallScope scope(*this, exportName);
        return reinterpret_cast<Function>(reinterpret_cast<void*>(_address(exportName)))(arguments...);
    }

 private:
    // Names the running export and times it.
    class CallScope {
     public:
        CallScope(CPluginLibrary& library, const char* exportName);
        ~CallScope();
        CallScope(const CallScope&) = delete;
        CallScope& operator=(const CallScope&) = delete;

     private:
        CPluginLibrary& m_library;
        const char* m_pszName;
        LARGE_INTEGER m_start{};
    };

    [[nodiscard]] FARPROC _address(const char* exportName) const { return GetProcAddress(m_hModule.get(), exportName); }
    [[nodiscard]] std::vector<std::string> _exportedNames() const;
    [[nodiscard]] std::wstring _similarName(const char* exportName) const;

    CReport& m_report;
    common::UniqueModule m_hModule;
};

// An out argument between guard bytes.
template <typename Value>
class CGuarded {
 public:
    explicit CGuarded(Value preset) : m_value(preset) { std::memset(m_after, kGuard, sizeof m_after); }

    [[nodiscard]] Value* out() { return &m_value; }
    [[nodiscard]] Value value() const { return m_value; }

    // Reports an export that wrote beyond its argument.
    void checkGuard(CReport& report, const char* exportName, const wchar_t* argument) const {
        for (const unsigned char byte : m_after) {
            if (byte != kGuard) {
                report.error(wide(exportName) + L" writes more than " + std::to_wstring(sizeof(Value)) +
                             L" byte(s) into \"" + argument + L"\" and destroys what lies behind it.");
                return;
            }
        }
    }

 private:
    static constexpr unsigned char kGuard = 0xA5;

    Value m_value;
    unsigned char m_after[16];
};

}  // namespace check
