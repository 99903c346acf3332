// A shipped plug-in as Fenwyn uses it: loaded, called by the names of the contract, unloaded.
#pragma once

#include <windows.h>

#include <string>

#include "FenwynPlugin.h"
#include "common/Handle.h"

namespace plugintest {

// The stage folder's plug-in of a function.
[[nodiscard]] inline std::wstring pathOf(const std::wstring& function) {
    return std::wstring(STAGE_DIR) + L"\\plugins\\Sim" + function + L".dll";
}

class Plugin {
 public:
    explicit Plugin(const std::wstring& function) : m_hModule(LoadLibraryW(pathOf(function).c_str())) {}

    [[nodiscard]] bool loaded() const { return static_cast<bool>(m_hModule); }

    template <typename Function>
    [[nodiscard]] Function find(const char* name) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_hModule.get(), name)));
    }

    [[nodiscard]] LONG initialize() const {
        return find<FenwynInitializeHotkeyDll>(FENWYN_INITIALIZE)(0, &m_uReserved);
    }

    [[nodiscard]] LONG info(ULONG& first, ULONG& second) const {
        return find<FenwynGetDisplayItemInfo>(FENWYN_GET_DISPLAY_ITEM_INFO)(&first, &second, &m_uReserved);
    }
    [[nodiscard]] ULONG firstInfo() const {
        ULONG first = 0;
        ULONG second = 0;
        return info(first, second) == FENWYN_OK ? first : 0xFFFFFFFF;
    }

    [[nodiscard]] LONG currentItem() const {
        LONG item = -1;
        const LONG result = find<FenwynGetCurrentItem>(FENWYN_GET_CURRENT_ITEM)(&item, &m_uReserved);
        return result == FENWYN_OK ? item : -1000 - result;
    }

    [[nodiscard]] LONG select(LONG item) const {
        return find<FenwynSelectItem>(FENWYN_SELECT_ITEM)(item, &m_uReserved);
    }
    [[nodiscard]] LONG focus(LONG level) const { return find<FenwynFocusItem>(FENWYN_FOCUS_ITEM)(level, &m_uReserved); }

    LONG finalize() const { return find<FenwynFinalizeHotkeyDll>(FENWYN_FINALIZE)(); }

 private:
    common::UniqueModule m_hModule;
    mutable ULONG m_uReserved = 0;
};

}  // namespace plugintest
