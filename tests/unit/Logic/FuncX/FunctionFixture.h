// Shared by the tests of functions: GDI+, the pictures, an instrumented plug-in, and the log's lines.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Logic/FuncX/FuncX.h"
#include "common/GdiPlus.h"
#include "plugins/InstrumentedPlugin.h"
#include "support/LogCapture.h"
#include "support/RegistryRoom.h"

namespace functest {

constexpr DWORD kCode = 0x3B;

// A round item as it was created.
struct ItemView {
    std::wstring text;
    UINT image1;
    UINT image2;

    bool operator==(const ItemView&) const = default;
};

// Items as a card owns them.
class Items {
 public:
    ~Items() { clear(); }
    std::vector<CQrdItem*>& vec() { return m_vecItems; }
    [[nodiscard]] std::size_t size() const { return m_vecItems.size(); }
    CQrdItem* operator[](std::size_t i) const { return m_vecItems[i]; }
    void clear();
    // Only round items; anything else, or null, becomes an empty view.
    [[nodiscard]] std::vector<ItemView> views() const;
    [[nodiscard]] std::vector<double> scales() const;
    // How many entries are not null.
    [[nodiscard]] std::size_t alive() const;

 private:
    std::vector<CQrdItem*> m_vecItems;
};

class FunctionTest : public testing::Test {
 protected:
    FunctionTest();
    ~FunctionTest() override;

    // The function of that name with the plug-in, whose library may have another name.
    std::unique_ptr<CFuncX> load(const wchar_t* pszName, const std::wstring& strPlugin = L"InstrPlugin");
    // Whether the line was logged, however often: "[ERR] (CFxMute::initItems): Error Code: 0x80004005".
    [[nodiscard]] bool logged(const std::wstring& line) const { return timesLogged(line) > 0; }
    [[nodiscard]] std::size_t timesLogged(const std::wstring& line) const;
    // The functions' errors, without those of lower layers.
    [[nodiscard]] std::vector<std::wstring> errors() const;
    static void setMouseOperating(bool bOperating);
    // From now on, no item with a picture can be created.
    static void withoutPictures();

    Placement m_placement;  // the primary screen, at full size
    const support::RegistryRoom m_registry;
    GdiplusSession m_gdiplus;
    support::LogCapture m_log;
    instr::InstrumentedPlugin m_plugin;
};

// Waits for a condition that another thread fulfils.
template <typename Condition>
[[nodiscard]] bool eventually(Condition condition, DWORD dwMilliseconds = 5000) {
    for (const ULONGLONG end = ::GetTickCount64() + dwMilliseconds; !condition();) {
        if (::GetTickCount64() > end) {
            return false;
        }
        ::Sleep(5);
    }
    return true;
}

}  // namespace functest
