// How long each export of the plug-ins for real machines holds up its caller, Fenwyn's user-interface thread.
//
//   cmake --build --preset x64-release --target PluginTiming
//   xvfb-run -a tools/wine build/x64-release/bench/plugintiming/PluginTiming.exe build/stage/plugins
//
// It changes nothing: the item that it chooses is the current one, or "cancel"; nothing is chosen for the display
// output. Exits with 1 if the 99th percentile of any export is 50 ms or more. The first start of all is not counted:
// the plug-ins then wait for the machine's answer, which later starts remember.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "FenwynFunctions.h"
#include "common/Handle.h"

namespace {

constexpr int kLives = 10;     // of each library
constexpr int kCalls = 20;     // of each export in a life
constexpr double kLimit = 50;  // milliseconds
// "Cancel" of the functions that are not asked for a state.
constexpr LONG kCancel = 1;
constexpr LONG kCancelWireless = 14;
constexpr ULONG kPlans = 4;

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

void* WINAPI allocate(LONG lByteCount) {
    return lByteCount > 0 ? ::HeapAlloc(::GetProcessHeap(), 0, static_cast<SIZE_T>(lByteCount)) : nullptr;
}

class CPlugin {
 public:
    CPlugin(const std::wstring& path, const fenwyn::Function& function, Times& rTimes)
        : m_hModule(::LoadLibraryW(path.c_str())), m_function(function), m_rTimes(rTimes) {}

    // One life, from initialisation to the end. False: the library cannot be loaded.
    bool live() {
        if (!m_hModule) {
            return false;
        }
        if (_initialize() == FENWYN_OK) {
            for (int i = 0; i < kCalls; ++i) {
                _open();
            }
        } else {
            BSTR bstrText = nullptr;
            _call<FenwynGetUnsupportedReason>(FENWYN_GET_UNSUPPORTED_REASON, &bstrText, &m_uReserved);
            ::SysFreeString(bstrText);
        }
        _call<FenwynFinalizeHotkeyDll>(FENWYN_FINALIZE);
        return true;
    }

 private:
    [[nodiscard]] bool _hasEntries() const { return m_function.infoRule == fenwyn::InfoRule::Entries; }

    LONG _initialize() {
        return _hasEntries() ? _call<FenwynFnF5InitializeHotkeyDll>(FENWYN_FNF5_INITIALIZE, 0L, &m_uReserved, &allocate)
                             : _call<FenwynInitializeHotkeyDll>(FENWYN_INITIALIZE, 0L, &m_uReserved);
    }

    // What Fenwyn asks when the card opens, and a choice that changes nothing.
    void _open() {
        if (_hasEntries()) {
            _openEntries();
            return;
        }
        ULONG uInfo = 0;
        ULONG uInfo2 = 0;
        _call<FenwynGetDisplayItemInfo>(FENWYN_GET_DISPLAY_ITEM_INFO, &uInfo, &uInfo2, &m_uReserved);
        BYTE byDual = 0;
        _call<FenwynIsDualBrtCtrl>(FENWYN_IS_DUAL_BRT_CTRL, &byDual);
        LONG lItem = fenwyn::equalNames(m_function.name, L"Wireless") ? kCancelWireless : kCancel;
        _call<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM, &lItem, &m_uReserved);
        _askForPlans(uInfo);
        if (m_function.currentRule != fenwyn::CurrentRule::Arrangement) {
            _call<FenwynSelectItem>(FENWYN_SELECT_ITEM, lItem, &m_uReserved);
        }
        _call<FenwynFocusItem>(FENWYN_FOCUS_ITEM, lItem, &m_uReserved);
    }

    void _askForPlans(ULONG uPlans) {
        for (ULONG uPlan = 0; uPlan < kPlans; ++uPlan) {
            if ((uPlans >> uPlan & 1) != 0) {
                BSTR bstrText = nullptr;
                ULONGLONG ullReserved = 0;
                _call<FenwynGetCustomItemText>(FENWYN_GET_CUSTOM_ITEM_TEXT, uPlan, &bstrText, &ullReserved);
                ::SysFreeString(bstrText);
            }
        }
    }

    void _openEntries() {
        LONG lCount = 0;
        _call<FenwynFnF5GetDisplayItemCount>(FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT, &lCount, &m_uReserved);
        for (LONG lIndex = 0; lIndex < lCount; ++lIndex) {
            LONG lMode = -1;
            WCHAR* pszText = nullptr;
            ULONG uCount = 0;
            ULONGLONG ullRecords = 0;
            ULONG uFlags = 0;
            _call<FenwynFnF5GetDisplayItemInfo>(FENWYN_FNF5_GET_DISPLAY_ITEM_INFO, static_cast<ULONG>(lIndex), &lMode,
                                                &pszText, &uCount, &ullRecords, &uFlags, &m_uReserved);
            ::HeapFree(::GetProcessHeap(), 0, pszText);
        }
        LONG lItem = 0;
        _call<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM, &lItem, &m_uReserved);
    }

    // An export that the library lacks is left out.
    template <typename Function, typename... Arguments>
    LONG _call(const char* pszName, Arguments... arguments) {
        const auto function =
            reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_hModule.get(), pszName)));
        LONG lResult = FENWYN_OK;
        if (function != nullptr) {
            m_rTimes[pszName].push_back(milliseconds([&] { lResult = function(arguments...); }));
        }
        return lResult;
    }

    common::UniqueModule m_hModule;
    const fenwyn::Function& m_function;
    Times& m_rTimes;
    ULONG m_uReserved = 0;
};

// Prints a line for each export. False: one is too slow.
bool report(const wchar_t* pszFunction, Times& rTimes) {
    bool bQuick = true;
    for (auto& [name, times] : rTimes) {
        std::sort(times.begin(), times.end());
        const auto at = [&times = times](double share) {
            return times[static_cast<std::size_t>(static_cast<double>(times.size() - 1) * share)];
        };
        std::printf("%-15ls %-24s %4zu calls   median %7.3f ms   p99 %7.3f ms\n", pszFunction, name.c_str(),
                    times.size(), at(0.5), at(0.99));
        bQuick = bQuick && at(0.99) < kLimit;
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
    for (const fenwyn::Function& function : fenwyn::kFunctions) {
        const std::wstring path = std::wstring(argv[1]) + L"\\Win" + function.name + L".dll";
        if (::GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
            continue;
        }
        Times first;
        Times times;
        for (int i = 0; i <= kLives; ++i) {
            if (!CPlugin(path, function, i == 0 ? first : times).live()) {
                std::printf("%ls cannot be loaded\n", path.c_str());
                return 2;
            }
        }
        bQuick = report(function.name, times) && bQuick;
    }
    return bQuick ? 0 : 1;
}
