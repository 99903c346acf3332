// Each library as it ships, on the system that the tests run on: it keeps the contract, gives a reason if it offers
// nothing, and ends quickly and completely.
#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <utility>

#include "FenwynPlugin.h"
#include "FenwynRegistry.h"
#include "PluginChecker.h"
#include "common/Handle.h"
#include "plugins/windows/Waiting.h"
#include "support/ResourceCounters.h"
#include "system/SlowState.h"

namespace win {
namespace {

struct Shipped {
    const wchar_t* function;
    // The result on the test machine: the beginning of the reason, or null if the function is offered.
    const wchar_t* reason;
    // If this depends on the machine (such as a running sound server), the function may be offered anyway.
    bool mayBeOffered;
};

std::ostream& operator<<(std::ostream& rStream, const Shipped& shipped) {
    const std::wstring name = shipped.function;
    return rStream << std::string(name.begin(), name.end());
}

// clang-format off
constexpr Shipped kShipped[] = {
    {L"Mute", L"There is no sound output device.", true},
    {L"CursorOverlay", nullptr, true},
    {L"NumericOverlay", nullptr, true},
    {L"Lock", nullptr, true},
    // The emulated system claims to support every sleep state.
    {L"Sleep", nullptr, true},
    {L"Hibernate", nullptr, true},
    {L"Zoom", nullptr, true},
    {L"Brightness", L"There is no built-in screen whose brightness the system can set, and no other that you allow.", false},
    {L"ODD", L"There is no optical drive (mounted images are none).", false},
    {L"Touchpad", L"There is no precision touchpad.", false},
    {L"Wireless", L"There is no radio that the system lets programs switch.", false},
    {L"PowerPlan", L"There are not two power plans to choose between.", false},
    {L"Output", L"There are not two screens or connectors for screens.", false},
    {L"Output_2", L"There are not two screens or connectors for screens.", false},
};
// clang-format on

std::string narrow(const std::wstring& text) {
    return {text.begin(), text.end()};
}

std::wstring pathOf(const wchar_t* function) {
    return std::wstring(STAGE_DIR) + L"\\plugins\\Win" + function + L".dll";
}

void* WINAPI noMemory(LONG /*byteCount*/) {
    return nullptr;
}

// By whichever of the two exports the library has.
LONG initialized(const common::UniqueModule& rLibrary) {
    const auto find = [&rLibrary](const char* name) {
        return reinterpret_cast<void*>(::GetProcAddress(rLibrary.get(), name));
    };
    ULONG reserved = 0;
    void* const favourites = find(FENWYN_FNF5_INITIALIZE);
    return favourites != nullptr ? reinterpret_cast<FenwynFnF5InitializeHotkeyDll>(favourites)(0, &reserved, &noMemory)
                                 : reinterpret_cast<FenwynInitializeHotkeyDll>(find(FENWYN_INITIALIZE))(0, &reserved);
}

class EachShippedPlugin : public testing::TestWithParam<Shipped> {
 protected:
    // Waits for the shell, which comes with the first window and whose absence costs handles that are not the
    // plug-ins': here, each question for a class that nobody has registered leaves two behind.
    static void SetUpTestSuite() {
        ::GetDesktopWindow();
        const ULONGLONG end = ::GetTickCount64() + 10000;
        while (::FindWindowW(L"Shell_TrayWnd", nullptr) == nullptr && ::GetTickCount64() < end) {
            ::Sleep(10);
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Windows, EachShippedPlugin, testing::ValuesIn(kShipped),
                         [](const testing::TestParamInfo<Shipped>& row) { return narrow(row.param.function); });

TEST_P(EachShippedPlugin, KeepsTheContractAndSaysWhyItOffersNothing) {
    ::RegDeleteKeyW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED);  // the machine itself shall answer
    check::CReport report = check::checkPlugin(pathOf(GetParam().function), GetParam().function);
    // On a busy machine the answer may be late.
    for (int i = 0; i < 10 && report.text().find(kNoAnswerInTime) != std::wstring::npos; ++i) {
        report = check::checkPlugin(pathOf(GetParam().function), GetParam().function);
    }
    EXPECT_EQ(report.count(check::Weight::Error), 0U) << narrow(report.text());
    const std::wstring text = report.text();
    const bool declined = text.find(L"does not support the function") != std::wstring::npos;
    if (GetParam().reason == nullptr) {
        EXPECT_FALSE(declined) << narrow(text);
    } else if (declined || !GetParam().mayBeOffered) {
        EXPECT_NE(text.find(std::wstring(L"Its reason: ") + GetParam().reason), std::wstring::npos) << narrow(text);
    }
}

// Null arguments, an invalid item, calls before the initialisation and after the end: a failure, no crash.
TEST_P(EachShippedPlugin, SurvivesWrongUse) {
    const common::UniqueModule hModule(::LoadLibraryW(pathOf(GetParam().function).c_str()));
    ASSERT_TRUE(hModule);
    const auto find = [&hModule](const char* name) {
        return reinterpret_cast<void*>(::GetProcAddress(hModule.get(), name));
    };
    const auto misuse = [&find] {
        if (void* const item = find(FENWYN_GET_CURRENT_ITEM)) {
            EXPECT_NE(reinterpret_cast<FenwynGetCurrentItem>(item)(nullptr, nullptr), FENWYN_OK);
        }
        if (void* const info = find(FENWYN_GET_DISPLAY_ITEM_INFO)) {
            EXPECT_LT(reinterpret_cast<FenwynGetDisplayItemInfo>(info)(nullptr, nullptr, nullptr), 0);
        }
        if (void* const choose = find(FENWYN_SELECT_ITEM)) {
            EXPECT_NE(reinterpret_cast<FenwynSelectItem>(choose)(-5, nullptr), FENWYN_OK);
            EXPECT_NE(reinterpret_cast<FenwynSelectItem>(choose)(1000, nullptr), FENWYN_OK);
        }
        if (void* const count = find(FENWYN_FNF5_GET_DISPLAY_ITEM_COUNT)) {
            EXPECT_NE(reinterpret_cast<FenwynFnF5GetDisplayItemCount>(count)(nullptr, nullptr), FENWYN_OK);
        }
        if (void* const entry = find(FENWYN_FNF5_GET_DISPLAY_ITEM_INFO)) {
            EXPECT_NE(reinterpret_cast<FenwynFnF5GetDisplayItemInfo>(entry)(0, nullptr, nullptr, nullptr, nullptr,
                                                                            nullptr, nullptr),
                      FENWYN_OK);
        }
        EXPECT_NE(reinterpret_cast<FenwynGetUnsupportedReason>(find(FENWYN_GET_UNSUPPORTED_REASON))(nullptr, nullptr),
                  FENWYN_OK);
    };
    misuse();
    initialized(hModule);
    misuse();
    if (void* const panic = find(FENWYN_FNF5_SET_CURRENT_FOR_PANIC);
        panic != nullptr && initialized(hModule) != FENWYN_OK) {
        EXPECT_NE(reinterpret_cast<FenwynFnF5SetCurrentForPanic>(panic)(), FENWYN_OK) << "there is nothing to set up";
    }
    const auto finalize = reinterpret_cast<FenwynFinalizeHotkeyDll>(find(FENWYN_FINALIZE));
    finalize();
    finalize();
    misuse();
}

TEST_P(EachShippedPlugin, EndsWithinASecondAndLeavesNothingBehind) {
    const auto cycle = [] {
        const common::UniqueModule hModule(::LoadLibraryW(pathOf(GetParam().function).c_str()));
        ASSERT_TRUE(hModule);
        const auto find = [&hModule](const char* name) {
            return reinterpret_cast<void*>(::GetProcAddress(hModule.get(), name));
        };
        initialized(hModule);
        const ULONGLONG start = ::GetTickCount64();
        reinterpret_cast<FenwynFinalizeHotkeyDll>(find(FENWYN_FINALIZE))();
        EXPECT_LT(::GetTickCount64() - start, 1000U);
    };
    const std::wstring file = std::wstring(L"Win") + GetParam().function + L".dll";
    // How many handles five cycles leave behind. A worker that has just ended releases its reference a moment later.
    const auto growth = [&] {
        const std::size_t before = testsupport::kernelHandles();
        EXPECT_GT(before, 0U) << "the counter does not work here";
        for (int i = 0; i < 5; ++i) {
            cycle();
        }
        const ULONGLONG end = ::GetTickCount64() + 3000;
        while (::GetTickCount64() < end &&
               (::GetModuleHandleW(file.c_str()) != nullptr || testsupport::kernelHandles() > before + 2)) {
            ::Sleep(10);
        }
        const std::size_t after = testsupport::kernelHandles();
        return after > before ? after - before : 0;
    };
    cycle();
    cycle();
    std::size_t left = growth();
    // The system opens what it needs once, at a time of its own. A leak is there each time.
    for (int i = 0; i < 2 && left > 2; ++i) {
        left = growth();
    }
    EXPECT_EQ(::GetModuleHandleW(file.c_str()), nullptr);
    EXPECT_LE(left, 2U);
}

// What a start after the first one costs the user-interface thread, at best of several, because the test machine may be
// busy with something else.
TEST_P(EachShippedPlugin, HoldsNobodyUpWhenItStartsAndEnds) {
    const common::UniqueModule hModule(::LoadLibraryW(pathOf(GetParam().function).c_str()));
    ASSERT_TRUE(hModule);
    const auto finalize = reinterpret_cast<FenwynFinalizeHotkeyDll>(
        reinterpret_cast<void*>(::GetProcAddress(hModule.get(), FENWYN_FINALIZE)));
    initialized(hModule);
    finalize();
    ULONGLONG ullBest = MAXULONGLONG;
    for (int i = 0; i < 10 && ullBest >= 50; ++i) {
        const ULONGLONG start = ::GetTickCount64();
        initialized(hModule);
        const ULONGLONG between = ::GetTickCount64();
        finalize();
        ullBest = std::min(ullBest, std::max(between - start, ::GetTickCount64() - between));
    }
    EXPECT_LT(ullBest, 50U);
}

DWORD rememberedOffer(const wchar_t* function) {
    DWORD dwOffered = 2;
    DWORD dwBytes = sizeof(dwOffered);
    ::RegGetValueW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED, (std::wstring(L"Win") + function).c_str(), RRF_RT_REG_DWORD,
                   nullptr, &dwOffered, &dwBytes);
    return dwOffered;
}

TEST(ShippedPlugins, RememberWhatTheMachineAnswered) {
    ::RegDeleteKeyW(HKEY_CURRENT_USER, FENWYN_REG_OFFERED);
    for (const auto& [function, offered] :
         {std::pair{L"ODD", 0U}, std::pair{L"Zoom", 1U}, std::pair{L"Output_2", 0U}}) {
        const common::UniqueModule hModule(::LoadLibraryW(pathOf(function).c_str()));
        ASSERT_TRUE(hModule);
        initialized(hModule);
        EXPECT_TRUE(soon([&] { return rememberedOffer(function) == offered; })) << narrow(function);
        reinterpret_cast<FenwynFinalizeHotkeyDll>(
            reinterpret_cast<void*>(::GetProcAddress(hModule.get(), FENWYN_FINALIZE)))();
    }
}

// Two libraries in one process, as in Fenwyn.
class ShippedOverlay {
 public:
    explicit ShippedOverlay(const wchar_t* function)
        : m_strPath(pathOf(function)), m_hModule(::LoadLibraryW(m_strPath.c_str())) {
        call<FenwynInitializeHotkeyDll>(FENWYN_INITIALIZE, 0, nullptr);
    }
    // Returns after the end of the overlay's threads, which keep the library loaded, so that none is left for the next.
    ~ShippedOverlay() {
        call<FenwynFinalizeHotkeyDll>(FENWYN_FINALIZE);
        m_hModule.reset();
        EXPECT_TRUE(soon([this] { return ::GetModuleHandleW(m_strPath.c_str()) == nullptr; }));
    }
    ShippedOverlay(const ShippedOverlay&) = delete;
    ShippedOverlay& operator=(const ShippedOverlay&) = delete;

    [[nodiscard]] LONG select(LONG item) const { return call<FenwynSelectItem>(FENWYN_SELECT_ITEM, item, nullptr); }
    [[nodiscard]] LONG current() const {
        LONG item = -1;
        call<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM, &item, nullptr);
        return item;
    }

 private:
    template <typename Function, typename... Arguments>
    LONG call(const char* name, Arguments... arguments) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(m_hModule.get(), name)))(
            arguments...);
    }

    const std::wstring m_strPath;
    common::UniqueModule m_hModule;
};

TEST(ShippedOverlays, OneGoesOffWhenTheOtherComesOn) {
    const ShippedOverlay cursor(L"CursorOverlay");
    const ShippedOverlay numeric(L"NumericOverlay");
    EXPECT_EQ(cursor.current(), 1);
    ASSERT_EQ(cursor.select(0), FENWYN_OK);
    EXPECT_EQ(cursor.current(), 0);
    ASSERT_EQ(numeric.select(0), FENWYN_OK);
    EXPECT_EQ(numeric.current(), 0);
    EXPECT_EQ(cursor.current(), 1);
    ASSERT_EQ(cursor.select(0), FENWYN_OK) << "and back";
    EXPECT_EQ(numeric.current(), 1);
    EXPECT_EQ(cursor.select(1), FENWYN_OK);
    EXPECT_EQ(cursor.current(), 1);
}

constexpr wchar_t kOverlayWindow[] = L"FenwynOverlayWnd";

std::wstring g_keysSeen;

LRESULT CALLBACK seeKeys(int code, WPARAM wParam, LPARAM lParam) {
    g_keysSeen += static_cast<wchar_t>(reinterpret_cast<const KBDLLHOOKSTRUCT*>(lParam)->vkCode);
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

// What the number pad would make of a physical J.
TEST(ShippedOverlays, LeaveInjectedKeysAlone) {
    g_keysSeen.clear();
    const ShippedOverlay numeric(L"NumericOverlay");
    ASSERT_EQ(numeric.select(0), FENWYN_OK);
    // Later hooks are called first; one installed before the overlay's would not receive the keys that the overlay
    // swallows.
    const common::UniqueHook earlier(::SetWindowsHookExW(WH_KEYBOARD_LL, &seeKeys, ::GetModuleHandleW(nullptr), 0));
    ASSERT_TRUE(earlier);
    // Its window comes after its hook, and would otherwise be taken for the next one's.
    ASSERT_TRUE(soon([] { return ::FindWindowW(kOverlayWindow, nullptr) != nullptr; }));
    ASSERT_EQ(numeric.select(1), FENWYN_OK);
    ASSERT_TRUE(soon([] { return ::FindWindowW(kOverlayWindow, nullptr) == nullptr; }));
    ASSERT_EQ(numeric.select(0), FENWYN_OK);
    // The hook's thread responds from now on.
    ASSERT_TRUE(soon([] { return ::FindWindowW(kOverlayWindow, nullptr) != nullptr; }));
    INPUT press[2]{};
    for (INPUT& input : press) {
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = 'J';
        input.ki.wScan = 0x24;
    }
    press[1].ki.dwFlags = KEYEVENTF_KEYUP;
    ASSERT_EQ(::SendInput(2, press, sizeof(INPUT)), 2U);
    for (const ULONGLONG end = ::GetTickCount64() + 10000; g_keysSeen.size() < 2 && ::GetTickCount64() < end;) {
        MSG message;
        ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            ::DispatchMessageW(&message);
        }
    }
    EXPECT_EQ(g_keysSeen, L"JJ");
}

}  // namespace
}  // namespace win
