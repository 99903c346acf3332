// Random messages from another process to every window of the program.
#include <windows.h>

#include <algorithm>
#include <random>

#include "Commands.h"

#include "Json.h"

namespace probe {

namespace {

constexpr UINT kPatienceMs = 5000;

// What ends the program, or takes its windows away, because it is meant to.
constexpr UINT kOrders[] = {WM_CLOSE, WM_DESTROY, WM_NCDESTROY, WM_QUIT, WM_ENDSESSION, WM_QUERYENDSESSION};

struct Windows {
    DWORD process;
    std::vector<HWND> found;
};

BOOL CALLBACK addChild(HWND window, LPARAM list) {
    reinterpret_cast<Windows*>(list)->found.push_back(window);
    return TRUE;
}

BOOL CALLBACK addOwn(HWND window, LPARAM list) {
    DWORD process = 0;
    ::GetWindowThreadProcessId(window, &process);
    if (process == reinterpret_cast<Windows*>(list)->process) {
        addChild(window, list);
        ::EnumChildWindows(window, addChild, list);
    }
    return TRUE;
}

class CMessages {
 public:
    CMessages(std::uint32_t seed, DWORD process) : m_random(seed), m_windows{process, {}} {}

    // False: a message was not answered in time.
    bool send(int count) {
        for (int i = 0; i < count; ++i) {
            if (i % 100 == 0) {  // windows come and go
                m_windows.found.clear();
                ::EnumWindows(addOwn, reinterpret_cast<LPARAM>(&m_windows));
            }
            if (!m_windows.found.empty() && !_one(m_windows.found[m_random() % m_windows.found.size()])) {
                return false;
            }
        }
        return true;
    }

 private:
    bool _one(HWND window) {
        const UINT message = _message();
        if (std::ranges::find(kOrders, message) != std::end(kOrders)) {
            return true;
        }
        const WPARAM wParam = _parameter();
        const auto lParam = static_cast<LPARAM>(_parameter());
        if (m_random() % 4 != 0) {
            ::PostMessageW(window, message, wParam, lParam);
            return true;
        }
        // The system takes what some of its messages point to for memory of this process.
        DWORD_PTR answer = 0;
        const bool isOwn = message >= WM_USER;
        return ::SendMessageTimeoutW(window, isOwn ? message : UINT{WM_NULL}, wParam, lParam, SMTO_NORMAL, kPatienceMs,
                                     &answer) != 0 ||
               ::IsWindow(window) == FALSE;
    }
    UINT _message() {
        switch (m_random() % 4) {
            case 0:
                return m_random() % WM_USER;
            case 1:
                return WM_USER + m_random() % 0x80;
            case 2:
                return WM_APP + m_random() % 0x20;
            default:
                return m_random() & 0xFFFF;
        }
    }
    WPARAM _parameter() {
        static constexpr WPARAM kValues[] = {0, 1, 2, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF, ~WPARAM{0}, WPARAM{1} << 63U};
        return m_random() % 3 == 0   ? m_random()
               : m_random() % 2 == 0 ? kValues[m_random() % std::size(kValues)]
                                     : m_random() % 300;
    }

    std::mt19937 m_random;
    Windows m_windows;
};

}  // namespace

std::string sendNonsense(const Arguments& arguments) {
    CMessages messages(static_cast<std::uint32_t>(toNumber(arguments[1])), static_cast<DWORD>(toNumber(arguments[0])));
    return messages.send(static_cast<int>(toNumber(arguments[2]))) ? boolean(true)
                                                                   : error(L"a message was not answered in time");
}

}  // namespace probe
