// Naming, renaming and deleting favourites.
#include <gtest/gtest.h>

#include "Favourites.h"
#include "support/RegistryRoom.h"

using setup::cleanName;
using setup::Favourites;
using setup::judgeName;
using setup::NameVerdict;

namespace {

Favourites named(std::initializer_list<const wchar_t*> names) {
    Favourites favourites;
    for (const wchar_t* name : names) {
        favourites.push_back({name, FENWYN_MODE_CLONE, {favourites::displayRecord(L"LCD", 0, 800, 600)}});
    }
    return favourites;
}

std::vector<std::wstring> storedNames() {
    std::vector<std::wstring> names;
    for (const favourites::Favourite& favourite : favourites::load()) {
        names.push_back(favourite.text);
    }
    return names;
}

using Names = std::vector<std::wstring>;

class StoredFavourites : public testing::Test {
 protected:
    void SetUp() override {
        ASSERT_TRUE(m_registry.redirected());
        ASSERT_EQ(favourites::store(named({L"One", L"Two", L"Three"})), ERROR_SUCCESS);
    }
    support::RegistryRoom m_registry;
};

}  // namespace

TEST(Name, IsKeptWithoutBlanksAroundAndInOneLine) {
    EXPECT_EQ(cleanName(L"  Meeting room "), L"Meeting room");
    EXPECT_EQ(cleanName(L"\ta\r\nb\x7F"), L"a  b");
    EXPECT_EQ(cleanName(L" \t\xA0"), L"");
    EXPECT_EQ(cleanName(L""), L"");
    EXPECT_EQ(cleanName(std::wstring(L"a\0b", 3)), L"a b");
}

TEST(Name, Verdicts) {
    const Favourites favourites = named({L"Desk", L"Größe"});
    EXPECT_EQ(judgeName(L"Home", favourites, setup::kNewFavourite), NameVerdict::Good);
    EXPECT_EQ(judgeName(L"", favourites, setup::kNewFavourite), NameVerdict::Empty);
    EXPECT_EQ(judgeName(L"desk", favourites, setup::kNewFavourite), NameVerdict::Taken);
    EXPECT_EQ(judgeName(L"GRÖßE", favourites, setup::kNewFavourite), NameVerdict::Taken);
    EXPECT_EQ(judgeName(std::wstring(favourites::kMostTextChars, L'x'), favourites, setup::kNewFavourite),
              NameVerdict::Good);
    EXPECT_EQ(judgeName(std::wstring(favourites::kMostTextChars + 1, L'x'), favourites, setup::kNewFavourite),
              NameVerdict::TooLong);
}

TEST(Name, ItsOwnInAnotherCaseIsNotTaken) {
    const Favourites favourites = named({L"Desk", L"Home"});
    EXPECT_EQ(judgeName(L"DESK", favourites, 0), NameVerdict::Good);
    EXPECT_EQ(judgeName(L"DESK", favourites, 1), NameVerdict::Taken);
}

TEST(Name, ProposalIsTheFirstFreeNumber) {
    EXPECT_EQ(setup::proposeName(L"Favorite", {}), L"Favorite 1");
    EXPECT_EQ(setup::proposeName(L"Favorite", named({L"favorite 1", L"Favorite 3", L"Favorite 2"})), L"Favorite 4");
}

TEST_F(StoredFavourites, AreAddedAtTheEnd) {
    EXPECT_EQ(setup::addFavourite(named({L"Four"}).front()), ERROR_SUCCESS);
    EXPECT_EQ(storedNames(), (Names{L"One", L"Two", L"Three", L"Four"}));
}

TEST_F(StoredFavourites, FullListTakesNoMore) {
    ASSERT_EQ(favourites::store(Favourites(favourites::kMost, named({L"x"}).front())), ERROR_SUCCESS);
    EXPECT_EQ(setup::addFavourite(named({L"y"}).front()), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(storedNames().back(), L"x");
}

TEST_F(StoredFavourites, RenamingKeepsEverythingElse) {
    EXPECT_EQ(setup::renameFavourite(1, L"Two", L"New"), ERROR_SUCCESS);
    EXPECT_EQ(storedNames(), (Names{L"One", L"New", L"Three"}));
    const favourites::Favourite renamed = favourites::load()[1];
    EXPECT_EQ(renamed.mode, FENWYN_MODE_CLONE);
    ASSERT_EQ(renamed.displays.size(), 1U);
    EXPECT_STREQ(renamed.displays[0].szConnector, L"LCD");
}

TEST_F(StoredFavourites, DeletingTakesOneAway) {
    EXPECT_EQ(setup::deleteFavourite(0, L"One"), ERROR_SUCCESS);
    EXPECT_EQ(storedNames(), (Names{L"Two", L"Three"}));
}

TEST_F(StoredFavourites, TheLastOneLeavesAnEmptyList) {
    for (const wchar_t* name : {L"One", L"Two", L"Three"}) {
        EXPECT_EQ(setup::deleteFavourite(0, name), ERROR_SUCCESS);
    }
    EXPECT_TRUE(storedNames().empty());
    EXPECT_TRUE(favourites::exist()) << "nobody may take that for a user who has never kept one";
}

TEST_F(StoredFavourites, ChangedMeanwhileNothingIsDone) {
    EXPECT_EQ(setup::renameFavourite(0, L"Two", L"New"), ERROR_NOT_FOUND);
    EXPECT_EQ(setup::renameFavourite(3, L"", L"New"), ERROR_NOT_FOUND);
    EXPECT_EQ(setup::deleteFavourite(1, L"One"), ERROR_NOT_FOUND);
    EXPECT_EQ(setup::deleteFavourite(static_cast<std::size_t>(-1), L"One"), ERROR_NOT_FOUND);
    EXPECT_EQ(storedNames(), (Names{L"One", L"Two", L"Three"}));
}

TEST_F(StoredFavourites, RefusedWritesAreReported) {
    m_registry.refuseWrites();
    EXPECT_NE(setup::addFavourite(named({L"Four"}).front()), ERROR_SUCCESS);
}
