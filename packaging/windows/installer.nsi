; Installer of Brindle for one user, without administrator's rights:  brindle-setup.exe [/S] [/D=C:\folder]
; Made by `build`, which defines VERSION, PROGRAM (the folder with what is installed), INSTALLEDLANGUAGES (a file with a
; line to delete each of its language files; the user may have put others beside them), ICON and OUTPUT.
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
ManifestSupportedOS Win10

!include "MUI2.nsh"
!include "FileFunc.nsh"

Name "Brindle"
Caption "Brindle ${VERSION} Setup"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Brindle"
InstallDirRegKey HKCU "Software\Norvane Software\Brindle" "Folder"

VIProductVersion "${VERSION}.0.0"
VIAddVersionKey "ProductName" "Brindle"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "Norvane Software"
VIAddVersionKey "FileDescription" "Setup of Brindle"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Norvane Software"

!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Brindle"
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\brindle.exe"

; The notices of the libraries are for reading, not an agreement.
!define MUI_PAGE_HEADER_TEXT "The libraries"
!define MUI_PAGE_HEADER_SUBTEXT "What Brindle is built with, and under which terms."
!define MUI_LICENSEPAGE_TEXT_TOP "The libraries that Brindle is built with, and their notices:"
!define MUI_LICENSEPAGE_TEXT_BOTTOM "No licence has been granted for Brindle itself yet."
!define MUI_LICENSEPAGE_BUTTON "$(^NextBtn)"
!insertmacro MUI_PAGE_LICENSE "${PROGRAM}/third-party.txt"
!define MUI_COMPONENTSPAGE_NODESC
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "French"
!insertmacro MUI_LANGUAGE "Spanish"
!insertmacro MUI_LANGUAGE "Italian"

; A program that runs holds its file; half an update would be worse than none. UN is empty or "un.".
!macro DefineEnsureNotRunning UN
Function ${UN}EnsureNotRunning
  again:
    IfFileExists "$INSTDIR\brindle.exe" 0 free
    ClearErrors
    FileOpen $0 "$INSTDIR\brindle.exe" a
    IfErrors 0 opened
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Brindle is running. Please close it." /SD IDCANCEL IDRETRY again
    SetErrorLevel 2
    Quit
  opened:
    FileClose $0
  free:
FunctionEnd
!macroend
!insertmacro DefineEnsureNotRunning ""
!insertmacro DefineEnsureNotRunning "un."

Section "Brindle"
  SectionIn RO
  Call EnsureNotRunning
  SetOutPath "$INSTDIR"
  File "${PROGRAM}/brindle.exe"
  File "${PROGRAM}/brindle-cli.exe"
  File "${PROGRAM}/brindle-cli-demo.exe"
  File "${PROGRAM}/sites.ini"
  File "${PROGRAM}/third-party.txt"
  SetOutPath "$INSTDIR\languages"
  File "${PROGRAM}/languages/*.dat"
!ifdef RECIPES
  SetOutPath "$INSTDIR\directories"
  File "${PROGRAM}/directories/*.toml"
!endif
  SetOutPath "$INSTDIR\translations"
  File "${PROGRAM}/translations/*.qm"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  CreateShortcut "$SMPROGRAMS\Brindle.lnk" "$INSTDIR\brindle.exe"

  WriteRegStr HKCU "Software\Norvane Software\Brindle" "Folder" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "Brindle"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\brindle.exe"
  WriteRegStr HKCU "${UNINSTALL}" "Publisher" "Norvane Software"
  WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  IntFmt $0 "0x%08X" $0
  WriteRegDWORD HKCU "${UNINSTALL}" "EstimatedSize" "$0"
SectionEnd

Section /o "Desktop icon"
  CreateShortcut "$DESKTOP\Brindle.lnk" "$INSTDIR\brindle.exe"
SectionEnd

; Takes away what was installed and nothing else: settings and saved leads are the user's.
Section "Uninstall"
  Call un.EnsureNotRunning
  Delete "$SMPROGRAMS\Brindle.lnk"
  Delete "$DESKTOP\Brindle.lnk"
  Delete "$INSTDIR\brindle.exe"
  Delete "$INSTDIR\brindle-cli.exe"
  Delete "$INSTDIR\brindle-cli-demo.exe"
  Delete "$INSTDIR\sites.ini"
  Delete "$INSTDIR\third-party.txt"
  !include "${INSTALLEDLANGUAGES}"
  RMDir "$INSTDIR\languages"
  RMDir "$INSTDIR\translations"
  RMDir "$INSTDIR\directories"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKCU "${UNINSTALL}"
  DeleteRegKey HKCU "Software\Norvane Software\Brindle"
  DeleteRegKey /ifempty HKCU "Software\Norvane Software"
SectionEnd
