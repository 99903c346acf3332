#include "Fuzz.h"

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "common/Handle.h"
#include "support/AppRoom.h"

namespace fuzz {

namespace {

constexpr unsigned kUsualInputs = 500;
constexpr ULONGLONG kLongestMs = 1000;
constexpr DWORD kHungMs = 15000;     // it is noticed after one to two of these
constexpr unsigned kLookEvery = 50;  // inputs: what processes and libraries there are

unsigned fromEnvironment(const char* name, unsigned usual) {
    const char* const text = std::getenv(name);
    return text != nullptr ? static_cast<unsigned>(std::strtoul(text, nullptr, 10)) : usual;
}

std::uint32_t seed() {
    static const std::uint32_t value = [] {
        const std::uint32_t made = fromEnvironment("FENWYN_TEST_SEED", std::random_device{}());
        std::printf("FENWYN_TEST_SEED=%u\n", made);
        std::fflush(stdout);
        return made;
    }();
    return value;
}

// The input at work, for whoever wants to repeat it.
std::atomic<unsigned> g_uInput = 0;

void printInput(const char* what) {
    std::printf("%s: FENWYN_TEST_SEED=%u FENWYN_FUZZ_ONLY=%u --gtest_filter=%s.%s\n", what, seed(), g_uInput.load(),
                testing::UnitTest::GetInstance()->current_test_info()->test_suite_name(),
                testing::UnitTest::GetInstance()->current_test_info()->name());
    std::fflush(stdout);
}

LONG WINAPI lastWords(EXCEPTION_POINTERS* pPointers) {
    std::printf("exception 0x%lx at %p\n", pPointers->ExceptionRecord->ExceptionCode,
                pPointers->ExceptionRecord->ExceptionAddress);
    printInput("The process ends");
    return EXCEPTION_CONTINUE_SEARCH;
}

// Ends a process whose input does not end.
class CAlarm {
 public:
    CAlarm() : m_hOver(::CreateEventW(nullptr, FALSE, FALSE, nullptr)), m_thread([this] { _watch(); }) {}
    ~CAlarm() {
        ::SetEvent(m_hOver.get());
        m_thread.join();
    }
    CAlarm(const CAlarm&) = delete;
    CAlarm& operator=(const CAlarm&) = delete;

 private:
    void _watch() const {
        for (unsigned last = UINT_MAX; ::WaitForSingleObject(m_hOver.get(), kHungMs) == WAIT_TIMEOUT; last = g_uInput) {
            if (last == g_uInput) {
                printInput("It hangs");
                ::TerminateProcess(::GetCurrentProcess(), 3);
            }
        }
    }

    common::UniqueHandle m_hOver;
    std::thread m_thread;
};

std::set<std::wstring> librariesNow() {
    std::array<HMODULE, 1024> modules{};
    DWORD bytes = 0;
    ::EnumProcessModules(::GetCurrentProcess(), modules.data(), sizeof(modules), &bytes);
    std::set<std::wstring> names;
    for (std::size_t i = 0; i < std::min(modules.size(), bytes / sizeof(HMODULE)); ++i) {
        wchar_t path[MAX_PATH] = L"";
        ::GetModuleFileNameW(modules[i], path, MAX_PATH);
        ::CharLowerW(path);
        names.emplace(path);
    }
    return names;
}

std::size_t childProcesses() {
    const common::UniqueFile snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    std::size_t count = 0;
    for (BOOL more = ::Process32FirstW(snapshot.get(), &entry); more; more = ::Process32NextW(snapshot.get(), &entry)) {
        count += entry.th32ParentProcessID == ::GetCurrentProcessId() ? 1U : 0U;
    }
    return count;
}

// What was there before, to be compared with later.
class CWatch {
 public:
    explicit CWatch(const std::set<std::wstring>& libraries) : m_listed(libraries) {
        wchar_t folder[MAX_PATH] = L"";
        ::GetWindowsDirectoryW(folder, MAX_PATH);
        ::CharLowerW(folder);
        m_systemFolder = std::wstring(folder) + L"\\";
    }
    [[nodiscard]] bool allIsWell() const {
        EXPECT_EQ(childProcesses(), m_processes) << "a program was started";
        for (const std::wstring& path : librariesNow()) {
            const bool known = m_libraries.contains(path) || path.starts_with(m_systemFolder) ||
                               m_listed.contains(path.substr(path.find_last_of(L'\\') + 1));
            EXPECT_TRUE(known) << "a library was loaded: " << std::string(path.begin(), path.end());
        }
        return !testing::Test::HasFailure();
    }

 private:
    std::set<std::wstring> m_listed;
    std::set<std::wstring> m_libraries = librariesNow();
    std::size_t m_processes = childProcesses();
    std::wstring m_systemFolder;
};

// Of the processor, in ms: others use it too. An input that waits instead is the alarm's.
ULONGLONG timeUsed() {
    FILETIME ignored{};
    FILETIME kernel{};
    FILETIME user{};
    ::GetProcessTimes(::GetCurrentProcess(), &ignored, &ignored, &kernel, &user);
    const auto whole = [](const FILETIME& time) {
        return static_cast<ULONGLONG>(time.dwHighDateTime) << 32U | time.dwLowDateTime;
    };
    return (whole(kernel) + whole(user)) / 10000;
}

bool isWell(const std::function<void(CRandom&)>& input) {
    CRandom random(seed() + 0x9E3779B9U * (g_uInput + 1));
    const ULONGLONG begin = timeUsed();
    input(random);
    EXPECT_LE(timeUsed() - begin, kLongestMs) << "ms";
    return !testing::Test::HasFailure();
}

}  // namespace

DWORD CRandom::number() {
    static constexpr DWORD kExtremes[] = {0,          1,          2,          0x7F,       0xFF,       0x100,
                                          0x7FFF,     0xFFFF,     0x10000,    0x7FFFFFFF, 0x80000000, 0x80000001,
                                          0xFFFFFFF0, 0xFFFFFFFE, 0xFFFFFFFF, 100000};
    switch (below(4)) {
        case 0:
            return oneOf(kExtremes);
        case 1:
            return below(64);
        case 2:
            return 1U << below(32);
        default:
            return static_cast<DWORD>(m_engine());
    }
}

std::size_t CRandom::size() {
    static constexpr unsigned kLimits[] = {9, 9, 9, 70, 70, 600, 600, 70000};
    return oneIn(100) ? (1U << 20) - below(3) : below(oneOf(kLimits));
}

std::vector<BYTE> CRandom::bytes() {
    std::vector<BYTE> made(size());
    const unsigned kind = below(4);
    const std::wstring letters = text(64) + L"x";
    for (std::size_t i = 0; i < made.size(); ++i) {
        const wchar_t letter = letters[(i / 2) % letters.size()];
        made[i] = kind == 0   ? BYTE{0}
                  : kind == 1 ? BYTE{0xFF}
                  : kind == 2 ? static_cast<BYTE>(m_engine())
                              : static_cast<BYTE>(i % 2 == 0 ? letter & 0xFF : letter >> 8);
    }
    return made;
}

std::wstring CRandom::text(std::size_t most) {
    static constexpr std::wstring_view kLetters =
        L"abcXYZ019 ;;;\\\\//::..%%snd\"'\t\r\n*?<>|{}[]=-+,$~\x00E4\x20AC\xD83D\xDE00\xFFFF";
    std::wstring made(below(static_cast<unsigned>(most) + 1), L' ');
    const unsigned kind = below(5);
    for (wchar_t& letter : made) {
        letter = kind == 0 ? static_cast<wchar_t>(m_engine()) : kLetters[below(static_cast<unsigned>(kLetters.size()))];
        letter = kind == 1 && oneIn(20) ? L'\0' : letter;
    }
    return made;
}

std::wstring libraryWithoutResources() {
    const std::wstring art = support::AppRoom::artPath();
    return art.substr(0, art.find_last_of(L'\\') + 1) + L"ZelEvnt.dll";
}

void run(unsigned percent, const std::function<void(CRandom&)>& input, const std::set<std::wstring>& libraries) {
    const unsigned inputs = std::max(1U, fromEnvironment("FENWYN_FUZZ_INPUTS", kUsualInputs) * percent / 100);
    const unsigned only = fromEnvironment("FENWYN_FUZZ_ONLY", UINT_MAX);
    g_uInput = only != UINT_MAX ? only : 0;
    const auto previous = ::SetUnhandledExceptionFilter(&lastWords);
    testing::GTEST_FLAG(catch_exceptions) = false;
    const CAlarm alarm;
    {
        CRandom first(seed());
        input(first);  // loads what is loaded once
    }
    const CWatch watch(libraries);
    const unsigned end = only != UINT_MAX ? only + 1 : inputs;
    for (; g_uInput < end; ++g_uInput) {
        const bool well = isWell(input) && ((g_uInput + 1) % kLookEvery != 0 || watch.allIsWell());
        if (!well) {
            break;
        }
    }
    static_cast<void>(watch.allIsWell());
    if (testing::Test::HasFailure()) {
        printInput("It fails");
    }
    ::SetUnhandledExceptionFilter(previous);
}

}  // namespace fuzz
