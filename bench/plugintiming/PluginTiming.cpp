// How long each export of the plug-ins for real machines holds up its caller, Fenwyn's user-interface thread.
//
//   bench/plugintiming/measure
//
// shows how to call it. The libraries "Win<Function>.dll" of the folder are those that ship; it changes nothing with
// them, because the item that it chooses is the current one or "cancel", unless the first argument is --change: then it
// changes mute, zoom and overlays each time. Libraries "Fake<Function>.dll" have a fake for the machine, and each time
// another item is chosen. Exits with 1 if the 99th percentile of any export is 50 ms or more.
// The first start of all is not counted: the plug-ins then wait for the machine's answer, which later starts remember.
// Nor is the held key of the display output, which comes on a thread of its own.
#include <windows.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "FenwynFunctions.h"
#include "common/Handle.h"

namespace {

constexpr int kLives = 100;    // of each library
constexpr int kCalls = 4;      // of each export in a life
constexpr double kLimit = 50;  // milliseconds
// "Cancel" of the functions that are not asked for a state.
constexpr LONG kCancel = 1;
constexpr LONG kCancelWireless = 14;
// The functions whose changes do no harm.
constexpr std::array<const wchar_t*, 4> kHarmless{L"Mute", L"Zoom", L"CursorOverlay", L"NumericOverlay"};
constexpr DWORD kFirstAnswerMs = 150;  // by then every fake has answered
constexpr ULONG kPlans = 4;
constexpr ULONG kItems = 32;  // that a mask can name

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

// The next item of a mask, after the last one the first.
LONG nextItem(LONG lItem, ULONG uMask) {
    for (ULONG uStep = 1; uStep <= kItems; ++uStep) {
        const ULONG uItem = (static_cast<ULONG>(lItem) + uStep) % kItems;
        if ((uMask >> uItem & 1) != 0) {
            return static_cast<LONG>(uItem);
        }
    }
    return lItem;
}

class CPlugin {
 public:
    // `bChange`: it may change its machine.
    CPlugin(const std::wstring& path, const fenwyn::Function& function, bool bChange, Times& rTimes)
        : m_hModule(::LoadLibraryW(path.c_str())), m_function(function), m_bChange(bChange), m_rTimes(rTimes) {}

    // One life, from initialisation to the end. False: the library cannot be loaded.
    bool live() {
        if (!m_hModule) {
            return false;
        }
        if (_initialize() == FENWYN_OK) {
            if (m_bChange) {
                ::Sleep(kFirstAnswerMs);  // nothing can be changed before
            }
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

    // What Fenwyn asks when the card opens, and a choice.
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
        if (m_bChange) {
            // Brightness tells the number of its levels, the others a mask.
            const bool bLevels = fenwyn::equalNames(m_function.name, L"Brightness");
            lItem = bLevels ? (lItem + 1) % static_cast<LONG>(uInfo + 1) : nextItem(lItem, uInfo);
        }
        _call<FenwynSelectItem>(FENWYN_SELECT_ITEM, lItem, &m_uReserved);
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
        LONG lItem = -1;
        _call<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM, &lItem, &m_uReserved);
        _call<FenwynSelectItem>(FENWYN_SELECT_ITEM, lItem, &m_uReserved);
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
    const bool m_bChange;
    Times& m_rTimes;
    ULONG m_uReserved = 0;
};

// Prints a line for each export. False: one is too slow.
bool report(const wchar_t* pszFunction, Times& rTimes) {
    bool bQuick = true;
    for (auto& [name, times] : rTimes) {
        std::sort(times.begin(), times.end());
        // The least time that this share of the calls does not exceed.
        const auto at = [&times = times](double share) {
            return times[static_cast<std::size_t>(std::ceil(static_cast<double>(times.size()) * share)) - 1];
        };
        std::printf("%-15ls %-24s %4zu calls   median %7.3f ms   p99 %7.3f ms\n", pszFunction, name.c_str(),
                    times.size(), at(0.5), at(0.99));
        bQuick = bQuick && at(0.99) < kLimit;
    }
    return bQuick;
}

enum class Result { Quick, Slow, NotLoaded };

// Of one library; quick if there is none.
Result measure(const std::wstring& path, const fenwyn::Function& function, bool bChange) {
    if (::GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        return Result::Quick;
    }
    Times first;
    Times times;
    for (int i = 0; i <= kLives; ++i) {
        if (!CPlugin(path, function, bChange, i == 0 ? first : times).live()) {
            std::printf("%ls cannot be loaded\n", path.c_str());
            return Result::NotLoaded;
        }
    }
    return report(function.name, times) ? Result::Quick : Result::Slow;
}

}  // namespace

// PluginTiming [--change] <folder of the plug-ins> [<function>...]: all functions, or these.
int wmain(int argc, wchar_t** argv) {
    std::vector<std::wstring> arguments(argv + 1, argv + argc);
    const bool bChange = !arguments.empty() && arguments[0] == L"--change";
    if (bChange) {
        arguments.erase(arguments.begin());
    }
    if (arguments.empty()) {
        std::printf("PluginTiming [--change] <folder of the plug-ins> [<function>...]\n");
        return 2;
    }
    const auto wanted = [&arguments](const wchar_t* pszName) {
        return arguments.size() == 1 || std::find(arguments.begin() + 1, arguments.end(), pszName) != arguments.end();
    };
    // Fenwyn's user-interface thread has windows before it has plug-ins; the first of a thread takes its time.
    const common::UniqueWindow hWnd(
        ::CreateWindowExW(WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, nullptr, nullptr));
    int nStatus = 0;
    for (const fenwyn::Function& function : fenwyn::kFunctions) {
        if (!wanted(function.name)) {
            continue;
        }
        const bool bHarmless = std::any_of(kHarmless.begin(), kHarmless.end(), [&function](const wchar_t* pszName) {
            return fenwyn::equalNames(function.name, pszName);
        });
        for (const bool bFake : {false, true}) {
            const std::wstring path = arguments[0] + (bFake ? L"\\Fake" : L"\\Win") + function.name + L".dll";
            const Result result = measure(path, function, bFake || (bChange && bHarmless));
            if (result == Result::NotLoaded) {
                return 2;
            }
            nStatus = result == Result::Slow ? 1 : nStatus;
        }
    }
    return nStatus;
}
