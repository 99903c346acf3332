#include "Elevation.h"

#include "ChangeFile.h"
#include "Notebook.h"

namespace settings {
namespace {

class Elevation : public Notebook {
 protected:
    // What the process with the rights does with such a file.
    LSTATUS carryOutFile(const std::wstring& text) {
        EXPECT_EQ(writeTextFile(m_file, text), ERROR_SUCCESS);
        return carryOut(m_store, sumOf(text), m_file);
    }
    LSTATUS carryOutChanges(const Changes& changes) { return carryOutFile(fileText(changes)); }

    const std::wstring m_file = (m_folder / L"changes.txt").wstring();
    const Changes m_good = {{{Root::Machine, regpath::kConfigKey, L"HideCaption"}, numberData(1)}};
};

}  // namespace

TEST_F(Elevation, WritesWhatIsAllowed) {
    EXPECT_EQ(carryOutChanges({{{Root::Machine, regpath::kConfigKey, L"HideCaption"}, numberData(1)},
                               {{Root::LogFile, L"LOG", L"Level"}, textData(L"2")}}),
              ERROR_SUCCESS);
    EXPECT_EQ(number(Root::Machine, L"HideCaption"), 1U);
    EXPECT_EQ(storedText(Root::LogFile, L"LOG", L"Level"), L"2");
}

TEST_F(Elevation, WritesNothingAtAllWhenOneThingIsNotAllowed) {
    for (const Changes& more : std::initializer_list<Changes>{
             {{{Root::Machine, L"SOFTWARE\\KESTOVA\\Other", L"Position"}, numberData(1)}},
             {{{Root::Machine, regpath::kConfigKey, L"Unknown"}, numberData(1)}},
             {{{Root::Machine, regpath::kConfigKey, L"AutoHide"}, textData(L"1")}},
             {{{Root::Machine, regpath::kConfigKey, L"ItemDescMaxWidth"}, numberData(1000000)}},
             {{{Root::Machine, regpath::kConfigKey, L"AutoHide"}, std::nullopt}},
             {{{Root::User, regpath::kConfigKey, L"Position"}, numberData(1)}},
         }) {
        Changes changes = m_good;
        changes.insert(more.begin(), more.end());
        EXPECT_EQ(carryOutChanges(changes), ERROR_INVALID_DATA);
    }
    EXPECT_EQ(m_store.writes, 0);
}

TEST_F(Elevation, WritesNothingFromAFileThatWasExchanged) {
    const std::wstring text = fileText(m_good);
    ASSERT_EQ(writeTextFile(m_file, text + L"; more\r\n"), ERROR_SUCCESS);
    EXPECT_EQ(carryOut(m_store, sumOf(text), m_file), ERROR_INVALID_DATA);
    EXPECT_EQ(carryOut(m_store, L"", m_file), ERROR_INVALID_DATA);
    EXPECT_EQ(m_store.writes, 0);
}

TEST_F(Elevation, WritesNothingFromGarbage) {
    EXPECT_EQ(carryOutFile(L"REGEDIT4"), ERROR_INVALID_DATA);
    EXPECT_EQ(carryOutFile(L""), ERROR_INVALID_DATA);
    EXPECT_EQ(carryOut(m_store, sumOf(L""), (m_folder / L"none").wstring()), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(m_store.writes, 0);
}

TEST_F(Elevation, TellsAFailure) {
    m_store.machineMayBeWritten = false;
    EXPECT_EQ(carryOutChanges(m_good), ERROR_ACCESS_DENIED);
}

TEST(Sum, IsTheUsualOne) {
    // Of the UTF-16 units, low byte first: "a" and a zero byte.
    EXPECT_EQ(sumOf(L"a"), L"ffe9aaeaa2a2d5048174df0b80599ef0197ec024c4b051bc9860cff58ef7f9f3");
    EXPECT_NE(sumOf(L""), sumOf(L"a"));
}

}  // namespace settings
