/* The print-screen hook library PrtHook.dll, for C (C11) and C++. Bound at run time: LoadLibrary, then GetProcAddress
 * with the names below; exports are undecorated, also on 32 bit, and use the WINAPI calling convention. */
#ifndef PRT_HOOK_H
#define PRT_HOOK_H

#include <windows.h>

#ifdef __cplusplus
extern "C" {
#endif

#define PRT_HOOK_LIBRARY L"PrtHook.dll"

/* Called once for each press of Print Screen (with or without Alt; not for its repeats) on a thread of the library. The
 * key itself is passed to the system only when the callback has returned or 100 ms have passed, so that what the
 * callback hides is not in the picture. Presses during a running callback cause one more callback after it. The result
 * is ignored. */
typedef LONG(WINAPI* PrtHookCallback)(void);

/* FALSE for a null callback, if a hook is installed already, or if the system refuses it. Thread: any.
 *
 * FreeLibrary without RemoveHook is safe: the hook's threads hold a reference of their own, so the library stays mapped
 * and the callback may still be called until the process ends, when the system ends them. */
#define PRT_INSTALL_HOOK "InstallHook"
typedef BOOL(WINAPI* PrtInstallHook)(PrtHookCallback callback);

/* For hosts that continue without the hook. FALSE if there is none, or if a callback has not returned within a second:
 * no further callback follows then, and its thread ends after it. Not to be called from the callback, nor without a
 * reference to the library. */
#define PRT_REMOVE_HOOK "RemoveHook"
typedef BOOL(WINAPI* PrtRemoveHook)(void);

#ifdef __cplusplus
}
#endif

#endif
