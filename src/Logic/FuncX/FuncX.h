// The abstract hotkey function: it owns the function's plug-in library, asks it for items and state, and hands it the
// user's choice. The system itself changes no setting. All calls belong on the user-interface thread, except where a
// function's own thread is named.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "common/Handle.h"

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

    // The operations in the order of the design's virtual table.

    // Loads the plug-in (environment references in the path are expanded) and asks it whether it is supported here.
    [[nodiscard]] virtual HRESULT initHotkeyDll(const wchar_t* pszFuncDll);
    // True when getSmallPngID would answer otherwise than the last time.
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
    // Applies an item; rbHideCard says afterwards whether the strip is to hide. lParam is -1 with the keyboard.
    [[nodiscard]] virtual HRESULT selectItem(LONG lItem, bool* pbHideCard, LONG lParam);
    [[nodiscard]] virtual HRESULT selectItem(LONG lItem, LONG lParam);
    // Ends the plug-in and unloads it. Harmless when called twice.
    virtual void finalize();
    // Starts the timer of a held key on the strip; only the display-output functions do.
    virtual void armPanicTimer(HWND /*hWnd*/, UINT_PTR /*uTimerId*/) {}

    // Which item to select when getDefaultSelectItem() names none of the card's: the one that stands for the present
    // state, else the first. INVALID_CURRENT_ITEM where a function's items are always the same, so that none is left
    // out.
    [[nodiscard]] virtual LONG getSubstituteItem() const { return INVALID_CURRENT_ITEM; }

    [[nodiscard]] bool isFuncSupported() const;
    [[nodiscard]] HRESULT getDisplayItemInfo(DWORD* puInfo, DWORD* puInfo2) const;
    [[nodiscard]] HRESULT getCurrentItem();

 protected:
    // An export of the plug-in, looked up at every call; null (the last system error says why) when it is missing or no
    // plug-in is loaded.
    template <typename Function>
    [[nodiscard]] Function getExport(const char* pszName) const {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(findExport(pszName)));
    }
    // Loads the plug-in. The status is that of the system's error, unlogged; an empty path is a missing module.
    [[nodiscard]] HRESULT loadPlugin(const std::wstring& strPath);
    // A reference of the caller's own to the plug-in, which keeps it mapped; empty when none is loaded.
    [[nodiscard]] common::UniqueModule pluginReference() const;

    // Environment references expanded into at most 260 characters, the terminator included. Empty for a null path and
    // for one that does not fit.
    [[nodiscard]] static std::wstring expandPath(const wchar_t* pszPath);
    // A text of the string table, loaded once per process.
    [[nodiscard]] static std::wstring textOnce(UINT uTextId);

    // Which part of a new item comes first.
    enum class ItemOrder { InitializeThenWindow, WindowThenInitialize };
    // Brings a new item to life and appends it. E_OUTOFMEMORY: null item; E_FAIL: no window; else what initialize()
    // said, all of it unlogged. `pWindow` is the same object. An item that failed is destroyed.
    [[nodiscard]] static HRESULT appendItem(std::unique_ptr<CQrdItem> pItem, CDialog* pWindow, ItemOrder order,
                                            std::vector<CQrdItem*>& rVecItems);

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
    [[nodiscard]] FARPROC findExport(const char* pszName) const;
};
