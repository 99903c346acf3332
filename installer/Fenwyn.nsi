; The Windows installer. ./package calls makensis with these definitions:
;   VERSION, VERSION_NUMBERS   1.0.0 and 1.0.0.0
;   CONTENTS                   folder with welcome.bmp and the lists that installer/contents.py made of the stage folders
;   OUTPUT                     the file to write
;   SIGN                       optional: a command that signs a file, whose name follows
;
; Command line:
;   /S                 without questions          /D=FOLDER            where to; the last argument, without quotes
;   /AllUsers          for the machine            /CurrentUser         for the user, without administrator rights
;   /32, /64           which programs; without it, of the kind that is installed, or else the 64-bit ones
;   /NOLIST            leave the function list alone
;   /NOMENU            no entry in the start menu /NOAUTOSTART         do not start with Windows
; Of the uninstaller: /S, /AllUsers, /CurrentUser, and /REMOVESETTINGS.
; Exit code: 0 done, 1 cancelled, 2 a file cannot be replaced, 3 not enough rights.
Unicode true
Target amd64-unicode
ManifestDPIAware true
ManifestSupportedOS all
SetCompressor /SOLID lzma
; A file's time is that of its installation, so that the package does not depend on when it was built.
SetDateSave off

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Fenwyn"
!define RUN_KEY "Software\Microsoft\Windows\CurrentVersion\Run"
!define SETTINGS_KEY "SOFTWARE\KESTOVA\Fenwyn"
!define MAKER_KEY "SOFTWARE\KESTOVA"
; Size and time of each file as it was installed. A file that differs is somebody else's.
!define RECORD "$INSTDIR\installed.ini"
!define SETTINGS_LINK "Fenwyn Settings.lnk"
; Which programs are installed, 32 or 64, beside their folder.
!define BITS_VALUE "Bits"
; What starts with Windows; the settings write the same.
!define START_FENWYN '"$INSTDIR\Fenwyn.exe"'
!define START_TRAY '"$INSTDIR\FenwynSettings.exe" /tray'
!define FRAME_CLASS "ZelMainCls"
!define SETTINGS_CLASS "KESTOVA_Fenwyn_Settings"
!define TRAY_CLASS "FenwynTray"
!define END_WAIT_MS 15000
; PROCESS_QUERY_LIMITED_INFORMATION and SYNCHRONIZE
!define PROCESS_RIGHTS 0x101000
!define TRAY_END_EVENT "Local\KESTOVA_Fenwyn_Tray_End"
!define EVENT_MODIFY_STATE 2

!define ERROR_IN_USE 2
!define ERROR_RIGHTS 3

!include "${CONTENTS}\size.nsh"

Name "Fenwyn"
OutFile "${OUTPUT}"
BrandingText "Fenwyn ${VERSION}"
VIProductVersion "${VERSION_NUMBERS}"
VIAddVersionKey /LANG=0 "ProductName" "Fenwyn"
VIAddVersionKey /LANG=0 "CompanyName" "KESTOVA"
VIAddVersionKey /LANG=0 "FileDescription" "Fenwyn Setup"
VIAddVersionKey /LANG=0 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=0 "LegalCopyright" "The Fenwyn developers"
!ifdef SIGN
  !uninstfinalize '${SIGN} "%1"' = 0
  !finalize '${SIGN} "%1"' = 0
!endif

; An administrator chooses; anybody else installs for himself, without being asked for rights.
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR "Fenwyn"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_USE_PROGRAMFILES64
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include Sections.nsh
!include StrFunc.nsh
!include WinMessages.nsh

Var GivenFolder
Var ChosenFor    ; the mode (all users, one user) for which the components were chosen
Var Running      ; "1": Fenwyn was ended and is to be started again
Var TrayRunning  ; the same of the icon in the notification area
Var Problem      ; what cannot be replaced, for the message

!define MUI_ICON "..\src\res\Fenwyn.ico"
!define MUI_UNICON "..\src\res\Fenwyn.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${CONTENTS}\welcome.bmp"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${CONTENTS}\welcome.bmp"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!insertmacro MUI_PAGE_WELCOME
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!define MUI_PAGE_CUSTOMFUNCTION_PRE chooseComponents
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION showFenwyn
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

; Of a few languages, makensis lacks some texts; those that it has count.
!macro FENWYN_LANGUAGE TAG NAME
  !if /FileExists "strings\missing\${TAG}.nsh"
    !include "strings\missing\${TAG}.nsh"
  !endif
  !insertmacro MUI_LANGUAGE "${NAME}"
  !insertmacro LANGFILE_INCLUDE "strings\${TAG}.nsh"
!macroend
!include "${CONTENTS}\languages.nsh"

; ---- Both in the installer and in the uninstaller

; The state of a file in $0: size and time of its last change; empty if there is none. Takes its name, below $INSTDIR,
; from the stack. Uses $1 to $3.
!macro FILE_STATE un
Function ${un}fileState
  Pop $1
  StrCpy $0 ""
  ${If} ${FileExists} "$INSTDIR\$1"
    FileOpen $2 "$INSTDIR\$1" r
    FileSeek $2 0 END $0
    FileClose $2
    GetFileTime "$INSTDIR\$1" $2 $3
    StrCpy $0 "$0 $2 $3"
  ${EndIf}
FunctionEnd
!macroend

; Whether each of our files can be replaced; otherwise $Problem names the first that cannot. Nothing is changed.
!macro CHECK_FILE NAME
  ${If} $Problem == ""
  ${AndIf} ${FileExists} "$INSTDIR\${NAME}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${NAME}" a
    ${If} ${Errors}
      StrCpy $Problem "${NAME}"
    ${Else}
      FileClose $0
    ${EndIf}
  ${EndIf}
!macroend

; Finds the program of this folder that has a window of a class: its process in $2, which must be closed, and the window in
; $0. $2 is 0 if there is none; one that runs from another folder is left alone. Takes class and file from the stack.
; Uses $0 to $4.
!macro OPEN_PROGRAM un
Function ${un}openProgram
  Pop $4
  Pop $3
  StrCpy $2 0
  FindWindow $0 $3 ""
  ${If} $0 P<> 0
    System::Call 'user32::GetWindowThreadProcessId(p r0, *i .r1) i'
    System::Call 'kernel32::OpenProcess(i ${PROCESS_RIGHTS}, i 0, i r1) p .r2'
    System::Call 'kernel32::QueryFullProcessImageNameW(p r2, i 0, w .r3, *i ${NSIS_MAX_STRLEN}) i .r1'
    ${If} $1 == 0
    ${OrIf} $3 != "$INSTDIR\$4"
      System::Call 'kernel32::CloseHandle(p r2) i'
      StrCpy $2 0
    ${EndIf}
  ${EndIf}
FunctionEnd
!macroend

; Closes the program's window and waits for its end. RUNNING, a variable or nothing, becomes "1" if it ran.
!macro CLOSE_PROGRAM un CLASS FILE RUNNING
  Push "${CLASS}"
  Push "${FILE}"
  Call ${un}openProgram
  ${If} $2 P<> 0
    !if "${RUNNING}" != ""
      StrCpy ${RUNNING} "1"
    !endif
    System::Call 'user32::PostMessageW(p r0, i ${WM_CLOSE}, p 0, p 0) i'
    !insertmacro AWAIT_END
  ${EndIf}
!macroend

; Waits for the end of the process in $2, and closes it.
!macro AWAIT_END
  System::Call 'kernel32::WaitForSingleObject(p r2, i ${END_WAIT_MS}) i'
  System::Call 'kernel32::CloseHandle(p r2) i'
!macroend

; Ends what runs from this folder and can be asked to: the settings as "Cancel" does, Fenwyn as a shutdown of Windows does
; (the plug-ins are finalised), the icon in the notification area by its own event. What was ended stays noted when this
; is called again. Uses $0 to $4.
!macro END_PROGRAMS un
Function ${un}endPrograms
  !insertmacro CLOSE_PROGRAM "${un}" "${SETTINGS_CLASS}" "FenwynSettings.exe" ""
  !insertmacro CLOSE_PROGRAM "${un}" "${FRAME_CLASS}" "Fenwyn.exe" $Running
  Push "${TRAY_CLASS}"
  Push "FenwynSettings.exe"
  Call ${un}openProgram
  ${If} $2 P<> 0
    StrCpy $TrayRunning "1"
    System::Call 'kernel32::OpenEventW(i ${EVENT_MODIFY_STATE}, i 0, w "${TRAY_END_EVENT}") p .r4'
    System::Call 'kernel32::SetEvent(p r4) i'
    System::Call 'kernel32::CloseHandle(p r4) i'
    !insertmacro AWAIT_END
  ${EndIf}
FunctionEnd
!macroend

; The installer of all users has rights that the programs must not have; the shell starts them with the user's, without
; arguments.
!macro START un
Function ${un}startFenwyn
  ${If} $MultiUser.InstallMode == "AllUsers"
    Exec '"$WINDIR\explorer.exe" ${START_FENWYN}'
  ${Else}
    Exec '${START_FENWYN}'
  ${EndIf}
FunctionEnd

; The icon of all users comes back with the next sign-in, or by the settings.
Function ${un}startTray
  ${If} $MultiUser.InstallMode != "AllUsers"
    Exec '${START_TRAY}'
  ${EndIf}
FunctionEnd

Function ${un}startAgain
  ${If} $Running == "1"
    Call ${un}startFenwyn
  ${EndIf}
  ${If} $TrayRunning == "1"
    Call ${un}startTray
  ${EndIf}
FunctionEnd
!macroend

; Ends the programs and sees to it that our files can be replaced; asks again until they can. Does not return otherwise.
!macro MAKE_READY un
Function ${un}makeReady
  ${Do}
    Call ${un}endPrograms
    StrCpy $Problem ""
    !if "${un}" == ""
      ; Without our list beside it, it is another product's.
      ${If} ${FileExists} "$INSTDIR\Uninstall.exe"
      ${AndIfNot} ${FileExists} "${RECORD}"
        StrCpy $Problem "Uninstall.exe"
      ${EndIf}
    !endif
    !insertmacro CHECK_FILE "Uninstall.exe"
    !include "${CONTENTS}\check.nsh"
    ${If} $Problem == ""
      Return
    ${EndIf}
    ${IfNot} ${Cmd} 'MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(TEXT_IN_USE)" /SD IDCANCEL IDRETRY'
      Call ${un}startAgain
      SetErrorLevel ${ERROR_IN_USE}
      Quit
    ${EndIf}
  ${Loop}
FunctionEnd
!macroend

!insertmacro FILE_STATE ""
!insertmacro FILE_STATE "un."
!insertmacro OPEN_PROGRAM ""
!insertmacro OPEN_PROGRAM "un."
!insertmacro END_PROGRAMS ""
!insertmacro END_PROGRAMS "un."
!insertmacro START ""
!insertmacro START "un."
!insertmacro MAKE_READY ""

; ---- Installer

; Whether the file that $1 names is of some Fenwyn, by its version information: $0 is "1" then. Uses $2 to $6.
Function isOfFenwyn
  StrCpy $0 ""
  System::Call 'version::GetFileVersionInfoSizeW(w r1, p 0) i .r2'
  ${If} $2 <> 0
    System::Alloc $2
    Pop $3
    System::Call 'version::GetFileVersionInfoW(w r1, i 0, i r2, p r3) i .r4'
    ${If} $4 <> 0
      System::Call 'version::VerQueryValueW(p r3, w "\StringFileInfo\040904B0\ProductName", *p .r5, *i .r6) i .r4'
      ${If} $4 <> 0
        System::Call '*$5(&w32 .r6)'
        ${If} $6 == "Fenwyn"
          StrCpy $0 "1"
        ${EndIf}
      ${EndIf}
    ${EndIf}
    System::Free $3
  ${EndIf}
FunctionEnd

; `KIND`: "own", always as in this package; "maker": a maker's own file of that name, which is there, stays.
!macro INSTALL_FILE KIND NAME SOURCE
  !if "${KIND}" == "maker"
  StrCpy $1 "$INSTDIR\${NAME}"
  Call isOfFenwyn
  ${If} $0 == ""
  ${AndIf} ${FileExists} "$INSTDIR\${NAME}"
    DetailPrint "$(TEXT_KEPT) ${NAME}"
  ${Else}
  !endif
    File "/oname=${NAME}" "${SOURCE}"
    Push "${NAME}"
    Call fileState
    WriteINIStr "${RECORD}" "files" "${NAME}" $0
  !if "${KIND}" == "maker"
  ${EndIf}
  !endif
!macroend

Section "!Fenwyn" SecProgram
  SectionIn RO
  AddSize ${SIZE_KB}
  Call makeReady
  Call removeOldFiles
  SetOutPath $INSTDIR
  SetOverwrite on
  Call installFiles
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "Fenwyn"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "KESTOVA"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Fenwyn.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} $INSTDIR "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section /o "$(TEXT_32)" Sec32
  ; installFiles looks whether this one is chosen.
SectionEnd

Section "$(TEXT_LIST)" SecList
  ; Leaves a list that is there as it is.
  ${If} $MultiUser.InstallMode == "AllUsers"
    nsExec::ExecToLog '"$INSTDIR\FenwynCheck.exe" --register --elevated'
  ${Else}
    nsExec::ExecToLog '"$INSTDIR\FenwynCheck.exe" --register --user'
  ${EndIf}
  Pop $0
SectionEnd

Section "$(TEXT_MENU)" SecMenu
  SetOutPath $INSTDIR
  CreateShortcut "$SMPROGRAMS\Fenwyn.lnk" "$INSTDIR\Fenwyn.exe"
  CreateShortcut "$SMPROGRAMS\${SETTINGS_LINK}" "$INSTDIR\FenwynSettings.exe"
SectionEnd

Section "$(TEXT_AUTOSTART)" SecAutostart
  WriteRegStr SHCTX "${RUN_KEY}" "Fenwyn" '${START_FENWYN}'
  WriteRegStr SHCTX "${RUN_KEY}" "FenwynTray" '${START_TRAY}'
SectionEnd

Section "-restart"
  Call startAgain
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${Sec32} "$(TEXT_32_MORE)"
  !insertmacro MUI_DESCRIPTION_TEXT ${SecList} "$(TEXT_LIST_MORE)"
  !insertmacro MUI_DESCRIPTION_TEXT ${SecAutostart} "$(TEXT_AUTOSTART_MORE)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function installFiles
  ${If} ${SectionIsSelected} ${Sec32}
    !include "${CONTENTS}\install-32.nsh"
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "${BITS_VALUE}" 32
  ${Else}
    !include "${CONTENTS}\install-64.nsh"
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "${BITS_VALUE}" 64
  ${EndIf}
FunctionEnd

; From the last page. Fenwyn alone shows nothing until a key is held; the icon does, or, where it cannot be started, the
; settings.
Function showFenwyn
  ${If} $Running == ""
    Call startFenwyn
  ${EndIf}
  Call startTray
  ${If} $MultiUser.InstallMode == "AllUsers"
    Exec '"$WINDIR\explorer.exe" "$INSTDIR\FenwynSettings.exe"'
  ${EndIf}
FunctionEnd

; What an earlier version installed goes by its own list; what belongs to the user stays.
Function removeOldFiles
  ${If} ${FileExists} "${RECORD}"
    ExecWait '"$INSTDIR\Uninstall.exe" /S /UPGRADE /$MultiUser.InstallMode _?=$INSTDIR'
  ${EndIf}
FunctionEnd

; An upgrade installs programs of the same kind, and does not bring back what the user has switched off.
Function rememberChoices
  ReadRegStr $0 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 == ""
    Return
  ${EndIf}
  ReadRegDWORD $0 SHCTX "${UNINSTALL_KEY}" "${BITS_VALUE}"
  ${If} $0 == 32
    !insertmacro SelectSection ${Sec32}
  ${EndIf}
  ReadRegStr $0 SHCTX "${RUN_KEY}" "Fenwyn"
  ${If} $0 == ""
    !insertmacro UnselectSection ${SecAutostart}
  ${EndIf}
  ${IfNot} ${FileExists} "$SMPROGRAMS\Fenwyn.lnk"
    !insertmacro UnselectSection ${SecMenu}
  ${EndIf}
FunctionEnd

!macro OPTION NAME CHANGE SECTION
  ClearErrors
  ${GetOptions} $R0 "${NAME}" $R1
  ${IfNot} ${Errors}
    !insertmacro ${CHANGE} ${SECTION}
  ${EndIf}
!macroend

; Once for each mode, so that a choice on the page stays when the user goes back and forth.
Function chooseComponents
  ${If} $ChosenFor == $MultiUser.InstallMode
    Return
  ${EndIf}
  StrCpy $ChosenFor $MultiUser.InstallMode
  !insertmacro UnselectSection ${Sec32}
  !insertmacro SelectSection ${SecList}
  !insertmacro SelectSection ${SecMenu}
  !insertmacro SelectSection ${SecAutostart}
  Call rememberChoices
  ${GetParameters} $R0
  !insertmacro OPTION "/64" UnselectSection ${Sec32}
  !insertmacro OPTION "/32" SelectSection ${Sec32}
  !insertmacro OPTION "/NOLIST" UnselectSection ${SecList}
  !insertmacro OPTION "/NOMENU" UnselectSection ${SecMenu}
  !insertmacro OPTION "/NOAUTOSTART" UnselectSection ${SecAutostart}
FunctionEnd

Function .onInit
  SetRegView 64
  StrCpy $GivenFolder $INSTDIR
  ${GetParameters} $R0
  ; The question of the library that follows would be shown in spite of /S.
  UserInfo::GetAccountType
  Pop $R1
  ClearErrors
  ${GetOptions} $R0 "/AllUsers" $R2
  ${IfNot} ${Errors}
  ${AndIf} ${Silent}
  ${AndIf} $R1 != "Admin"
    SetErrorLevel ${ERROR_RIGHTS}
    Quit
  ${EndIf}
  !insertmacro MULTIUSER_INIT
  ${If} $GivenFolder != ""
    StrCpy $INSTDIR $GivenFolder
  ${EndIf}
  Call chooseComponents
FunctionEnd

; ---- Uninstaller

!insertmacro MAKE_READY "un."

; Removes a file if it is as it was installed. Takes its name from the stack.
Function un.removeFile
  Pop $4
  Push $4
  Call un.fileState
  ReadINIStr $5 "${RECORD}" "files" $4
  ${If} $0 == ""
    Return
  ${ElseIf} $0 == $5
    Delete "$INSTDIR\$4"
  ${Else}
    DetailPrint "$(TEXT_KEPT) $4"
  ${EndIf}
FunctionEnd

!macro REMOVE_FILE NAME
  Push "${NAME}"
  Call un.removeFile
!macroend

Function un.onInit
  SetRegView 64
  !insertmacro MULTIUSER_UNINIT
FunctionEnd

!macro REMOVE_SETTINGS ROOT
  DeleteRegKey ${ROOT} "${SETTINGS_KEY}"
  DeleteRegKey /ifempty ${ROOT} "${MAKER_KEY}"
!macroend

Function un.removeSettings
  !insertmacro REMOVE_SETTINGS HKCU
  ${If} $MultiUser.InstallMode == "AllUsers"
    !insertmacro REMOVE_SETTINGS HKLM
    ; The machine's settings of the 32-bit programs.
    SetRegView 32
    !insertmacro REMOVE_SETTINGS HKLM
    SetRegView 64
  ${EndIf}
  ; Those of the log.
  Delete "$INSTDIR\DbgLog.ini"
  ; Where a plug-in was at fault, its dumps stay, and so does the folder.
  SetShellVarContext current
  Delete "$LOCALAPPDATA\KESTOVA\Fenwyn\log.txt"
  Delete "$LOCALAPPDATA\KESTOVA\Fenwyn\calls.bin"
  RMDir "$LOCALAPPDATA\KESTOVA\Fenwyn"
  RMDir "$LOCALAPPDATA\KESTOVA"
  ${If} $MultiUser.InstallMode == "AllUsers"
    SetShellVarContext all
  ${EndIf}
FunctionEnd

; Ours alone: another Fenwyn may start with Windows too.
!macro REMOVE_START ROOT NAME COMMAND
  ReadRegStr $0 ${ROOT} "${RUN_KEY}" "${NAME}"
  ${If} $0 == '${COMMAND}'
    DeleteRegValue ${ROOT} "${RUN_KEY}" "${NAME}"
  ${EndIf}
!macroend

Section "Uninstall"
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/UPGRADE" $R1
  StrCpy $R2 ""
  ${IfNot} ${Errors}
    StrCpy $R2 "upgrade"
  ${EndIf}
  ${If} $R2 == ""
    Call un.makeReady
    ; Of the function list goes what nobody has changed.
    ${If} $MultiUser.InstallMode == "AllUsers"
      nsExec::ExecToLog '"$INSTDIR\FenwynCheck.exe" --unregister --elevated'
    ${Else}
      nsExec::ExecToLog '"$INSTDIR\FenwynCheck.exe" --unregister --user'
    ${EndIf}
    Pop $0
    StrCpy $R1 "no"
    ClearErrors
    ${GetOptions} $R0 "/REMOVESETTINGS" $R3
    ${IfNot} ${Errors}
      StrCpy $R1 "yes"
    ${EndIf}
    ${If} $R1 == "no"
      MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "$(TEXT_REMOVE_SETTINGS)" /SD IDNO IDNO +2
      StrCpy $R1 "yes"
    ${EndIf}
    ${If} $R1 == "yes"
      Call un.removeSettings
    ${EndIf}
    Delete "$SMPROGRAMS\Fenwyn.lnk"
    Delete "$SMPROGRAMS\${SETTINGS_LINK}"
    ; The settings write values for the user, also where Fenwyn was installed for everybody.
    !insertmacro REMOVE_START SHCTX "Fenwyn" '${START_FENWYN}'
    !insertmacro REMOVE_START SHCTX "FenwynTray" '${START_TRAY}'
    !insertmacro REMOVE_START HKCU "Fenwyn" '${START_FENWYN}'
    !insertmacro REMOVE_START HKCU "FenwynTray" '${START_TRAY}'
    DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  ${EndIf}
  !include "${CONTENTS}\remove.nsh"
  Delete "${RECORD}"
  ${If} $R2 == ""
    Delete "$INSTDIR\Uninstall.exe"
    SetOutPath $TEMP
    RMDir $INSTDIR
  ${EndIf}
SectionEnd
