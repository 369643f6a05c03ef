; The installer of the control for Windows: both kinds of the library, registered, the manual and
; the samples. scripts/package/windows.sh compiles it.
;
;   marlune-VERSION-setup.exe /S [/D=C:\folder]     without a question
;   uninstall.exe /S                                removes everything again
;
; Defined by the caller: VERSION, STAGE (the folder with the files), OUTPUT, and FILES, a list of
; File and Delete lines for what STAGE holds beside the libraries.
Unicode true
Name "Marlune"
OutFile "${OUTPUT}"
InstallDir ""
RequestExecutionLevel admin
SetCompressor /SOLID lzma
ShowInstDetails show
ShowUninstDetails show
!include FileFunc.nsh
!include LogicLib.nsh
!include x64.nsh
!include "${FILES}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Marlune"
VIAddVersionKey CompanyName "Marlune"
VIAddVersionKey LegalCopyright "Copyright (c) 2026 The Marlune authors"
VIAddVersionKey FileDescription "Marlune GPS transfer control, installer"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey ProductVersion "${VERSION}"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

!define REMOVAL "Software\Microsoft\Windows\CurrentVersion\Uninstall\Marlune"

; The folders' names on a 64-bit system and on a 32-bit one: the 32-bit library stands in a folder
; of its own below the chosen one.
!macro setUp
    SetShellVarContext all
    ${If} ${RunningX64}
        SetRegView 64
    ${EndIf}
!macroend

Function .onInit
    !insertmacro setUp
    ${If} $INSTDIR == ""
        ${If} ${RunningX64}
            StrCpy $INSTDIR "$PROGRAMFILES64\Marlune"
        ${Else}
            StrCpy $INSTDIR "$PROGRAMFILES32\Marlune"
        ${EndIf}
    ${EndIf}
FunctionEnd

Function un.onInit
    !insertmacro setUp
FunctionEnd

; regsvr32 of each kind, as the library's: this installer is a 32-bit program, and the system shows
; it its 64-bit programs as "sysnative".
!macro regsvr32 folder switches library
    ExecWait '"$WINDIR\${folder}\regsvr32.exe" /s ${switches} "${library}"' $0
!macroend

!macro orFail what
    ${If} ${Errors}
    ${OrIf} $0 != 0
        DetailPrint "${what} ($0)"
        SetErrorLevel 2
        Abort "${what}"
    ${EndIf}
!macroend

Section
    SetOverwrite on
    StrCpy $0 0
    ClearErrors
    ${If} ${RunningX64}
        SetOutPath "$INSTDIR\x64"
        File "${STAGE}\x64\marlune.ocx"
        File "${STAGE}\x64\marlune.manifest"
        !insertmacro orFail "The 64-bit library cannot be copied. Is a program using it?"
        !insertmacro regsvr32 sysnative "" "$INSTDIR\x64\marlune.ocx"
        !insertmacro orFail "The 64-bit library cannot be registered"
    ${EndIf}
    SetOutPath "$INSTDIR\x86"
    ClearErrors
    File "${STAGE}\x86\marlune.ocx"
    File "${STAGE}\x86\marlune.manifest"
    !insertmacro orFail "The 32-bit library cannot be copied. Is a program using it?"
    ; To a 32-bit program the system shows its own 32-bit programs under the usual name.
    !insertmacro regsvr32 system32 "" "$INSTDIR\x86\marlune.ocx"
    !insertmacro orFail "The 32-bit library cannot be registered"

    !insertmacro copyFiles
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    CreateDirectory "$SMPROGRAMS\Marlune"
    CreateShortCut "$SMPROGRAMS\Marlune\Manual.lnk" "$INSTDIR\manual\marlune.chm"
    CreateShortCut "$SMPROGRAMS\Marlune\Samples.lnk" "$INSTDIR\samples"
    CreateShortCut "$SMPROGRAMS\Marlune\Remove Marlune.lnk" "$INSTDIR\uninstall.exe"

    ${GetSize} "$INSTDIR" "/S=0K" $1 $2 $3
    WriteRegStr HKLM "${REMOVAL}" DisplayName "Marlune GPS transfer control"
    WriteRegStr HKLM "${REMOVAL}" DisplayVersion "${VERSION}"
    WriteRegStr HKLM "${REMOVAL}" Publisher "Marlune"
    WriteRegStr HKLM "${REMOVAL}" InstallLocation "$INSTDIR"
    WriteRegStr HKLM "${REMOVAL}" UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKLM "${REMOVAL}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKLM "${REMOVAL}" EstimatedSize $1
    WriteRegDWORD HKLM "${REMOVAL}" NoModify 1
    WriteRegDWORD HKLM "${REMOVAL}" NoRepair 1
SectionEnd

Section Uninstall
    ${If} ${RunningX64}
        !insertmacro regsvr32 sysnative /u "$INSTDIR\x64\marlune.ocx"
        Delete "$INSTDIR\x64\marlune.ocx"
        Delete "$INSTDIR\x64\marlune.manifest"
        RMDir "$INSTDIR\x64"
    ${EndIf}
    !insertmacro regsvr32 system32 /u "$INSTDIR\x86\marlune.ocx"
    Delete "$INSTDIR\x86\marlune.ocx"
    Delete "$INSTDIR\x86\marlune.manifest"
    RMDir "$INSTDIR\x86"
    ; Only what was installed: a file that the user has put beside it stays, with its folder.
    !insertmacro deleteFiles
    Delete "$SMPROGRAMS\Marlune\Manual.lnk"
    Delete "$SMPROGRAMS\Marlune\Samples.lnk"
    Delete "$SMPROGRAMS\Marlune\Remove Marlune.lnk"
    RMDir "$SMPROGRAMS\Marlune"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    DeleteRegKey HKLM "${REMOVAL}"
SectionEnd
