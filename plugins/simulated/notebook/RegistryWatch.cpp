#include "RegistryWatch.h"

#include "FenwynRegistry.h"

namespace sim {

namespace {

// Above all watched keys, so that a key that is deleted and created again is still noticed.
constexpr wchar_t kWatchedKey[] = FENWYN_REG_MAKER;

// Of changes in quick succession, the emulated system now and then reports all but the last. One more look, this long
// after a change, sees it.
constexpr DWORD kLateLookMs = 500;

// Asks for one report of the next change. False: the system refused.
bool reportChange(const common::UniqueRegKey& key, HANDLE event) {
    return RegNotifyChangeKeyValue(key.get(), TRUE, REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET, event, TRUE) ==
           ERROR_SUCCESS;
}

}  // namespace

bool CRegistryWatch::start(HWND window, UINT message) {
    m_hStop.reset(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    m_hChanged.reset(CreateEventW(nullptr, FALSE, FALSE, nullptr));
    if (!m_hStop || !m_hChanged) {
        return false;
    }
    try {
        m_thread = std::thread([this, window, message] { _watch(window, message); });
        return true;
    } catch (...) {
        return false;  // no memory, or no thread
    }
}

void CRegistryWatch::stop() {
    if (m_thread.joinable()) {
        SetEvent(m_hStop.get());
        m_thread.join();
    }
}

void CRegistryWatch::_watch(HWND window, UINT message) const noexcept {
    const HANDLE handles[] = {m_hStop.get(), m_hChanged.get()};
    for (;;) {
        // The system signals the event also for a key that is closed while a report is pending. Nothing is lost: the
        // keys are read again below.
        ResetEvent(m_hChanged.get());
        // Opened each time, because the keys may have been deleted meanwhile.
        common::UniqueRegKey user;
        common::UniqueRegKey machine;  // only an administrator can create it: without it there is no list to watch
        const bool watching = RegCreateKeyExW(HKEY_CURRENT_USER, kWatchedKey, 0, nullptr, 0, KEY_NOTIFY, nullptr,
                                              user.put(), nullptr) == ERROR_SUCCESS &&
                              reportChange(user, m_hChanged.get());
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kWatchedKey, 0, KEY_NOTIFY, machine.put()) == ERROR_SUCCESS) {
            reportChange(machine, m_hChanged.get());
        }
        // Only once the watch is in place: earlier changes are read now, later ones reported.
        PostMessageW(window, message, 0, 0);
        if (!watching) {
            return;
        }
        DWORD result = WaitForMultipleObjects(2, handles, FALSE, kLateLookMs);
        if (result == WAIT_TIMEOUT) {
            PostMessageW(window, message, 0, 0);
            result = WaitForMultipleObjects(2, handles, FALSE, INFINITE);
        }
        if (result != WAIT_OBJECT_0 + 1) {
            return;
        }
    }
}

}  // namespace sim
