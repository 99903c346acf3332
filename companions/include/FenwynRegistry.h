/* The root keys of the product in the registry, for C and C++: the program, its companions and its plug-ins build their
 * keys from these. */
#ifndef FENWYN_REGISTRY_H
#define FENWYN_REGISTRY_H

#define FENWYN_REG_SOFTWARE L"SOFTWARE"
#define FENWYN_REG_MAKER FENWYN_REG_SOFTWARE L"\\KESTOVA"

/* The program's own key, in HKEY_LOCAL_MACHINE and in HKEY_CURRENT_USER. */
#define FENWYN_REG_PRODUCT FENWYN_REG_MAKER L"\\Fenwyn"

/* The card configuration, below both roots. */
#define FENWYN_REG_CONFIG FENWYN_REG_PRODUCT L"\\Config"

/* In FENWYN_REG_PRODUCT, below HKEY_CURRENT_USER or else HKEY_LOCAL_MACHINE, REG_SZ: the name of the language of all
 * texts ("de", "pt-BR") in place of the system's. Not in the card configuration: whoever creates a user's own has its
 * defaults in place of the machine's values. */
#define FENWYN_VALUE_LANGUAGE L"Language"

/* Likewise, REG_DWORD: whether the icon in the notification area is wanted; 1 unless given. */
#define FENWYN_VALUE_TRAY_ICON L"TrayIcon"

/* The list of hotkey functions: in HKEY_LOCAL_MACHINE, and in HKEY_CURRENT_USER for a machine that has none.
 * FunctionListRoot.h says which of the two is in force. REG_SZ: function names, each followed by ';'. */
#define FENWYN_REG_HOTKEY FENWYN_REG_PRODUCT L"\\HotKey"
#define FENWYN_VALUE_FUNC_LIST L"FuncList"

/* In FENWYN_REG_PRODUCT of the root whose function list is in force, REG_SZ: the folder of the program and its
 * companions. */
#define FENWYN_VALUE_INSTALL_PATH L"InstallPath"

/* What the plug-ins for real machines remember, in HKEY_CURRENT_USER: for each, under its file name without ending,
 * REG_DWORD, whether the machine offered its function at the plug-in's last start, or has done so since. Without a
 * value it is asked anew. */
#define FENWYN_REG_OFFERED FENWYN_REG_PRODUCT L"\\Offered"

/* The button utility's key, in HKEY_LOCAL_MACHINE and in HKEY_CURRENT_USER. */
#define FENWYN_REG_BUTTON_UTILITY FENWYN_REG_MAKER L"\\HBQ"

/* The simulated notebook's state, in HKEY_CURRENT_USER. */
#define FENWYN_REG_SIMULATED_NOTEBOOK FENWYN_REG_MAKER L"\\Simulated Notebook"

#endif
