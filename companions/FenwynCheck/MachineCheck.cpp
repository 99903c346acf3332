#include "MachineCheck.h"

#include <algorithm>
#include <cwctype>
#include <iterator>

#include "Forgiveness.h"
#include "Trial.h"
#include "Words.h"
#include "common/Handle.h"
#include "plugins/sdk/check/Report.h"
#include "res/Version.h"

namespace machine {

namespace {

// ms; an initialisation may take seconds on a busy machine. The process itself gives up before.
constexpr DWORD kInspectPatience = kInspectMs + 2000;
constexpr DWORD kTryPatience = kTryMs + 2000;
constexpr std::size_t kNameWidth = 16;

const wchar_t* sourceText(Source source) {
    switch (source) {
        case Source::MachineList:
            return L"the machine's (HKEY_LOCAL_MACHINE)";
        case Source::UserList:
            return L"the user's own (HKEY_CURRENT_USER)";
        case Source::Family:
            break;
    }
    return L"none; these are the plug-ins beside this program";
}

std::wstring indented(const std::wstring& text) {
    std::wstring result;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find(L'\n', start), text.size());
        result += L"    " + text.substr(start, end - start) + L"\n";
        start = end + 1;
    }
    return result;
}

std::wstring heading(const Entry& entry) {
    std::wstring name = entry.name;
    name.resize(std::max(name.size() + 1, kNameWidth), L' ');
    return L"\n" + name + keyNames(entry.codes) + L"\n";
}

Finding findingOf(const ChildResult& child, DWORD patience) {
    if (!child.ended) {
        return {Outcome::Faulty, child.text + L"FAULT: it did not return within " + std::to_wstring(patience / 1000) +
                                     L" seconds and was ended.\n"};
    }
    // The last word of a process whose plug-in crashed comes from PluginCheck's own words.
    constexpr std::wstring_view kCrash = L"ERROR    ";
    if (const std::size_t at = child.text.find(kCrash); at != std::wstring::npos) {
        return {Outcome::Faulty, child.text.substr(0, at) + L"FAULT: " + child.text.substr(at + kCrash.size())};
    }
    switch (const auto outcome = static_cast<Outcome>(child.exitCode)) {
        case Outcome::Offered:
        case Outcome::Faulty:
        case Outcome::Declined:
            return {outcome, child.text};
    }
    return {Outcome::Faulty, child.text + L"FAULT: its process ended with " + check::hex(child.exitCode) + L".\n"};
}

std::wstring command(const wchar_t* name, const Entry& entry) {
    return std::wstring(name) + L" " + common::quotedArgument(entry.name) + L" " + common::quotedArgument(entry.plugin);
}

// Keeps what it tells, for the report.
class CMachineCheck {
 public:
    CMachineCheck(const Options& options, const Outside& outside) : m_options(options), m_outside(outside) {}

    ExitCode run() {
        const FunctionSet set = functionSet(m_outside.folder);
        _tell(surroundings() + L"Function list: " + sourceText(set.source) + L"\nModifier: " +
              modifierName(set.modifier) + L"\n");
        if (const std::wstring faults = rememberedFaults(); !faults.empty()) {
            _tell(L"Plug-ins that ended Fenwyn (--forgive forgets them):\n" + faults);
        }
        for (const Entry& entry : set.entries) {
            _look(entry);
        }
        _tell(L"\n" + std::to_wstring(set.entries.size()) + L" functions: " + std::to_wstring(m_uOffered) +
              L" offered, " + std::to_wstring(m_uDeclined) + L" not offered, " + std::to_wstring(m_uFaulty) +
              L" at fault.\n");
        if (!m_options.reportFile.empty() && !_writeReport()) {
            m_outside.tell(L"The report could not be written to " + m_options.reportFile + L".\n");
            return kNotWritten;
        }
        if (set.entries.empty()) {
            return kNothingToDo;
        }
        return m_uFaulty != 0 ? kFaulty : kWell;
    }

 private:
    void _look(const Entry& entry) {
        _tell(heading(entry));
        if (!entry.problem.empty()) {
            ++m_uFaulty;
            _tell(indented(L"FAULT: " + entry.problem));
            return;
        }
        Finding finding = inspectApart(entry, m_outside);
        _tell(indented(entry.plugin + L"\n" + finding.text));
        if (finding.outcome == Outcome::Offered && m_options.tryChanges) {
            finding.outcome = _tryApart(entry);
        }
        _count(finding.outcome);
    }

    // A function that is not tried still counts as offered.
    Outcome _tryApart(const Entry& entry) {
        const wchar_t* const question = trialQuestion(entry.name);
        if (question == nullptr || !m_outside.ask(entry.name + L": " + question + L"?")) {
            return Outcome::Offered;
        }
        const Finding finding = findingOf(m_outside.runSelf(command(L"--try-one", entry), kTryPatience), kTryPatience);
        _tell(indented(L"tried:\n" + finding.text));
        return finding.outcome == Outcome::Declined ? Outcome::Offered : finding.outcome;
    }

    void _count(Outcome outcome) {
        ++(outcome == Outcome::Offered ? m_uOffered : outcome == Outcome::Declined ? m_uDeclined : m_uFaulty);
    }

    void _tell(const std::wstring& text) {
        m_strReport += text;
        m_outside.tell(text);
    }

    [[nodiscard]] bool _writeReport() const {
        std::wstring profile(MAX_PATH, L'\0');
        profile.resize(GetEnvironmentVariableW(L"USERPROFILE", profile.data(), MAX_PATH));
        std::string bytes = "\xEF\xBB\xBF";
        for (const char c : check::utf8(withoutProfile(m_strReport, profile))) {
            bytes += c == '\n' ? std::string("\r\n") : std::string(1, c);
        }
        const common::UniqueFile file(CreateFileW(m_options.reportFile.c_str(), GENERIC_WRITE, 0, nullptr,
                                                  CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        DWORD written = 0;
        return file && WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
               written == bytes.size();
    }

    const Options& m_options;
    const Outside& m_outside;
    std::wstring m_strReport;
    std::size_t m_uOffered = 0;
    std::size_t m_uDeclined = 0;
    std::size_t m_uFaulty = 0;
};

std::wstring textOf(HKEY root, const wchar_t* key, const wchar_t* name) {
    wchar_t text[256];
    DWORD size = sizeof text;
    return RegGetValueW(root, key, name, RRF_RT_REG_SZ | RRF_NOEXPAND, nullptr, text, &size) == ERROR_SUCCESS ? text
                                                                                                              : L"";
}

// GetVersionEx tells every program what its manifest knows; this one tells the truth.
std::wstring systemVersion() {
    using Version = LONG(WINAPI*)(OSVERSIONINFOW*);
    const auto version = reinterpret_cast<Version>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOW info{};
    info.dwOSVersionInfoSize = sizeof info;
    if (version == nullptr || version(&info) != 0) {
        return L"unknown";
    }
    return std::to_wstring(info.dwMajorVersion) + L"." + std::to_wstring(info.dwMinorVersion) + L" build " +
           std::to_wstring(info.dwBuildNumber);
}

const wchar_t* systemBits() {
    SYSTEM_INFO info{};
    GetNativeSystemInfo(&info);
    return info.wProcessorArchitecture == PROCESSOR_ARCHITECTURE_INTEL ? L"32 bit" : L"64 bit";
}

}  // namespace

Finding inspectApart(const Entry& entry, const Outside& outside) {
    return findingOf(outside.runSelf(command(L"--inspect", entry), kInspectPatience), kInspectPatience);
}

std::wstring surroundings() {
    constexpr wchar_t kFirmware[] = L"HARDWARE\\DESCRIPTION\\System\\BIOS";
    const std::wstring machine = textOf(HKEY_LOCAL_MACHINE, kFirmware, L"SystemManufacturer") + L" " +
                                 textOf(HKEY_LOCAL_MACHINE, kFirmware, L"SystemProductName");
    return std::wstring(L"FenwynCheck " FENWYN_VERSION_TEXT) + (sizeof(void*) == 8 ? L", 64 bit" : L", 32 bit") +
           L"\nSystem: Windows " + systemVersion() + L", " + systemBits() + L"\nMachine: " +
           (machine == L" " ? L"unknown" : machine) + L"\nSession: " +
           (GetSystemMetrics(SM_REMOTESESSION) != 0 ? L"remote" : L"at the machine") + L"\n";
}

std::wstring withoutProfile(std::wstring text, const std::wstring& profile) {
    const auto same = [](wchar_t left, wchar_t right) { return towlower(left) == towlower(right); };
    auto at =
        profile.empty() ? text.end() : std::search(text.begin(), text.end(), profile.begin(), profile.end(), same);
    constexpr wchar_t kInstead[] = L"%USERPROFILE%";
    while (at != text.end()) {
        const auto offset = at - text.begin();
        text.replace(static_cast<std::size_t>(offset), profile.size(), kInstead);
        at = std::search(text.begin() + offset + (std::size(kInstead) - 1), text.end(), profile.begin(), profile.end(),
                         same);
    }
    return text;
}

ExitCode askPlugin(const Options& options, const Outside& outside) {
    const Finding finding = inspectApart({options.function, options.plugin, {}, {}}, outside);
    struct Answer {
        Outcome outcome;
        std::wstring_view word;
        std::wstring_view before;  // what stands before the reason in the words for people
        ExitCode code;
    };
    constexpr Answer kAnswers[] = {{Outcome::Offered, L"offered", {}, kWell},
                                   {Outcome::Declined, L"declined", L"not offered: ", kNothingToDo},
                                   {Outcome::Faulty, L"faulty", L"FAULT: ", kFaulty}};
    const Answer& answer = *std::ranges::find(kAnswers, finding.outcome, &Answer::outcome);
    std::wstring text = L"outcome=" + std::wstring(answer.word) + L"\n";
    if (const std::size_t at = finding.text.find(answer.before); !answer.before.empty() && at != std::wstring::npos) {
        const std::size_t start = at + answer.before.size();
        text += L"why=" + finding.text.substr(start, finding.text.find(L'\n', start) - start) + L"\n";
    }
    outside.tell(text);
    return answer.code;
}

ExitCode checkMachine(const Options& options, const Outside& outside) {
    return CMachineCheck(options, outside).run();
}

}  // namespace machine
