// Where the program's settings stand in the registry: every key path and value name, once.
#pragma once

namespace regpath {

// The program's own key, and what is read from it directly.
inline constexpr wchar_t kProgramKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn";
inline constexpr wchar_t kInstallPath[] = L"InstallPath";

// The card configuration; its value names stand in the table of Data/ZelConfig.cpp.
inline constexpr wchar_t kConfigKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn\\Config";

// The hotkey function list: one subkey per function named in "FuncList".
inline constexpr wchar_t kHotkeyKey[] = L"SOFTWARE\\KESTOVA\\Fenwyn\\HotKey";
inline constexpr wchar_t kFuncList[] = L"FuncList";
inline constexpr wchar_t kCaption[] = L"Caption";
inline constexpr wchar_t kCode[] = L"Code";
inline constexpr wchar_t kFuncDll[] = L"FuncDll";

// The button utility: what its buttons are, and what the user made of them.
inline constexpr wchar_t kButtonsKey[] = L"SOFTWARE\\KESTOVA\\HBQ\\Buttons";
inline constexpr wchar_t kUserSettingKey[] = L"SOFTWARE\\KESTOVA\\HBQ\\UserSetting";
inline constexpr wchar_t kIsQrdControl[] = L"IsQRDControl";
inline constexpr wchar_t kMakeFunction[] = L"MakeFunction";
inline constexpr wchar_t kMakeValue[] = L"MakeValue";
inline constexpr wchar_t kOption1[] = L"OPT1";
inline constexpr wchar_t kOption2[] = L"OPT2";

}  // namespace regpath
