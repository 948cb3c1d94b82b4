; The installer: puts the program and its tools in place, has the program set up its store and takes
; everything back where that says that the computer is not supported.
;   makensis -DVERSION=1.2.3 -DPROGRAMS=FOLDER -DPICTURES=FOLDER -DOUTPUT=FILE tonalyx.nsi
; PICTURES holds tonalyx.ico, side.bmp (164x314) and header.bmp (150x57).
; Tuning files that lie beside the installer are installed with the program, which imports them.
; Exit status: 0 done, 1603 not supported, 1618 the panel is running, 2 not installed.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel admin
ManifestDPIAware true

!include LogicLib.nsh
!include MUI2.nsh
!include FileFunc.nsh

!define NAME "Tonalyx"
!define MAKER "Norvane"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${NAME}"
!define SUPPORTED 0
!define NOT_INSTALLED 2
!define NOT_SUPPORTED 1603
!define RUNNING 1618
!define SYNCHRONIZE 0x100000

Var isUpdate

Name "${NAME}"
OutFile "${OUTPUT}"
BrandingText "${MAKER} ${NAME} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "CompanyName" "${MAKER}"
VIAddVersionKey "FileDescription" "${NAME} Setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright 2026 ${MAKER}"

!define MUI_ICON "${PICTURES}\tonalyx.ico"
!define MUI_UNICON "${PICTURES}\tonalyx.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURES}\side.bmp"
!define MUI_HEADERIMAGE
!define MUI_HEADERIMAGE_RIGHT
!define MUI_HEADERIMAGE_BITMAP "${PICTURES}\header.bmp"
!define MUI_WELCOMEPAGE_TEXT "Setup puts ${NAME} on this computer and imports the tuning of its \
  sound.$\r$\n$\r$\nClick Install to start."
!define MUI_UNCONFIRMPAGE_TEXT_TOP "${NAME} will be removed from this folder. What has been set with \
  it stays for the next installation."
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "Run ${NAME}"
!define MUI_FINISHPAGE_RUN_FUNCTION RunForThePerson

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; The shell starts it with the person's own rights, not with those of the installer.
Function RunForThePerson
  Exec '"$WINDIR\explorer.exe" "$INSTDIR\tonalyx.exe"'
FunctionEnd

; A running panel would keep its file, and the program would leave its work to it.
!macro START
  SetShellVarContext all
  SetRegView 64
  System::Call 'kernel32::OpenMutexW(i ${SYNCHRONIZE}, i 0, w "Velsona") p .r0'
  ${If} $0 P<> 0
    System::Call 'kernel32::CloseHandle(p r0)'
    MessageBox MB_OK|MB_ICONEXCLAMATION "${NAME} is running. Close it and try again." /SD IDOK
    SetErrorLevel ${RUNNING}
    Quit
  ${EndIf}
!macroend

; The program's log has its fixed place among the 32-bit programs.
Function .onInit
  !insertmacro START
  ReadEnvStr $0 "ProgramFiles(x86)"
  StrCpy $INSTDIR "$0\${MAKER}\${NAME}"
FunctionEnd
Function un.onInit
  !insertmacro START
FunctionEnd

!macro REMOVE_ALL
  Delete "$SMPROGRAMS\${NAME}.lnk"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
  Delete "$INSTDIR\tonalyx.exe"
  Delete "$INSTDIR\regtool.exe"
  Delete "$INSTDIR\enginemon.exe"
  Delete "$INSTDIR\laptopctl.exe"
  Delete "$INSTDIR\vtdmake.exe"
  Delete "$INSTDIR\*.vtd"
  Delete "$INSTDIR\Velsona.txt"
  Delete "$INSTDIR\uninstall.exe"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"
  RMDir "$INSTDIR\.."
!macroend

Function SetUpStore
  ClearErrors
  ExecWait '"$INSTDIR\tonalyx.exe" /init' $0
  ${If} ${Errors}
    StrCpy $0 ${NOT_INSTALLED}
  ${EndIf}
  ${If} $0 = ${SUPPORTED}
    Return
  ${EndIf}
  !insertmacro REMOVE_ALL
  ${If} $0 = ${NOT_SUPPORTED}
    MessageBox MB_OK|MB_ICONSTOP "${NAME} does not support this computer." /SD IDOK
  ${Else}
    MessageBox MB_OK|MB_ICONSTOP "${NAME} could not be set up (status $0)." /SD IDOK
    StrCpy $0 ${NOT_INSTALLED}
  ${EndIf}
  SetErrorLevel $0
  Quit
FunctionEnd

; A file that cannot be written ends the installation.
Function .onInstFailed
  ${If} $isUpdate != yes
    !insertmacro REMOVE_ALL
  ${EndIf}
FunctionEnd

Section
  ${If} ${FileExists} "$INSTDIR\uninstall.exe"
    StrCpy $isUpdate yes
  ${EndIf}
  SetOutPath "$INSTDIR"
  File "${PROGRAMS}\tonalyx.exe"
  File "${PROGRAMS}\regtool.exe"
  File "${PROGRAMS}\enginemon.exe"
  File "${PROGRAMS}\laptopctl.exe"
  File "${PROGRAMS}\vtdmake.exe"
  ${If} ${FileExists} "$EXEDIR\*.vtd"
    CopyFiles /SILENT "$EXEDIR\*.vtd" "$INSTDIR"
  ${EndIf}
  WriteUninstaller "$INSTDIR\uninstall.exe"
  Call SetUpStore

  CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\tonalyx.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "${MAKER}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\tonalyx.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

; What a person has set stays, as it does for the next installation.
Section Uninstall
  !insertmacro REMOVE_ALL
SectionEnd
