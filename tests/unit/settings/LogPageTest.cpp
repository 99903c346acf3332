// The page Log and help over a private registry and log settings file.
#include "Allowed.h"
#include "PageRoom.h"
#include "SettingsIds.h"
#include "Texts.h"
#include "companions/include/PluginFaults.h"

namespace settings {
namespace {

class LogPage : public PageRoom {
 protected:
    void SetUp() override {
        PageRoom::SetUp();
        giveFault(L"C:\\p\\Bad.dll", 1);
        giveFault(L"C:\\p\\Warned.dll", 0);
    }
    static void giveFault(const std::wstring& plugin, DWORD aside) {
        const std::wstring key = fenwyn::faultKeyOf(plugin);
        support::RegistryRoom::setDword(HKEY_CURRENT_USER, key, FENWYN_VALUE_SET_ASIDE, aside);
        support::RegistryRoom::setText(HKEY_CURRENT_USER, key, FENWYN_VALUE_FAULT_REASON, L"It crashed.");
        support::RegistryRoom::setText(HKEY_CURRENT_USER, key, FENWYN_VALUE_FAULT_WHEN, L"2024-05-31 14:03:07");
    }
    [[nodiscard]] std::wstring stored(const wchar_t* name) const {
        return storedText(Root::LogFile, kLogSection, name);
    }
    [[nodiscard]] std::wstring cell(int row, int column) const {
        wchar_t buffer[128] = L"";
        ListView_GetItemText(control(IDC_LOG_FAULTS), row, column, buffer, 128);
        return buffer;
    }
    void choose(int id, int index) {
        ::SendMessageW(control(id), CB_SETCURSEL, static_cast<WPARAM>(index), 0);
        press(id, CBN_SELCHANGE);
    }
};

TEST_F(LogPage, WithoutAFileItShowsWhatTheProgramDoesThen) {
    open(&makeLogPage);
    EXPECT_EQ(words(IDC_LOG_LEVEL), text(IDS_LOG_LEVEL_0));
    EXPECT_EQ(words(IDC_LOG_DESTINATION), text(IDS_LOG_DESTINATION_2));
    EXPECT_FALSE(m_model.isChanged());
}

TEST_F(LogPage, ChoicesGoIntoTheFileWithApply) {
    open(&makeLogPage);
    choose(IDC_LOG_LEVEL, 3);
    choose(IDC_LOG_DESTINATION, 1);
    EXPECT_EQ(stored(L"Level"), L"(nothing)");
    EXPECT_EQ(m_model.apply(), Applied::Done);
    EXPECT_EQ(stored(L"Level"), L"3");
    EXPECT_EQ(stored(L"Destination"), L"1");
    m_pPage->load();
    EXPECT_EQ(words(IDC_LOG_LEVEL), text(IDS_LOG_LEVEL_3));
}

TEST_F(LogPage, WhatIsNoChoiceIsShownAsWhatItIs) {
    ASSERT_EQ(m_store.write({Root::LogFile, kLogSection, L"Level"}, textData(L"nine")), LSTATUS{ERROR_SUCCESS});
    ASSERT_EQ(m_store.write({Root::LogFile, kLogSection, L"Destination"}, textData(L"7")), LSTATUS{ERROR_SUCCESS});
    open(&makeLogPage);
    EXPECT_EQ(words(IDC_LOG_LEVEL), L"nine");
    EXPECT_EQ(words(IDC_LOG_DESTINATION), L"7");
    EXPECT_FALSE(m_model.isChanged());
}

TEST_F(LogPage, PluginThatWasSetAsideIsListedAndAllowedAgain) {
    open(&makeLogPage);
    ASSERT_EQ(ListView_GetItemCount(control(IDC_LOG_FAULTS)), 1);
    EXPECT_EQ(cell(0, 0), L"Bad.dll");
    EXPECT_EQ(cell(0, 1), L"2024-05-31 14:03:07");
    EXPECT_EQ(cell(0, 2), L"It crashed.");
    ASSERT_TRUE(enabled(IDS_LOG_FORGIVE));
    press(IDS_LOG_FORGIVE);
    EXPECT_EQ(m_told, std::vector<std::wstring>{text(IDS_LOG_FORGIVEN)});
    fenwyn::PluginFault fault;
    EXPECT_FALSE(fenwyn::readFault(L"C:\\p\\Bad.dll", fault));
    EXPECT_TRUE(fenwyn::readFault(L"C:\\p\\Warned.dll", fault));
    EXPECT_FALSE(enabled(IDS_LOG_FORGIVE));
}

TEST_F(LogPage, ReportWithoutItsProgramIsTold) {
    open(&makeLogPage);
    press(IDS_LOG_SHOW_REPORT);  // no FenwynCheck is beside the test program
    ASSERT_EQ(m_told.size(), 1U);
    EXPECT_TRUE(enabled(IDS_LOG_SHOW_REPORT));
    press(IDS_LOG_SAVE_REPORT);
    EXPECT_EQ(m_told.size(), 1U) << "no file was chosen";
}

TEST_F(LogPage, LicencesAreInTheProgram) {
    for (const int id : {IDR_LICENSE, IDR_NOTICE}) {
        const HRSRC found = ::FindResourceW(nullptr, MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(10));
        ASSERT_NE(found, nullptr) << id;
        EXPECT_GT(::SizeofResource(nullptr, found), 500U) << id;
    }
}

}  // namespace
}  // namespace settings
