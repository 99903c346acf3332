"""What the plug-ins for real machines import by name, and why. Windows 7 exports each of these functions from that library;
functions that it does not export are bound at run time.

A row is (library, reason, names), and where only one build needs it, that build's preset."""

ROWS = [
    ("advapi32.dll", "reading settings and policies",
     "RegGetValueW"),
    ("advapi32.dll", "favourites, and the arrangement of the screens to which one can go back",
     "RegCloseKey RegCopyTreeW RegCreateKeyExW RegDeleteTreeW RegEnumKeyExW RegOpenKeyExW RegSetKeyValueW"),
    ("advapi32.dll", "the external screens that the user allows",
     "RegEnumValueW"),
    ("advapi32.dll", "the privilege that SetSuspendState asks for",
     "AdjustTokenPrivileges LookupPrivilegeValueW OpenProcessToken"),
    ("advapi32.dll", "named objects that only the user may open",
     "AddAccessAllowedAce CreateWellKnownSid GetTokenInformation InitializeAcl InitializeSecurityDescriptor "
     "SetSecurityDescriptorControl SetSecurityDescriptorDacl"),
    ("advapi32.dll", "RtlGenRandom by its documented name: a random number for the stack protector", "SystemFunction036"),
    ("gdi32.dll", "the question's headline and colours",
     "CreateFontIndirectW DeleteObject GetObjectW SetBkColor SetTextColor"),
    ("gdi32.dll", "the resolution of the screen",
     "GetDeviceCaps"),
    ("kernel32.dll", "the state that reader and worker share",
     "AcquireSRWLockExclusive ReleaseSRWLockExclusive TryAcquireSRWLockExclusive"),
    ("kernel32.dll", "workers and hooks: their threads, their events, their hold on the library",
     "CreateEventW CreateThread FreeLibrary FreeLibraryAndExitThread GetModuleHandleExW ResetEvent"),
    ("kernel32.dll", "the word that the overlays of a session share",
     "CreateFileMappingW MapViewOfFile OpenProcess UnmapViewOfFile"),
    ("kernel32.dll", "whether somebody is asking about the screens, and whether the power is lost",
     "GetSystemPowerStatus OpenEventW"),
    ("kernel32.dll", "what PowerGetActiveScheme hands out",
     "LocalFree"),
    ("kernel32.dll", "the size of the display, scaled",
     "MulDiv"),
    ("kernel32.dll", "texts in the language of the user",
     "EnumResourceLanguagesW FindResourceExW GetUserDefaultUILanguage LoadResource LocaleNameToLCID LockResource "
     "SizeofResource"),
    ("kernel32.dll", "drives and their controls",
     "CreateFileW DeviceIoControl GetDriveTypeW GetLogicalDrives"),
    ("kernel32.dll", "the name under which a plug-in remembers what the machine offered",
     "GetModuleFileNameW"),
    ("kernel32.dll", "the process that asks an external screen, its end, and whether the machine slept since then",
     "CreateProcessW GetExitCodeProcess QueryUnbiasedInterruptTime TerminateProcess"),
    ("kernel32.dll", "libraries that not every system has",
     "GetSystemDirectoryW"),
    ("kernel32.dll", "the runtime of the compiler: start, threads, exceptions, and what the rows above share with it",
     "AddVectoredExceptionHandler CloseHandle CreateEventA CreateSemaphoreA DeleteCriticalSection DuplicateHandle "
     "EnterCriticalSection GetCurrentProcess GetCurrentProcessId GetCurrentThread GetCurrentThreadId "
     "GetHandleInformation GetLastError GetModuleHandleW GetProcAddress GetProcessAffinityMask "
     "GetSystemTimeAsFileTime GetThreadContext GetThreadPriority GetTickCount64 InitializeCriticalSection "
     "IsDBCSLeadByteEx IsDebuggerPresent LeaveCriticalSection LoadLibraryW MultiByteToWideChar OutputDebugStringA "
     "RaiseException ReleaseSemaphore RemoveVectoredExceptionHandler ResumeThread SetEvent SetLastError "
     "SetProcessAffinityMask SetThreadContext SetThreadPriority Sleep SuspendThread TlsAlloc TlsGetValue "
     "TlsSetValue TryEnterCriticalSection VirtualProtect VirtualQuery WaitForMultipleObjects WaitForSingleObject "
     "WideCharToMultiByte"),
    ("kernel32.dll", "the runtime of the compiler: unwinding by tables",
     "RtlCaptureContext RtlLookupFunctionEntry RtlUnwindEx RtlVirtualUnwind __C_specific_handler", "x64-release"),
    ("kernel32.dll", "the runtime of the compiler: its 32-bit start",
     "GetModuleHandleA LoadLibraryA", "x86-release"),
    ("msvcrt.dll", "the runtime of the compiler: memory, texts, its own error messages",
     "_amsg_exit _beginthreadex _close _endthreadex _errno _initterm _lock _read _strdup _ultoa "
     "_unlock abort calloc exit fprintf fputc fputs fputwc free fwprintf fwrite localeconv longjmp malloc "
     "memchr memcmp memcpy memmove memset printf realloc strcmp strerror strlen strncmp vfprintf wcslen wcstol"),
    ("msvcrt.dll", "the runtime of the compiler, in its 64-bit form",
     "___lc_codepage_func ___mb_cur_max_func __iob_func _setjmp signal", "x64-release"),
    ("msvcrt.dll", "the runtime of the compiler, in its 32-bit form",
     "__mb_cur_max _iob _setjmp3 atoi setlocale strchr", "x86-release"),
    ("ole32.dll", "COM",
     "CoCreateInstance CoInitializeEx CoSetProxyBlanket CoUninitialize"),
    ("oleaut32.dll", "texts that Fenwyn frees",
     "SysAllocStringLen"),
    ("oleaut32.dll", "texts and values of the management service",
     "SafeArrayGetElement SafeArrayGetLBound SafeArrayGetUBound SysAllocString SysFreeString VariantClear "
     "VariantInit"),
    ("powrprof.dll", "what the machine can do, and sleep",
     "GetPwrCapabilities SetSuspendState"),
    ("powrprof.dll", "power plans; since Windows Vista",
     "PowerEnumerate PowerGetActiveScheme PowerReadFriendlyName PowerSetActiveScheme"),
    ("user32.dll", "the hook of the overlays and what it sends",
     "CallNextHookEx GetAsyncKeyState MapVirtualKeyW SendInput SetWindowsHookExW UnhookWindowsHookEx"),
    ("user32.dll", "windows that are never shown: they hear of log-off and lock, and take the command for the display",
     "CreateWindowExW DefWindowProcW DestroyWindow DispatchMessageW MsgWaitForMultipleObjects PeekMessageW "
     "RegisterClassW UnregisterClassW"),
    ("user32.dll", "the screens by their older settings",
     "ChangeDisplaySettingsExW EnumDisplayDevicesW EnumDisplaySettingsExW EqualRect GetSystemMetrics IsRectEmpty "
     "OffsetRect"),
    ("user32.dll", "the question about them",
     "CreateDialogParamW FillRect GetDlgItem GetForegroundWindow GetMonitorInfoW GetSysColor GetSysColorBrush "
     "GetWindowRect InvalidateRect IsDialogMessageW MonitorFromPoint RegisterHotKey "
     "SendDlgItemMessageW SendMessageW SetDlgItemTextW SetFocus SetForegroundWindow SetTimer SetWindowPos "
     "SetWindowTextW ShowWindow TranslateMessage UnregisterHotKey"),
    ("user32.dll", "locking",
     "LockWorkStation"),
    ("user32.dll", "the size of icons",
     "GetDC ReleaseDC SystemParametersInfoW"),
    ("user32.dll", "whether there is a precision touchpad",
     "GetRawInputDeviceInfoW GetRawInputDeviceList"),
    ("user32.dll", "the object of a window, whose address has 64 bits",
     "GetWindowLongPtrW SetWindowLongPtrW", "x64-release"),
    ("user32.dll", "the object of a window, whose address has 32 bits",
     "GetWindowLongW SetWindowLongW", "x86-release"),
    ("wtsapi32.dll", "hearing of lock",
     "WTSRegisterSessionNotification WTSUnRegisterSessionNotification"),
]


def exports(preset):
    """{library: set of names} that the plug-ins of this preset may import."""
    allowed = {}
    for library, _, names, *only in ROWS:
        if only in ([], [preset]):
            allowed.setdefault(library, set()).update(names.split())
    return allowed
