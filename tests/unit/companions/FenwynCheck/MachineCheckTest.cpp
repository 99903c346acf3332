#include "MachineCheck.h"

#include <gtest/gtest.h>

#include "OutsideDouble.h"
#include "ZelHotkey.h"

namespace {

using machine::Outcome;
using support::RegistryRoom;
using support::TempFolder;

class MachineCheck : public testing::Test {
 protected:
    void SetUp() override { ASSERT_TRUE(m_room.redirected()); }
    machine::ExitCode run() { return machine::checkMachine(m_options, m_double.outside()); }

    RegistryRoom m_room;
    machinetest::OutsideDouble m_double;
    machine::Options m_options;
};

#define EXPECT_TELLS(words) EXPECT_TRUE(m_double.tells(words)) << m_double.narrow()

TEST_F(MachineCheck, GoesThroughTheFamilyWithItsKeysAndCounts) {
    m_double.offer(L"Mute", Outcome::Offered, L"offered\nstate: muted\n");
    m_double.offer(L"ODD", Outcome::Declined, L"not offered: There is no drive.\n");
    EXPECT_EQ(run(), machine::kWell);
    EXPECT_TELLS(L"Function list: none; these are the plug-ins beside this program\nModifier: ");
    EXPECT_TELLS(L"\nMute            F1 (0x3B)\n    " + m_double.outside().folder +
                 L"\\plugins\\WinMute.dll\n    offered\n    state: muted\n");
    EXPECT_TELLS(L"\nODD             E (0x12)\n");
    EXPECT_TELLS(L"    not offered: There is no drive.\n");
    EXPECT_TELLS(L"\n2 functions: 1 offered, 1 not offered, 0 at fault.\n");
    EXPECT_EQ(m_double.started.size(), 2U);
}

TEST_F(MachineCheck, PluginThatCrashesHangsOrIsNotWhollyListedIsAtFaultAndNoOther) {
    m_double.children[L"--inspect \"Mute\""] = {true, 0xC0000005, L""};
    m_double.children[L"--inspect \"Lock\""] = {false, 1, L""};
    m_double.children[L"--inspect \"Zoom\""] = {true, 0, L"offered\n"};
    for (const wchar_t* const name : {L"Mute", L"Lock", L"Zoom"}) {
        RegistryRoom::setDword(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\" + std::wstring(name), ZEL_VALUE_CODE, 0x3B);
        RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY L"\\" + std::wstring(name), ZEL_VALUE_FUNC_DLL, L"x");
    }
    RegistryRoom::setText(HKEY_LOCAL_MACHINE, ZEL_REG_HOTKEY, ZEL_VALUE_FUNC_LIST, L"Mute;Lock;Touchpad;Zoom;");
    EXPECT_EQ(run(), machine::kFaulty);
    EXPECT_TELLS(L"Function list: the machine's (HKEY_LOCAL_MACHINE)\n");
    EXPECT_TELLS(L"    FAULT: its process ended with 0xC0000005.\n");
    EXPECT_TELLS(L"    FAULT: it did not return within 20 seconds and was ended.\n");
    EXPECT_TELLS(L"    FAULT: The function list has no \"Code\" for it.\n");
    EXPECT_TELLS(L"\n4 functions: 1 offered, 0 not offered, 3 at fault.\n");
}

// For other programs: the settings show why a card is missing.
TEST_F(MachineCheck, OnePlugInIsToldInLinesForPrograms) {
    struct Case {
        machine::ChildResult child;
        machine::ExitCode code;
        std::wstring lines;
    };
    const Case cases[] = {
        {{true, 0, L"offered\nstate: muted\ncalls: x\n"}, machine::kWell, L"outcome=offered\n"},
        {{true, 10, L"not offered: There is no drive.\ncalls: x\n"},
         machine::kNothingToDo,
         L"outcome=declined\nwhy=There is no drive.\n"},
        {{true, 1, L"note: slow\nFAULT: The export A is missing.\nFAULT: B\n"},
         machine::kFaulty,
         L"outcome=faulty\nwhy=The export A is missing.\n"},
        {{true, 0xC0000005, L""}, machine::kFaulty, L"outcome=faulty\nwhy=its process ended with 0xC0000005.\n"},
        {{false, 1, L""},
         machine::kFaulty,
         L"outcome=faulty\nwhy=it did not return within 20 seconds and was ended.\n"},
    };
    m_options.command = machine::Command::Ask;
    m_options.function = L"ODD";
    m_options.plugin = L"C:\\a b\\Odd.dll";
    for (const Case& each : cases) {
        m_double.told.clear();
        m_double.children[L"--inspect \"ODD\" \"C:\\a b\\Odd.dll\""] = each.child;
        EXPECT_EQ(machine::askPlugin(m_options, m_double.outside()), each.code);
        EXPECT_EQ(m_double.told, each.lines) << m_double.narrow();
    }
}

TEST_F(MachineCheck, NothingThereHasAnExitCodeOfItsOwn) {
    EXPECT_EQ(run(), machine::kNothingToDo);
    EXPECT_TELLS(L"0 functions");
}

TEST_F(MachineCheck, TriesOnlyWhatIsOfferedAndHarmlessAndOnlyAfterYes) {
    for (const wchar_t* const name : {L"Lock", L"Mute", L"Zoom"}) {
        m_double.offer(name, Outcome::Offered);
    }
    m_double.offer(L"Brightness", Outcome::Declined);
    EXPECT_EQ(run(), machine::kWell);
    EXPECT_TRUE(m_double.questions.empty()) << "nobody said --try";
    m_options.tryChanges = true;
    m_double.started.clear();
    EXPECT_EQ(run(), machine::kWell);
    ASSERT_EQ(m_double.questions.size(), 2U);
    EXPECT_EQ(m_double.questions[0], L"Mute: switch the sound off or on, and back?");
    EXPECT_EQ(m_double.started.size(), 4U) << "no was the answer";
    m_double.answer = true;
    m_double.children[L"--try-one \"Mute\""] = {true, 0, L"muted -> sound on: in effect after 1 ms.\n"};
    m_double.children[L"--try-one \"Zoom\""] = {true, 1, L"FAULT: refused (5).\n"};
    EXPECT_EQ(run(), machine::kFaulty);
    EXPECT_TELLS(L"    tried:\n    muted -> sound on: in effect after 1 ms.\n");
    EXPECT_TELLS(L"    tried:\n    FAULT: refused (5).\n");
    EXPECT_TELLS(L"\n4 functions: 2 offered, 1 not offered, 1 at fault.\n");
}

TEST_F(MachineCheck, ReportIsWhatWasToldWithoutTheUsersName) {
    m_double.offer(L"Mute", Outcome::Offered, L"state: caf\u00e9\n");
    wchar_t profile[MAX_PATH] = L"";
    ::GetEnvironmentVariableW(L"USERPROFILE", profile, MAX_PATH);
    ::SetEnvironmentVariableW(L"USERPROFILE", m_double.outside().folder.c_str());
    m_options.reportFile = (m_double.folder() / L"report.txt").wstring();
    EXPECT_EQ(run(), machine::kWell);
    ::SetEnvironmentVariableW(L"USERPROFILE", profile);
    const std::string bytes = TempFolder::bytesOf(m_options.reportFile);
    EXPECT_TRUE(
        bytes.starts_with("\xEF\xBB\xBF"
                          "FenwynCheck "));
    EXPECT_NE(bytes.find("\r\n    %USERPROFILE%\\plugins\\WinMute.dll\r\n    state: caf\xC3\xA9\r\n"),
              std::string::npos)
        << bytes;
    EXPECT_NE(bytes.find("\r\n1 functions: 1 offered"), std::string::npos);
    m_options.reportFile = (m_double.folder() / L"no folder" / L"report.txt").wstring();
    EXPECT_EQ(run(), machine::kNotWritten);
    EXPECT_TELLS(L"The report could not be written to ");
}

TEST(Report, LeavesTheProfilesPathOutWhereverItStands) {
    EXPECT_EQ(machine::withoutProfile(L"c:\\users\\ann\\x C:\\Users\\Ann", L"C:\\Users\\Ann"),
              L"%USERPROFILE%\\x %USERPROFILE%");
    EXPECT_EQ(machine::withoutProfile(L"nothing", L""), L"nothing");
    EXPECT_EQ(machine::withoutProfile(L"", L"C:\\Users\\Ann"), L"");
}

TEST(Report, SaysWhichProgramSystemAndMachine) {
    const std::wstring text = machine::surroundings();
    for (const wchar_t* const words : {L"FenwynCheck 1.", L" bit\nSystem: Windows ", L" build ", L", 64 bit\nMachine: ",
                                       L"\nSession: at the machine\n"}) {
        EXPECT_NE(text.find(words), std::wstring::npos) << std::string(text.begin(), text.end());
    }
}

}  // namespace
