#include "captions/Captions.h"

#include "CaptionIds.h"
#include "common/UiLanguage.h"

namespace captions {

namespace {

struct Row {
    std::wstring_view function;
    UINT id;
};
constexpr Row kRows[] = {
    {L"Mute", IDS_CAPTION_MUTE},
    {L"Lock", IDS_CAPTION_LOCK},
    {L"PowerPlan", IDS_CAPTION_POWER_PLAN},
    {L"Sleep", IDS_CAPTION_SLEEP},
    {L"Hibernate", IDS_CAPTION_HIBERNATE},
    {L"Output", IDS_CAPTION_OUTPUT},
    {L"Output_2", IDS_CAPTION_OUTPUT_2},
    {L"Brightness", IDS_CAPTION_BRIGHTNESS},
    {L"Wireless", IDS_CAPTION_WIRELESS},
    {L"Touchpad", IDS_CAPTION_TOUCHPAD},
    {L"CursorOverlay", IDS_CAPTION_CURSOR_OVERLAY},
    {L"NumericOverlay", IDS_CAPTION_NUM_OVERLAY},
    {L"Zoom", IDS_CAPTION_ZOOM},
    {L"KBB", IDS_CAPTION_KBB},
    {L"ODD", IDS_CAPTION_ODD},
};

}  // namespace

std::vector<LANGID> languages() {
    return common::languagesOfText(nullptr, kRows[0].id);
}

std::wstring captionOf(std::wstring_view function, LANGID language) {
    for (const Row& row : kRows) {
        if (row.function == function) {
            return common::textNear(nullptr, row.id, language);
        }
    }
    return {};
}

}  // namespace captions
