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

!include ini.nsh
!include module.nsh

Function TakeOptions
    StrCpy $Ip "${NOT_GIVEN}"
    StrCpy $Port "${NOT_GIVEN}"
    StrCpy $LowerVersion "${NOT_GIVEN}"
    ${GetParameters} $Words
    Call NextWord
    ${DoWhile} $Word != ""
        ${TakeSwitch} "/ALLOWTARVOEXE" $AllowProgramInTheWay
        ${TakeSwitch} "/INIWRITABLE" $IniWritable
        ${TakeSwitch} "/REHEARSAL" $Rehearsal
        ${TakeValue} "/IP=" $Ip
        ${TakeValue} "/LOWERVERSION=" $LowerVersion
        ${TakeValue} "/PORT=" $Port
        ${TakeValue} "/LOG=" $R3
        ${StopUnlessUnderstood}
        Call NextWord
    ${Loop}
    Call CheckIniOptions
FunctionEnd

Function .onInit
    SetShellVarContext all
    SetRegView 64
    ${OpenLog} "" "TarvoRendering-setup.log"
    !insertmacro MUI_LANGDLL_DISPLAY
    ${StopUnlessAdministrator}
    Call TakeOptions
    Call StopIfRehearsal
    Call SayWhetherHostIsThere
FunctionEnd

Function UndoFirstInstallation
    Call ReturnIniRights
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

Function LayPackage
    CreateDirectory "$APPDATA\Autodesk\ApplicationPlugins"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Contents"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Diagnostics"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Licences"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Guide"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Guide\en"
    ${MakeProgramFolder} "${PACKAGE_FOLDER}\Guide\zh"
    ${Lay} "${PACKAGE}\Contents" TarvoRendering.gup
    ${Lay} "${PACKAGE}\Contents" PrepareAnalysisScript.ms
    ${Lay} "${PACKAGE}\Diagnostics" tarvo_diagnostics.exe
    ${Lay} "${PACKAGE}\Diagnostics" TarvoDiagnostics.cmd
    ${Lay} "${PACKAGE}\Diagnostics" manifest.txt
    !include "${FILE_LIST}"
    ${Lay} "${PACKAGE}" INSTALL.txt
    WriteUninstaller "${PACKAGE_FOLDER}\Uninstall.exe"
    ${Log} `file: ${PACKAGE_FOLDER}\Uninstall.exe`
    ${Lay} "${PACKAGE}" PackageContents.xml
FunctionEnd

Function MakeMenuEntries
    ; Another language may have been chosen this time.
    Call RemoveMenuEntries
    CreateDirectory "${MENU_FOLDER}"
    SetOutPath "${PACKAGE_FOLDER}\Guide"
    CreateShortCut "${MENU_FOLDER}\$(GUIDE_NAME).lnk" "${PACKAGE_FOLDER}\Guide\$(GUIDE_LANGUAGE)\index.html" "" "" "" \
        SW_SHOWNORMAL "" "$(GUIDE_HINT)"
    SetOutPath "${PACKAGE_FOLDER}\Diagnostics"
    CreateShortCut "${MENU_FOLDER}\$(LINK_NAME).lnk" "${PACKAGE_FOLDER}\Diagnostics\TarvoDiagnostics.cmd" "" \
        "${PACKAGE_FOLDER}\Uninstall.exe" 0 SW_SHOWNORMAL "" "$(LINK_HINT)"
FunctionEnd

Function Register
    ; Earlier versions remembered /INIWRITABLE.
    DeleteRegValue HKLM "${UNINSTALL_KEY}" IniWritable
    ClearErrors
    WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayName "${TITLE} ${VERSION}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" DisplayIcon "${PACKAGE_FOLDER}\Uninstall.exe"
    WriteRegStr HKLM "${UNINSTALL_KEY}" Publisher "Marrowby"
    WriteRegStr HKLM "${UNINSTALL_KEY}" InstallLocation "${PACKAGE_FOLDER}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" UninstallString '"${PACKAGE_FOLDER}\Uninstall.exe"'
    WriteRegStr HKLM "${UNINSTALL_KEY}" QuietUninstallString '"${PACKAGE_FOLDER}\Uninstall.exe" /S'
    WriteRegStr HKLM "${UNINSTALL_KEY}" Language $LANGUAGE
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" NoModify 1
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" NoRepair 1
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
    Call HoldIniRights
    ClearErrors
    Call LayData
    Call ReturnIniRights
    Call LayPackage
    ${StopIfErrors} `a file could not be written`
    Call WriteIniFile
    Call MakeLogFolder
    ClearErrors
    Call MakeMenuEntries
    ${StopIfErrors} `a link in the start menu could not be made`
    Call Register
    ${StopIfErrors} `the registry could not be written`
    ${Log} `done`
    FileClose $LogHandle
    SetErrorLevel 0
SectionEnd
