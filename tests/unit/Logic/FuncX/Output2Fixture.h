// The output function with favourites and the instrumented plug-in; starts of the display-configuration program are
// only recorded.
#pragma once

#include "Data/RegistryPaths.h"
#include "Logic/FuncX/FnF5Memory.h"
#include "Logic/FuncX/FunctionFixture.h"
#include "Logic/FuncX/FxOutput_2.h"

struct FxOutput2Seam {
    static std::wstring defaultName(LONG lMode) { return CFxOutput_2::getDefaultItemName(lMode); }
    static HRESULT imageIds(LONG lMode, DWORD dwCustom, DWORD dwNeedsSetup, UINT* puSmall, UINT* puLarge) {
        return CFxOutput_2::getImageIDInRes(lMode, dwCustom, dwNeedsSetup, puSmall, puLarge);
    }
    static HRESULT filter(CFxOutput_2& function, DWORD dwMaximum) { return function.filterFavItems(dwMaximum); }
    static HRESULT read(CFxOutput_2& function, LONG lCount) { return function.getAvailableItems(lCount); }
    static HRESULT showDialog(CFxOutput_2& function, LONG lMode) { return function.showOutputConfDlg(lMode); }
    static auto& entries(CFxOutput_2& function) { return function.m_vecAvailableItems; }
    static LONG& filtered(CFxOutput_2& function) { return function.m_lCurrentItemFiltered; }
};

namespace functest {

class CRecordingOutput2 final : public CFxOutput_2 {
 public:
    using CFxOutput_2::CFxOutput_2;
    [[nodiscard]] LONG currentItem() const { return m_lCurrentItem; }

    struct Start {
        std::wstring strProgram;
        std::wstring strParameters;
        bool operator==(const Start&) const = default;
    };
    std::vector<Start> m_vecStarts;

 protected:
    void startOutputSetup(const std::wstring& strProgram, const wchar_t* pszParameters) override {
        m_vecStarts.push_back({strProgram, pszParameters});
    }
};

class Output2Test : public FunctionTest {
 protected:
    void SetUp() override {
        m_function.setPlacement(m_placement);
        setInstallPath(L"C:\\Fenwyn Test");
        ASSERT_EQ(init(L"InstrPlugin"), S_OK);
    }
    void TearDown() override {
        m_items.clear();
        m_function.finalize();
        EXPECT_EQ(fnf5::outstandingBlocks(), m_lBlocksBefore);
    }
    static void setInstallPath(const wchar_t* pszPath) {
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, regpath::kProgramKey, regpath::kInstallPath, pszPath);
    }
    HRESULT init(const std::wstring& strPlugin) {
        return m_function.initHotkeyDll(instr::InstrumentedPlugin::pathOf(strPlugin).c_str());
    }
    // The plug-in offers what setEntry() described.
    HRESULT build(LONG lCount, LONG lCurrent) {
        m_plugin->itemCount = lCount;
        m_plugin->currentItem = lCurrent;
        m_items.clear();
        return m_function.initItems(m_items.vec());
    }
    instr::Entry& entry(std::size_t index) { return m_plugin->entries[index]; }
    // The plug-in's indices of the remaining entries.
    std::vector<DWORD> indices() {
        std::vector<DWORD> found;
        for (const auto& pInfo : FxOutput2Seam::entries(m_function)) {
            found.push_back(pInfo != nullptr ? pInfo->dwIndex : MAXDWORD);
        }
        return found;
    }

    const long m_lBlocksBefore = fnf5::outstandingBlocks();
    CRecordingOutput2 m_function{{kCode}, L"Output"};
    Items m_items;
};

}  // namespace functest
