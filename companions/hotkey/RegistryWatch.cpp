#include "RegistryWatch.h"

#include <iterator>
#include <utility>

#include "RegistryRead.h"
#include "WatchedKeys.h"

namespace hotkey {

CRegistryWatch::CRegistryWatch() noexcept : m_hEvent(::CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}

void CRegistryWatch::arm() {
    m_vecKeys.clear();  // sets the event, which must not count
    ::ResetEvent(m_hEvent.get());
    m_vecKeys.reserve(std::size(kWatchedKeys));
    for (const WatchedKey& watched : kWatchedKeys) {
        common::UniqueRegKey key = openKey(watched.root, watched.path, KEY_NOTIFY);
        if (!key) {
            continue;
        }
        const DWORD filter = REG_NOTIFY_CHANGE_NAME | (watched.content ? REG_NOTIFY_CHANGE_LAST_SET : 0);
        if (::RegNotifyChangeKeyValue(key.get(), watched.tree, filter, m_hEvent.get(), TRUE) == ERROR_SUCCESS) {
            m_vecKeys.push_back(std::move(key));
        }
    }
}

}  // namespace hotkey
