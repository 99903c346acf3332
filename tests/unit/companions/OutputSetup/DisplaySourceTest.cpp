// The library that knows the displays instead of the system.
#include <gtest/gtest.h>

#include "DisplaySourceLibrary.h"
#include "FenwynRegistry.h"
#include "SetupIds.h"
#include "Surroundings.h"
#include "Texts.h"
#include "support/RegistryRoom.h"

namespace {

constexpr wchar_t kProduct[] = FENWYN_REG_PRODUCT;

class DisplaySource : public testing::Test {
 protected:
    static void name(const std::wstring& path) {
        support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, kProduct, DISPLAY_SOURCE_VALUE, path);
    }

    support::RegistryRoom m_registry;
};

}  // namespace

TEST_F(DisplaySource, IsAskedInPlaceOfTheSystem) {
    name(SIM_DISPLAYS);
    const setup::Surroundings surroundings = setup::realSurroundings();
    EXPECT_TRUE(surroundings.warning.empty());
    ASSERT_EQ(surroundings.displays().size(), 1U);
    EXPECT_EQ(surroundings.displays()[0].connector, L"LCD");
    EXPECT_TRUE(surroundings.displays()[0].builtIn);
}

TEST_F(DisplaySource, SetsTheDisplaysUp) {
    name(SIM_DISPLAYS);
    const setup::Surroundings surroundings = setup::realSurroundings();
    // All that the simulated notebook can do: what is set up is what is there then.
    for (const LONG mode : {FENWYN_MODE_CLONE, FENWYN_MODE_EXTEND_RIGHT, FENWYN_MODE_EXTERNAL, FENWYN_MODE_EXTEND_ABOVE,
                            FENWYN_MODE_INTERNAL}) {
        EXPECT_EQ(surroundings.apply(mode), ERROR_SUCCESS) << mode;
        EXPECT_EQ(setup::arrangementOf(surroundings.displays()), mode);
    }
    EXPECT_EQ(surroundings.apply(FENWYN_MODE_EXTEND_LEFT), ERROR_NOT_SUPPORTED);
}

TEST_F(DisplaySource, IsNamedBesideTheFunctionListInForce) {
    EXPECT_TRUE(setup::displaySourcePath().empty());
    support::RegistryRoom::setText(HKEY_CURRENT_USER, kProduct, DISPLAY_SOURCE_VALUE, L"C:\\mine.dll");
    EXPECT_TRUE(setup::displaySourcePath().empty()) << "the user has no function list";
    support::RegistryRoom::setText(HKEY_CURRENT_USER, FENWYN_REG_HOTKEY, FENWYN_VALUE_FUNC_LIST, L"Output_2;");
    EXPECT_EQ(setup::displaySourcePath(), L"C:\\mine.dll");
    support::RegistryRoom::setText(HKEY_LOCAL_MACHINE, FENWYN_REG_HOTKEY, FENWYN_VALUE_FUNC_LIST, L"Output_2;");
    EXPECT_TRUE(setup::displaySourcePath().empty()) << "the machine's list counts";
    name(L"C:\\x.dll");
    EXPECT_EQ(setup::displaySourcePath(), L"C:\\x.dll");
    const wchar_t variable[] = L"%SystemRoot%\\x.dll";
    support::RegistryRoom::set(HKEY_LOCAL_MACHINE, kProduct, DISPLAY_SOURCE_VALUE, REG_EXPAND_SZ, variable,
                               sizeof variable);
    EXPECT_EQ(setup::displaySourcePath().find(L'%'), std::wstring::npos);
    EXPECT_TRUE(setup::displaySourcePath().ends_with(L"\\x.dll"));
}

TEST_F(DisplaySource, ThatCannotBeUsedIsToldAndTheSystemIsAsked) {
    for (const wchar_t* const path : {L"C:\\there is none.dll", L"kernel32.dll"}) {
        name(path);
        const setup::Surroundings surroundings = setup::realSurroundings();
        EXPECT_EQ(surroundings.warning.find(setup::text(IDS_ERROR_SOURCE, path)), 0U) << path;
        EXPECT_FALSE(surroundings.displays().empty());
    }
}

TEST_F(DisplaySource, ThatTheRegistryDoesNotNameIsNotMissed) {
    EXPECT_TRUE(setup::realSurroundings().warning.empty());
    EXPECT_FALSE(setup::realSurroundings().displays().empty());
}
