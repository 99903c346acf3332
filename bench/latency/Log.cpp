// What a call of the log costs: filtered, as in a user's program; a filtered scope; and written to a file, buffered.
//
//   LatencyLog.exe
//
// DbgLog.ini beside the program filters everything or writes everything, which is fixed at the first call: the program
// starts itself once more for the other case. Prints nanoseconds, "name value" on each line; "loop" is what the loop
// around each call takes.
#include <windows.h>

#include <process.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cwchar>
#include <string>
#include <vector>

#include "common/DebugLog.h"
#ifdef LATENCY_LOG_PEER
#include "LogPeer.h"
#endif

namespace {

// Many short rounds: some of them are not interrupted.
constexpr int kRounds = 100;
constexpr int kCalls = 100000;
constexpr int kLines = 2000;

std::atomic<int> s_level{0};
std::atomic<int> s_hits{0};

double now() {
    LARGE_INTEGER count{};
    LARGE_INTEGER frequency{};
    ::QueryPerformanceCounter(&count);
    ::QueryPerformanceFrequency(&frequency);
    return 1e9 * static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

struct Nothing {
    void operator()(int /*value*/) const {}
};

struct Comparison {
    void operator()(int value) const {
        if (s_level.load(std::memory_order_relaxed) >= 3) {
            s_hits += value;
        }
    }
};

struct Call {
    void operator()(int value) const { LOG_TRACE(L"value = %d", value); }
};

struct Scope {
    void operator()(int /*value*/) const {
        LOG_ENTER_LEAVE();
        asm volatile("" ::: "memory");
    }
};

struct Line {
    void operator()(int value) const { LOG_TRACE(L"%s = %d", L"nFuncCode", value); }
};

#ifdef LATENCY_LOG_PEER
struct PeerLine {
    void operator()(int value) const { peer::written("nFuncCode", value); }
};
#endif

// Nanoseconds of one call in its caller's code; the barrier keeps the compiler from moving anything out of the loop.
template <typename Act>
double perCall(int calls) {
    const double before = now();
    for (int i = 0; i < calls; ++i) {
        Act()(i);
        asm volatile("" ::: "memory");
    }
    return (now() - before) / calls;
}

struct Row {
    const char* name;
    double (*perCall)(int);
};

// By turns. The smallest of each, because whatever else the machine does only adds to it.
void measure(const std::vector<Row>& rows, int calls) {
    std::vector<double> smallest(rows.size(), 1e9);
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t i = 0; i < rows.size(); ++i) {
            smallest[i] = std::min(smallest[i], rows[i].perCall(calls));
        }
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        std::printf("%s %.3f\n", rows[i].name, smallest[i]);
    }
}

std::wstring folder() {
    wchar_t path[MAX_PATH] = L"";
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring whole(path);
    return whole.substr(0, whole.find_last_of(L'\\') + 1);
}

void writeSettings(int level) {
    const std::wstring ini = folder() + L"DbgLog.ini";
    ::WritePrivateProfileStringW(L"LOG", L"Level", std::to_wstring(level).c_str(), ini.c_str());
    ::WritePrivateProfileStringW(L"LOG", L"LogFile", (folder() + L"latency-log.txt").c_str(), ini.c_str());
}

#ifdef LATENCY_LOG_PEER
std::string peerFile() {
    const std::wstring wide = folder() + L"latency-peer.txt";
    std::string narrow;
    for (const wchar_t unit : wide) {
        narrow.push_back(static_cast<char>(unit));
    }
    return narrow;
}
#endif

void writeLines() {
    std::vector<Row> rows{{"written", &perCall<Line>}};
#ifdef LATENCY_LOG_PEER
    peer::open(peerFile().c_str());
    rows.push_back({"written-peer", &perCall<PeerLine>});
#endif
    measure(rows, kLines);
}

void filterLines() {
    measure({{"loop", &perCall<Nothing>},
             {"comparison", &perCall<Comparison>},
             {"filtered", &perCall<Call>},
             {"scope", &perCall<Scope>}},
            kCalls);
}

int startAgain() {
    wchar_t path[MAX_PATH] = L"";
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return static_cast<int>(::_wspawnl(_P_WAIT, path, L"LatencyLog", L"written", nullptr));
}

}  // namespace

int wmain(int argc, wchar_t** /*argv*/) {
    if (argc > 1) {
        writeLines();
        return 0;
    }
    writeSettings(0);
    filterLines();
    std::fflush(stdout);
    writeSettings(3);
    const int status = startAgain();
    for (const wchar_t* file : {L"DbgLog.ini", L"latency-log.txt", L"latency-peer.txt"}) {
        ::DeleteFileW((folder() + file).c_str());
    }
    return status;
}
