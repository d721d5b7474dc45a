; The installer: for the one who runs it, or for the machine with an administrator's rights.
;   setup.exe /S                silent, for this user
;   setup.exe /S /AllUsers      silent, for the machine
;   setup.exe /S /D=C:\Tools\Quovane Developer      another folder; the last argument, no quotes
; Uninstalling removes the programs and what the installer wrote. Books, settings and whatever else
; was put into the folder stay.

Target amd64-unicode
ManifestDPIAware true
ManifestLongPathAware true
SetCompressor /SOLID lzma

!define PRODUCT "Quovane Developer Pro"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\QuovaneDeveloper"

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_DEFAULT_CURRENTUSER
!define MULTIUSER_INSTALLMODE_INSTDIR "Quovane Developer"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_USE_PROGRAMFILES64
!include MultiUser.nsh
!include MUI2.nsh
!include x64.nsh
!include LogicLib.nsh
!include FileFunc.nsh

Name "${PRODUCT}"
OutFile "${OUTPUT}"
BrandingText "${PRODUCT} ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${PRODUCT}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Installs ${PRODUCT}"
VIAddVersionKey "LegalCopyright" "2026 Quovane Developer team"
VIAddVersionKey "FileVersion" "${VERSION}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURE}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\quovane-developer.exe"

!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; What /D named, or where the uninstaller lies: choosing the mode forgets it.
Var folder

; What follows would ask, and nobody is there to answer.
!macro REFUSE_SILENTLY_WITHOUT_RIGHTS
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/AllUsers" $1
    ${IfNot} ${Errors}
    ${AndIf} ${Silent}
        UserInfo::GetAccountType
        Pop $1
        ${If} $1 != "Admin"
            SetErrorLevel 740 ; "the requested operation requires elevation"
            Quit
        ${EndIf}
    ${EndIf}
!macroend

Function .onInit
    ${IfNot} ${RunningX64}
        MessageBox MB_ICONSTOP|MB_OK "${PRODUCT} needs a 64-bit Windows 10 or later." /SD IDOK
        Abort
    ${EndIf}
    StrCpy $folder $INSTDIR
    !insertmacro REFUSE_SILENTLY_WITHOUT_RIGHTS
    !insertmacro MULTIUSER_INIT
    ${If} $folder != ""
        StrCpy $INSTDIR $folder
    ${EndIf}
FunctionEnd

Function un.onInit
    StrCpy $folder $INSTDIR
    !insertmacro MULTIUSER_UNINIT
    ReadRegStr $0 HKLM "${UNINSTALL}" "InstallLocation"
    ${If} $0 == $folder
        Call un.MultiUser.InstallMode.AllUsers
    ${EndIf}
    StrCpy $INSTDIR $folder
FunctionEnd

; A program that runs cannot be written: half of the files would be new and half of them old.
!macro REFUSE_WHILE_RUNS PROGRAM
    ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
        ${Do}
            ClearErrors
            FileOpen $0 "$INSTDIR\${PROGRAM}" a
            ${IfNot} ${Errors}
                FileClose $0
                ${ExitDo}
            ${EndIf}
            ${If} ${Cmd} `MessageBox MB_ICONEXCLAMATION|MB_RETRYCANCEL "$INSTDIR\${PROGRAM} cannot be replaced. Close ${PRODUCT} and its help, index manager and command line, then try again." /SD IDCANCEL IDCANCEL`
                SetErrorLevel 2
                Quit
            ${EndIf}
        ${Loop}
    ${EndIf}
!macroend

!macro REFUSE_WHILE_PROGRAMS_RUN
    !insertmacro REFUSE_WHILE_RUNS quovane-developer.exe
    !insertmacro REFUSE_WHILE_RUNS StartApp.exe
    !insertmacro REFUSE_WHILE_RUNS QV_IBLIndexMgr.exe
    !insertmacro REFUSE_WHILE_RUNS qvdev.exe
!macroend

Section
    !insertmacro REFUSE_WHILE_PROGRAMS_RUN
    SetOutPath "$INSTDIR"
    File /r "${PROGRAMS}/*"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateDirectory "$SMPROGRAMS\Quovane"
    CreateShortcut "$SMPROGRAMS\Quovane\QV Developer.lnk" "$INSTDIR\quovane-developer.exe"
    CreateShortcut "$SMPROGRAMS\Quovane\Help viewer.lnk" "$INSTDIR\StartApp.exe"
    CreateShortcut "$SMPROGRAMS\Quovane\Index manager.lnk" "$INSTDIR\QV_IBLIndexMgr.exe"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayName" "${PRODUCT}"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr SHCTX "${UNINSTALL}" "Publisher" "Quovane Developer team"
    WriteRegStr SHCTX "${UNINSTALL}" "DisplayIcon" "$INSTDIR\quovane-developer.exe"
    WriteRegStr SHCTX "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr SHCTX "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
    WriteRegStr SHCTX "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
    WriteRegDWORD SHCTX "${UNINSTALL}" "EstimatedSize" ${SIZE}
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL}" "NoRepair" 1
SectionEnd

; Only what was installed, by name: an installation folder may hold a server's books.
Section "Uninstall"
    !insertmacro REFUSE_WHILE_PROGRAMS_RUN
    !include "${PROGRAMS}.uninstall.nsh"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\Quovane\QV Developer.lnk"
    Delete "$SMPROGRAMS\Quovane\Help viewer.lnk"
    Delete "$SMPROGRAMS\Quovane\Index manager.lnk"
    RMDir "$SMPROGRAMS\Quovane"
    DeleteRegKey SHCTX "${UNINSTALL}"
SectionEnd
