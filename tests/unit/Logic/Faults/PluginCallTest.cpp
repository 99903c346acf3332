// The record of the calls in progress.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <functional>
#include <string>
#include <thread>

#include "Logic/Faults/PluginCall.h"
#include "support/TempFolder.h"

namespace {

using faults::CPluginCall;
using faults::newestCall;
using faults::Phase;
using faults::section;

LONG WINAPI answerOne(LONG lItem, ULONG* /*pReserved*/) {
    return lItem + 1;
}

using Export = faults::CPluginExport<LONG(WINAPI*)(LONG, ULONG*)>;

Export exportOf(LONG(WINAPI* pfExport)(LONG, ULONG*), const char* pszName, faults::PluginId plugin = 0) {
    return {reinterpret_cast<FARPROC>(reinterpret_cast<void*>(pfExport)), plugin, pszName};
}

TEST(PluginCall, IsOnRecordForAsLongAsItLasts) {
    const faults::PluginId plugin = faults::knowPlugin(L"C:\\x\\A.dll", L"Mute", L"Ton");
    ASSERT_EQ(newestCall(0), nullptr);
    {
        const CPluginCall call(plugin, "SelectItem");
        const faults::CallEntry* const pCall = newestCall(::GetCurrentThreadId());
        ASSERT_NE(pCall, nullptr);
        EXPECT_STREQ(pCall->name, "SelectItem");
        EXPECT_STREQ(section().plugin[pCall->plugin].path, L"C:\\x\\A.dll");
        EXPECT_STREQ(section().plugin[pCall->plugin].function, L"Mute");
        EXPECT_STREQ(section().plugin[pCall->plugin].caption, L"Ton");
        EXPECT_LE(::GetTickCount64() - pCall->since, 5000U);
        EXPECT_EQ(newestCall(::GetCurrentThreadId() + 1), nullptr);
    }
    EXPECT_EQ(newestCall(0), nullptr);
}

TEST(PluginCall, InnermostOneCounts) {
    const CPluginCall outer(0, "SelectItem");
    {
        const CPluginCall inner(0, "GetCurrentItem");
        EXPECT_STREQ(newestCall(0)->name, "GetCurrentItem");
    }
    EXPECT_STREQ(newestCall(0)->name, "SelectItem");
}

TEST(PluginCall, MoreThanThereIsRoomForAreOnlyNotNoted) {
    const std::size_t nCalls = faults::kMaxCalls + 2;
    std::array<std::unique_ptr<CPluginCall>, faults::kMaxCalls + 2> calls;
    for (std::size_t i = 0; i < nCalls; ++i) {
        calls.at(i) = std::make_unique<CPluginCall>(0, "SelectItem");
    }
    EXPECT_NE(newestCall(0), nullptr);
    for (auto& pCall : calls) {
        pCall.reset();
    }
    EXPECT_EQ(newestCall(0), nullptr);
}

TEST(PluginCall, OfATerminatedThreadIsForgotten) {
    DWORD dwThread = 0;
    std::unique_ptr<CPluginCall> pCall;
    std::thread([&] {
        dwThread = ::GetCurrentThreadId();
        pCall = std::make_unique<CPluginCall>(0, "FnF5_SetCurrentForPanic");
    }).join();
    ASSERT_NE(newestCall(dwThread), nullptr);
    faults::forgetCallsOf(dwThread);
    EXPECT_EQ(newestCall(0), nullptr);
    static_cast<void>(pCall.release());  // as a terminated thread does
}

TEST(PluginCall, TextsThatDoNotFitAreCut) {
    const std::wstring strLong(1000, L'x');
    const faults::PluginId plugin = faults::knowPlugin(strLong.c_str(), strLong.c_str(), strLong.c_str());
    EXPECT_EQ(std::wstring(section().plugin[plugin].path).size(), faults::kPathChars - 1);
    EXPECT_EQ(std::wstring(section().plugin[plugin].caption).size(), faults::kNameChars - 1);
    const CPluginCall call(plugin, std::string(100, 'y').c_str());
    EXPECT_EQ(std::string(newestCall(0)->name).size(), faults::kExportChars - 1);
}

TEST(PluginCall, SamePathIsTheSamePlugin) {
    const faults::PluginId plugin = faults::knowPlugin(L"C:\\x\\A.dll", L"Mute", L"Ton");
    EXPECT_EQ(faults::knowPlugin(L"c:\\X\\a.DLL", L"Mute", L""), plugin);
    EXPECT_NE(faults::knowPlugin(L"C:\\x\\B.dll", L"Mute", L""), plugin);
}

TEST(PluginExport, IsCalledOnRecordAndReturnsItsResult) {
    static const char* s_pszSeen = nullptr;
    static Phase s_phase{};
    const Export select = exportOf(
        [](LONG lItem, ULONG*) -> LONG {
            s_pszSeen = newestCall(::GetCurrentThreadId())->name;
            s_phase = newestCall(::GetCurrentThreadId())->phase;
            return lItem * 2;
        },
        "InitializeHotkeyDll");
    ULONG uReserved = 0;
    EXPECT_EQ(select(21, &uReserved), 42);
    EXPECT_STREQ(s_pszSeen, "InitializeHotkeyDll");
    EXPECT_EQ(s_phase, Phase::Initialising);
    EXPECT_EQ(newestCall(0), nullptr);
    EXPECT_TRUE(select);
    EXPECT_TRUE(exportOf(nullptr, "SelectItem") == nullptr);
}

TEST(PluginExport, LeavesTheFloatingPointStateAsItWas) {
    const unsigned uBefore = ::_controlfp(0, 0);
    const Export spoil = exportOf(
        [](LONG, ULONG*) -> LONG {
            ::_controlfp(_RC_CHOP, _MCW_RC);
            ::_controlfp(0, _EM_ZERODIVIDE);
            return ::_controlfp(0, 0) != 0 ? 1 : 0;
        },
        "SelectItem");
    ULONG uReserved = 0;
    EXPECT_EQ(spoil(0, &uReserved), 1);
    EXPECT_EQ(::_controlfp(0, 0), uBefore);
    volatile double nothing = 0.0;
    EXPECT_GT(1.0 / nothing, 1e300) << "no exception";
}

TEST(PluginExport, PhaseFollowsFromTheName) {
    EXPECT_EQ(faults::phaseOf("InitializeHotkeyDll"), Phase::Initialising);
    EXPECT_EQ(faults::phaseOf("FnF5_InitializeHotkeyDll"), Phase::Initialising);
    EXPECT_EQ(faults::phaseOf("GetUnsupportedReason"), Phase::Initialising);
    EXPECT_EQ(faults::phaseOf("SelectItem"), Phase::InUse);
    EXPECT_EQ(faults::phaseOf("FinalizeHotkeyDll"), Phase::Ending);
}

// In ns, each; the fastest of several rounds, because others use the processor too.
double costOf(int nCalls, const std::function<void(int)>& call) {
    LARGE_INTEGER perSecond{};
    ::QueryPerformanceFrequency(&perSecond);
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        LARGE_INTEGER begin{};
        LARGE_INTEGER end{};
        ::QueryPerformanceCounter(&begin);
        for (int i = 0; i < nCalls; ++i) {
            call(i);
        }
        ::QueryPerformanceCounter(&end);
        best = std::min(best, static_cast<double>(end.QuadPart - begin.QuadPart) * 1e9 /
                                  static_cast<double>(perSecond.QuadPart) / nCalls);
    }
    std::printf("%.0f ns for each call\n", best);
    return best;
}

TEST(PluginCall, NoteCostsLessThanAMicrosecond) {
    EXPECT_LT(costOf(100000, [](int) { const CPluginCall call(0, "SelectItem"); }), 1000.0);
}

// Beside a single question, because the cost of one differs by the machine, and by what else it does.
TEST(PluginExport, CallCostsNoMoreThanAFewQuestionsToTheSystem) {
    const Export select = exportOf(&answerOne, "SelectItem");
    const double question =
        costOf(2000, [](int) { EXPECT_NE(::GetThreadPriority(::GetCurrentThread()), THREAD_PRIORITY_ERROR_RETURN); });
    const double call = costOf(2000, [&select](int i) {
        ULONG uReserved = 0;
        EXPECT_EQ(select(i, &uReserved), i + 1);
    });
    EXPECT_LT(call, 8 * question);
}

TEST(CallSection, OutlivesItsProcessInAFileThatNobodyElseCanHave) {
    const support::TempFolder folder;
    const std::wstring strFile = folder / L"calls.bin";
    faults::Section left{};
    ASSERT_TRUE(faults::mapSection(strFile.c_str(), left));
    EXPECT_EQ(left.running, FALSE);
    EXPECT_EQ(section().running, TRUE);
    const faults::PluginId plugin = faults::knowPlugin(L"C:\\x\\A.dll", L"Mute", L"Ton");
    const CPluginCall call(plugin, "SelectItem");
    EXPECT_FALSE(faults::mapSection(strFile.c_str(), left)) << "a second instance";
    // What the next start would find.
    const std::string bytes = support::TempFolder::bytesOf(strFile);
    ASSERT_EQ(bytes.size(), sizeof(faults::Section));
    faults::Section found{};
    std::copy(bytes.begin(), bytes.end(), reinterpret_cast<char*>(&found));
    ASSERT_NE(newestCall(found, 0), nullptr);
    EXPECT_STREQ(newestCall(found, 0)->name, "SelectItem");
    EXPECT_STREQ(found.plugin[newestCall(found, 0)->plugin].caption, L"Ton");
    EXPECT_EQ(found.running, TRUE);
}

}  // namespace
