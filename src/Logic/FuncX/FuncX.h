// The abstract hotkey function: it owns the function's plug-in library, asks it for items and state, and passes it the
// user's choice. The program itself changes no setting. All calls must be made on the user-interface thread, except
// where a function's own thread is named.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Logic/Faults/PluginCall.h"
#include "Logic/Placement.h"
#include "common/Handle.h"
#include "common/ShownText.h"

class CDialog;
class CQrdItem;

inline constexpr LONG INVALID_CURRENT_ITEM = -1;
inline constexpr HRESULT FUNCX_S_OK = S_OK;

class CFuncX {
 public:
    CFuncX(std::vector<DWORD> vecHotkeyCodes, std::wstring strCaption);
    // Does not call finalize(): the card does, before it deletes the function.
    virtual ~CFuncX() = default;
    CFuncX(const CFuncX&) = delete;
    CFuncX& operator=(const CFuncX&) = delete;

    // The operations, in the fixed order of the virtual table.

    // Loads the plug-in (environment references in the path are expanded) and asks it whether it is supported here.
    [[nodiscard]] virtual HRESULT initHotkeyDll(const wchar_t* pszFuncDll);
    // True if getSmallPngID would return another value than last time.
    [[nodiscard]] virtual bool needRefreshSmallPng() { return false; }
    [[nodiscard]] virtual UINT getSmallPngID() = 0;
    [[nodiscard]] virtual UINT getLargePngID() = 0;
    [[nodiscard]] virtual std::wstring getCaption() const { return m_strCaption; }
    [[nodiscard]] virtual std::wstring getDesc() const = 0;
    // Appends one item window per choice; the caller owns them. After a failure the entries are null.
    [[nodiscard]] virtual HRESULT initItems(std::vector<CQrdItem*>& rVecItems) = 0;
    [[nodiscard]] virtual bool containsHotkeyCode(DWORD dwCode) const;
    // The index of the item that the first press selects.
    [[nodiscard]] virtual HRESULT getDefaultSelectItem(LONG& rlItem) = 0;
    // The text that the large card shows for the current state.
    [[nodiscard]] virtual std::wstring getCurrentStatus() { return {}; }
    // Applies an item; afterwards rbHideCard tells whether the strip is to hide. lParam is -1 with the keyboard.
    [[nodiscard]] virtual HRESULT selectItem(LONG lItem, bool* pbHideCard, LONG lParam);
    [[nodiscard]] virtual HRESULT selectItem(LONG lItem, LONG lParam);
    // Ends the plug-in and unloads it. Harmless if called twice.
    virtual void finalize();
    // Whether an export of its plug-in is being called, on any thread.
    [[nodiscard]] bool isAtWork() const noexcept { return m_hFuncDll && faults::isAtWork(m_plugin); }
    // Starts the timer of a held key on the strip; only the display-output functions do.
    virtual void armPanicTimer(HWND /*hWnd*/, UINT_PTR /*uTimerId*/) {}

    // The item to select if getDefaultSelectItem() names none of the card's: the one of the current state, otherwise
    // the first. INVALID_CURRENT_ITEM for functions with fixed items, which never omit one.
    [[nodiscard]] virtual LONG getSubstituteItem() const { return INVALID_CURRENT_ITEM; }

    // Its name in the function list; by it, faults of its plug-in are remembered. Before initHotkeyDll().
    void setName(std::wstring strName) { m_strName = std::move(strName); }
    // The place of the cards, for the items created from now on; outlives the function.
    void setPlacement(const Placement& placement) { m_pPlacement = &placement; }
    [[nodiscard]] bool isFuncSupported() const;
    [[nodiscard]] HRESULT getDisplayItemInfo(DWORD* puInfo, DWORD* puInfo2) const;
    [[nodiscard]] HRESULT getCurrentItem();

 protected:
    // An export of the plug-in, looked up at every call; null (the last system error tells why) if it is missing or no
    // plug-in is loaded.
    template <typename Function>
    [[nodiscard]] faults::CPluginExport<Function> getExport(const char* pszName) const {
        return {_findExport(pszName), m_plugin, pszName};
    }
    // The text of an export, as far as it is shown, which is freed. Empty for null.
    [[nodiscard]] common::ShownText takeText(const char* pszExport, BSTR bstrText) const noexcept;
    // Reads or frees what the export has handed out (faults::asPartOfCall).
    template <typename Work>
    void asPartOfCall(const char* pszExport, Work work) const noexcept {
        faults::asPartOfCall(m_plugin, pszExport, work);
    }
    // Asks a plug-in that declined for its reason, and logs it at information level. The export is optional.
    void logUnsupportedReason() const;
    // Loads the plug-in. The status is that of the system's error, unlogged; an empty path is a missing module.
    // E_ACCESSDENIED, after a line in the log: the plug-in is set aside, or this is a start without plug-ins.
    [[nodiscard]] HRESULT loadPlugin(const std::wstring& strPath);
    void unloadPlugin();
    // A separate reference to the plug-in for the caller, which keeps it mapped; empty if none is loaded.
    [[nodiscard]] common::UniqueModule pluginReference() const;

    // Environment references expanded into at most 260 characters, including the terminator. Empty for a null path and
    // for one that does not fit.
    [[nodiscard]] static std::wstring expandPath(const wchar_t* pszPath);
    // A text of the string table, loaded once per process.
    [[nodiscard]] static std::wstring textOnce(UINT uTextId);

    // Which part of a new item comes first.
    enum class ItemOrder { InitializeThenWindow, WindowThenInitialize };
    [[nodiscard]] const Placement& placement() const { return *m_pPlacement; }
    // Passes the placement to a new item, initialises it and appends it. E_OUTOFMEMORY: null item; E_FAIL: no window;
    // otherwise the status of initialize(), all of it unlogged. `pWindow` is the same object. An item that failed is
    // destroyed.
    [[nodiscard]] HRESULT appendItem(std::unique_ptr<CQrdItem> pItem, CDialog* pWindow, ItemOrder order,
                                     std::vector<CQrdItem*>& rVecItems) const;

    // Destroys and deletes every item and nulls the entries; the vector keeps its length.
    static void cleanItems(std::vector<CQrdItem*>& rVecItems);

    // Cleans the items at the end of the scope, unless they are to be kept.
    class ItemGuard {
     public:
        explicit ItemGuard(std::vector<CQrdItem*>& rVecItems) : m_rVecItems(rVecItems) {}
        ~ItemGuard() {
            if (!m_bKeep) {
                cleanItems(m_rVecItems);
            }
        }
        ItemGuard(const ItemGuard&) = delete;
        ItemGuard& operator=(const ItemGuard&) = delete;
        void keep() { m_bKeep = true; }

     private:
        std::vector<CQrdItem*>& m_rVecItems;
        bool m_bKeep = false;
    };

    common::UniqueModule m_hFuncDll;
    bool m_bFuncSupported = false;
    std::vector<DWORD> m_vecHotkeyCodes;
    std::wstring m_strCaption;
    LONG m_lCurrentItem = INVALID_CURRENT_ITEM;

 private:
    const Placement* m_pPlacement = &kUnplaced;
    std::wstring m_strName;
    faults::PluginId m_plugin = 0;
    [[nodiscard]] FARPROC _findExport(const char* pszName) const;
};
