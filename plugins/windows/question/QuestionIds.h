#pragma once

// Numbers of the question's dialog template, its controls and its texts. Plain numbers only, because the resource
// compiler reads this file too.

#define IDD_PICTURE_QUESTION 100

#define IDC_HEADLINE 1000
#define IDC_REMAINING 1001
#define IDC_BAR 1002

#define IDS_KEEP_QUESTION 1
#define IDS_REMAINING 2      // one argument: a number of seconds above 1
#define IDS_REMAINING_ONE 3  // the last second
#define IDS_KEEP 4
#define IDS_GO_BACK 5
#define IDS_FAILED 6
#define IDS_FAILED_DETAIL 7
#define IDS_CLOSE 8
