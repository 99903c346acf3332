#include "Logic/FuncX/FuncXFactory.h"

#include <gmock/gmock.h>

#include <typeinfo>

#include "Logic/FuncX/CircleFunction.h"
#include "Logic/FuncX/FunctionFixture.h"
#include "Logic/FuncX/FxBrightness.h"
#include "Logic/FuncX/FxKBB.h"
#include "Logic/FuncX/FxODD.h"
#include "Logic/FuncX/FxOutput.h"
#include "Logic/FuncX/FxOutput_2.h"
#include "Logic/FuncX/FxOverlay.h"
#include "Logic/FuncX/FxPowerPlan.h"
#include "Logic/FuncX/FxWireless.h"

namespace functest {

namespace {

const std::type_info* typeMadeFor(const std::wstring& strName) {
    const std::unique_ptr<CFuncX> pFunction = CFuncXFactory::createFunx(strName.c_str(), {kCode}, L"Caption");
    const CFuncX* const pMade = pFunction.get();
    return pMade != nullptr ? &typeid(*pMade) : nullptr;
}

struct Known {
    const wchar_t* pszName;
    const std::type_info& type;
};

const Known kKnown[] = {
    {L"Mute", typeid(CFxMute)},
    {L"Lock", typeid(CFxLock)},
    {L"PowerPlan", typeid(CFxPowerPlan)},
    {L"Sleep", typeid(CFxSleep)},
    {L"Hibernate", typeid(CFxHibernate)},
    {L"Output", typeid(CFxOutput)},
    {L"Output_2", typeid(CFxOutput_2)},
    {L"Brightness", typeid(CFxBrightness)},
    {L"Wireless", typeid(CFxWireless)},
    {L"Touchpad", typeid(CFxTouchpad)},
    {L"Zoom", typeid(CFxZoom)},
    {L"CursorOverlay", typeid(CFxCursorOverlay)},
    {L"NumericOverlay", typeid(CFxNumOverlay)},
    {L"ODD", typeid(CFxODD)},
    {L"KBB", typeid(CFxKBB)},
};

std::wstring changedCase(std::wstring text, bool bUpper) {
    for (wchar_t& c : text) {
        if (bUpper ? c >= L'a' && c <= L'z' : c >= L'A' && c <= L'Z') {
            c = static_cast<wchar_t>(c ^ 0x20);
        }
    }
    return text;
}

}  // namespace

using Factory = FunctionTest;

TEST_F(Factory, EveryNameGivesItsClassInAnyCase) {
    for (const Known& known : kKnown) {
        for (const std::wstring& name :
             {std::wstring(known.pszName), changedCase(known.pszName, true), changedCase(known.pszName, false)}) {
            const std::type_info* const pMade = typeMadeFor(name);
            ASSERT_NE(pMade, nullptr) << testing::PrintToString(name);
            EXPECT_TRUE(*pMade == known.type) << testing::PrintToString(name);
        }
    }
    EXPECT_THAT(errors(), testing::IsEmpty());
}

TEST_F(Factory, WholeNamesAreCompared) {
    for (const wchar_t* pszName : {L"", L"Mute ", L" Mute", L"Mut", L"Output_", L"Output_22", L"Num", L"M\x00FCte"}) {
        EXPECT_EQ(typeMadeFor(pszName), nullptr) << testing::PrintToString(std::wstring(pszName));
    }
    EXPECT_EQ(timesLogged(L"[ERR] (CFuncXFactory::createFunx): ASSERT( !\"Error hotkey function!\" )"), 8U);
}

TEST_F(Factory, LettersBeyondAsciiDoNotFold) {
    EXPECT_EQ(typeMadeFor(L"\x212A"
                          L"BB"),
              nullptr);  // the Kelvin sign folds to k elsewhere
    EXPECT_EQ(typeMadeFor(L"L\x0130"
                          L"CK"),
              nullptr);
}

TEST_F(Factory, NullIsAnUnknownName) {
    EXPECT_EQ(CFuncXFactory::createFunx(nullptr, {kCode}, L""), nullptr);
    EXPECT_TRUE(logged(L"[ERR] (CFuncXFactory::createFunx): ASSERT( !\"Error hotkey function!\" )"));
}

TEST_F(Factory, CodesAndCaptionArriveAndNothingIsLoaded) {
    const auto pFunction = CFuncXFactory::createFunx(L"mute", {1, 2}, L"Ton");
    EXPECT_EQ(pFunction->getCaption(), L"Ton");
    EXPECT_TRUE(pFunction->containsHotkeyCode(2));
    EXPECT_FALSE(pFunction->isFuncSupported());
    EXPECT_EQ(m_plugin->callCount, 0);
}

}  // namespace functest
