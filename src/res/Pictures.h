// Pictures of the image library that belong to no function, and item sizes used in several places.
#pragma once

#include <windows.h>

// PNG resources. The pictures of the functions are in Logic/FuncX/FunctionTables.h.
inline constexpr WORD kLatchMarkImageId = 60;
inline constexpr WORD kHoverBorderImageId = 131;
inline constexpr UINT kConnectorPanelImageId = 296;
inline constexpr UINT kConnectorAnalogImageId = 297;
inline constexpr UINT kConnectorHdmiImageId = 298;
inline constexpr UINT kConnectorDviImageId = 299;
inline constexpr UINT kConnectorDisplayPortImageId = 300;

// Pixels at image ratio 1.0.
inline constexpr int kItemSize = 72;  // of a round item, width and height
inline constexpr int kItemGap = 10;   // between an enlarged card and its items, and from item to item
