; The installation itself. PackageContents.xml comes last: until then 3ds Max sees no package.

!macro StopIfErrors LINE
    ${If} ${Errors}
        Call UndoFirstInstallation
        ${Stop} ${EXIT_FAILED} TEXT_FAILED `${LINE}`
    ${EndIf}
!macroend
!define StopIfErrors "!insertmacro StopIfErrors"

!macro SetRights FOLDER_OR_FILE RIGHTS
    Push "${FOLDER_OR_FILE}"
    Push "${RIGHTS}"
    Call SetRights
    Pop $R0
    ${If} $R0 <> 0
        ${Log} `rights on ${FOLDER_OR_FILE}: error $R0`
        Call UndoFirstInstallation
        ${Stop} ${EXIT_RIGHTS_NOT_SET} TEXT_RIGHTS_NOT_SET `the rights could not be set`
    ${EndIf}
!macroend
!define SetRights "!insertmacro SetRights"

; Looked at once more: until its rights are set, whoever made the folder can put a link in its place.
!macro MakeFolder FOLDER RIGHTS
    CreateDirectory "${FOLDER}"
    Push "${FOLDER}"
    Call Link
    Pop $R0
    ${If} $R0 != ""
        Call UndoFirstInstallation
        ${Stop} ${EXIT_LINK} TEXT_LINK `$R0 has become a link`
    ${EndIf}
    ${SetRights} "${FOLDER}" "${RIGHTS}"
!macroend
!define MakeFolder "!insertmacro MakeFolder"

; Only what comes from us may lie beside a program: Windows takes libraries from there.
!macro MakeProgramFolder FOLDER
    ${MakeFolder} "${FOLDER}" "${RIGHTS_PROGRAM}"
    Delete "${FOLDER}\*.*"
!macroend
!define MakeProgramFolder "!insertmacro MakeProgramFolder"

; The old file goes first: overwriting would keep its owner and its rights.
!macro Lay FOLDER NAME
    SetOutPath "$APPDATA\${FOLDER}"
    Delete "$APPDATA\${FOLDER}\${NAME}"
    File "${LAYOUT}/${FOLDER}/${NAME}"
    ${Log} `file: $APPDATA\${FOLDER}\${NAME}`
!macroend
!define Lay "!insertmacro Lay"

!macro LayScript NAME
    ${Lay} "${PRODUCT}\script" "${NAME}"
    ${SetRights} "${DATA_FOLDER}\script\${NAME}" "${RIGHTS_FILE}"
!macroend
!define LayScript "!insertmacro LayScript"

; Stack: text. Leaves 1 when a folder's name can end in it, otherwise 0. Character by character: comparisons of texts
; pass over some characters.
Function CanEndAName
    Exch $R1
    Push $R2
    Push $R3
    StrLen $R2 $R1
    ${DoWhile} $R2 > 0
        IntOp $R2 $R2 - 1
        StrCpy $R3 $R1 2 $R2
        ${If} $R3 == ".."
            StrCpy $R2 -1
        ${EndIf}
        StrCpy $R3 $R3 1
        ${If} $R3 == "\"
        ${OrIf} $R3 == "/"
        ${OrIf} $R3 == ":"
        ${OrIf} $R3 == "*"
        ${OrIf} $R3 == "?"
        ${OrIf} $R3 == "<"
        ${OrIf} $R3 == ">"
        ${OrIf} $R3 == "|"
        ${OrIf} $R3 == `"`
            StrCpy $R2 -1
        ${EndIf}
    ${Loop}
    StrCpy $R1 1
    ${If} $R2 < 0
        StrCpy $R1 0
    ${EndIf}
    Pop $R3
    Pop $R2
    Exch $R1
FunctionEnd

Function TakeOptions
    ReadRegDWORD $IniWritable HKLM "${UNINSTALL_KEY}" "IniWritable"
    StrCpy $Ip "127.0.0.1"
    StrCpy $Port "80"
    StrCpy $LowerVersion "${VERSION}"
    ${GetParameters} $Words
    Call NextWord
    ${DoWhile} $Word != ""
        ${TakeSwitch} "/ALLOWTARVOEXE" $AllowProgramInTheWay
        ${TakeSwitch} "/INIWRITABLE" $IniWritable
        ${TakeValue} "/IP=" $Ip
        ${TakeValue} "/LOWERVERSION=" $LowerVersion
        ${TakeValue} "/PORT=" $Port
        ${TakeValue} "/LOG=" $R3
        ${StopUnlessUnderstood}
        Call NextWord
    ${Loop}
    IntOp $R1 $Port + 0
    ${If} $Port != $R1
    ${OrIf} $Port < 1
    ${OrIf} $Port > 65535
        ${Stop} ${EXIT_BAD_OPTION} TEXT_BAD_OPTION `/PORT=$Port is no port from 1 to 65535`
    ${EndIf}
    Push $LowerVersion
    Call CanEndAName
    Pop $R1
    ${If} $R1 = 0
        ${Stop} ${EXIT_BAD_OPTION} TEXT_BAD_OPTION `/LOWERVERSION=$LowerVersion cannot end the name of a folder`
    ${EndIf}
FunctionEnd

Function .onInit
    SetShellVarContext all
    SetRegView 64
    ${OpenLog} "" "TarvoRendering-setup.log"
    !insertmacro MUI_LANGDLL_DISPLAY
    ${StopUnlessAdministrator}
    Call TakeOptions
FunctionEnd

Function UndoFirstInstallation
    ${If} $FirstInstallation == 1
        ${Log} `taking away what was laid down`
        SetOutPath $TEMP
        Call RemoveProgram
        ${If} $IniMade == 1
            Delete "${INI_FILE}"
        ${EndIf}
        Call RemoveEmptyFolders
    ${EndIf}
FunctionEnd

; The settings of whoever has been here before stay.
Function WriteIniFile
    ${If} ${FileExists} "${INI_FILE}"
        ${Log} `kept: ${INI_FILE}`
    ${Else}
        StrCpy $IniMade 1
        WriteINIStr "${INI_FILE}" general ip $Ip
        WriteINIStr "${INI_FILE}" general port $Port
        WriteINIStr "${INI_FILE}" general lowerversion $LowerVersion
        ${StopIfErrors} `the ini file could not be written`
        ; Calls it an error when all is well.
        FlushINI "${INI_FILE}"
        ClearErrors
        ${Log} `file: ${INI_FILE}`
    ${EndIf}
    ${If} $IniWritable == 1
        ${SetRights} "${INI_FILE}" "${RIGHTS_OPEN_INI}"
    ${Else}
        ${SetRights} "${INI_FILE}" "${RIGHTS_FILE}"
    ${EndIf}
FunctionEnd

; The plugin's log folder carries the client's lowest version in its name. What a user may have written into the ini file
; must not lead elsewhere, nor stop an upgrade.
Function MakeLogFolder
    ReadINIStr $LowerVersion "${INI_FILE}" general lowerversion
    Push $LowerVersion
    Call CanEndAName
    Pop $R1
    ${If} $R1 = 1
        CreateDirectory "${DATA_FOLDER}\log$LowerVersion"
        ${If} ${FileExists} "${DATA_FOLDER}\log$LowerVersion\*.*"
            ${MakeFolder} "${DATA_FOLDER}\log$LowerVersion" "${RIGHTS_WRITTEN}"
            Return
        ${EndIf}
    ${EndIf}
    ${Log} `no log folder: lowerversion=$LowerVersion`
FunctionEnd

Function LayData
    ${MakeFolder} "${DATA_FOLDER}" "${RIGHTS_DATA}"
    ${MakeProgramFolder} "${DATA_FOLDER}\7-Zip"
    ${MakeFolder} "${DATA_FOLDER}\script" "${RIGHTS_SCRIPT}"
    ${MakeFolder} "${DATA_FOLDER}\json" "${RIGHTS_WRITTEN}"
    ${MakeFolder} "${DATA_FOLDER}\compress" "${RIGHTS_WRITTEN}"
    ${Lay} "${PRODUCT}\7-Zip" 7z.exe
    ${Lay} "${PRODUCT}\7-Zip" 7z.dll
    ${Lay} "${PRODUCT}\7-Zip" License.txt
    ${LayScript} MaxRenderGlobalsParser.ms
    ${LayScript} TarvoAntivirusAdsl_UTF8.ms
    ${LayScript} TarvoAntivirusAlc_UTF8.ms
    ${LayScript} TarvoAntivirusCrp_UTF8.ms
    ; Made from an older script; the host makes a new one at its next start.
    Call RemoveEncryptedScript
FunctionEnd

!define PACKAGE "Autodesk\ApplicationPlugins\TarvoRendering"

Function LayPackage
    CreateDirectory "$APPDATA\Autodesk\ApplicationPlugins"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Contents"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Diagnostics"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Licences"
    ${Lay} "${PACKAGE}\Contents" TarvoRendering.gup
    ${Lay} "${PACKAGE}\Contents" PrepareAnalysisScript.ms
    ${Lay} "${PACKAGE}\Diagnostics" tarvo_diagnostics.exe
    ${Lay} "${PACKAGE}\Diagnostics" TarvoDiagnostics.cmd
    ${Lay} "${PACKAGE}\Diagnostics" manifest.txt
    !include "${LICENCE_LIST}"
    ${Lay} "${PACKAGE}" INSTALL.txt
    WriteUninstaller "${PACKAGE_FOLDER}\Uninstall.exe"
    ${Log} `file: ${PACKAGE_FOLDER}\Uninstall.exe`
    ${Lay} "${PACKAGE}" PackageContents.xml
FunctionEnd

Function MakeMenuEntry
    CreateDirectory "${MENU_FOLDER}"
    ; Another language may have been chosen this time.
    Delete "${MENU_FOLDER}\${LINK_NAME_EN}.lnk"
    Delete "${MENU_FOLDER}\${LINK_NAME_ZH}.lnk"
    SetOutPath "${PACKAGE_FOLDER}\Diagnostics"
    CreateShortCut "${MENU_FOLDER}\$(LINK_NAME).lnk" "${PACKAGE_FOLDER}\Diagnostics\TarvoDiagnostics.cmd" "" \
        "${PACKAGE_FOLDER}\Uninstall.exe" 0 SW_SHOWNORMAL "" "$(LINK_HINT)"
FunctionEnd

Function Register
    WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayName "${PRODUCT} ${VERSION}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayIcon "${PACKAGE_FOLDER}\Uninstall.exe"
    WriteRegStr HKLM "${UNINSTALL_KEY}" Publisher "Marrowby"
    WriteRegStr HKLM "${UNINSTALL_KEY}" InstallLocation "${PACKAGE_FOLDER}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" UninstallString '"${PACKAGE_FOLDER}\Uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL_KEY}" QuietUninstallString '"${PACKAGE_FOLDER}\Uninstall.exe" /S'
    WriteRegStr HKLM "${UNINSTALL_KEY}" Language $LANGUAGE
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" NoModify 1
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" NoRepair 1
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" IniWritable $IniWritable
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" EstimatedSize ${SIZE_KB}
FunctionEnd

Section
    SetOverwrite try
    Call StopIfLinkInTheWay
    Call StopIfProgramInTheWay
    Call StopIfInUse
    StrCpy $FirstInstallation 1
    ${If} ${FileExists} "${PACKAGE_FOLDER}\PackageContents.xml"
        StrCpy $FirstInstallation 0
    ${EndIf}
    ClearErrors
    Call LayData
    Call LayPackage
    ${StopIfErrors} `a file could not be written`
    Call WriteIniFile
    Call MakeLogFolder
    ClearErrors
    Call MakeMenuEntry
    ${StopIfErrors} `the link in the start menu could not be made`
    Call Register
    ${StopIfErrors} `the registry could not be written`
    ${Log} `done`
    FileClose $LogHandle
    SetErrorLevel 0
SectionEnd
