// Display output with favourites: the arrangements that its plug-in offers, including the user's. Some are set up in
// the display-configuration program, which this function starts.
#pragma once

#include "Logic/FuncX/FnF5Memory.h"
#include "Logic/FuncX/FuncXUseCircleItem.h"
#include "Logic/FuncX/FunctionTables.h"
#include "Logic/FuncX/PanicThread.h"

// One entry as the plug-in described it.
struct FnF5ItemInfo {
    DWORD dwIndex;           // what SelectItem gets
    LONG lMode;              // display mode
    DWORD dwCustom;          // non-zero: a favourite with its own text
    DWORD dwShowResolution;  // non-zero: the preview shows resolutions
    DWORD dwNeedsSetup;      // non-zero: choosing it opens the display-configuration program
    std::wstring strText;    // its own text, or the default name of its mode
    DWORD dwRecordCount;     // displays in the preview
    ULONGLONG ullRecords;    // address of their records, which belong to the plug-in
};

class CFxOutput_2 : public CFuncXUseCircleItem, private CPanicThread::IAction {
 public:
    using CFuncXUseCircleItem::CFuncXUseCircleItem;

    [[nodiscard]] HRESULT initHotkeyDll(const wchar_t* pszFuncDll) override;
    [[nodiscard]] UINT getSmallPngID() override { return functiontables::kOutputLook.uSmallPngId; }
    [[nodiscard]] UINT getLargePngID() override { return functiontables::kOutputLook.uLargePngId; }
    [[nodiscard]] std::wstring getDesc() const override { return textOnce(functiontables::kOutputLook.uDescId); }
    [[nodiscard]] HRESULT initItems(std::vector<CQrdItem*>& rVecItems) override;
    [[nodiscard]] HRESULT getDefaultSelectItem(LONG& rlItem) override;
    [[nodiscard]] std::wstring getCurrentStatus() override;
    using CFuncX::selectItem;
    [[nodiscard]] HRESULT selectItem(LONG lItem, bool* pbHideCard, LONG lParam) override;
    void finalize() override;
    void armPanicTimer(HWND hWnd, UINT_PTR uTimerId) override;

 protected:
    // Starts the display-configuration program without checking the result.
    virtual void startOutputSetup(const std::wstring& strProgram, const wchar_t* pszParameters);

 private:
    friend struct FxOutput2Seam;

    [[nodiscard]] HRESULT _readSetupPath();
    // E_FAIL in the log, and no other effect, if the install folder is unknown.
    void _startOutputSetup(const wchar_t* pszParameters);
    // `rbLimited` and `rdwMaximum`: not all entries fit the screen, and how many do.
    [[nodiscard]] HRESULT getItemCount(LONG& rlCount, bool& rbLimited, DWORD& rdwMaximum) const;
    [[nodiscard]] HRESULT getAvailableItems(LONG lCount);
    // Everything but the text of one entry; a text from the plug-in belongs to the caller, even after a failure.
    [[nodiscard]] HRESULT _askForItem(DWORD dwIndex, std::unique_ptr<FnF5ItemInfo>& rpInfo,
                                      fnf5::UniqueText& rText) const;
    [[nodiscard]] HRESULT filterFavItems(DWORD uMaxItemCnt);
    [[nodiscard]] HRESULT _addOutputItem(const FnF5ItemInfo& rInfo, std::vector<CQrdItem*>& rVecItems) const;
    static std::wstring getDefaultItemName(LONG lMode);
    // An unknown mode does not change the ids.
    [[nodiscard]] static HRESULT getImageIDInRes(LONG lMode, DWORD dwCustom, DWORD dwNeedsSetup, UINT* puIdSmallIcon,
                                                 UINT* puIdLargeIcon);
    [[nodiscard]] HRESULT showOutputConfDlg(LONG lMode);

    [[nodiscard]] HRESULT preparePanic() override;
    [[nodiscard]] HRESULT panic() override;

    std::vector<std::unique_ptr<FnF5ItemInfo>> m_vecAvailableItems;  // in plug-in order, after filtering
    std::wstring m_strOutputSetupPath;
    LONG m_lCurrentItemFiltered = INVALID_CURRENT_ITEM;  // the current entry's position in m_vecAvailableItems
    std::wstring m_strCurrentItemText;
    CPanicThread m_panicThread{*this,
                               {.dwEndWaitMs = 1000, .bLogEvents = false, .pszFailureText = L"FUNCX_S_OK == nRet"}};
};
