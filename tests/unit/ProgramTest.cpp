// The program itself, in a folder with stand-ins: the libraries it finds, its command line, and how a second start
// notifies the first.
#include <gtest/gtest.h>

#include <windows.h>

#include <shlwapi.h>

#include <algorithm>
#include <functional>
#include <sstream>

#include "plugins/siblings/StandIn.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kProgramKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn";
constexpr wchar_t kConfigKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn\\Config";
constexpr wchar_t kStandIns[] = L"SOFTWARE\\KESTOVA\\Fenwyn Test\\Sibling";
constexpr wchar_t kStripClass[] = L"ZelMainDlgCls_A4E19C07-6B3D-4D52-8F0A-91C3E57D2B68";

// The program reads the real registry: existing values are saved and restored.
class SettingsAside {
 public:
    SettingsAside() {
        for (const HKEY root : kRoots) {
            ::SHDeleteKeyW(root, kBackup);
            m_bThere[index(root)] = copy(root, kProgramKey, kBackup);
            ::SHDeleteKeyW(root, kProgramKey);
        }
    }
    ~SettingsAside() {
        for (const HKEY root : kRoots) {
            ::SHDeleteKeyW(root, kProgramKey);
            if (m_bThere[index(root)]) {
                copy(root, kBackup, kProgramKey);
                ::SHDeleteKeyW(root, kBackup);
            }
        }
        ::SHDeleteKeyW(HKEY_CURRENT_USER, kStandIns);
    }
    SettingsAside(const SettingsAside&) = delete;
    SettingsAside& operator=(const SettingsAside&) = delete;

 private:
    static constexpr wchar_t kBackup[] = L"SOFTWARE\\FenwynTest-Aside";
    static inline const HKEY kRoots[] = {HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER};

    static std::size_t index(HKEY root) { return root == HKEY_LOCAL_MACHINE ? 0 : 1; }
    static bool copy(HKEY root, const wchar_t* from, const wchar_t* to) {
        HKEY source = nullptr;
        if (::RegOpenKeyExW(root, from, 0, KEY_READ, &source) != ERROR_SUCCESS) {
            return false;
        }
        HKEY target = nullptr;
        ::RegCreateKeyExW(root, to, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &target, nullptr);
        ::SHCopyKeyW(source, nullptr, target, 0);
        ::RegCloseKey(source);
        ::RegCloseKey(target);
        return true;
    }
    bool m_bThere[2] = {};
};

template <typename Condition>
bool eventually(Condition condition, DWORD milliseconds = 15000) {
    for (const ULONGLONG end = ::GetTickCount64() + milliseconds; !condition();) {
        if (::GetTickCount64() > end) {
            return false;
        }
        ::Sleep(10);
    }
    return true;
}

fs::path testFolder() {
    wchar_t path[MAX_PATH];
    const std::wstring program(path, ::GetModuleFileNameW(nullptr, path, MAX_PATH));
    return program.substr(0, program.rfind(L'\\'));
}

class ProgramTest : public testing::Test {
 protected:
    ProgramTest() {
        fs::create_directories(folder());
        fs::copy_file(testFolder() / FENWYN_STAGE_FROM_UNIT / L"Fenwyn.exe", folder() / L"Fenwyn.exe");
        for (const wchar_t* file : {L"CardArt.dll", L"ZelMain.dll", L"ZelEvnt.dll", L"PrtHook.dll"}) {
            fs::copy_file(testFolder() / L"plugins" / L"siblings" / file, folder() / file);
        }
        for (const wchar_t* standIn : {L"ZelMain", L"ZelEvnt", L"PrtHook"}) {
            setText(HKEY_CURRENT_USER, std::wstring(kStandIns) + L"\\" + standIn, L"RecordFile", record());
        }
        // No cards are needed: the list exists and is empty.
        setText(HKEY_LOCAL_MACHINE, std::wstring(kProgramKey) + L"\\HotKey", L"FuncList", L"");
        setConfig(L"ShowQrdAtLaunch", 0);
    }
    ~ProgramTest() override { endRunning(); }

    [[nodiscard]] fs::path folder() const { return m_temp / L"program"; }
    [[nodiscard]] std::wstring record() const { return (m_temp / L"calls.txt").wstring(); }
    static void setText(HKEY root, const std::wstring& key, const wchar_t* name, const std::wstring& text) {
        ::RegSetKeyValueW(root, key.c_str(), name, REG_SZ, text.c_str(),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    }
    static void setConfig(const wchar_t* name, DWORD value) {
        ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, kConfigKey, name, REG_DWORD, &value, sizeof(value));
    }
    // How often an export was called, by all programs of this test.
    [[nodiscard]] int calls(const std::string& exportName) const {
        std::istringstream lines(support::TempFolder::bytesOf(record()));
        int count = 0;
        for (std::string line; std::getline(lines, line);) {
            count += line.find(exportName) != std::string::npos ? 1 : 0;
        }
        return count;
    }

    bool launch(support::ChildProcess& process, const std::wstring& arguments = L"") const {
        return process.start((folder() / L"Fenwyn.exe").wstring(), arguments);
    }
    // Starts it and waits until it is ready: the strip exists and has become topmost.
    bool run(const std::wstring& arguments = L"") {
        return launch(m_program, arguments) && eventually([] {
                   return strip() != nullptr && (::GetWindowLongPtrW(strip(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0 &&
                          frame() != nullptr;
               }) &&
               ::WaitForInputIdle(m_program.handle(), 15000) == 0;
    }
    void endRunning() {
        if (m_program.id() != 0) {
            ::PostMessageW(frame(), WM_CLOSE, 0, 0);
            m_program.exitCode(5000);
        }
    }
    static HWND strip() { return ::FindWindowW(kStripClass, nullptr); }
    static HWND frame() { return ::FindWindowW(L"ZelMainCls", L"KESTOVA Fenwyn"); }

    SettingsAside m_aside;
    support::TempFolder m_temp;
    support::ChildProcess m_program;
};

TEST_F(ProgramTest, StartsStopsAndCallsEachSiblingOnce) {
    ASSERT_TRUE(run());
    EXPECT_FALSE(::IsWindowVisible(strip()));
    ::PostMessageW(frame(), WM_CLOSE, 0, 0);
    const ULONGLONG asked = ::GetTickCount64();
    EXPECT_EQ(m_program.exitCode(), 0U);
    EXPECT_LT(::GetTickCount64() - asked, 5000U);
    for (const char* name : {"CancelQueryEvent", "InstallHook", "Start", "EnableHotkey", "Stop"}) {
        EXPECT_EQ(calls(name), 1) << name;
    }
    EXPECT_EQ(frame(), nullptr);
    EXPECT_EQ(strip(), nullptr);
}

TEST_F(ProgramTest, LoaderShowsNoMessageBoxes) {
    ASSERT_TRUE(run());
    EXPECT_EQ(calls("\tmode " + std::to_string(SEM_FAILCRITICALERRORS) + "\t"), 4)
        << support::TempFolder::bytesOf(record());
}

struct CommandLine {
    const wchar_t* arguments;
    DWORD showAtLaunch;
    bool shown;
};
class ProgramSwitch : public ProgramTest, public testing::WithParamInterface<CommandLine> {};

TEST_P(ProgramSwitch, DecidesWhetherTheStripShows) {
    setConfig(L"ShowQrdAtLaunch", GetParam().showAtLaunch);
    ASSERT_TRUE(run(GetParam().arguments));
    EXPECT_EQ(::IsWindowVisible(strip()) != FALSE, GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(Switches, ProgramSwitch,
                         testing::Values(CommandLine{L"/HIDE", 1, false}, CommandLine{L"/x", 0, true},
                                         CommandLine{L"", 1, true}));

TEST_F(ProgramTest, SecondStartNudgesTheFirstAndLeaves) {
    ASSERT_TRUE(run());
    support::ChildProcess second;
    ASSERT_TRUE(launch(second));
    EXPECT_TRUE(eventually([] { return ::IsWindowVisible(strip()) != FALSE; })) << "the flash";
    EXPECT_EQ(second.exitCode(), 0U);
    EXPECT_TRUE(eventually([] { return ::IsWindowVisible(strip()) == FALSE; })) << "its end";
    EXPECT_EQ(calls("CancelQueryEvent"), 2);
    EXPECT_EQ(calls("EnableHotkey"), 1);
    EXPECT_EQ(calls("Stop"), 0) << "what was not started is not stopped";
    EXPECT_EQ(m_program.exitCode(0), 0xFFFFFFFFU) << "the first one runs on";
}

TEST_F(ProgramTest, OfManyStartsExactlyOneSurvives) {
    support::ChildProcess starts[8];
    for (support::ChildProcess& each : starts) {
        ASSERT_TRUE(launch(each));
    }
    const auto running = [&starts] {
        return std::count_if(std::begin(starts), std::end(starts),
                             [](const auto& each) { return each.exitCode(0) == 0xFFFFFFFFU; });
    };
    EXPECT_TRUE(eventually([&] { return running() == 1 && frame() != nullptr && strip() != nullptr; }, 30000));
    EXPECT_EQ(calls("EnableHotkey"), 1);
    ::PostMessageW(frame(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(eventually([&] { return running() == 0; }));
}

TEST_F(ProgramTest, WithoutItsPicturesItEndsQuietly) {
    fs::remove(folder() / L"CardArt.dll");
    ASSERT_TRUE(launch(m_program));
    EXPECT_EQ(m_program.exitCode(), 0U);
    EXPECT_EQ(calls("CancelQueryEvent"), 1);
    EXPECT_EQ(calls("Start"), 0);
    EXPECT_EQ(calls("Stop"), 0);
}

TEST_F(ProgramTest, LibraryPlantedInTheCurrentFolderOrThePathIsNotTaken) {
    const fs::path planted = m_temp / L"planted";
    fs::create_directories(planted);
    fs::rename(folder() / L"ZelMain.dll", planted / L"ZelMain.dll");
    const fs::path current = fs::current_path();
    wchar_t path[4096] = {};
    ::GetEnvironmentVariableW(L"PATH", path, 4096);
    fs::current_path(planted);
    ::SetEnvironmentVariableW(L"PATH", (planted.wstring() + L";" + path).c_str());
    EXPECT_TRUE(launch(m_program));
    fs::current_path(current);
    ::SetEnvironmentVariableW(L"PATH", path);
    EXPECT_EQ(m_program.exitCode(), 0U);
    EXPECT_EQ(calls("InstallHook"), 1);
    EXPECT_EQ(calls("Start"), 0);
}

}  // namespace
