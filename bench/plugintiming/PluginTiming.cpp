// How long each export of the plug-ins for real machines blocks its caller, Fenwyn's user-interface thread.
//
//   cmake --build --preset x64-release --target PluginTiming
//   xvfb-run -a tools/wine build/x64-release/bench/plugintiming/PluginTiming.exe build/stage/plugins
//
// It changes nothing: the item that it chooses is the current one, or "cancel". Exits with 1 if the 99th percentile of
// any export except initialisation and end is 50 ms or more.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "FenwynPlugin.h"
#include "common/Handle.h"

namespace {

constexpr int kLives = 10;     // of each library
constexpr int kCalls = 20;     // of each export in a life
constexpr double kLimit = 50;  // milliseconds
constexpr LONG kCancel = 1;    // of functions without a state

struct Library {
    const wchar_t* name;
    bool bHasState;
};

constexpr Library kLibraries[] = {
    {L"WinMute", true},       {L"WinLock", false},         {L"WinPowerPlan", true},      {L"WinSleep", false},
    {L"WinHibernate", false}, {L"WinBrightness", true},    {L"WinWireless", false},      {L"WinTouchpad", true},
    {L"WinZoom", true},       {L"WinCursorOverlay", true}, {L"WinNumericOverlay", true}, {L"WinODD", true},
};

using Times = std::map<std::string, std::vector<double>>;  // export -> milliseconds

double milliseconds(const std::function<void()>& call) {
    LARGE_INTEGER perSecond{};
    LARGE_INTEGER before{};
    LARGE_INTEGER after{};
    ::QueryPerformanceFrequency(&perSecond);
    ::QueryPerformanceCounter(&before);
    call();
    ::QueryPerformanceCounter(&after);
    return static_cast<double>(after.QuadPart - before.QuadPart) * 1000.0 / static_cast<double>(perSecond.QuadPart);
}

class CPlugin {
 public:
    CPlugin(const std::wstring& path, Times& rTimes) : m_hModule(::LoadLibraryW(path.c_str())), m_rTimes(rTimes) {}

    // One life, from initialisation to the end. False: the library cannot be loaded.
    bool live(bool bHasState) {
        if (!m_hModule) {
            return false;
        }
        ULONG uReserved = 0;
        if (call<FenwynInitializeHotkeyDll>(FENWYN_INITIALIZE, 0L, &uReserved) == FENWYN_OK) {
            for (int i = 0; i < kCalls; ++i) {
                open(bHasState);
            }
        }
        call<FenwynFinalizeHotkeyDll>(FENWYN_FINALIZE);
        return true;
    }

 private:
    // The calls of Fenwyn when the card opens, and a choice that changes nothing.
    void open(bool bHasState) {
        ULONG uInfo = 0;
        ULONG uInfo2 = 0;
        ULONG uReserved = 0;
        LONG lItem = kCancel;
        call<FenwynGetDisplayItemInfo>(FENWYN_GET_DISPLAY_ITEM_INFO, &uInfo, &uInfo2, &uReserved);
        if (bHasState) {
            call<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM, &lItem, &uReserved);
        }
        call<FenwynSelectItem>(FENWYN_SELECT_ITEM, lItem, &uReserved);
        call<FenwynFocusItem>(FENWYN_FOCUS_ITEM, lItem, &uReserved);
    }

    // A missing export is skipped.
    template <typename Function, typename... Arguments>
    LONG call(const char* pszName, Arguments... arguments) {
        const auto function =
            reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_hModule.get(), pszName)));
        LONG lResult = FENWYN_OK;
        if (function != nullptr) {
            m_rTimes[pszName].push_back(milliseconds([&] { lResult = function(arguments...); }));
        }
        return lResult;
    }

    common::UniqueModule m_hModule;
    Times& m_rTimes;
};

// Prints a line for each export. False: one is too slow.
bool report(const wchar_t* pszLibrary, Times& rTimes) {
    bool bQuick = true;
    for (auto& [name, times] : rTimes) {
        std::sort(times.begin(), times.end());
        const auto at = [&times = times](double share) {
            return times[static_cast<std::size_t>(static_cast<double>(times.size() - 1) * share)];
        };
        std::printf("%-18ls %-20s %4zu calls   median %7.3f ms   p99 %7.3f ms\n", pszLibrary, name.c_str(),
                    times.size(), at(0.5), at(0.99));
        const bool bOnce = name == FENWYN_INITIALIZE || name == FENWYN_FINALIZE;
        bQuick = bQuick && (bOnce || at(0.99) < kLimit);
    }
    return bQuick;
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 2) {
        std::printf("PluginTiming <folder of the plug-ins>\n");
        return 2;
    }
    bool bQuick = true;
    for (const Library& library : kLibraries) {
        Times times;
        for (int i = 0; i < kLives; ++i) {
            CPlugin plugin(std::wstring(argv[1]) + L"\\" + library.name + L".dll", times);
            if (!plugin.live(library.bHasState)) {
                std::printf("%ls cannot be loaded\n", library.name);
                return 2;
            }
        }
        bQuick = report(library.name, times) && bQuick;
    }
    return bQuick ? 0 : 1;
}
