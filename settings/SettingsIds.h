#pragma once

// Numbers of the dialog templates, their controls and the texts. Plain numbers only, because the resource compiler
// reads this file too. A control whose text never changes has the number of its text.

// The window class, by which a second start finds the window.
#define SETTINGS_WINDOW_CLASS L"KESTOVA_Fenwyn_Settings"

// ---- The window
#define IDD_SETTINGS 100
#define IDD_PAGE_CARDS 101
#define IDD_PAGE_KEYS 102
#define IDD_PAGE_BEHAVIOUR 103
#define IDD_PAGE_BUTTONS 104
#define IDD_PAGE_LOG 105

#define IDC_TABS 1000

#define IDS_OK 1      // IDOK
#define IDS_CANCEL 2  // IDCANCEL
#define IDS_APPLY 3
#define IDS_APPLY_FOR_ALL 4
#define IDS_EXPORT 5
#define IDS_IMPORT 6
#define IDS_PROGRAM 7
#define IDS_TAB_CARDS 8
#define IDS_TAB_KEYS 9
#define IDS_TAB_BEHAVIOUR 10
#define IDS_TAB_BUTTONS 11
#define IDS_TAB_LOG 12
#define IDS_ERROR_WINDOW 13  // one argument: the system's error
#define IDS_ERROR_REFUSED 14
#define IDS_ERROR_WRITE 15  // one argument: the system's error
#define IDS_ERROR_RESTART 16
#define IDS_FILE_KIND 17
#define IDS_EXPORT_TITLE 18
#define IDS_IMPORT_TITLE 19
#define IDS_IMPORTED 20       // one argument: how many
#define IDS_ERROR_FILE 21     // one argument: the system's error
#define IDS_ERROR_LINE 22     // one argument: the number of the line
#define IDS_ERROR_ALLOWED 23  // one argument: what is not allowed

// ---- Cards: controls from 1100, texts from 100
#define IDC_CARDS 1100
#define IDC_CARD_CAPTION 1101
#define IDC_CARD_PLUGIN 1102
#define IDC_CARD_WHY 1103
#define IDC_CARD_REMEDY 1104
#define IDS_CARD_UP 100
#define IDS_CARD_DOWN 101
#define IDS_CARD_CHECK 102
#define IDS_CARD_CAPTION 103
#define IDS_CARD_PLUGIN 104
#define IDS_CARD_CHOOSE 105
#define IDS_COLUMN_CARD 106
#define IDS_COLUMN_KEY 107
#define IDS_COLUMN_STATE 108
#define IDS_PLUGIN_TITLE 109  // one argument: the caption
#define IDS_PLUGIN_FILES 110
#define IDS_ERROR_PLUGIN 111
#define IDS_CARD_FORGIVEN 112
#define IDS_CARD_STATE 120   // + CardState
#define IDS_CARD_WHY 140     // + CardState; arguments: why, and when
#define IDS_CARD_REMEDY 160  // + CardState
// ---- Behaviour: controls from 1200, texts from 200. Of a setting its name, and then what it does.
#define IDC_FIRST_ROW 1200  // of a row for each setting
#define IDS_GROUP_PLACE 260
#define IDS_GROUP_SHOWING 261
#define IDS_GROUP_CAPTIONS 262
#define IDS_GROUP_PLUGINS 263
#define IDS_GROUP_LANGUAGE 264
#define IDS_DEFAULT 265  // one argument: the default
#define IDS_FOR_ALL 266
#define IDS_ON 267
#define IDS_OFF 268
#define IDS_TOP 269
#define IDS_BOTTOM 270
#define IDS_EMPTY 271
#define IDS_LANGUAGE_OF_WINDOWS 272
#define IDS_MILLISECONDS 273
#define IDS_PIXELS 274
#define IDS_REPAIR 275
#define IDS_BAD_TEXT 276     // one argument: what is stored
#define IDS_BAD_RANGE 277    // the number, the lowest and the highest one
#define IDS_BAD_WORD 278     // what is stored, and the number that it counts as
#define IDS_BAD_TYPE 279     // the number that it counts as
#define IDS_ERROR_RANGE 280  // the lowest and the highest number
#define IDS_ERROR_PATH 281
#define IDS_POSITION 200
#define IDS_POSITION_MORE 201
#define IDS_MONITOR 202
#define IDS_MONITOR_MORE 203
#define IDS_DISABLE 204
#define IDS_DISABLE_MORE 205
#define IDS_HOVER 206
#define IDS_HOVER_MORE 207
#define IDS_HOVER_DELAY 208
#define IDS_HOVER_DELAY_MORE 209
#define IDS_TOPMOST 210
#define IDS_TOPMOST_MORE 211
#define IDS_FULL_SCREEN 212
#define IDS_FULL_SCREEN_MORE 213
#define IDS_HIDE_STRIP 214
#define IDS_HIDE_STRIP_MORE 215
#define IDS_IGNORE_FN 216
#define IDS_IGNORE_FN_MORE 217
#define IDS_AUTO_HIDE 218
#define IDS_AUTO_HIDE_MORE 219
#define IDS_AUTO_HIDE_DELAY 220
#define IDS_AUTO_HIDE_DELAY_MORE 221
#define IDS_AT_LAUNCH 222
#define IDS_AT_LAUNCH_MORE 223
#define IDS_LOST_FOCUS 224
#define IDS_LOST_FOCUS_MORE 225
#define IDS_HIDE_CAPTION 226
#define IDS_HIDE_CAPTION_MORE 227
#define IDS_ALL_CAPTIONS 228
#define IDS_ALL_CAPTIONS_MORE 229
#define IDS_ITEM_WIDTH 230
#define IDS_ITEM_WIDTH_MORE 231
#define IDS_THUMB_SIZE 232
#define IDS_THUMB_SIZE_MORE 233
#define IDS_PROGRAMMABLE 234
#define IDS_PROGRAMMABLE_MORE 235
#define IDS_PATIENCE 236
#define IDS_PATIENCE_MORE 237
#define IDS_END_TIME 238
#define IDS_END_TIME_MORE 239
#define IDS_LANGUAGE 240
#define IDS_LANGUAGE_MORE 241
#define IDS_INSTALL_PATH 242
#define IDS_INSTALL_PATH_MORE 243
#define IDS_DISPLAY_SOURCE 244
#define IDS_DISPLAY_SOURCE_MORE 245
#define IDS_MODIFIER 246
#define IDS_MODIFIER_MORE 247
#define IDS_STICKY 248
#define IDS_STICKY_MORE 249
#define IDS_RELEASE_DELAY 250
#define IDS_RELEASE_DELAY_MORE 251
#define IDS_ICON 252
#define IDS_ICON_MORE 253
#define IDS_START 254
#define IDS_START_MORE 255
// ---- Keys: controls from 1450, texts from 400
#define IDS_KEY_NUMBER 400
#define IDS_KEY_WITH_FN 401
#define IDS_KEYS_CHOOSE_FN 402
#define IDS_KEYS_LIST 403
#define IDS_KEYS_COLUMN_CARD 404
#define IDS_KEYS_COLUMN_KEY 405
#define IDS_KEYS_ADD 406
#define IDS_KEYS_REMOVE 407
#define IDS_KEYS_USE_FN 408
#define IDS_KEYS_USE_ALONE 409
#define IDS_KEYS_NONE 410
#define IDS_KEYS_PRESS 411
#define IDS_KEYS_PRESS_FN 412
#define IDS_KEYS_NOTHING 413
#define IDS_KEYS_OTHER_INPUT 414
#define IDS_KEYS_HEARD 415
#define IDS_KEYS_NO_SCAN_CODE 416
#define IDS_KEYS_FROM 417
#define IDS_KEYS_TAKEN_FN 418
#define IDS_KEYS_TAKEN_ALONE 419
#define IDS_KEYS_STARTS 420
#define IDS_KEYS_TYPING 421
#define IDS_KEYS_IS_FN 422
#define IDS_KEYS_NO_HOOK 423
#define IDS_KEYS_USED 424
#define IDS_KEYS_DELAY_RANGE 425
#define IDS_KEYS_TRY 427
#define IDS_KEYS_TRY_IDLE 428
#define IDS_KEYS_TRY_ON 429
#define IDS_KEYS_TRY_SHOWN 430
#define IDS_KEYS_TRY_OPENS 431
#define IDS_KEYS_TRY_STARTS 432
#define IDS_KEYS_TRY_NOTHING 433
#define IDS_KEYS_TRY_APPLIED 434
#define IDS_KEYS_TRY_LATCHED 435
#define IDS_KEY_RIGHT_CTRL 436
#define IDS_KEY_RIGHT_ALT 437
#define IDS_KEY_RIGHT_WINDOWS 438
#define IDS_KEY_CAPS_LOCK 439
#define IDS_KEY_MENU 440
#define IDC_KEYS_MODIFIER 1450
#define IDC_KEYS_DELAY 1451
#define IDC_KEYS_LIST 1452
#define IDC_KEYS_HEARD 1453
#define IDC_KEYS_FIELD 1454
#define IDC_KEYS_TRIED 1455
// ---- Buttons: controls from 1500, texts from 500
#define IDS_BUTTONS_LIST 500
#define IDS_BUTTONS_COLUMN_PROGRAM 501
#define IDS_BUTTONS_COLUMN_PARAMETERS 502
#define IDS_BUTTONS_KEY 503
#define IDS_BUTTONS_PRESS 504
#define IDS_BUTTONS_PROGRAM 505
#define IDS_BUTTONS_BROWSE 506
#define IDS_BUTTONS_PARAMETERS 507
#define IDS_BUTTONS_TRY 508
#define IDS_BUTTONS_SET 509
#define IDS_BUTTONS_REMOVE 510
#define IDS_BUTTONS_ASK_KEY 511
#define IDS_BUTTONS_WRONG_KEY 512
#define IDS_BUTTONS_CHANGES 513
#define IDS_BUTTONS_INSTEAD 514
#define IDS_BUTTONS_SWITCHED_OFF 515
#define IDS_BUTTONS_PROGRAMS 516
#define IDS_BUTTONS_FILES 517
#define IDS_BUTTONS_NOT_STARTED 518
#define IDC_BUTTONS_LIST 1500
#define IDC_BUTTONS_KEY 1501
#define IDC_BUTTONS_PROGRAM 1502
#define IDC_BUTTONS_PARAMETERS 1503
#define IDC_BUTTONS_SAID 1504
// ---- Log and help: controls from 1600, texts from 600
#define IDS_LOG_LEVEL 600
#define IDS_LOG_LEVEL_0 601
#define IDS_LOG_LEVEL_1 602
#define IDS_LOG_LEVEL_2 603
#define IDS_LOG_LEVEL_3 604
#define IDS_LOG_DESTINATION 605
#define IDS_LOG_DESTINATION_0 606
#define IDS_LOG_DESTINATION_1 607
#define IDS_LOG_DESTINATION_2 608
#define IDS_LOG_DESTINATION_3 609
#define IDS_LOG_DESTINATION_4 610
#define IDS_LOG_OPEN 611
#define IDS_LOG_WHERE 612
#define IDS_LOG_FAULTS 613
#define IDS_LOG_COLUMN_PLUGIN 614
#define IDS_LOG_COLUMN_WHEN 615
#define IDS_LOG_COLUMN_REASON 616
#define IDS_LOG_FORGIVE 617
#define IDS_LOG_FORGIVEN 618
#define IDS_LOG_MACHINE 619
#define IDS_LOG_SHOW_REPORT 620
#define IDS_LOG_SAVE_REPORT 621
#define IDS_LOG_ASKING 622
#define IDS_LOG_REPORT_THERE 623
#define IDS_LOG_REPORT_MISSING 624
#define IDS_LOG_NO_REPORT 625
#define IDS_LOG_TEXT_FILES 626
#define IDS_LOG_REPORT_TITLE 627
#define IDS_LOG_VERSION 628
#define IDS_LOG_LICENCES 629
#define IDS_LOG_NOT_OPENED 630
#define IDS_LOG_NO_FILE 631
#define IDC_LOG_LEVEL 1600
#define IDC_LOG_DESTINATION 1601
#define IDC_LOG_WHERE 1602
#define IDC_LOG_FAULTS 1603
#define IDC_LOG_SAID 1604
#define IDC_LOG_VERSION 1605
#define IDR_LICENSE 1650
#define IDR_NOTICE 1651
// ---- The icon in the notification area: texts from 800, which are its commands too
#define IDS_TRAY_TIP 800
#define IDS_TRAY_SETTINGS 801
#define IDS_TRAY_CARDS 802
#define IDS_TRAY_START 803
#define IDS_TRAY_END 804
