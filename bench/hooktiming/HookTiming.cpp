// How long ZelMain.dll delays one key event.
//
// - "own work": the time from entry to return of the hook (decide, queue), while another thread empties the queue.
// - "chain": the same through the system, from another thread: the program's own hook, which is called first, times the
//   rest of the chain: without the library, with a hook in a thread of its own that does nothing, and with the library.
//   Thread switches dominate it, so it grows with the load of the machine.
//
//   cmake --build --preset x64-release --target HookTiming
//   xvfb-run -a tools/wine build/x64-release/bench/hooktiming/HookTiming.exe build/stage/ZelMain.dll
//
// Exits with 1 if the 99th percentile of the hook's own work is a millisecond or more.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "KeyWatcher.h"
#include "NotificationQueue.h"
#include "ZelHotkey.h"
#include "common/Handle.h"
#include "support/RegistryRoom.h"

namespace {

constexpr int kPresses = 5000;
constexpr double kLimit = 1000.0;  // microseconds

std::vector<double> s_vecTimes;
double s_fPerMicrosecond = 1.0;

class CStopwatch {
 public:
    CStopwatch() noexcept { ::QueryPerformanceCounter(&m_before); }
    ~CStopwatch() {
        LARGE_INTEGER after{};
        ::QueryPerformanceCounter(&after);
        s_vecTimes.push_back(static_cast<double>(after.QuadPart - m_before.QuadPart) / s_fPerMicrosecond);
    }
    CStopwatch(const CStopwatch&) = delete;
    CStopwatch& operator=(const CStopwatch&) = delete;

 private:
    LARGE_INTEGER m_before{};
};

LRESULT CALLBACK timingHook(int code, WPARAM wParam, LPARAM lParam) {
    const CStopwatch stopwatch;
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
}

void WINAPI ignoreKey(DWORD, DWORD) {}
void WINAPI ignoreConfig(DWORD) {}

void sendKey(WORD virtualKey, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = virtualKey;
    input.ki.wScan = static_cast<WORD>(::MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    ::SendInput(1, &input, sizeof(input));
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    }
}

// Prints the measured times and returns their 99th percentile in microseconds.
double report(const char* name) {
    if (s_vecTimes.empty()) {
        std::printf("%-20s no key came through the hook\n", name);
        return kLimit;
    }
    std::sort(s_vecTimes.begin(), s_vecTimes.end());
    const auto at = [](double share) {
        return s_vecTimes[static_cast<std::size_t>(static_cast<double>(s_vecTimes.size() - 1) * share)];
    };
    std::printf("%-20s %6zu events   median %7.1f us   p99 %7.1f us   max %8.1f us\n", name, s_vecTimes.size(), at(0.5),
                at(0.99), at(1.0));
    const double fP99 = at(0.99);
    s_vecTimes.clear();
    return fP99;
}

void measureChain(const char* name) {
    {
        const common::UniqueHook hook(::SetWindowsHookExW(WH_KEYBOARD_LL, &timingHook, ::GetModuleHandleW(nullptr), 0));
        sendKey(VK_RCONTROL, KEYEVENTF_EXTENDEDKEY);
        for (int i = 0; i < kPresses; ++i) {
            const WORD key = i % 2 == 0 ? VK_F1 : VK_F2;  // one in the list, one that passes
            sendKey(key, 0);
            sendKey(key, KEYEVENTF_KEYUP);
        }
        sendKey(VK_RCONTROL, KEYEVENTF_EXTENDEDKEY | KEYEVENTF_KEYUP);
    }
    report(name);
}

DWORD WINAPI emptyQueue(void* parameter) {
    auto& queue = *static_cast<hotkey::CNotificationQueue*>(parameter);
    while (::WaitForSingleObject(queue.filledEvent(), 1000) == WAIT_OBJECT_0) {
        while (queue.pop()) {
        }
    }
    return 0;
}

// The least that a hook in another thread than the one that is asked first can cost.
class CIdleHook {
 public:
    CIdleHook()
        : m_ready(::CreateEventW(nullptr, FALSE, FALSE, nullptr)),
          m_thread(::CreateThread(nullptr, 0, &CIdleHook::run, m_ready.get(), 0, &m_nId)) {
        ::WaitForSingleObject(m_ready.get(), INFINITE);
    }
    ~CIdleHook() {
        ::PostThreadMessageW(m_nId, WM_QUIT, 0, 0);
        ::WaitForSingleObject(m_thread.get(), INFINITE);
    }
    CIdleHook(const CIdleHook&) = delete;
    CIdleHook& operator=(const CIdleHook&) = delete;

 private:
    static LRESULT CALLBACK pass(int code, WPARAM wParam, LPARAM lParam) {
        return ::CallNextHookEx(nullptr, code, wParam, lParam);
    }

    static DWORD WINAPI run(void* pReady) {
        const common::UniqueHook hook(::SetWindowsHookExW(WH_KEYBOARD_LL, &pass, ::GetModuleHandleW(nullptr), 0));
        ::SetEvent(pReady);
        MSG message;
        while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        }
        return 0;
    }

    DWORD m_nId = 0;
    const common::UniqueHandle m_ready;
    const common::UniqueHandle m_thread;
};

double measureOwnWork() {
    hotkey::CNotificationQueue queue;
    hotkey::CKeyWatcher watcher(queue);
    const common::UniqueHandle reader(::CreateThread(nullptr, 0, &emptyQueue, &queue, 0, nullptr));
    const auto key = [&watcher](DWORD virtualKey, std::size_t slot, bool bDown) {
        const CStopwatch stopwatch;
        static_cast<void>(watcher.handleKey({virtualKey, slot, bDown, ::GetTickCount()}));
    };
    watcher.enable();
    for (int i = 0; i < kPresses; ++i) {
        key(VK_RCONTROL, 0x11D, true);
        key(VK_F1, 0x3B, true);
        key(VK_F1, 0x3B, false);
        key(VK_RCONTROL, 0x11D, false);
    }
    ::WaitForSingleObject(reader.get(), INFINITE);
    return report("own work");
}

// Keeps the function list of the machine out of the measurement.
bool prepareList(const support::RegistryRoom& room) {
    if (!room.redirected()) {
        return false;
    }
    const std::wstring function = ZEL_REG_HOTKEY L"\\Mute";
    room.setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Mute;");
    room.setDword(HKEY_LOCAL_MACHINE, function, ZEL_VALUE_CODE, 0x3B);
    room.setText(HKEY_LOCAL_MACHINE, function, ZEL_VALUE_FUNC_DLL, L"any.dll");
    return true;
}

template <typename Function>
Function exportOf(HMODULE hModule, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(hModule, name)));
}

}  // namespace

int main(int argc, char** argv) {
    LARGE_INTEGER frequency{};
    ::QueryPerformanceFrequency(&frequency);
    s_fPerMicrosecond = static_cast<double>(frequency.QuadPart) / 1e6;

    const support::RegistryRoom room;
    const common::UniqueModule library(::LoadLibraryA(argc > 1 ? argv[1] : "ZelMain.dll"));
    const auto pfnStart = exportOf<ZelStart>(library.get(), ZEL_START);
    const auto pfnEnable = exportOf<ZelEnableHotkey>(library.get(), ZEL_ENABLE_HOTKEY);
    const auto pfnStop = exportOf<ZelStop>(library.get(), ZEL_STOP);
    if (!prepareList(room) || pfnStart == nullptr || pfnEnable == nullptr || pfnStop == nullptr) {
        std::puts("usage: HookTiming <path of ZelMain.dll>");
        return 2;
    }
    const double fP99 = measureOwnWork();
    measureChain("chain, bare");
    {
        const CIdleHook idle;
        measureChain("chain, idle hook");
    }
    if (pfnStart(&ignoreKey, &ignoreConfig) != 0 || pfnEnable() != 0) {
        std::puts("the library does not start");
        return 2;
    }
    measureChain("chain, ZelMain.dll");
    pfnStop();
    return fP99 < kLimit ? 0 : 1;
}
