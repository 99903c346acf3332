// A picture for people, which tools/looks --languages makes in every language: a strip of cards, and each card enlarged
// with all its texts.
#include <cstdlib>

#include "common/UiLanguage.h"
#include "companions/captions/CaptionIds.h"
#include "companions/include/FenwynRegistry.h"
#include "looks/LooksFixture.h"

namespace looks {
namespace {

struct Card {
    UINT captionId;
    const wchar_t* function;
    DWORD info;
};
constexpr Card kCards[] = {{IDS_CAPTION_MUTE, L"Mute", 3},
                           {IDS_CAPTION_LOCK, L"Lock", 3},
                           {IDS_CAPTION_POWER_PLAN, L"PowerPlan", 0xF},
                           {IDS_CAPTION_SLEEP, L"Sleep", 3},
                           {IDS_CAPTION_HIBERNATE, L"Hibernate", 3},
                           {IDS_CAPTION_OUTPUT_2, L"Output_2", 0},
                           {IDS_CAPTION_BRIGHTNESS, L"Brightness", 10},
                           {IDS_CAPTION_WIRELESS, L"Wireless", 0x5009},
                           {IDS_CAPTION_TOUCHPAD, L"Touchpad", 3},
                           {IDS_CAPTION_CURSOR_OVERLAY, L"CursorOverlay", 3},
                           {IDS_CAPTION_NUM_OVERLAY, L"NumericOverlay", 3},
                           {IDS_CAPTION_ZOOM, L"Zoom", 7},
                           {IDS_CAPTION_KBB, L"KBB", 7},
                           {IDS_CAPTION_ODD, L"ODD", 0x1F},
                           {IDS_CAPTION_OUTPUT, L"Output", 0xF}};

class LanguageSheet : public LooksTest {
 protected:
    static std::wstring captionOf(const Card& card) {
        return common::textNear(nullptr, card.captionId, common::wantedLanguage());
    }
    // On one strip, those that the plug-in of the tests offers with a number.
    void showAll(double ratio) {
        std::vector<std::wstring> captions;
        std::vector<Offer> offers;
        for (const Card& card : kCards) {
            captions.push_back(captionOf(card));
        }
        for (std::size_t i = 0; i < captions.size(); ++i) {
            if (kCards[i].info != 0) {
                offers.push_back({kCards[i].function, captions[i].c_str(), kCards[i].info});
            }
        }
        showStrip(ratio, false, offers);
    }
};

TEST_F(LanguageSheet, OfEveryCard) {
    const char* const language = std::getenv("FENWYN_LANGUAGE");
    if (!Sheet::wanted() || language == nullptr) {
        return;
    }
    constexpr int kCardsInRow = 4;
    const std::string name(language);
    support::RegistryRoom::setText(HKEY_CURRENT_USER, FENWYN_REG_PRODUCT, FENWYN_VALUE_LANGUAGE,
                                   std::wstring(name.begin(), name.end()));
    m_room.config().bAlwaysShowItemsCaption = 1;
    Sheet sheet;
    for (const double ratio : {0.8, 1.0}) {
        showAll(ratio);
        sheet.add(shot(Backdrop::Photo));
        sheet.newRow();
    }
    int index = 0;
    for (const Card& card : kCards) {
        if (card.info != 0) {
            const std::wstring caption = captionOf(card);
            openCard(1.0, false, {card.function, caption.c_str(), card.info});
            sheet.add(shot(Backdrop::Photo));
            if (++index % kCardsInRow == 0) {
                sheet.newRow();
            }
        }
    }
    openDisplays(1.0, false, false, 1);
    sheet.add(shot(Backdrop::Photo));
    openNotice(1.0, false);
    sheet.add(shot(Backdrop::Photo));
    EXPECT_TRUE(sheet.write("language-" + name));
}

}  // namespace
}  // namespace looks
