#include "Registration.h"

#include <gtest/gtest.h>

#include "FunctionListRoot.h"
#include "FunctionSource.h"
#include "OutsideDouble.h"
#include "ZelHotkey.h"

namespace {

using machine::Outcome;
using support::RegistryRoom;

class Registration : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(m_room.redirected());
        m_double.offer(L"Zoom", Outcome::Offered);
        m_double.offer(L"Mute", Outcome::Offered);
        m_double.offer(L"ODD", Outcome::Declined);
        m_double.offer(L"Brightness", Outcome::Faulty);
        m_double.offer(L"Output", Outcome::Offered);
    }
    machine::ExitCode enter() { return machine::registerFunctions(m_options, m_double.outside()); }
    machine::ExitCode leave() { return machine::unregisterFunctions(m_options, m_double.outside()); }
    static std::wstring text(HKEY root, const std::wstring& key, const wchar_t* name) {
        wchar_t buffer[512];
        DWORD size = sizeof buffer;
        return ::RegGetValueW(root, key.c_str(), name, RRF_RT_REG_SZ, nullptr, buffer, &size) == ERROR_SUCCESS
                   ? buffer
                   : L"(none)";
    }
    static std::wstring list(HKEY root) { return text(root, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST); }
    static bool productKeyExists(HKEY root) {
        return ::RegGetValueW(root, FENWYN_REG_MAKER, nullptr, RRF_RT_ANY, nullptr, nullptr, nullptr) !=
               ERROR_FILE_NOT_FOUND;
    }

    RegistryRoom m_room;
    machinetest::OutsideDouble m_double;
    machine::Options m_options;
};

TEST_F(Registration, ListsWhatTheMachineOffersWithItsKeys) {
    EXPECT_EQ(enter(), machine::kWell);
    EXPECT_EQ(list(HKEY_LOCAL_MACHINE), L"Mute;Zoom;") << "in the order of the strip";
    EXPECT_EQ(list(HKEY_CURRENT_USER), L"(none)");
    EXPECT_EQ(text(HKEY_LOCAL_MACHINE, FENWYN_REG_PRODUCT, FENWYN_VALUE_INSTALL_PATH), m_double.outside().folder);
    const std::vector<machine::Entry> entries = machine::functionSet(L"C:\\").entries;
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].plugin, m_double.outside().folder + L"\\plugins\\WinMute.dll");
    EXPECT_EQ(entries[0].codes, std::vector<DWORD>{0x3B});
    EXPECT_EQ(entries[1].problem, L"");
    EXPECT_TRUE(m_double.tells(L"The function list is written: Mute;Zoom;")) << m_double.narrow();
}

TEST_F(Registration, UsersOwnListNeedsNoAdministrator) {
    m_options.forUser = true;
    EXPECT_EQ(enter(), machine::kWell);
    EXPECT_EQ(list(HKEY_CURRENT_USER), L"Mute;Zoom;");
    EXPECT_FALSE(productKeyExists(HKEY_LOCAL_MACHINE));
    EXPECT_EQ(fenwyn::functionListRoot(), HKEY_CURRENT_USER);
}

TEST_F(Registration, ListThatIsThereStaysUnlessItIsToBeReplaced) {
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"");
    EXPECT_EQ(enter(), machine::kNothingToDo);
    EXPECT_EQ(list(HKEY_LOCAL_MACHINE), L"");
    m_options.forUser = true;
    m_options.replace = true;
    EXPECT_EQ(enter(), machine::kNothingToDo) << "nobody would look at the user's";
    EXPECT_EQ(list(HKEY_CURRENT_USER), L"(none)");
    m_options.forUser = false;
    EXPECT_EQ(enter(), machine::kWell);
    EXPECT_EQ(list(HKEY_LOCAL_MACHINE), L"Mute;Zoom;");
}

TEST_F(Registration, FunctionsMayBeGivenByName) {
    m_options.functions = L"odd;Mute;Odd";
    EXPECT_EQ(enter(), machine::kWell);
    EXPECT_EQ(list(HKEY_LOCAL_MACHINE), L"Mute;ODD;");
    EXPECT_TRUE(m_double.tells(L"The function list is written: Mute;ODD;\n")) << m_double.narrow();
    EXPECT_TRUE(m_double.started.empty()) << "nothing is asked of the machine";
}

// A misspelt name must not leave its owner without that card, and without a word.
TEST_F(Registration, AFunctionThatTheListCannotHaveIsRefusedAndNothingIsWritten) {
    for (const wchar_t* name : {L"Nothing", L"Output", L"Mute ", L"KBB"}) {
        m_options.functions = std::wstring(L"Mute;") + name + L";";
        m_double.told.clear();
        EXPECT_EQ(enter(), machine::kWrongUse) << m_double.narrow();
        EXPECT_TRUE(m_double.tells(std::wstring(L"There is no function \"") + name + L"\" for the list."))
            << m_double.narrow();
        EXPECT_TRUE(m_double.tells(L"Mute;Lock;PowerPlan;Sleep;")) << m_double.narrow();
    }
    m_options.functions = L";";
    EXPECT_EQ(enter(), machine::kWrongUse) << "no name at all";
    EXPECT_FALSE(productKeyExists(HKEY_LOCAL_MACHINE));
    EXPECT_TRUE(m_double.elevated.empty());
}

TEST_F(Registration, MachineThatOffersNothingGetsNoList) {
    for (auto& child : m_double.children) {
        child.second.exitCode = static_cast<DWORD>(Outcome::Declined);
    }
    EXPECT_EQ(enter(), machine::kNothingToDo);
    EXPECT_FALSE(productKeyExists(HKEY_LOCAL_MACHINE));
}

TEST_F(Registration, IsTakenOutAgainButForWhatSomebodyChanged) {
    EXPECT_EQ(enter(), machine::kWell);
    EXPECT_EQ(leave(), machine::kWell);
    EXPECT_FALSE(productKeyExists(HKEY_LOCAL_MACHINE));
    EXPECT_EQ(enter(), machine::kWell);
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", L"Caption", L"Mine");
    EXPECT_EQ(leave(), machine::kWell);
    EXPECT_EQ(text(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Mute", L"Caption"), L"Mine");
    EXPECT_EQ(list(HKEY_LOCAL_MACHINE), L"(none)");
}

TEST_F(Registration, CaptionsAreInTheLanguageOfTheUser) {
    const std::vector<std::wstring> names{L"Mute"};
    const auto caption = [&](LANGID language) {
        const auto settings = machine::sampleSettings(L"C:\\", names, language);
        for (const common::Setting& setting : settings) {
            if (setting.name == L"Caption") {
                return std::wstring(reinterpret_cast<const wchar_t*>(setting.data.data()));
            }
        }
        return std::wstring();
    };
    EXPECT_EQ(caption(LANG_ENGLISH), L"Mute");
    EXPECT_EQ(caption(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN_AUSTRIAN)), L"Ton");
}

TEST_F(Registration, WithoutTheRightToWriteItRunsOnceMoreWithItAndSaysHowThatWent) {
    m_double.refusesMachine = true;
    m_double.elevatedCode = machine::kWell;
    EXPECT_EQ(enter(), machine::kWell);
    ASSERT_EQ(m_double.elevated.size(), 1U);
    EXPECT_EQ(m_double.elevated[0], L"--register --functions \"Mute;Zoom;\" --elevated");
    EXPECT_EQ(leave(), machine::kWell);
    EXPECT_EQ(m_double.elevated.back(), L"--unregister --elevated");
    m_double.elevatedCode.reset();
    EXPECT_EQ(enter(), machine::kNotWritten) << "the user refused";
    EXPECT_TRUE(m_double.tells(L"Nothing was written: that takes administrator rights.")) << m_double.narrow();
    m_options.elevated = true;
    EXPECT_EQ(enter(), machine::kNotWritten);
    EXPECT_EQ(m_double.elevated.size(), 3U) << "not once more from the run that has the rights";
    m_options = {};
    m_options.forUser = true;
    EXPECT_EQ(enter(), machine::kWell) << "the user's own list needs none";
    EXPECT_EQ(m_double.elevated.size(), 3U);
}

}  // namespace
