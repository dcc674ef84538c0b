; The installer: for the user who runs it, without administrator rights. tools/make-package.py runs
; makensis on this and hands in VERSION, CONTENT (the folder to install), REMOVAL (the list of what
; to delete), PICTURES (the folder with the program's), KILOBYTES and OUTFILE.
;
;   setup.exe /S                without questions; as it was at an update, else the usual choices
;       /ASSOC=1 or 0           .mlv and .mvt open with Melvorin, or do not
;       /DESKTOP=1 or 0         a shortcut on the desktop, or none
;       /STARTMENU=1 or 0       entries in the Start menu, or none
;       /D=C:\Folder            where to; the last one, without quotes
;
; Exit code 0: done; 1: the user has broken off; 2: something is in the way.

Unicode true
RequestExecutionLevel user
SetCompressor /SOLID lzma
ManifestDPIAware true
AllowSkipFiles off

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh
!include WinVer.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Melvorin"
!define CLASSES "Software\Classes"
!define SONG "Melvorin.Song"
; Where an extension keeps the name of the program that had it before.
!define BEFORE "Melvorin.before"

Name "Melvorin"
OutFile "${OUTFILE}"
InstallDir "$LOCALAPPDATA\Programs\Melvorin"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "Melvorin ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Melvorin"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Installer of Melvorin"
VIAddVersionKey "LegalCopyright" "The authors of Melvorin"

!define MUI_ICON "${PICTURES}/melvorin.ico"
!define MUI_UNICON "${PICTURES}/melvorin.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURES}/melvorin-installer.bmp"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_TEXT "Run Melvorin"
!define MUI_FINISHPAGE_RUN_FUNCTION RunMelvorin
!insertmacro MUI_PAGE_LICENSE "${CONTENT}/Licences/Melvorin.txt"
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; ---- What both programs need -------------------------------------------------------------------

; A program that runs cannot be opened for writing.
!macro WaitUntilClosed un
Function ${un}WaitUntilClosed
  ${Do}
    StrCpy $1 ""
    ${ForEach} $0 1 2 + 1
      ${If} $0 == 1
        StrCpy $2 "Melvorin.exe"
      ${Else}
        StrCpy $2 "melvorin-cli.exe"
      ${EndIf}
      ${If} ${FileExists} "$INSTDIR\$2"
        ClearErrors
        FileOpen $3 "$INSTDIR\$2" a
        ${If} ${Errors}
          StrCpy $1 $2
        ${Else}
          FileClose $3
        ${EndIf}
      ${EndIf}
    ${Next}
    ${If} $1 == ""
      Return
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Melvorin is running ($INSTDIR\$1), or its file \
is locked.$\r$\n$\r$\nSave your song and close the program, then choose Retry. Nothing has been \
changed up to now." /SD IDCANCEL IDRETRY again
    SetErrorLevel 2
    Quit
    again:
  ${Loop}
FunctionEnd
!macroend
!insertmacro WaitUntilClosed ""
!insertmacro WaitUntilClosed "un."

; Windows draws the icons of documents anew.
!macro TellAssociationsChanged
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

; Gives an extension back to the program that had it before, unless it is another's by now.
!macro ReleaseExtension extension
  DeleteRegValue HKCU "${CLASSES}\${extension}\OpenWithProgids" "${SONG}"
  DeleteRegKey /ifempty HKCU "${CLASSES}\${extension}\OpenWithProgids"
  ReadRegStr $0 HKCU "${CLASSES}\${extension}" ""
  ${If} $0 == "${SONG}"
    ReadRegStr $1 HKCU "${CLASSES}\${extension}" "${BEFORE}"
    ${If} $1 == ""
      DeleteRegValue HKCU "${CLASSES}\${extension}" ""
    ${Else}
      WriteRegStr HKCU "${CLASSES}\${extension}" "" $1
    ${EndIf}
  ${EndIf}
  DeleteRegValue HKCU "${CLASSES}\${extension}" "${BEFORE}"
  DeleteRegKey /ifempty HKCU "${CLASSES}\${extension}"
!macroend

!macro ReleaseExtensions
  !insertmacro ReleaseExtension ".mlv"
  !insertmacro ReleaseExtension ".mvt"
  DeleteRegKey HKCU "${CLASSES}\${SONG}"
!macroend

!macro TakeExtension extension
  ReadRegStr $0 HKCU "${CLASSES}\${extension}" ""
  ${If} $0 != ""
  ${AndIf} $0 != "${SONG}"
    WriteRegStr HKCU "${CLASSES}\${extension}" "${BEFORE}" $0
  ${EndIf}
  WriteRegStr HKCU "${CLASSES}\${extension}" "" "${SONG}"
  WriteRegStr HKCU "${CLASSES}\${extension}\OpenWithProgids" "${SONG}" ""
!macroend

!macro RemoveShortcuts
  Delete "$SMPROGRAMS\Melvorin\Melvorin.lnk"
  Delete "$SMPROGRAMS\Melvorin\Uninstall Melvorin.lnk"
  RMDir "$SMPROGRAMS\Melvorin"
  Delete "$DESKTOP\Melvorin.lnk"
!macroend

; ---- Installing --------------------------------------------------------------------------------

!macro RemoveVersion folder switch
  ${If} ${FileExists} "${folder}\Uninstall.exe"
    ExecWait '"${folder}\Uninstall.exe" /S ${switch} _?=${folder}' $0
    ${If} $0 != 0
      MessageBox MB_OK|MB_ICONSTOP "The version in ${folder} cannot be replaced. Close all its \
windows and try again." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
  ${EndIf}
!macroend

Section "Melvorin" Program
  SectionIn RO
  Call WaitUntilClosed

  ; What an older version had and this one has not goes with its own uninstaller.
  ReadRegStr $R1 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  !insertmacro RemoveVersion "$INSTDIR" "/UPDATE"
  SetOutPath "$INSTDIR"
  ${If} $R1 != ""
  ${AndIf} $R1 != $INSTDIR
    ; It moves, and the user's choices with it.
    CopyFiles /SILENT "$R1\Melvorin.ini" "$INSTDIR"
    !insertmacro RemoveVersion "$R1" ""
    Delete "$R1\Uninstall.exe"
    RMDir "$R1"
  ${EndIf}

  File /r "${CONTENT}/*"
  WriteUninstaller "$INSTDIR\Uninstall.exe"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Melvorin"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "The authors of Melvorin"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Melvorin.exe,0"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" ${KILOBYTES}
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Function RunMelvorin
  SetOutPath "$DOCUMENTS"
  Exec '"$INSTDIR\Melvorin.exe"'
FunctionEnd

Section "Entries in the Start menu" StartMenu
  ; Where the programs start, and so where a first song is saved: not in the program folder.
  SetOutPath "$DOCUMENTS"
  CreateDirectory "$SMPROGRAMS\Melvorin"
  CreateShortcut "$SMPROGRAMS\Melvorin\Melvorin.lnk" "$INSTDIR\Melvorin.exe"
  CreateShortcut "$SMPROGRAMS\Melvorin\Uninstall Melvorin.lnk" "$INSTDIR\Uninstall.exe"
SectionEnd

Section /o "Shortcut on the desktop" Desktop
  SetOutPath "$DOCUMENTS"
  CreateShortcut "$DESKTOP\Melvorin.lnk" "$INSTDIR\Melvorin.exe"
SectionEnd

Section /o "Open .mlv and .mvt songs with Melvorin" Associations
  WriteRegStr HKCU "${CLASSES}\${SONG}" "" "Chord chart"
  WriteRegStr HKCU "${CLASSES}\${SONG}\DefaultIcon" "" "$INSTDIR\Melvorin.exe,0"
  WriteRegStr HKCU "${CLASSES}\${SONG}\shell\open\command" "" '"$INSTDIR\Melvorin.exe" "%1"'
  !insertmacro TakeExtension ".mlv"
  !insertmacro TakeExtension ".mvt"
SectionEnd

; What was chosen before and is not any more, and what to choose at the next update.
Section "-Choices"
  ${IfNot} ${SectionIsSelected} ${StartMenu}
    Delete "$SMPROGRAMS\Melvorin\Melvorin.lnk"
    Delete "$SMPROGRAMS\Melvorin\Uninstall Melvorin.lnk"
    RMDir "$SMPROGRAMS\Melvorin"
  ${EndIf}
  ${IfNot} ${SectionIsSelected} ${Desktop}
    Delete "$DESKTOP\Melvorin.lnk"
  ${EndIf}
  ${IfNot} ${SectionIsSelected} ${Associations}
    !insertmacro ReleaseExtensions
  ${EndIf}
  !insertmacro TellAssociationsChanged
  !macro Remember section name
    StrCpy $0 0
    ${If} ${SectionIsSelected} ${section}
      StrCpy $0 1
    ${EndIf}
    WriteRegDWORD HKCU "${UNINSTALL_KEY}" "${name}" $0
  !macroend
  !insertmacro Remember ${StartMenu} "STARTMENU"
  !insertmacro Remember ${Desktop} "DESKTOP"
  !insertmacro Remember ${Associations} "ASSOC"
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${Program} "The program with its chord dictionary, tuner and \
help, for you alone. It needs no administrator rights."
  !insertmacro MUI_DESCRIPTION_TEXT ${StartMenu} "Melvorin and its uninstaller in the Start menu."
  !insertmacro MUI_DESCRIPTION_TEXT ${Desktop} "Melvorin on the desktop."
  !insertmacro MUI_DESCRIPTION_TEXT ${Associations} "A double click on such a song opens it. \
Uninstalling gives them back to the program that they belong to now."
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; The switch of that name, else the choice of the last time, else what is usual.
!macro Preselect section name
  ReadRegDWORD $0 HKCU "${UNINSTALL_KEY}" "${name}"
  ClearErrors
  ${GetOptions} $R0 "/${name}=" $1
  ${IfNot} ${Errors}
    StrCpy $0 $1
  ${EndIf}
  ${If} $0 == "1"
    !insertmacro SelectSection ${section}
  ${ElseIf} $0 == "0"
    !insertmacro UnselectSection ${section}
  ${EndIf}
!macroend

Function .onInit
  ${IfNot} ${AtLeastWin7}
    MessageBox MB_OK|MB_ICONSTOP "Melvorin needs Windows 7 or later." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  ${GetParameters} $R0
  !insertmacro Preselect ${StartMenu} "STARTMENU"
  !insertmacro Preselect ${Desktop} "DESKTOP"
  !insertmacro Preselect ${Associations} "ASSOC"
FunctionEnd

; ---- Uninstalling ------------------------------------------------------------------------------

Section "Uninstall"
  Call un.WaitUntilClosed
  !include "${REMOVAL}"

  ; Between two versions the rest stays.
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/UPDATE" $0
  ${IfNot} ${Errors}
    Return
  ${EndIf}

  ; What the program has written beside itself.
  SetFileAttributes "$INSTDIR\Melvorin.exe.manifest" NORMAL
  Delete "$INSTDIR\Melvorin.exe.manifest"
  Delete "$INSTDIR\Melvorin.ini"
  Delete "$INSTDIR\Uninstall.exe"
  ; Stays where somebody has put a file of his own into it.
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"

  !insertmacro RemoveShortcuts
  !insertmacro ReleaseExtensions
  !insertmacro TellAssociationsChanged
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd
