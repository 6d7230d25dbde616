; The installer of Carvelot, for all users of a 64-bit Windows. Made by packaging/windows/build, which defines:
;
;   STAGE     folder with the files to install
;   FILES     two lists made of them: FILES.delete.nsh, FILES.folders.nsh
;   VERSION   four numbers
;   SIZE      what they take on a disk, in KB
;   ICON      the program's icon
;   OUTPUT    the installer to write
;   SIGN      a program that signs the file that it is given

Unicode true
Target amd64-unicode
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include x64.nsh

Name "Carvelot"
OutFile "${OUTPUT}"
InstallDir "$PROGRAMFILES64\Carvelot"
RequestExecutionLevel admin
SetCompressor /SOLID lzma
ManifestDPIAware true
ManifestSupportedOS Win10
BrandingText "Carvelot ${VERSION}"

VIProductVersion "${VERSION}"
VIAddVersionKey ProductName "Carvelot"
VIAddVersionKey CompanyName "Tamrisk"
VIAddVersionKey FileDescription "Installer of Carvelot"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey LegalCopyright "MIT licence"

!uninstfinalize '"${SIGN}" "%1"' = 0

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Carvelot"
!define APP_PATH_KEY "Software\Microsoft\Windows\CurrentVersion\App Paths\carvelot.exe"
!define APPLICATION_KEY "Software\Classes\Applications\carvelot.exe"
!define LOG_CLASS "Carvelot.Log"
!define LOG_CLASS_KEY "Software\Classes\${LOG_CLASS}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_LICENSE "${STAGE}\LICENSE.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

; Nothing is changed while a file could not be replaced or removed.
!macro RequireNotRunning
    ${If} ${FileExists} "$INSTDIR\carvelot.exe"
        ClearErrors
        FileOpen $0 "$INSTDIR\carvelot.exe" a
        ${If} ${Errors}
            MessageBox MB_OK|MB_ICONEXCLAMATION "Carvelot is running, or its files are protected. Close it and try again." /SD IDOK
            SetErrorLevel 2
            Abort
        ${EndIf}
        FileClose $0
    ${EndIf}
!macroend

Function .onInit
    ${IfNot} ${RunningX64}
        MessageBox MB_OK|MB_ICONSTOP "Carvelot needs a 64-bit Windows." /SD IDOK
        Abort
    ${EndIf}
    SetRegView 64
    SetShellVarContext all
    ; Where an earlier version stands, this one goes too, unless /D= says otherwise.
    ${If} $INSTDIR == "$PROGRAMFILES64\Carvelot"
        ReadRegStr $0 HKLM "${UNINSTALL_KEY}" "InstallLocation"
        ${If} $0 != ""
            StrCpy $INSTDIR $0
        ${EndIf}
    ${EndIf}
FunctionEnd

Section
    !insertmacro RequireNotRunning
    SetOutPath "$INSTDIR"
    ; What an earlier version had and this one has not does not stay behind.
    ${If} ${FileExists} "$INSTDIR\uninstall.exe"
        ExecWait '"$INSTDIR\uninstall.exe" /S _?=$INSTDIR'
    ${EndIf}
    File /r "${STAGE}\*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateShortcut "$SMPROGRAMS\Carvelot.lnk" "$INSTDIR\carvelot.exe" "" "" "" "" "" "Analyses JD Edwards debug logs"

    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Carvelot"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "Tamrisk"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\carvelot.exe,0"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE}
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1

    WriteRegStr HKLM "${APP_PATH_KEY}" "" "$INSTDIR\carvelot.exe"

    ; Carvelot joins the programs that a .log can be opened with. Which one opens it is left as it is.
    WriteRegStr HKLM "${APPLICATION_KEY}" "FriendlyAppName" "Carvelot"
    WriteRegStr HKLM "${APPLICATION_KEY}\SupportedTypes" ".log" ""
    WriteRegStr HKLM "${APPLICATION_KEY}\shell\open\command" "" '"$INSTDIR\carvelot.exe" "%1"'
    WriteRegStr HKLM "${LOG_CLASS_KEY}" "" "Log file"
    WriteRegStr HKLM "${LOG_CLASS_KEY}\DefaultIcon" "" "$INSTDIR\carvelot.exe,0"
    WriteRegStr HKLM "${LOG_CLASS_KEY}\shell\open\command" "" '"$INSTDIR\carvelot.exe" "%1"'
    WriteRegStr HKLM "Software\Classes\.log\OpenWithProgids" "${LOG_CLASS}" ""
    ${RefreshShellIcons}
SectionEnd

Function un.onInit
    SetRegView 64
    SetShellVarContext all
FunctionEnd

Section Uninstall
    !insertmacro RequireNotRunning
    ; Our own files, one by one: what a user has put beside the program, such as Skelmond.DLL, is not ours to remove.
    !include "${FILES}.delete.nsh"
    Delete "$INSTDIR\uninstall.exe"
    SetOutPath "$TEMP"
    !include "${FILES}.folders.nsh"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Carvelot.lnk"

    DeleteRegKey HKLM "${UNINSTALL_KEY}"
    DeleteRegKey HKLM "${APP_PATH_KEY}"
    DeleteRegKey HKLM "${APPLICATION_KEY}"
    DeleteRegKey HKLM "${LOG_CLASS_KEY}"
    DeleteRegValue HKLM "Software\Classes\.log\OpenWithProgids" "${LOG_CLASS}"
    DeleteRegKey /ifempty HKLM "Software\Classes\.log\OpenWithProgids"
    DeleteRegKey /ifempty HKLM "Software\Classes\.log"
    ${RefreshShellIcons}

    ; The settings are the user's, and stay unless that is said: an update runs this too, silently.
    ${un.GetParameters} $0
    ClearErrors
    ${un.GetOptions} $0 "/SETTINGS" $1
    ${If} ${Errors}
        MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "Remove your settings and the list of recent files too?" /SD IDNO IDYES remove
        Return
    ${EndIf}
    remove:
    DeleteRegKey HKCU "Software\Tamrisk\Carvelot"
    DeleteRegKey /ifempty HKCU "Software\Tamrisk"
SectionEnd
