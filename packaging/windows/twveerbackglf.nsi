; The add-in's installer: puts the module and the viewer's tool under
; Program Files, registers the module through its own server functions,
; and leaves an uninstaller with its Add/Remove Programs entry.
;   makensis -DDLL=... -DVEERBACK=... -DOUTFILE=... -DVERSION=... twveerbackglf.nsi
; A 64-bit installer for a 64-bit module: it sees the registry and Program
; Files as the module does.
Target amd64-unicode
!include "LogicLib.nsh"

!define PRODUCT "twveerbackglf"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}"
!define CLSID "{4285DA55-60B0-4098-802D-93FB37FFBD68}"

Name "Veerback add-in for Gearloft"
OutFile "${OUTFILE}"
InstallDir "$PROGRAMFILES64\${PRODUCT}"
RequestExecutionLevel admin
ShowInstDetails nevershow
ShowUninstDetails nevershow

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

; The class keys the module writes, removed by name when its own
; unregistration can't run.
!macro RemoveClassKeys
  DeleteRegKey HKCR "CLSID\${CLSID}"
  DeleteRegKey HKCR "TWVeerbackGlf.TWVeerbackGlfServer"
  DeleteRegKey HKCR "TWVeerbackGlf.TWVeerbackGlfServer.1"
  DeleteRegKey HKCR "TypeLib\{87F89B3F-63AB-4FD0-9D08-2F92D86D83D3}"
  DeleteRegKey HKCR "Interface\{D0F55412-A3DF-4877-B411-06F72ABA27D2}"
!macroend

Section "Add-in"
  SetOutPath "$INSTDIR"
  File "/oname=twveerbackglf.dll" "${DLL}"
  File "/oname=veerback.exe" "${VEERBACK}"
  ClearErrors
  ExecWait '"$INSTDIR\veerback.exe" register "$INSTDIR\twveerbackglf.dll"' $0
  ${If} ${Errors}
  ${OrIf} $0 != 0
    MessageBox MB_ICONSTOP "The add-in could not be registered (veerback register gave $0); nothing was installed." /SD IDOK
    Delete "$INSTDIR\twveerbackglf.dll"
    Delete "$INSTDIR\veerback.exe"
    ; Out of the folder, so that it can go.
    SetOutPath "$TEMP"
    RMDir "$INSTDIR"
    SetErrorLevel 2
    Abort
  ${EndIf}
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Veerback add-in for Gearloft"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "twveerbackglf"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  ClearErrors
  ExecWait '"$INSTDIR\veerback.exe" unregister "$INSTDIR\twveerbackglf.dll"' $0
  ${If} ${Errors}
  ${OrIf} $0 != 0
    !insertmacro RemoveClassKeys
  ${EndIf}
  Delete "$INSTDIR\twveerbackglf.dll"
  Delete "$INSTDIR\veerback.exe"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
SectionEnd
