; The Windows installer: the manager, the suite's programs we ship, the
; interface pictures and the empty data folders, with a Start-menu shortcut
; and an uninstaller. Built by the Windows build's `installer` target, which
; passes VERSION, BIN_DIR, FILES (the File and Delete lines of the shipped
; executables), ICON and OUT_FILE.
;
; The program keeps its files beside itself, so it goes by default into
; C:\Vexlane, where every operator may write. Installed elsewhere (under
; Program Files), the data folders are opened to the local Users group.
;
;   VexlaneSetup-<version>.exe /S /D=C:\Some folder      silent, into a folder
;   Uninstall.exe /S                                     silent, keeps the data
;   Uninstall.exe /S /REMOVEDATA                         silent, removes it too
; /D= must be the last argument and is not quoted, even with blanks.

Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel admin

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include "${FILES}"

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vexlane"
!define PRODUCT_KEY "Software\Vexlane"
; The local Users group by its well-known SID: its name depends on the
; language of Windows.
!define USERS_SID "*S-1-5-32-545"

Name "Vexlane"
Caption "Установка Vexlane ${VERSION}"
OutFile "${OUT_FILE}"
; A new version goes where the last one went, unless the operator says otherwise.
InstallDir "C:\Vexlane"
InstallDirRegKey HKLM "${PRODUCT_KEY}" "InstallDir"
ShowInstDetails show
ShowUninstDetails show

VIProductVersion "${VERSION}"
VIFileVersion "${VERSION}"
VIAddVersionKey /LANG=1049 "ProductName" "Vexlane"
VIAddVersionKey /LANG=1049 "FileDescription" "Установка Vexlane"
VIAddVersionKey /LANG=1049 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1049 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=1049 "LegalCopyright" "Vexlane"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\vexlane.exe"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "Russian"

; The folders the manager and the streams write into.
!macro ForEachDataFolder _MACRO
  !insertmacro ${_MACRO} "configs"
  !insertmacro ${_MACRO} "logs"
  !insertmacro ${_MACRO} "dumps"
  !insertmacro ${_MACRO} "videos"
  !insertmacro ${_MACRO} "reports"
!macroend

; Made empty and never filled by the installer: a configs folder without
; files makes the first start write its defaults, and a second install over
; an earlier one leaves the operator's files as they are.
!macro MakeDataFolder _NAME
  CreateDirectory "$INSTDIR\${_NAME}"
  nsExec::ExecToLog '"$SYSDIR\icacls.exe" "$INSTDIR\${_NAME}" /grant ${USERS_SID}:(OI)(CI)M /T /C /Q'
  Pop $0
  ${If} $0 != 0
    DetailPrint "icacls $INSTDIR\${_NAME}: $0"
  ${EndIf}
!macroend

!macro RemoveDataFolder _NAME
  RMDir /r "$INSTDIR\${_NAME}"
!macroend

Section "Vexlane"
  SetShellVarContext all
  SetOutPath "$INSTDIR"
  !insertmacro VexlaneFiles
  SetOutPath "$INSTDIR\images"
  File "${BIN_DIR}\images\*.png"
  !insertmacro ForEachDataFolder MakeDataFolder

  ; The shortcut starts in the program's folder.
  SetOutPath "$INSTDIR"
  CreateShortcut "$SMPROGRAMS\Vexlane.lnk" "$INSTDIR\vexlane.exe" "" "$INSTDIR\vexlane.exe" 0

  WriteUninstaller "$INSTDIR\Uninstall.exe"
  WriteRegStr HKLM "${PRODUCT_KEY}" "InstallDir" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Vexlane"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "Vexlane"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\vexlane.exe"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Var RemoveData

Function un.onInit
  StrCpy $RemoveData 0
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/REMOVEDATA" $1
  ${IfNot} ${Errors}
    StrCpy $RemoveData 1
  ${EndIf}
FunctionEnd

Section "Uninstall"
  SetShellVarContext all
  !insertmacro VexlaneUnFiles
  RMDir /r "$INSTDIR\images"
  Delete "$SMPROGRAMS\Vexlane.lnk"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
  DeleteRegKey HKLM "${PRODUCT_KEY}"

  ; The operator's settings, white lists, logs and videos stay unless asked
  ; for; a silent uninstall keeps them.
  ${If} $RemoveData != 1
    MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 \
      "Удалить также настройки, белые списки, журналы, отчёты и видео из папки $INSTDIR?" \
      /SD IDNO IDNO keep
    StrCpy $RemoveData 1
    keep:
  ${EndIf}
  ${If} $RemoveData == 1
    !insertmacro ForEachDataFolder RemoveDataFolder
  ${EndIf}

  Delete "$INSTDIR\Uninstall.exe"
  ; Only when nothing is left in it.
  RMDir "$INSTDIR"
SectionEnd
