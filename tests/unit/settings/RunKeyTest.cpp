#include "RunKey.h"

#include <fstream>
#include <sstream>

#include "Allowed.h"
#include "Notebook.h"

namespace settings {
namespace {

constexpr wchar_t kRun[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

class StartWithWindows : public Notebook {
 protected:
    void SetUp() override {
        Notebook::SetUp();
        giveText(Root::Machine, regpath::kHotkeyKey, regpath::kFuncList, L"Mute;");
    }
    [[nodiscard]] std::wstring command(Root root) const { return storedText(root, kRun, L"Fenwyn"); }
    [[nodiscard]] bool isOn() const { return m_model.read(m_value).number != 0; }

    const Value& m_value = value(kWithWindows);
    const Changes m_removedForAll = {{{Root::Machine, kStartKey, kWithWindows}, std::nullopt}};
};

}  // namespace

TEST_F(StartWithWindows, IsWrittenForTheUserAtApplyAndRemovedAgain) {
    m_store.machineMayBeWritten = false;
    EXPECT_FALSE(isOn());
    m_model.setNumber(m_value, 1);
    EXPECT_TRUE(isOn());
    EXPECT_FALSE(m_model.needsRights());
    EXPECT_EQ(command(Root::User), L"(nothing)");
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(command(Root::User), commandOf(kStartedFenwyn));
    EXPECT_EQ(command(Root::Machine), L"(nothing)");
    m_model.setNumber(m_value, 0);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(command(Root::User), L"(nothing)");
}

TEST_F(StartWithWindows, OfEverybodyTakesRights) {
    giveText(Root::Machine, kRun, L"Fenwyn", L"C:\\Fenwyn\\Fenwyn.exe");
    m_store.machineMayBeWritten = false;
    EXPECT_TRUE(isOn());
    m_model.setNumber(m_value, 0);
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(m_model.needsRights());
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(m_elevated, m_removedForAll);
    EXPECT_TRUE(isAllowed(m_removedForAll.begin()->first, std::nullopt));
    EXPECT_EQ(m_store.write(m_removedForAll.begin()->first, std::nullopt), ERROR_ACCESS_DENIED);
    m_store.machineMayBeWritten = true;
    EXPECT_EQ(m_store.write(m_removedForAll.begin()->first, std::nullopt), ERROR_SUCCESS);
    EXPECT_EQ(command(Root::Machine), L"(nothing)");
}

TEST_F(StartWithWindows, SwitchedOffNeitherValueStays) {
    giveText(Root::Machine, kRun, L"Fenwyn", L"x");
    giveText(Root::User, kRun, L"Fenwyn", L"x");
    m_model.setNumber(m_value, 0);
    m_model.setNumber(m_value, 1);
    EXPECT_FALSE(m_model.isChanged()) << "as it was";
    m_model.setNumber(m_value, 0);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(command(Root::Machine), L"(nothing)");
    EXPECT_EQ(command(Root::User), L"(nothing)");
}

TEST_F(StartWithWindows, CancelLeavesItAsItWas) {
    giveText(Root::User, kRun, L"Fenwyn", L"x");
    m_model.setNumber(m_value, 0);
    m_model.cancel();
    EXPECT_TRUE(isOn());
    EXPECT_EQ(command(Root::User), L"x");
}

TEST_F(StartWithWindows, IsHandedOnAsASwitchAndNotAsACommand) {
    giveText(Root::Machine, kRun, L"Fenwyn", L"D:\\Elsewhere\\Fenwyn.exe");
    const Changes exported = m_model.everything();
    support::RegistryRoom::removeValue(HKEY_LOCAL_MACHINE, kRun, L"Fenwyn");
    m_model.takeOver(exported);
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(command(Root::User), commandOf(kStartedFenwyn));
    EXPECT_FALSE(isAllowed({Root::Machine, kStartKey, kWithWindows}, textData(L"C:\\a.exe")));
    EXPECT_FALSE(isAllowed({Root::Machine, kStartKey, L"Other"}, numberData(1)));
}

TEST(RunKey, ValuesAreThoseOfTheInstaller) {
    const std::ifstream stream(std::filesystem::path(FENWYN_TREE L"/installer/Fenwyn.nsi"));
    const std::string script = (std::ostringstream() << stream.rdbuf()).str();
    ASSERT_NE(script.find(R"(!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run")"), std::string::npos);
    for (const auto& [program, name] :
         {std::pair(kStartedFenwyn, L"START_FENWYN"), std::pair(kStartedIcon, L"START_TRAY")}) {
        const std::wstring lines[] = {
            std::wstring(L"!define ") + name + L" '\"$INSTDIR\\" + program.file + L"\"" + program.arguments + L"'",
            std::wstring(L"WriteRegStr SHCTX \"${RUN_KEY}\" \"") + program.value + L"\" '${" + name + L"}'"};
        for (const std::wstring& line : lines) {
            EXPECT_NE(script.find(std::string(line.begin(), line.end())), std::string::npos)
                << testing::PrintToString(line);
        }
    }
}

}  // namespace settings
