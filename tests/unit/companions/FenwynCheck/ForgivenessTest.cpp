// --forgive, and what --machine tells of plug-ins that ended the program.
#include <gtest/gtest.h>

#include "Forgiveness.h"
#include "MachineCheck.h"
#include "OutsideDouble.h"
#include "PluginFaults.h"

namespace {

class Forgiveness : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }

    static void remember(const std::wstring& path, DWORD aside) {
        const std::wstring key = fenwyn::faultKeyOf(path);
        const auto set = [&key](const wchar_t* name, const std::wstring& text) {
            RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), name, REG_SZ, text.c_str(),
                            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
        };
        set(FENWYN_VALUE_FAULT_FUNCTION, L"Mute");
        set(FENWYN_VALUE_FAULT_EXPORT, L"SelectItem");
        set(FENWYN_VALUE_FAULT_REASON, L"abort()");
        set(FENWYN_VALUE_FAULT_WHEN, L"2024-05-31 14:03:07");
        RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), FENWYN_VALUE_SET_ASIDE, REG_DWORD, &aside, sizeof aside);
    }

    support::RegistryRoom m_room;
    machinetest::OutsideDouble m_world;
};

TEST_F(Forgiveness, TellsWhichPluginsItForgave) {
    remember(L"C:\\x\\A.dll", 1);
    remember(L"C:\\x\\B.dll", 0);
    EXPECT_EQ(machine::forgivePlugins(m_world.outside()), machine::kWell);
    EXPECT_NE(m_world.told.find(L"C:\\x\\A.dll\n    set aside; function Mute ended Fenwyn at 2024-05-31 14:03:07 in "
                                L"SelectItem: abort()\n"),
              std::wstring::npos);
    EXPECT_NE(m_world.told.find(L"C:\\x\\B.dll\n    not set aside;"), std::wstring::npos);
    EXPECT_TRUE(fenwyn::readFaults().empty());
}

TEST_F(Forgiveness, HasNothingToDoWithoutAFault) {
    EXPECT_EQ(machine::forgivePlugins(m_world.outside()), machine::kNothingToDo);
}

TEST_F(Forgiveness, MachineCheckListsThem) {
    remember(L"C:\\x\\A.dll", 1);
    machine::Options options;
    static_cast<void>(machine::checkMachine(options, m_world.outside()));
    EXPECT_NE(m_world.told.find(L"C:\\x\\A.dll\n    set aside; function Mute"), std::wstring::npos);
    EXPECT_EQ(fenwyn::readFaults().size(), 1U) << "looking forgives nothing";
}

}  // namespace
