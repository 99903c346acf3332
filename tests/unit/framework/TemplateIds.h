#pragma once

// Numbers of the test dialogs and their controls. Plain numbers only, because the resource compiler reads this file
// too.

#define IDD_PLAIN 200
#define IDD_OWN_CLASS 201
#define IDD_NO_CLASS 202  // names a window class that is never registered
#define IDD_SLIDER 203
#define IDD_MISSING 299  // in no resource

#define IDC_FIRST 1
#define IDC_SECOND 2
#define IDC_TRACK 1000

#define OWN_DIALOG_CLASS "FrameworkTestDialogClass"
