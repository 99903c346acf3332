#include <gmock/gmock.h>

#include "Logic/FuncX/FunctionFixture.h"

namespace functest {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct OverlayCase {
    const wchar_t* pszName;
    std::wstring strClass;
    UINT uOn;
    UINT uOff;
};

class Overlay : public FunctionTest, public testing::WithParamInterface<OverlayCase> {
 protected:
    void SetUp() override { m_pFunction = load(GetParam().pszName); }
    void TearDown() override { m_pFunction->finalize(); }

    [[nodiscard]] std::wstring line(const wchar_t* pszLevel, const wchar_t* pszMethod, const wchar_t* pszText) const {
        return std::wstring(L"[") + pszLevel + L"] (" + GetParam().strClass + L"::" + pszMethod + L"): " + pszText;
    }

    std::unique_ptr<CFuncX> m_pFunction;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Both, Overlay,
                         testing::Values(OverlayCase{L"CursorOverlay", L"CFxCursorOverlay", 492, 491},
                                         OverlayCase{L"NumericOverlay", L"CFxNumOverlay", 512, 511}),
                         [](const auto& rInfo) { return rInfo.index == 0 ? "Cursor" : "Numeric"; });

TEST_P(Overlay, ThePictureFollowsTheState) {
    m_plugin->currentItem = 0;
    EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uOn);
    m_plugin->currentItem = 1;
    EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uOff);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_P(Overlay, AnUnknownStateShowsOff) {
    for (const LONG lItem : std::initializer_list<LONG>{2, -2, -1}) {
        m_plugin->currentItem = lItem;
        EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uOff);
        EXPECT_FALSE(m_pFunction->needRefreshSmallPng());
    }
    EXPECT_EQ(timesLogged(line(L"ERR", L"getSmallPngID", L"ASSERT( !\"Wrong current item.\" )")), 3U);
}

TEST_P(Overlay, AStateChangedOutsideNeedsANewPicture) {
    m_plugin->currentItem = 0;
    EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uOn);
    EXPECT_FALSE(m_pFunction->needRefreshSmallPng());
    m_plugin->currentItem = 1;
    EXPECT_TRUE(m_pFunction->needRefreshSmallPng());
    EXPECT_TRUE(m_pFunction->needRefreshSmallPng());  // until the picture has been requested
    EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uOff);
    EXPECT_FALSE(m_pFunction->needRefreshSmallPng());
}

TEST_P(Overlay, WithoutAStateThePictureIsOffAndAskedForAgain) {
    m_plugin->currentItem = 0;
    m_plugin->exports[instr::GetCurrentItemId].result = 1;
    m_log.clear();
    EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uOff);
    EXPECT_TRUE(m_pFunction->needRefreshSmallPng());
    const std::wstring failed = L"[ERR] (CFuncX::getCurrentItem): Error Code: 0x80004005";
    const std::wstring picture = GetParam().uOff == 491 ? L"Error Code: 0x1eb" : L"Error Code: 0x1ff";
    EXPECT_THAT(errors(), ElementsAre(failed, line(L"ERR", L"getSmallPngID", picture.c_str()), failed,
                                      line(L"ERR", L"needRefreshSmallPng", L"Error Code: 0x1")));
}

TEST_P(Overlay, AFailureKeepsTheStateOfTheLastPicture) {
    m_plugin->currentItem = 0;
    EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uOn);
    m_plugin->exports[instr::GetCurrentItemId].result = 1;
    m_plugin->currentItem = 1;
    EXPECT_EQ(m_pFunction->getSmallPngID(), GetParam().uOff);
    m_plugin->exports[instr::GetCurrentItemId].result = 0;
    EXPECT_TRUE(m_pFunction->needRefreshSmallPng());
}

TEST_P(Overlay, KeysBelongToTheUserWhileTheMouseOperates) {
    EXPECT_TRUE(m_pFunction->containsHotkeyCode(kCode));
    EXPECT_FALSE(m_pFunction->containsHotkeyCode(kCode + 1));
    EXPECT_TRUE(logged(line(L"TRC", L"containsHotkeyCode", L"m_bMouseOperating = 0")));
    setMouseOperating(true);
    EXPECT_FALSE(m_pFunction->containsHotkeyCode(kCode));
    EXPECT_TRUE(logged(line(L"TRC", L"containsHotkeyCode", L"m_bMouseOperating = 1")));
}

using NumericOverlay = FunctionTest;

TEST_F(NumericOverlay, NeedsAPictureBeforeItsFirst) {
    const auto pFunction = load(L"NumericOverlay");
    m_plugin->currentItem = 0;
    EXPECT_TRUE(pFunction->needRefreshSmallPng());
    pFunction->finalize();
}

}  // namespace functest
