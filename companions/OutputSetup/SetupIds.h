#pragma once

// Numbers of the dialog templates, their controls and the texts. Plain numbers only, because the resource compiler
// reads this file too.

#define IDD_OUTPUT 100  // names its own window class, by which the strip finds it
#define IDD_SAVE 101    // likewise
#define IDD_CONFIG 102

#define IDC_MODES_LABEL 1000
#define IDC_MODES 1001
#define IDC_DISPLAYS_LABEL 1002
#define IDC_DISPLAYS 1003
#define IDC_FAVOURITES_LABEL 1004
#define IDC_FAVOURITES 1005
#define IDC_RENAME 1006
#define IDC_DELETE 1007
#define IDC_NAME_LABEL 1008
#define IDC_NAME 1009
#define IDC_ARRANGEMENT 1010

#define IDS_PROGRAM 1
#define IDS_OUTPUT_TITLE 2
#define IDS_SAVE_TITLE 3
#define IDS_CONFIG_TITLE 4
#define IDS_MODES_LABEL 5
#define IDS_DISPLAYS_LABEL 6
#define IDS_FAVOURITES_LABEL 7
#define IDS_NAME_LABEL 8
#define IDS_APPLY 9
#define IDS_SAVE 10
#define IDS_RENAME 11
#define IDS_DELETE 12
#define IDS_CANCEL 13
#define IDS_CLOSE 14
#define IDS_COLUMN_DISPLAY 15
#define IDS_COLUMN_CONNECTOR 16
#define IDS_COLUMN_RESOLUTION 17
#define IDS_COLUMN_NAME 18
#define IDS_COLUMN_ARRANGEMENT 19
#define IDS_COLUMN_DISPLAYS 20
#define IDS_PRESENT_ARRANGEMENT 21  // one argument: the arrangement
#define IDS_NAME_STEM 22
#define IDS_ASK_DELETE 23  // one argument: the favourite's name
#define IDS_MODE 40        // + arrangement, 0 .. 8
#define IDS_MODE_LAST 48
#define IDS_MODE_OTHER 49  // one argument: the arrangement's number

#define IDS_ERROR_COMMAND_LINE 60
#define IDS_ERROR_NO_DISPLAY 61
#define IDS_ERROR_APPLY 62  // one argument: the system's error
#define IDS_ERROR_CANNOT_APPLY 63
#define IDS_ERROR_STORE 64  // one argument: the system's error
#define IDS_ERROR_FULL 65
#define IDS_ERROR_CHANGED 66
#define IDS_ERROR_NAME_EMPTY 67
#define IDS_ERROR_NAME_LONG 68
#define IDS_ERROR_NAME_TAKEN 69
#define IDS_ERROR_WINDOW 70  // one argument: the system's error
#define IDS_ERROR_SOURCE 71  // one argument: the library and the system's error
