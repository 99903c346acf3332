// What the user is told and asked, in real message boxes.
#include "Surroundings.h"

#include <gtest/gtest.h>

#include "SetupIds.h"
#include "Texts.h"
#include "support/SeenMessageBox.h"

TEST(SetupSurroundings, TellWithAWarningSign) {
    const setup::Surroundings surroundings = setup::realSurroundings();
    const support::SeenMessageBox box =
        support::answerMessageBox([&surroundings] { surroundings.tell(nullptr, L"Something"); }, IDOK);
    EXPECT_EQ(box.title, setup::text(IDS_PROGRAM));
    EXPECT_EQ(box.text, L"Something");
    EXPECT_EQ(box.icon, ::LoadIconW(nullptr, IDI_WARNING));
}

TEST(SetupSurroundings, AskWithNoAsTheSafeAnswer) {
    const setup::Surroundings surroundings = setup::realSurroundings();
    for (const int answer : {IDYES, IDNO}) {
        bool bYes = answer != IDYES;
        const support::SeenMessageBox box =
            support::answerMessageBox([&] { bYes = surroundings.ask(nullptr, L"Really?"); }, answer);
        EXPECT_EQ(box.text, L"Really?");
        EXPECT_EQ(box.icon, ::LoadIconW(nullptr, IDI_QUESTION));
        EXPECT_EQ(box.focusedButton, IDNO);
        EXPECT_EQ(bYes, answer == IDYES);
    }
}
