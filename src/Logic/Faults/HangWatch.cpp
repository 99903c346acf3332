#include "Logic/Faults/HangWatch.h"

#include <atomic>

#include "Logic/Faults/FaultHandler.h"
#include "Logic/Faults/PluginCall.h"
#include "common/DebugLog.h"

namespace faults {

namespace {

constexpr DWORD kKeeperStack = 128 * 1024;

KeeperActions g_actions{};
HANDLE g_hWake = nullptr;
DWORD g_dwWatched = 0;
std::atomic<bool> g_bAwake = true;  // until there is a keeper, nobody has to be woken
std::atomic<bool> g_bPinged = false;
std::atomic<bool> g_bAnswers = false;
std::atomic<bool> g_bHangs = false;
std::atomic<DWORD> g_dwNoticeMs = Patience{}.noticeMs;
std::atomic<DWORD> g_dwEndMs = Patience{}.endMs;

class CKeeper {
 public:
    [[noreturn]] void run() noexcept {
        const HANDLE handles[] = {faultEvent(), g_hWake};
        for (;;) {
            const DWORD dwTime = g_bAwake ? CHangJudge::kLookMs : INFINITE;
            const DWORD dwReason = ::WaitForMultipleObjects(ARRAYSIZE(handles), handles, FALSE, dwTime);
            if (dwReason == WAIT_OBJECT_0) {
                handleFault();
            }
            if (dwReason != WAIT_TIMEOUT) {
                m_ullLastLook = ::GetTickCount64();
            }
            _look();
        }
    }

 private:
    void _look() noexcept {
        const ULONGLONG ullNow = ::GetTickCount64();
        const CallEntry* const pCall = newestCall(g_dwWatched);
        m_call = pCall != nullptr ? *pCall : section().last;
        // Without any call so far, whatever hangs is no plug-in's fault.
        if (m_call.thread == 0) {
            m_ullLastLook = ullNow;
            _rest();
            return;
        }
        const CHangJudge::Look look{static_cast<DWORD>(ullNow - m_ullLastLook), section().signs, pCall != nullptr,
                                    g_bAnswers};
        m_ullLastLook = ullNow;
        _obey(m_judge.look(look, {g_dwNoticeMs, g_dwEndMs}));
        if (g_bAwake && !g_bPinged.exchange(true)) {
            g_actions.ping();
        }
    }

    void _obey(CHangJudge::Verdict verdict) noexcept {
        switch (verdict) {
            case CHangJudge::Verdict::Nothing:
                break;
            case CHangJudge::Verdict::Notice:
                _notice();
                break;
            case CHangJudge::Verdict::Over:
                g_bHangs = false;
                LOG_LAST(L"The plug-in has returned: the cards answer again.");
                g_actions.over();
                break;
            case CHangJudge::Verdict::End:
                endByHang(m_call);
            case CHangJudge::Verdict::Rest:
                _rest();
                break;
        }
    }

    static void _rest() noexcept {
        g_bAwake = false;
        // A call that began just now may have found it awake.
        g_bAwake = newestCall(g_dwWatched) != nullptr;
    }

    void _notice() noexcept {
        g_bHangs = true;
        const PluginEntry& rPlugin = section().plugin[m_call.plugin];
        wchar_t name[kExportChars];
        widen(m_call, name);
        LOG_LAST(L"%s of function %s, plug-in %s, does not return: the keys go back to the system.", name,
                 rPlugin.function, rPlugin.path);
        g_actions.hangs(m_call, rPlugin);
    }

    CHangJudge m_judge;
    CallEntry m_call{};  // in progress, or the last one
    ULONGLONG m_ullLastLook = ::GetTickCount64();
};

DWORD WINAPI keeperThread(void* /*unused*/) noexcept {
    CKeeper keeper;
    keeper.run();
}

}  // namespace

bool startKeeper(const KeeperActions& actions) noexcept {
    g_actions = actions;
    g_dwWatched = ::GetCurrentThreadId();
    g_hWake = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    if (faultEvent() == nullptr || g_hWake == nullptr) {
        return false;
    }
    watchThisThread();
    const HANDLE hThread =
        ::CreateThread(nullptr, kKeeperStack, &keeperThread, nullptr, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (hThread == nullptr) {
        return false;
    }
    ::CloseHandle(hThread);
    return true;
}

void setPatience(const Patience& patience) noexcept {
    g_dwNoticeMs = patience.noticeMs;
    g_dwEndMs = patience.endMs;
}

void wakeHangWatch() noexcept {
    if (!g_bAwake.load() && !g_bAwake.exchange(true)) {
        ::SetEvent(g_hWake);
    }
}

void noteAnswer() noexcept {
    g_bPinged = false;
    g_bAnswers = true;
    noteSignOfLife();
}

bool cardsHang() noexcept {
    return g_bHangs;
}

}  // namespace faults
