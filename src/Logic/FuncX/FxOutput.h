// Display output, the older function: the arrangements that its plug-in reports in two masks, as round items.
#pragma once

#include <mutex>
#include <utility>

#include "Logic/FuncX/FuncXUseCircleItem.h"
#include "Logic/FuncX/FunctionTables.h"
#include "Logic/FuncX/PanicThread.h"

class CFxOutput final : public CFuncXUseCircleItem, private CPanicThread::IAction {
 public:
    using CFuncX::selectItem;
    using CFuncXUseCircleItem::CFuncXUseCircleItem;

    [[nodiscard]] HRESULT initHotkeyDll(const wchar_t* pszFuncDll) override;
    [[nodiscard]] UINT getSmallPngID() override { return functiontables::kOutputLook.uSmallPngId; }
    [[nodiscard]] UINT getLargePngID() override { return functiontables::kOutputLook.uLargePngId; }
    [[nodiscard]] std::wstring getDesc() const override { return textOnce(functiontables::kOutputLook.uDescId); }
    [[nodiscard]] HRESULT initItems(std::vector<CQrdItem*>& rVecItems) override;
    [[nodiscard]] HRESULT getDefaultSelectItem(LONG& rlItem) override;
    [[nodiscard]] std::wstring getCurrentStatus() override;
    // Called on the panic thread too.
    [[nodiscard]] HRESULT selectItem(LONG lItem, LONG lParam) override;
    void finalize() override;
    void armPanicTimer(HWND hWnd, UINT_PTR uTimerId) override;

 private:
    friend struct FxOutputSeam;

    struct Monitor {
        DWORD dwValue;
        UINT uTextId;
    };

    // Both out values are unchanged on failure; the ratio also if nothing has to shrink.
    [[nodiscard]] HRESULT getCircleItemRatio(int extraWidth, double* pRatio, bool* pbShrink) const;
    [[nodiscard]] HRESULT _shrinkToFit(const std::vector<CQrdItem*>& rVecItems) const;
    [[nodiscard]] const Monitor* _currentMonitor() const;
    [[nodiscard]] HRESULT panic() override;

    // In the order of the items. Only the user-interface thread writes it, and only under the lock, which is never held
    // during a plug-in call.
    std::vector<Monitor> m_vecAvailableMonitors;
    std::mutex m_monitorLock;
    CPanicThread m_panicThread{*this, {.dwEndWaitMs = 2000, .bLogEvents = true, .pszFailureText = nullptr}};
};
