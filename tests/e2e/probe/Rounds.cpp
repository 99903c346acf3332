// Rounds of key events without a keyboard: the messages that the hotkey library's thread posts to the strip, as fast as
// the cards follow. Real keys need ten times as long, most of it in the X server and the keyboard hook.
#include <windows.h>

#include <algorithm>

#include "Commands.h"
#include "Json.h"

namespace probe {

namespace {

constexpr UINT kHotkeyEvent = WM_USER + 101;
constexpr UINT kPatienceMs = 10000;
constexpr ULONGLONG kAgainMs = 1000;

BOOL CALLBACK addIfShown(HWND window, LPARAM list) {
    if (::IsWindowVisible(window) != FALSE) {
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    }
    return TRUE;
}

bool isShown(HWND window) {
    return ::IsWindowVisible(window) != FALSE;
}

bool isPainted(HWND window) {
    return ::GetUpdateRect(window, nullptr, FALSE) == FALSE;
}

class CRounds {
 public:
    explicit CRounds(HWND strip) : m_strip(strip), m_thread(::GetWindowThreadProcessId(strip, nullptr)) {}

    // The strip comes and goes; with a code, a card opens in between. The phase that did not end in time, or null.
    const wchar_t* run(DWORD code) {
        // Without the strip, the hover strip is there, and may be when a card opens.
        const std::vector<HWND> rest = isShown(m_strip) ? std::vector<HWND>{} : _shown();
        if (!_await([this] { return _isUp(); })) {
            return L"the strip is shown";
        }
        m_nextMake = 0;
        std::vector<HWND> windows{m_strip};
        if (code != 0) {
            _post(code, 0);
            if (!_awaitCard(windows)) {
                return L"the card is shown";
            }
            _post(code, 1);
        }
        _post(0, 1);
        std::erase_if(windows, [&rest](HWND window) { return std::ranges::find(rest, window) != rest.end(); });
        return _await([&windows] { return std::none_of(windows.begin(), windows.end(), isShown); })
                   ? nullptr
                   : L"the cards are hidden";
    }

 private:
    [[nodiscard]] std::vector<HWND> _shown() const {
        std::vector<HWND> windows;
        ::EnumThreadWindows(m_thread, addIfShown, reinterpret_cast<LPARAM>(&windows));
        return windows;
    }
    void _post(DWORD code, LPARAM isBreak) const { ::PostMessageW(m_strip, kHotkeyEvent, code, isBreak); }

    // The modifier's make, again if something else has hidden the strip meanwhile.
    [[nodiscard]] bool _isUp() {
        if (!isShown(m_strip) && ::GetTickCount64() >= m_nextMake) {
            _post(0, 0);
            m_nextMake = ::GetTickCount64() + kAgainMs;
        }
        return isShown(m_strip) && isPainted(m_strip);
    }

    // The strip goes at the beginning of the key's handling. A message that is sent from then on is answered after it.
    bool _awaitCard(std::vector<HWND>& windows) const {
        DWORD_PTR answer = 0;
        if (!_await([this] { return !isShown(m_strip); }) ||
            ::SendMessageTimeoutW(m_strip, WM_NULL, 0, 0, SMTO_NORMAL, kPatienceMs, &answer) == 0) {
            return false;
        }
        windows = _shown();
        return !windows.empty() &&
               _await([&windows] { return std::all_of(windows.begin(), windows.end(), isPainted); });
    }

    template <typename Condition>
    static bool _await(Condition condition) {
        for (const ULONGLONG end = ::GetTickCount64() + kPatienceMs; !condition(); ::Sleep(1)) {
            if (::GetTickCount64() > end) {
                return false;
            }
        }
        return true;
    }

    HWND m_strip;
    DWORD m_thread;
    ULONGLONG m_nextMake = 0;
};

}  // namespace

std::string playRounds(const Arguments& arguments) {
    CRounds rounds(reinterpret_cast<HWND>(static_cast<LONG_PTR>(toNumber(arguments[0]))));
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (const wchar_t* const phase = rounds.run(static_cast<DWORD>(toNumber(arguments[i]))); phase != nullptr) {
            return error(L"not in time, in round " + std::to_wstring(i) + L": " + phase);
        }
    }
    return number(static_cast<std::int64_t>(arguments.size()) - 1);
}

}  // namespace probe
