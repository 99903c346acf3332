#pragma once

// Numbers of the functions' captions in the string tables. Plain numbers only, because the resource compiler reads this
// file too.

#define IDS_CAPTION_MUTE 701
#define IDS_CAPTION_LOCK 702
#define IDS_CAPTION_POWER_PLAN 703
#define IDS_CAPTION_SLEEP 704
#define IDS_CAPTION_HIBERNATE 705
#define IDS_CAPTION_OUTPUT 706
#define IDS_CAPTION_OUTPUT_2 707
#define IDS_CAPTION_BRIGHTNESS 708
#define IDS_CAPTION_WIRELESS 709
#define IDS_CAPTION_TOUCHPAD 710
#define IDS_CAPTION_CURSOR_OVERLAY 711
#define IDS_CAPTION_NUM_OVERLAY 712
#define IDS_CAPTION_ZOOM 713
#define IDS_CAPTION_KBB 714
#define IDS_CAPTION_ODD 715
