; The uninstaller. Silently: /S, with /PURGE for the settings, logs, documents and packed scenes too.

Function un.onInit
    SetShellVarContext all
    SetRegView 64
    ${OpenLog} "un." "TarvoRendering-uninstall.log"
    !insertmacro MUI_UNGETLANGUAGE
    ${StopUnlessAdministrator}
    ${GetParameters} $Words
    Call un.NextWord
    ${DoWhile} $Word != ""
        ${TakeSwitch} "/PURGE" $Purge
        ${TakeValue} "/LOG=" $R3
        ${StopUnlessUnderstood}
        Call un.NextWord
    ${Loop}
FunctionEnd

Function un.AskWhatToRemove
    !insertmacro MUI_HEADER_TEXT "$(TEXT_UNINSTALL_TITLE)" "$(TEXT_UNINSTALL_SUBTITLE)"
    nsDialogs::Create 1018
    Pop $R0
    ${NSD_CreateLabel} 0 0 100% 60u "$(TEXT_UNINSTALL)"
    Pop $R0
    ${NSD_CreateCheckBox} 0 68u 100% 12u "$(TEXT_PURGE)"
    Pop $PurgeBox
    ${If} $Purge == 1
        ${NSD_Check} $PurgeBox
    ${EndIf}
    GetDlgItem $R0 $HWNDPARENT 1
    SendMessage $R0 ${WM_SETTEXT} 0 "STR:$(^UninstallBtn)"
    nsDialogs::Show
FunctionEnd

Function un.TakeAnswer
    ${NSD_GetState} $PurgeBox $Purge
FunctionEnd

Section Uninstall
    Call un.StopIfInUse
    ${If} $Purge == 1
        Call un.Purge
        ${Log} `settings, logs, documents and packed scenes are deleted`
    ${EndIf}
    Call un.RemoveProgram
    Call un.RemoveEmptyFolders
    ${If} ${FileExists} "${DATA_FOLDER}\*.*"
        ${Log} `left: ${DATA_FOLDER}`
    ${EndIf}
    ${Log} `done`
    FileClose $LogHandle
    SetErrorLevel 0
SectionEnd
