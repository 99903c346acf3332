/* The display-configuration program OutputSetup.exe, for C (C11) and C++: how it is started, how its windows are found
 * and closed, and where favourites are stored. A maker's own program of the same name can replace it. The numbers of
 * arrangements, FENWYN_MODE_..., are those of FenwynPlugin.h. The resource compiler reads this file too. */
#ifndef OUTPUT_SETUP_H
#define OUTPUT_SETUP_H

#ifndef RC_INVOKED
#include "FenwynPlugin.h"
#endif
#include "FenwynRegistry.h"

/* In the folder that FENWYN_VALUE_INSTALL_PATH names. */
#define OUTPUT_SETUP_PROGRAM L"OutputSetup.exe"

/* Its command line is one of these verbs; case does not matter.
 *
 * OUTPUT: set up the displays in one of several arrangements. The verb is followed by a blank and a decimal number: in
 *         its low OUTPUT_SETUP_MASK_BITS bits the arrangements to offer (bit m = mode m), above them the mode to begin
 *         with, which is one of them.
 * CONFIG: manage the displays and the favourites.
 * SAVE:   name and store the current arrangement. */
#define OUTPUT_SETUP_VERB_OUTPUT L"\\OutputConf"
#define OUTPUT_SETUP_VERB_CONFIG L"\\Config"
#define OUTPUT_SETUP_VERB_SAVE L"\\Save"
#define OUTPUT_SETUP_MASK_BITS 16

/* Each verb has its own window class, with at most one window. */
#define OUTPUT_SETUP_CLASS_OUTPUT L"_DCWNDCLS_OUTPUT_"
#define OUTPUT_SETUP_CLASS_CONFIG L"_DCWNDCLS_CONFIG_"
#define OUTPUT_SETUP_CLASS_SAVE L"_DCWNDCLS_SAVE_"

/* Posted to any of these windows, both parameters 0: close. WM_USER + 101. */
#define OUTPUT_SETUP_MESSAGE_CLOSE 0x0465u

/* Favourites, in HKEY_CURRENT_USER: one subkey each, named 0, 1, 2 ... in the order in which they are offered.
 *
 *   Text      REG_SZ      its name, at most OUTPUT_SETUP_FAVOURITE_TEXT_CHARS characters
 *   Mode      REG_DWORD   its arrangement, FENWYN_MODE_INTERNAL .. FENWYN_MODE_SEVERAL
 *   Displays  REG_BINARY  its FenwynDisplayRecords, one after the other
 *   Monitors  REG_MULTI_SZ  the device path of each record's monitor, in their order: paths stay the same when the
 *                         system starts anew, which the numbers of adapters and outputs do not. May be missing
 *   Corners   REG_BINARY  the upper left corner of each, two signed 32-bit numbers of pixels. May be missing
 *
 * While a favourite is being replaced, "N.new" has all of it and counts where "N" has no text.
 * While the key does not exist, no favourite has ever been stored. OutputFavourites.h reads and writes them. */
#define OUTPUT_SETUP_REG_FAVOURITES FENWYN_REG_PRODUCT L"\\Favourites"
#define OUTPUT_SETUP_VALUE_TEXT L"Text"
#define OUTPUT_SETUP_VALUE_MODE L"Mode"
#define OUTPUT_SETUP_VALUE_DISPLAYS L"Displays"
#define OUTPUT_SETUP_VALUE_MONITORS L"Monitors"
#define OUTPUT_SETUP_VALUE_CORNERS L"Corners"
#define OUTPUT_SETUP_FAVOURITES 32
#define OUTPUT_SETUP_FAVOURITE_TEXT_CHARS 63
#define OUTPUT_SETUP_FAVOURITE_DISPLAYS 8

/* Their former place in the key of the simulated notebook; a list that is found there is moved. */
#define OUTPUT_SETUP_REG_OLD_FAVOURITES FENWYN_REG_SIMULATED_NOTEBOOK L"\\Output_2\\Favourites"

#endif
