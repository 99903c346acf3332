#include "FunctionSource.h"

#include <gtest/gtest.h>

#include "FunctionListRoot.h"
#include "SampleList.h"
#include "ZelHotkey.h"
#include "support/RegistryRoom.h"
#include "support/TempFolder.h"

namespace {

using machine::Source;
using support::RegistryRoom;

class FunctionSource : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }

    static void list(HKEY root, const std::wstring& names) {
        RegistryRoom::setText(root, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, names);
    }
    static void add(HKEY root, const std::wstring& name, const wchar_t* plugin) {
        const std::wstring key = ZEL_REG_HOTKEY L"\\" + name;
        RegistryRoom::setBinary(root, key, ZEL_VALUE_CODE, {0x40, 0, 0, 0, 0x41, 0, 0, 0});
        RegistryRoom::setText(root, key, ZEL_VALUE_FUNC_DLL, plugin);
    }

    [[nodiscard]] std::wstring folder() const { return m_folder.path().wstring(); }

    RegistryRoom m_room;
    support::TempFolder m_folder;
};

TEST_F(FunctionSource, IsTheMachinesListBeforeTheUsersOwn) {
    list(HKEY_CURRENT_USER, L"Lock;");
    add(HKEY_CURRENT_USER, L"Lock", L"C:\\Lock.dll");
    RegistryRoom::setDword(HKEY_CURRENT_USER, ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY, VK_F13);
    const machine::FunctionSet own = machine::functionSet(folder());
    EXPECT_EQ(own.source, Source::UserList);
    EXPECT_EQ(own.modifier, static_cast<DWORD>(VK_F13));
    ASSERT_EQ(own.entries.size(), 1U);
    EXPECT_EQ(own.entries[0].name, L"Lock");
    list(HKEY_LOCAL_MACHINE, L"Mute;");
    add(HKEY_LOCAL_MACHINE, L"Mute", L"%SystemRoot%\\Mute.dll");
    const machine::FunctionSet machines = machine::functionSet(folder());
    EXPECT_EQ(machines.source, Source::MachineList);
    EXPECT_EQ(machines.modifier, static_cast<DWORD>(VK_RCONTROL));
    ASSERT_EQ(machines.entries.size(), 1U);
    EXPECT_EQ(machines.entries[0].codes, (std::vector<DWORD>{0x40, 0x41}));
    EXPECT_EQ(machines.entries[0].problem, L"");
    EXPECT_EQ(machines.entries[0].plugin.find(L'%'), std::wstring::npos) << "expanded";
}

TEST_F(FunctionSource, ReadsTheListAsTheProgramDoesAndSaysWhatIsMissing) {
    list(HKEY_LOCAL_MACHINE, L";Mute;Lock;Zoom;Touchpad");
    add(HKEY_LOCAL_MACHINE, L"Mute", L"m.dll");
    add(HKEY_LOCAL_MACHINE, L"Lock", L"l.dll");
    RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\Lock", ZEL_VALUE_FUNC_DLL);
    const std::vector<machine::Entry> entries = machine::functionSet(folder()).entries;
    ASSERT_EQ(entries.size(), 3U) << "neither an empty name nor one without its semicolon";
    EXPECT_EQ(entries[0].problem, L"");
    EXPECT_EQ(entries[1].problem, L"The function list has no \"FuncDll\" for it.");
    EXPECT_EQ(entries[2].problem, L"The function list has no \"Code\" for it.");
}

TEST_F(FunctionSource, GarbageIsHarmless) {
    std::wstring names;
    for (int i = 0; i < 5000; ++i) {
        names += L"x;";
    }
    list(HKEY_LOCAL_MACHINE, names);
    EXPECT_EQ(machine::functionSet(folder()).entries.size(), 100U);
    list(HKEY_LOCAL_MACHINE, std::wstring(100000, L'x') + L";");
    EXPECT_TRUE(machine::functionSet(folder()).entries.empty());
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, {0x41});
    RegistryRoom::setBinary(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_MODIFIER_KEY, {});
    EXPECT_TRUE(machine::functionSet(folder()).entries.empty());
}

TEST_F(FunctionSource, IsTheFamilyBesideTheProgramWithoutAnyList) {
    ::CreateDirectoryW((folder() + L"\\plugins").c_str(), nullptr);
    for (const wchar_t* name : {L"Zoom", L"Mute", L"Output"}) {
        support::TempFolder::write(machine::samplePlugin(folder(), name), "x");
    }
    const machine::FunctionSet set = machine::functionSet(folder());
    EXPECT_EQ(set.source, Source::Family);
    ASSERT_EQ(set.entries.size(), 3U);
    EXPECT_EQ(set.entries[0].name, L"Mute");
    EXPECT_EQ(set.entries[0].codes, std::vector<DWORD>{0x3B});
    EXPECT_EQ(set.entries[1].name, L"Zoom");
    EXPECT_TRUE(set.entries[2].codes.empty()) << "the older output is not in the sample list";
}

}  // namespace
