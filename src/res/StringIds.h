#pragma once

// Numbers of the user-interface texts: one name per text, shared by the sources and the string tables of every language
// (strings/). Plain numbers only, because the resource compiler reads this file too.

// Faults of plug-ins; %1 is the function's name, %2 the file of its plug-in.
#define IDS_FAULT_HANGS 190
#define IDS_FAULT_RESTARTED 191
#define IDS_FAULT_SET_ASIDE 192

// Shared by every function that may have no choices.
#define IDS_CANCEL 200
// What assistive programs say of cards and items: what one can do with them.
#define IDS_PRESS 201

// Mute. Item 0 is the muted state, item 1 the audible one; each text serves as item and as status.
#define IDS_MUTE_DESC 211
#define IDS_MUTE_ON 212
#define IDS_MUTE_OFF 213

// Lock, sleep, hibernate.
#define IDS_LOCK_DESC 221
#define IDS_LOCK_ITEM 222
#define IDS_SLEEP_DESC 241
#define IDS_SLEEP_ITEM 242
#define IDS_HIBERNATE_DESC 251
#define IDS_HIBERNATE_ITEM 252

// Power plan; the plans' names come from the plug-in.
#define IDS_POWER_PLAN_DESC 231

// Display output, both functions share the description; 302 to 308 name the display modes of the favourites.
#define IDS_OUTPUT_DESC 301
#define IDS_OUTPUT_MODE_INTERNAL 302
#define IDS_OUTPUT_MODE_EXTERNAL 303
#define IDS_OUTPUT_MODE_CLONE 304
#define IDS_OUTPUT_MODE_EXTEND 305
#define IDS_OUTPUT_MODE_SEVERAL 306
#define IDS_OUTPUT_MODE_CONFIG 307
#define IDS_OUTPUT_MODE_SAVE 308

// Older display output: bit k of the first mask is base + k. In an extended pair the first display is the primary one.
#define IDS_OUTPUT_FIRST_BASE 310
#define IDS_OUTPUT_LCD 310
#define IDS_OUTPUT_CRT 311
#define IDS_OUTPUT_DVI 312
#define IDS_OUTPUT_HDMI 313
#define IDS_OUTPUT_DP 314
#define IDS_OUTPUT_TV 315
#define IDS_OUTPUT_LCD_CRT_CLONE 316
#define IDS_OUTPUT_LCD_DVI_CLONE 317
#define IDS_OUTPUT_LCD_HDMI_CLONE 318
#define IDS_OUTPUT_LCD_DP_CLONE 319
#define IDS_OUTPUT_LCD_TV_CLONE 320
#define IDS_OUTPUT_LCD_CRT_EXTEND 321
#define IDS_OUTPUT_LCD_DVI_EXTEND 322
#define IDS_OUTPUT_LCD_HDMI_EXTEND 323
#define IDS_OUTPUT_LCD_DP_EXTEND 324
#define IDS_OUTPUT_LCD_TV_EXTEND 325
#define IDS_OUTPUT_CRT_DVI_CLONE 326
#define IDS_OUTPUT_CRT_HDMI_CLONE 327
#define IDS_OUTPUT_DVI_HDMI_CLONE 328

// Bit k of the second mask is base + k; its highest bit has its own text, the last one here.
#define IDS_OUTPUT_SECOND_BASE 350
#define IDS_OUTPUT_CRT_LCD_EXTEND 350
#define IDS_OUTPUT_DVI_LCD_EXTEND 351
#define IDS_OUTPUT_HDMI_LCD_EXTEND 352
#define IDS_OUTPUT_DP_LCD_EXTEND 353
#define IDS_OUTPUT_TV_LCD_EXTEND 354
#define IDS_OUTPUT_CRT_DP_CLONE 355
#define IDS_OUTPUT_DVI_DP_CLONE 356
#define IDS_OUTPUT_HDMI_DP_CLONE 357
#define IDS_OUTPUT_CRT_TV_CLONE 358
#define IDS_OUTPUT_CRT_DVI_EXTEND 359
#define IDS_OUTPUT_CRT_HDMI_EXTEND 360
#define IDS_OUTPUT_DVI_HDMI_EXTEND 361
#define IDS_OUTPUT_CRT_DP_EXTEND 362
#define IDS_OUTPUT_DVI_DP_EXTEND 363
#define IDS_OUTPUT_HDMI_DP_EXTEND 364
#define IDS_OUTPUT_CRT_TV_EXTEND 365
#define IDS_OUTPUT_DVI_CRT_EXTEND 366
#define IDS_OUTPUT_HDMI_CRT_EXTEND 367
#define IDS_OUTPUT_HDMI_DVI_EXTEND 368
#define IDS_OUTPUT_DP_CRT_EXTEND 369
#define IDS_OUTPUT_DP_DVI_EXTEND 370
#define IDS_OUTPUT_DP_HDMI_EXTEND 371
#define IDS_OUTPUT_TV_CRT_EXTEND 372
#define IDS_OUTPUT_ALL_CLONE 373
#define IDS_OUTPUT_ALL_EXTEND 374
#define IDS_OUTPUT_AUTOMATIC 375
#define IDS_OUTPUT_SWAP 376

// Brightness; the level's number follows the label.
#define IDS_BRIGHTNESS_DESC 501
#define IDS_BRIGHTNESS_LEVEL 502

// Wireless. Items that switch one device are composed: on + arrow + off, or off + arrow + on.
#define IDS_WIRELESS_DESC 511
#define IDS_WIRELESS_ON 512
#define IDS_WIRELESS_OFF 513
#define IDS_WIRELESS_NO_DEVICE 514
#define IDS_WIRELESS_ARROW 515
#define IDS_WIRELESS_ALL_ON 516
#define IDS_WIRELESS_ALL_OFF 517

// Touchpad: on and off are statuses, turn on and turn off the items.
#define IDS_TOUCHPAD_DESC 521
#define IDS_TOUCHPAD_ON 522
#define IDS_TOUCHPAD_OFF 523
#define IDS_TOUCHPAD_TURN_ON 524
#define IDS_TOUCHPAD_TURN_OFF 525

// Cursor and numeric overlay share statuses and items.
#define IDS_CURSOR_OVERLAY_DESC 531
#define IDS_OVERLAY_ON 532
#define IDS_OVERLAY_OFF 533
#define IDS_OVERLAY_TURN_ON 534
#define IDS_OVERLAY_TURN_OFF 535
#define IDS_NUM_OVERLAY_DESC 541

// Optical drive.
#define IDS_ODD_DESC 551
#define IDS_ODD_EJECT 552
#define IDS_ODD_QUIET 553
#define IDS_ODD_ON 554
#define IDS_ODD_OFF 555

// Keyboard backlight; the timed status is the timer text, a line break, a number and the unit.
#define IDS_KBB_DESC 561
#define IDS_KBB_ON 562
#define IDS_KBB_OFF 563
#define IDS_KBB_TIMER 564
#define IDS_KBB_SECONDS 565

// Zoom.
#define IDS_ZOOM_DESC 571
#define IDS_ZOOM_NORMAL 572
#define IDS_ZOOM_LARGER 573
#define IDS_ZOOM_LARGEST 574
