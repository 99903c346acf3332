// Pictures for people, which tools/looks compares with those in docs: every state at five ratios.
#include <string>

#include "Messages.h"
#include "looks/LooksFixture.h"

namespace looks {
namespace {

class Sheets : public LooksTest {
 protected:
    // What is on the screen now, over each backdrop, as a row of the sheet.
    static void addRow(Sheet& sheet, int times = 1) {
        for (const Backdrop backdrop : kBackdrops) {
            sheet.add(enlarged(shot(backdrop), times));
        }
        sheet.newRow();
    }
};

TEST_F(Sheets, Strip) {
    if (!Sheet::wanted()) {
        return;
    }
    Sheet sheet;
    for (const double ratio : kRatios) {
        showStrip(ratio, false, {kMute, kPlans, kBrightness});
        ::SendMessageW(m_room.stripWindow(), kMsgLatch, 1, 0);
        paintAll();
        addRow(sheet);
        ::SendMessageW(m_room.stripWindow(), kMsgLatch, 0, 0);
    }
    EXPECT_TRUE(sheet.write("strip"));
}

TEST_F(Sheets, Cards) {
    if (!Sheet::wanted()) {
        return;
    }
    for (const Offer& offer : {kMute, kBrightness, kRadios}) {
        m_plugin->currentItem = offer.info == kBrightness.info ? 7 : 0;
        Sheet sheet;
        for (const double ratio : kRatios) {
            openCard(ratio, false, offer);
            addRow(sheet);
        }
        EXPECT_TRUE(sheet.write("card-" + lowerName(offer)));
    }
}

TEST_F(Sheets, Notice) {
    if (!Sheet::wanted()) {
        return;
    }
    Sheet sheet;
    for (const double ratio : kRatios) {
        openNotice(ratio, false);
        addRow(sheet);
    }
    EXPECT_TRUE(sheet.write("notice"));
}

// The choices of the displays, without resolutions and with them, and with the captions of all.
TEST_F(Sheets, Displays) {
    if (!Sheet::wanted()) {
        return;
    }
    Sheet sheet;
    for (const double ratio : kRatios) {
        sheet.newRow();
        for (const LONG chosen : {1L, 2L}) {
            m_room.config().bAlwaysShowItemsCaption = chosen == 2 ? 1 : 0;
            openDisplays(ratio, false, chosen == 2, chosen);
            sheet.add(shot(chosen == 2 ? Backdrop::Photo : Backdrop::White));
        }
    }
    EXPECT_TRUE(sheet.write("card-displays"));
}

// Its left end up to the second joint between two cards' lines. Enlarged four times: it is four pixels high.
TEST_F(Sheets, HoverStrip) {
    if (!Sheet::wanted()) {
        return;
    }
    constexpr int kTimes = 4;
    constexpr int kEnd = 24;    // pixels of a line beside a joint
    constexpr int kAround = 4;  // pixels of the backdrop
    Sheet sheet;
    for (const double ratio : kRatios) {
        const Layer strip = showHoverStrip(ratio, false);
        const int card = geometry::cardWidth(ratio);
        for (const Backdrop backdrop : kBackdrops) {
            for (const int joint : {0, card}) {
                const LONG left = strip.place.x + joint - (joint == 0 ? kAround : kEnd);
                const RECT area{left, strip.place.y - kAround, strip.place.x + joint + kEnd,
                                strip.place.y + strip.picture.height + kAround};
                sheet.add(enlarged(onBackdrop(onScreen({strip}, area), backdrop), kTimes));
            }
        }
        sheet.newRow();
    }
    EXPECT_TRUE(sheet.write("hover-strip"));
}

// No shipped description has three lines, but one of another language may.
TEST_F(Sheets, DescriptionOfThreeLines) {
    if (!Sheet::wanted()) {
        return;
    }
    constexpr UINT kPictures[] = {kVolumeLargeCard, kKeyboardLightLargeCard};
    Sheet sheet;
    for (const double ratio : kRatios) {
        m_room.setRatio(ratio);
        for (const UINT picture : kPictures) {
            for (const Backdrop backdrop : {Backdrop::White, Backdrop::Photo}) {
                sheet.add(onBackdrop(describedCard(picture, kThreeLines, L"Light on"), backdrop));
            }
        }
        sheet.newRow();
    }
    EXPECT_TRUE(sheet.write("three-lines"));
}

}  // namespace
}  // namespace looks
