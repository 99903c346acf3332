#pragma once

// Numbers of the dialog templates and their controls. Plain numbers only, because the resource compiler reads this file
// too.

#define IDD_CARD_STRIP 102  // the strip of cards; names its own window class
#define IDD_LARGE_CARD 130
#define IDD_CIRCLE_ITEM 131
#define IDD_SLIDER_ITEM 132
#define IDD_ERROR_ITEM 133
#define IDD_ITEM_DESC 134  // caption box under a round item
#define IDD_HOVER_STRIP 583
#define IDD_OUTPUT_PREVIEW 584

// Slider item: the second trackbar belongs to the template but is never used.
#define IDC_SLIDER 1000
#define IDC_SLIDER_UNUSED 1001
