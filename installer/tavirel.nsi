; The Windows installer of Tavirel Puzzle: a per-user install with an uninstaller that keeps the player's games.
;
; Built by installer/build-setup.sh, which stages the files and defines:
;   VERSION     the game's version (x.y.z)
;   STAGE       the staging folder: bin32\ and bin64\ (Tavirel.exe, about.exe), game\ (the rest of the
;               game folder), install-files.nsh and uninstall-files.nsh (the lists made from game\)
;   ICON        the game's icon
;   OUTFILE     the setup to write
;   TARGET_AMD64  (optional) a 64-bit setup: only 64-bit Wine can run setups on the build machines; the
;               setup players get is 32-bit so that one file serves 32-bit and 64-bit Windows
;   COMPRESSOR  (optional) zlib for a quick test build; lzma otherwise

!ifndef VERSION | STAGE | ICON | OUTFILE
  !error "VERSION, STAGE, ICON and OUTFILE must be defined"
!endif

Unicode true
!ifdef TARGET_AMD64
  Target amd64-unicode
!endif
!ifdef COMPRESSOR
  SetCompressor /SOLID ${COMPRESSOR}
!else
  SetCompressor /SOLID lzma
!endif

!define PRODUCT "Tavirel Puzzle"
!define PUBLISHER "The Tavirel Puzzle team"
!define UNINST_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\TavirelPuzzle"
; Where the chosen language is remembered, so the uninstaller speaks it too.
!define SETTINGS_KEY "Software\Tavirel Puzzle"

!include MUI2.nsh
!include x64.nsh
!include LogicLib.nsh
!include nsDialogs.nsh
!include FileFunc.nsh

Name "${PRODUCT}"
OutFile "${OUTFILE}"
; The game writes its saved games, records and settings beside itself, so it lives where the player
; may write: no administrator is needed.
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\${PRODUCT}"
InstallDirRegKey HKCU "${UNINST_KEY}" "InstallLocation"
ManifestDPIAware true
BrandingText "${PRODUCT} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey /LANG=1033 "ProductName" "${PRODUCT}"
VIAddVersionKey /LANG=1033 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileDescription" "${PRODUCT} ${VERSION} Setup"
VIAddVersionKey /LANG=1033 "CompanyName" "${PUBLISHER}"
VIAddVersionKey /LANG=1033 "LegalCopyright" "${PUBLISHER}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_LANGDLL_REGISTRY_ROOT HKCU
!define MUI_LANGDLL_REGISTRY_KEY "${SETTINGS_KEY}"
!define MUI_LANGDLL_REGISTRY_VALUENAME "InstallerLanguage"
!define MUI_FINISHPAGE_RUN "$INSTDIR\Tavirel.exe"

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH

!insertmacro MUI_UNPAGE_CONFIRM
UninstPage custom un.KeepPageShow un.KeepPageLeave
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_UNPAGE_FINISH

!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "Spanish"
!insertmacro MUI_RESERVEFILE_LANGDLL

!include /CHARSET=UTF8 "strings.nsh"

; 1 when the player asked the uninstaller to take the saved games, records and settings too.
Var RemovePlayerData
Var RemoveBox

Function .onInit
  !insertmacro MUI_LANGDLL_DISPLAY
FunctionEnd

Section "$(SecGameName)" SecGame
  SectionIn RO
  SetOutPath "$INSTDIR"
  ; One setup carries both builds; the one that matches Windows goes in under the one name.
  ${If} ${RunningX64}
    File "/oname=Tavirel.exe" "${STAGE}\bin64\Tavirel.exe"
    File "/oname=about.exe" "${STAGE}\bin64\about.exe"
  ${Else}
    File "/oname=Tavirel.exe" "${STAGE}\bin32\Tavirel.exe"
    File "/oname=about.exe" "${STAGE}\bin32\about.exe"
  ${EndIf}
  ; Program files only: what the player made (folder\*.epf, Records.qmr, Resume.epf, tavirel.ini) is
  ; never in the setup, so installing over an older version leaves it as it was.
  !include "${STAGE}\install-files.nsh"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\Uninstall.exe"

  SetShellVarContext current
  CreateShortCut "$SMPROGRAMS\${PRODUCT}.lnk" "$INSTDIR\Tavirel.exe" "" "$INSTDIR\Tavirel.exe" 0

  WriteRegStr HKCU "${UNINST_KEY}" "DisplayName" "${PRODUCT}"
  WriteRegStr HKCU "${UNINST_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINST_KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKCU "${UNINST_KEY}" "DisplayIcon" "$INSTDIR\Tavirel.exe,0"
  WriteRegStr HKCU "${UNINST_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINST_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINST_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINST_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINST_KEY}" "NoRepair" 1
  SectionGetSize ${SecGame} $0
  WriteRegDWORD HKCU "${UNINST_KEY}" "EstimatedSize" $0
SectionEnd

Section "$(SecDesktopName)" SecDesktop
  SetShellVarContext current
  CreateShortCut "$DESKTOP\${PRODUCT}.lnk" "$INSTDIR\Tavirel.exe" "" "$INSTDIR\Tavirel.exe" 0
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SecGame} "$(SecGameText)"
  !insertmacro MUI_DESCRIPTION_TEXT ${SecDesktop} "$(SecDesktopText)"
!insertmacro MUI_FUNCTION_DESCRIPTION_END

Function un.onInit
  !insertmacro MUI_UNGETLANGUAGE
  ; A silent uninstall keeps the player's files unless /REMOVEDATA is given.
  StrCpy $RemovePlayerData 0
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/REMOVEDATA" $1
  ${IfNot} ${Errors}
    StrCpy $RemovePlayerData 1
  ${EndIf}
FunctionEnd

Function un.KeepPageShow
  !insertmacro MUI_HEADER_TEXT "$(KeepTitle)" "$(KeepSubtitle)"
  nsDialogs::Create 1018
  Pop $0
  ${If} $0 == error
    Abort
  ${EndIf}
  ${NSD_CreateLabel} 0 0 100% 40u "$(KeepText)"
  Pop $0
  ${NSD_CreateCheckbox} 0 50u 100% 12u "$(RemoveData)"
  Pop $RemoveBox
  ${If} $RemovePlayerData == 1
    ${NSD_Check} $RemoveBox
  ${EndIf}
  nsDialogs::Show
FunctionEnd

Function un.KeepPageLeave
  ${NSD_GetState} $RemoveBox $0
  ${If} $0 == ${BST_CHECKED}
    StrCpy $RemovePlayerData 1
  ${Else}
    StrCpy $RemovePlayerData 0
  ${EndIf}
FunctionEnd

Section "Uninstall"
  SetShellVarContext current
  Delete "$SMPROGRAMS\${PRODUCT}.lnk"
  Delete "$DESKTOP\${PRODUCT}.lnk"

  ; Exactly what the setup wrote, so nothing else that may sit in the folder is touched.
  Delete "$INSTDIR\Tavirel.exe"
  Delete "$INSTDIR\about.exe"
  !include "${STAGE}\uninstall-files.nsh"

  ${If} $RemovePlayerData == 1
    Delete "$INSTDIR\folder\*.epf"
    Delete "$INSTDIR\Records.qmr"
    Delete "$INSTDIR\Resume.epf"
    Delete "$INSTDIR\tavirel.ini"
    DeleteRegKey HKCU "${SETTINGS_KEY}"
  ${EndIf}
  ; Folders go only when empty: a kept saved game keeps folder\ and the install folder.
  RMDir "$INSTDIR\folder"
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR"

  DeleteRegKey HKCU "${UNINST_KEY}"
SectionEnd
