; The log of the setup and of the uninstaller. Whatever happens to it, the outcome is the same: a log that cannot be
; opened or written costs the log.

Var LogFile
Var LogWanted
; "" when there is none.
Var LogHandle
Var HadErrors

; FileWrite sets the error flag when it fails. A later reader of the flag would take that for a failed copy.
!macro Log TEXT
    StrCpy $HadErrors 0
    ${If} ${Errors}
        StrCpy $HadErrors 1
    ${EndIf}
    FileWrite $LogHandle `${TEXT}$\r$\n`
    ClearErrors
    ${If} $HadErrors = 1
        SetErrors
    ${EndIf}
!macroend
!define Log "!insertmacro Log"

; Takes /LOG=FILE from the command line; without it, or where no log can be written there, the log lies in the folder
; for temporary files.
!macro OpenLog UN DEFAULT_NAME
    StrCpy $LogWanted ""
    ${GetParameters} $Words
    Call ${UN}NextWord
    ${DoWhile} $Word != ""
        ${TakeValue} "/LOG=" $LogWanted
        Call ${UN}NextWord
    ${Loop}
    StrCpy $LogFile $LogWanted
    Call ${UN}OpenLogFile
    ${If} $LogHandle == ""
        StrCpy $LogFile "$TEMP\${DEFAULT_NAME}"
        Call ${UN}OpenLogFile
    ${EndIf}
    ${Log} `${TITLE} ${VERSION}: ${DEFAULT_NAME}`
    ${If} $LogWanted != ""
    ${AndIf} $LogFile != $LogWanted
        ${Log} `no log can be written to $LogWanted`
    ${EndIf}
!macroend
!define OpenLog "!insertmacro OpenLog"

; Clears $LogFile when the path in $R2 leads into FOLDER.
!macro RefuseLogIn FOLDER
    StrLen $R1 "${FOLDER}\"
    StrCpy $R3 $R2 $R1
    ${If} $R3 == "${FOLDER}\"
        StrCpy $LogFile ""
    ${EndIf}
!macroend

!macro LogFunctions UN
; The setup empties its folders, which an open file would hinder, and users may not write there.
Function ${UN}RefuseLogInOwnFolders
    !insertmacro RefuseLogIn "${PACKAGE_FOLDER}"
    !insertmacro RefuseLogIn "${DATA_FOLDER}"
FunctionEnd

Function ${UN}OpenLogFile
    StrCpy $LogHandle ""
    StrCpy $R1 $LogFile
    System::Call 'kernel32::GetFullPathNameW(w R1, i ${NSIS_MAX_STRLEN}, w .R2, p 0)'
    Call ${UN}RefuseLogInOwnFolders
    ClearErrors
    FileOpen $LogHandle $LogFile w
    ${If} ${Errors}
        StrCpy $LogHandle ""
        ClearErrors
        Return
    ${EndIf}
    ; The path without links and short names, after "\\?\".
    StrCpy $R1 $LogHandle
    System::Call 'kernel32::GetFinalPathNameByHandleW(p R1, w .R2, i ${NSIS_MAX_STRLEN}, i 0)'
    StrCpy $R2 $R2 "" 4
    Call ${UN}RefuseLogInOwnFolders
    ; FILE_TYPE_DISK is 1. A serial port or a pipe might never take what is written to it.
    StrCpy $R1 $LogHandle
    System::Call 'kernel32::GetFileType(p R1) i .R1'
    ${If} $R1 <> 1
    ${OrIf} $LogFile == ""
        FileClose $LogHandle
        StrCpy $LogHandle ""
    ${EndIf}
FunctionEnd
!macroend
