// The display data of the functions: pictures, texts, and the items for the bits that a plug-in reports. The first
// image id of an item is its small picture, the second its large one. FunctionTables.cpp checks it at compile time, and
// tests compare it with the drawings and the texts.
#pragma once

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "plugins/sdk/FenwynFunctions.h"
#include "res/StringIds.h"

namespace functiontables {

// The pictures of a function's card and enlarged card, and its description line.
struct Look {
    UINT uSmallPngId;
    UINT uLargePngId;
    UINT uDescId;
};

// One round item: it exists if the plug-in sets its bit, and stands for a value of the plug-in.
struct Item {
    DWORD dwBit;
    DWORD dwValue;
    UINT uTextId;
    UINT uImageId1;
    UINT uImageId2;
};

// How a function of round items interprets the first value that its plug-in reports.
enum class ItemRule {
    BothItems,  // must be FENWYN_TWO_ITEMS: every item exists
    Mask,       // one item per bit
};

// Which item the first press selects.
enum class DefaultRule {
    First,    // always the first: the function has no state
    Listed,   // the entry of `defaults` at the current item
    Current,  // the current item itself
    Own,      // decided by the function's class
};

// The result of a current item beyond `defaults`, after its assertion.
enum class UnknownDefault {
    Fail,
    KeepCallersValue,
    TakeCurrent,
};

// One function of round items.
struct CircleDescription {
    const wchar_t* pszName;   // as in the function list
    const wchar_t* pszClass;  // as in the log
    Look look;
    ItemRule itemRule;
    std::span<const Item> items;
    DefaultRule defaultRule;
    std::span<const LONG> defaults = {};
    UnknownDefault unknownDefault = UnknownDefault::Fail;
    std::span<const UINT> statusTexts = {};  // by current item; 0: an empty text
    const wchar_t* pszWrongItem = L"!\"Get wrong current item!\"";
    LONG lStateMask = -1;  // the bits of the current item that are the item

    [[nodiscard]] constexpr bool hasState() const { return defaultRule != DefaultRule::First; }
};

inline constexpr UINT kCancelImageId1 = 101;
inline constexpr UINT kCancelImageId2 = 100;
inline constexpr std::array<LONG, 2> kOtherOfTwo{1, 0};

// ---------------------------------------------------------------------------------------------------------------------
// Functions of round items

inline constexpr std::array<Item, 2> kMuteItems{{
    {0x1, 0, IDS_MUTE_ON, 113, 112},
    {0x2, 1, IDS_MUTE_OFF, 115, 114},
}};
inline constexpr std::array<UINT, 2> kMuteStatus{IDS_MUTE_ON, IDS_MUTE_OFF};
inline constexpr CircleDescription kMute{.pszName = L"Mute",
                                         .pszClass = L"CFxMute",
                                         .look = {111, 110, IDS_MUTE_DESC},
                                         .itemRule = ItemRule::BothItems,
                                         .items = kMuteItems,
                                         .defaultRule = DefaultRule::Listed,
                                         .defaults = kOtherOfTwo,
                                         .statusTexts = kMuteStatus};

inline constexpr std::array<Item, 2> kLockItems{{
    {0x1, 0, IDS_LOCK_ITEM, 133, 132},
    {0x2, 1, IDS_CANCEL, kCancelImageId1, kCancelImageId2},
}};
inline constexpr CircleDescription kLock{.pszName = L"Lock",
                                         .pszClass = L"CFxLock",
                                         .look = {131, 130, IDS_LOCK_DESC},
                                         .itemRule = ItemRule::BothItems,
                                         .items = kLockItems,
                                         .defaultRule = DefaultRule::First};

inline constexpr std::array<Item, 2> kSleepItems{{
    {0x1, 0, IDS_SLEEP_ITEM, 183, 182},
    {0x2, 1, IDS_CANCEL, kCancelImageId1, kCancelImageId2},
}};
inline constexpr CircleDescription kSleep{.pszName = L"Sleep",
                                          .pszClass = L"CFxSleep",
                                          .look = {181, 180, IDS_SLEEP_DESC},
                                          .itemRule = ItemRule::BothItems,
                                          .items = kSleepItems,
                                          .defaultRule = DefaultRule::First};

inline constexpr std::array<Item, 2> kHibernateItems{{
    {0x1, 0, IDS_HIBERNATE_ITEM, 203, 202},
    {0x2, 1, IDS_CANCEL, kCancelImageId1, kCancelImageId2},
}};
inline constexpr CircleDescription kHibernate{.pszName = L"Hibernate",
                                              .pszClass = L"CFxHibernate",
                                              .look = {201, 200, IDS_HIBERNATE_DESC},
                                              .itemRule = ItemRule::BothItems,
                                              .items = kHibernateItems,
                                              .defaultRule = DefaultRule::First};

inline constexpr std::array<Item, 2> kTouchpadItems{{
    {0x1, 0, IDS_TOUCHPAD_TURN_ON, 473, 472},
    {0x2, 1, IDS_TOUCHPAD_TURN_OFF, 475, 474},
}};
inline constexpr std::array<UINT, 2> kTouchpadStatus{IDS_TOUCHPAD_ON, IDS_TOUCHPAD_OFF};
inline constexpr CircleDescription kTouchpad{.pszName = L"Touchpad",
                                             .pszClass = L"CFxTouchpad",
                                             .look = {471, 470, IDS_TOUCHPAD_DESC},
                                             .itemRule = ItemRule::BothItems,
                                             .items = kTouchpadItems,
                                             .defaultRule = DefaultRule::Listed,
                                             .defaults = kOtherOfTwo,
                                             .unknownDefault = UnknownDefault::KeepCallersValue,
                                             .statusTexts = kTouchpadStatus};

inline constexpr std::array<Item, 3> kZoomItems{{
    {0x1, 0, IDS_ZOOM_NORMAL, 533, 532},
    {0x2, 1, IDS_ZOOM_LARGER, 535, 534},
    {0x4, 2, IDS_ZOOM_LARGEST, 537, 536},
}};
inline constexpr std::array<UINT, 3> kZoomStatus{IDS_ZOOM_NORMAL, IDS_ZOOM_LARGER, IDS_ZOOM_LARGEST};
inline constexpr CircleDescription kZoom{.pszName = L"Zoom",
                                         .pszClass = L"CFxZoom",
                                         .look = {531, 530, IDS_ZOOM_DESC},
                                         .itemRule = ItemRule::Mask,
                                         .items = kZoomItems,
                                         .defaultRule = DefaultRule::Current,
                                         .statusTexts = kZoomStatus};

// The high half of the current item is the number in the status text of item 0.
inline constexpr LONG kKbbTimer = 0;
inline constexpr std::array<Item, 3> kKbbItems{{
    {0x1, 0, IDS_KBB_TIMER, 587, 586},
    {0x2, 1, IDS_KBB_ON, 583, 582},
    {0x4, 2, IDS_KBB_OFF, 585, 584},
}};
inline constexpr std::array<LONG, 3> kKbbDefaults{0, 2, 1};
inline constexpr std::array<UINT, 3> kKbbStatus{IDS_KBB_TIMER, IDS_KBB_ON, IDS_KBB_OFF};
inline constexpr CircleDescription kKbb{.pszName = L"KBB",
                                        .pszClass = L"CFxKBB",
                                        .look = {581, 580, IDS_KBB_DESC},
                                        .itemRule = ItemRule::Mask,
                                        .items = kKbbItems,
                                        .defaultRule = DefaultRule::Listed,
                                        .defaults = kKbbDefaults,
                                        .unknownDefault = UnknownDefault::TakeCurrent,
                                        .statusTexts = kKbbStatus,
                                        .lStateMask = 0xFFFF};

inline constexpr LONG kOddCancel = 4;
inline constexpr std::array<Item, 5> kOddItems{{
    {0x1, 0, IDS_ODD_EJECT, 553, 552},
    {0x2, 1, IDS_ODD_ON, 557, 556},
    {0x4, 2, IDS_ODD_OFF, 555, 554},
    {0x8, 3, IDS_ODD_QUIET, 559, 558},
    {0x10, kOddCancel, IDS_CANCEL, kCancelImageId1, kCancelImageId2},
}};
inline constexpr std::array<UINT, 5> kOddStatus{IDS_ODD_EJECT, IDS_ODD_ON, IDS_ODD_OFF, IDS_ODD_QUIET, 0};
inline constexpr CircleDescription kOdd{.pszName = L"ODD",
                                        .pszClass = L"CFxODD",
                                        .look = {551, 550, IDS_ODD_DESC},
                                        .itemRule = ItemRule::Mask,
                                        .items = kOddItems,
                                        .defaultRule = DefaultRule::Own,
                                        .statusTexts = kOddStatus};

// The overlays' card shows the state: `look` names the picture of "off", which is also the fallback.
struct OverlayDescription {
    CircleDescription circle;
    UINT uOnPngId = 0;
};

inline constexpr std::array<UINT, 2> kOverlayStatus{IDS_OVERLAY_ON, IDS_OVERLAY_OFF};
inline constexpr std::array<Item, 2> kCursorOverlayItems{{
    {0x1, 0, IDS_OVERLAY_TURN_ON, 494, 493},
    {0x2, 1, IDS_OVERLAY_TURN_OFF, 496, 495},
}};
inline constexpr OverlayDescription kCursorOverlay{{.pszName = L"CursorOverlay",
                                                    .pszClass = L"CFxCursorOverlay",
                                                    .look = {491, 490, IDS_CURSOR_OVERLAY_DESC},
                                                    .itemRule = ItemRule::BothItems,
                                                    .items = kCursorOverlayItems,
                                                    .defaultRule = DefaultRule::Current,
                                                    .statusTexts = kOverlayStatus,
                                                    .pszWrongItem = L"!_T(\"Wrong current item!\")"},
                                                   492};

inline constexpr std::array<Item, 2> kNumOverlayItems{{
    {0x1, 0, IDS_OVERLAY_TURN_ON, 514, 513},
    {0x2, 1, IDS_OVERLAY_TURN_OFF, 516, 515},
}};
inline constexpr OverlayDescription kNumOverlay{{.pszName = L"NumericOverlay",
                                                 .pszClass = L"CFxNumOverlay",
                                                 .look = {511, 510, IDS_NUM_OVERLAY_DESC},
                                                 .itemRule = ItemRule::BothItems,
                                                 .items = kNumOverlayItems,
                                                 .defaultRule = DefaultRule::Current,
                                                 .statusTexts = kOverlayStatus,
                                                 .pszWrongItem = L"!\"Wrong current item!\""},
                                                512};

// The functions that their description specifies completely, and those whose class adds to it.
inline constexpr std::array kDescribedFunctions{&kMute, &kLock, &kSleep, &kHibernate, &kTouchpad, &kZoom};
inline constexpr std::array kExtendedFunctions{&kKbb, &kOdd, &kCursorOverlay.circle, &kNumOverlay.circle};

// All functions of round items.
inline constexpr auto kCircleFunctions = [] {
    std::array<const CircleDescription*, kDescribedFunctions.size() + kExtendedFunctions.size()> all{};
    std::ranges::copy(kExtendedFunctions, std::ranges::copy(kDescribedFunctions, all.begin()).out);
    return all;
}();

// ---------------------------------------------------------------------------------------------------------------------
// Brightness

inline constexpr Look kBrightnessLook{321, 320, IDS_BRIGHTNESS_DESC};

// ---------------------------------------------------------------------------------------------------------------------
// Power plan: the texts come from the plug-in

inline constexpr Look kPowerPlanLook{151, 150, IDS_POWER_PLAN_DESC};
inline constexpr std::array<Item, 4> kPowerPlans{{
    {0x1, 0, 0, 159, 158},
    {0x2, 1, 0, 155, 154},
    {0x4, 2, 0, 153, 152},
    {0x8, 3, 0, 157, 156},
}};

// ---------------------------------------------------------------------------------------------------------------------
// Wireless: a text is composed of up to three strings (0: none)

struct WirelessState {
    DWORD dwBit;
    DWORD dwState;
    UINT uImageId1;
    UINT uImageId2;
    std::array<UINT, 3> textIds;
};

inline constexpr Look kWirelessLook{351, 350, IDS_WIRELESS_DESC};
inline constexpr std::array<UINT, 3> kOnToOff{IDS_WIRELESS_ON, IDS_WIRELESS_ARROW, IDS_WIRELESS_OFF};
inline constexpr std::array<UINT, 3> kOffToOn{IDS_WIRELESS_OFF, IDS_WIRELESS_ARROW, IDS_WIRELESS_ON};
inline constexpr DWORD kLastSingleDeviceState = 11;
inline constexpr std::array<WirelessState, 15> kWirelessStates{{
    {0x1, 0, 373, 372, kOnToOff},
    {0x2, 1, 375, 374, kOffToOn},
    {0x4, 2, 369, 368, kOnToOff},
    {0x8, 3, 371, 370, kOffToOn},
    {0x10, 4, 353, 352, kOnToOff},
    {0x20, 5, 355, 354, kOffToOn},
    {0x40, 6, 357, 356, kOnToOff},
    {0x80, 7, 359, 358, kOffToOn},
    {0x100, 8, 365, 364, kOnToOff},
    {0x200, 9, 367, 366, kOffToOn},
    {0x400, 10, 361, 360, kOnToOff},
    {0x800, 11, 363, 362, kOffToOn},
    {0x1000, 12, 451, 450, {IDS_WIRELESS_ALL_ON, 0, 0}},
    {0x2000, 13, 453, 452, {IDS_WIRELESS_ALL_OFF, 0, 0}},
    {0x4000, 14, kCancelImageId1, kCancelImageId2, {IDS_CANCEL, 0, 0}},
}};

// ---------------------------------------------------------------------------------------------------------------------
// Display output, the older one: two masks

inline constexpr Look kOutputLook{221, 220, IDS_OUTPUT_DESC};
inline constexpr std::array<Item, 19> kOutputFirst{{
    {0x1, 0, IDS_OUTPUT_LCD, 740, 739},
    {0x2, 1, IDS_OUTPUT_CRT, 730, 727},
    {0x4, 2, IDS_OUTPUT_DVI, 712, 709},
    {0x8, 3, IDS_OUTPUT_HDMI, 734, 731},
    {0x10, 4, IDS_OUTPUT_DP, 720, 717},
    {0x20, 5, IDS_OUTPUT_TV, 738, 735},
    {0x40, 6, IDS_OUTPUT_LCD_CRT_CLONE, 724, 721},
    {0x80, 7, IDS_OUTPUT_LCD_DVI_CLONE, 755, 754},
    {0x100, 8, IDS_OUTPUT_LCD_HDMI_CLONE, 757, 756},
    {0x200, 9, IDS_OUTPUT_LCD_DP_CLONE, 744, 741},
    {0x400, 10, IDS_OUTPUT_LCD_TV_CLONE, 700, 745},
    {0x800, 11, IDS_OUTPUT_LCD_CRT_EXTEND, 706, 705},
    {0x1000, 12, IDS_OUTPUT_LCD_DVI_EXTEND, 716, 713},
    {0x2000, 13, IDS_OUTPUT_LCD_HDMI_EXTEND, 749, 748},
    {0x4000, 14, IDS_OUTPUT_LCD_DP_EXTEND, 759, 758},
    {0x8000, 15, IDS_OUTPUT_LCD_TV_EXTEND, 775, 774},
    {0x10000, 16, IDS_OUTPUT_CRT_DVI_CLONE, 777, 776},
    {0x20000, 17, IDS_OUTPUT_CRT_HDMI_CLONE, 768, 769},
    {0x40000, 18, IDS_OUTPUT_DVI_HDMI_CLONE, 790, 787},
}};
inline constexpr std::array<Item, 27> kOutputSecond{{
    {0x1, 32, IDS_OUTPUT_CRT_LCD_EXTEND, 729, 728},      {0x2, 33, IDS_OUTPUT_DVI_LCD_EXTEND, 711, 710},
    {0x4, 34, IDS_OUTPUT_HDMI_LCD_EXTEND, 733, 732},     {0x8, 35, IDS_OUTPUT_DP_LCD_EXTEND, 719, 718},
    {0x10, 36, IDS_OUTPUT_TV_LCD_EXTEND, 737, 736},      {0x20, 37, IDS_OUTPUT_CRT_DP_CLONE, 723, 722},
    {0x40, 38, IDS_OUTPUT_DVI_DP_CLONE, 761, 760},       {0x80, 39, IDS_OUTPUT_HDMI_DP_CLONE, 763, 762},
    {0x100, 40, IDS_OUTPUT_CRT_TV_CLONE, 743, 742},      {0x200, 41, IDS_OUTPUT_CRT_DVI_EXTEND, 747, 746},
    {0x400, 42, IDS_OUTPUT_CRT_HDMI_EXTEND, 702, 701},   {0x800, 43, IDS_OUTPUT_DVI_HDMI_EXTEND, 704, 703},
    {0x1000, 44, IDS_OUTPUT_CRT_DP_EXTEND, 715, 714},    {0x2000, 45, IDS_OUTPUT_DVI_DP_EXTEND, 708, 707},
    {0x4000, 46, IDS_OUTPUT_HDMI_DP_EXTEND, 753, 752},   {0x8000, 47, IDS_OUTPUT_CRT_TV_EXTEND, 751, 750},
    {0x10000, 48, IDS_OUTPUT_DVI_CRT_EXTEND, 765, 764},  {0x20000, 49, IDS_OUTPUT_HDMI_CRT_EXTEND, 767, 766},
    {0x40000, 50, IDS_OUTPUT_HDMI_DVI_EXTEND, 779, 778}, {0x80000, 51, IDS_OUTPUT_DP_CRT_EXTEND, 781, 780},
    {0x100000, 52, IDS_OUTPUT_DP_DVI_EXTEND, 783, 782},  {0x200000, 53, IDS_OUTPUT_DP_HDMI_EXTEND, 785, 784},
    {0x400000, 54, IDS_OUTPUT_TV_CRT_EXTEND, 772, 773},  {0x800000, 55, IDS_OUTPUT_ALL_CLONE, 770, 771},
    {0x1000000, 56, IDS_OUTPUT_ALL_EXTEND, 789, 788},    {0x2000000, 57, IDS_OUTPUT_AUTOMATIC, 786, 791},
    {0x80000000, 63, IDS_OUTPUT_SWAP, 726, 725},
}};

// ---------------------------------------------------------------------------------------------------------------------
// Display output with favourites: pictures and default names by display mode

struct ImagePair {
    UINT uSmallId;
    UINT uLargeId;
};

struct OutputMode {
    UINT uNameId;
    ImagePair custom;
    ImagePair needsSetup;
    ImagePair builtIn;
};

// The index is the mode.
inline constexpr std::array<OutputMode, 11> kOutputModes{{
    {IDS_OUTPUT_MODE_INTERNAL, {253, 252}, {223, 222}, {223, 222}},
    {IDS_OUTPUT_MODE_EXTERNAL, {255, 254}, {227, 226}, {225, 224}},
    {IDS_OUTPUT_MODE_EXTERNAL, {257, 256}, {231, 230}, {229, 228}},
    {IDS_OUTPUT_MODE_CLONE, {259, 258}, {235, 234}, {233, 232}},
    {IDS_OUTPUT_MODE_EXTEND, {261, 260}, {239, 238}, {237, 236}},
    {IDS_OUTPUT_MODE_EXTEND, {263, 262}, {243, 242}, {241, 240}},
    {IDS_OUTPUT_MODE_EXTEND, {265, 264}, {247, 246}, {245, 244}},
    {IDS_OUTPUT_MODE_EXTEND, {267, 266}, {251, 250}, {249, 248}},
    {IDS_OUTPUT_MODE_SEVERAL, {291, 290}, {291, 290}, {291, 290}},
    {IDS_OUTPUT_MODE_CONFIG, {293, 292}, {293, 292}, {293, 292}},
    {IDS_OUTPUT_MODE_SAVE, {295, 294}, {295, 294}, {295, 294}},
}};

// The functions that are not described by a CircleDescription; both output functions share one look.
inline constexpr std::array<const Look*, 4> kOtherLooks{&kBrightnessLook, &kPowerPlanLook, &kWirelessLook,
                                                        &kOutputLook};

}  // namespace functiontables
