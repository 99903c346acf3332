// The program's settings in the registry: every key path and value name, once.
#pragma once

#include "companions/include/FenwynRegistry.h"

namespace regpath {

// The program's own key, and the value that is read from it directly.
inline constexpr wchar_t kProgramKey[] = FENWYN_REG_PRODUCT;
inline constexpr wchar_t kInstallPath[] = FENWYN_VALUE_INSTALL_PATH;

// The card configuration; its value names are in the table of Data/ZelConfig.cpp.
inline constexpr wchar_t kConfigKey[] = FENWYN_REG_CONFIG;

// The hotkey function list: one subkey per function named in "FuncList".
inline constexpr wchar_t kHotkeyKey[] = FENWYN_REG_HOTKEY;
inline constexpr wchar_t kFuncList[] = FENWYN_VALUE_FUNC_LIST;
inline constexpr wchar_t kCaption[] = L"Caption";
inline constexpr wchar_t kCode[] = L"Code";
inline constexpr wchar_t kFuncDll[] = L"FuncDll";

// The button utility: its buttons, and the user's settings for them.
inline constexpr wchar_t kButtonsKey[] = FENWYN_REG_BUTTON_UTILITY L"\\Buttons";
inline constexpr wchar_t kUserSettingKey[] = FENWYN_REG_BUTTON_UTILITY L"\\UserSetting";
inline constexpr wchar_t kIsQrdControl[] = L"IsQRDControl";
inline constexpr wchar_t kMakeFunction[] = L"MakeFunction";
inline constexpr wchar_t kMakeValue[] = L"MakeValue";
inline constexpr wchar_t kOption1[] = L"OPT1";
inline constexpr wchar_t kOption2[] = L"OPT2";

}  // namespace regpath
