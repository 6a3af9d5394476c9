; What is looked at before anything changes. Installer and uninstaller each have their own copy of the
; functions (NSIS wants the prefix "un.").

; The rest of the command line, the word taken from it last, and whether that is an option of ours.
Var Words
Var Word
Var Understood

; Ends with an exit code: silently with a line in the log, otherwise after a message (the name of a LangString).
!macro Stop CODE TEXT_ID LINE
    ${Log} `stopped (exit code ${CODE}): ${LINE}`
    FileClose $LogHandle
    SetErrorLevel ${CODE}
    ${If} ${Silent}
        Quit
    ${EndIf}
    MessageBox MB_OK|MB_ICONSTOP "$(${TEXT_ID})"
    Quit
!macroend
!define Stop "!insertmacro Stop"

; What $Word says behind OPTION ("/NAME="); VARIABLE stays as it is when that is no such option.
!macro TakeValue OPTION VARIABLE
    StrLen $R1 "${OPTION}"
    StrCpy $R2 $Word $R1
    ${If} $R2 == "${OPTION}"
        StrCpy ${VARIABLE} $Word "" $R1
        StrCpy $Understood 1
    ${EndIf}
!macroend
!define TakeValue "!insertmacro TakeValue"

!macro TakeSwitch OPTION VARIABLE
    ${If} $Word == "${OPTION}"
        StrCpy ${VARIABLE} 1
        StrCpy $Understood 1
    ${EndIf}
!macroend
!define TakeSwitch "!insertmacro TakeSwitch"

; A mistyped option that is lost without a word would change what is installed.
!macro StopUnlessUnderstood
    ; Those of NSIS itself. /D= and _?= it has taken away already; they end the line.
    ${If} $Word S== "/S"
    ${OrIf} $Word S== "/NCRC"
        StrCpy $Understood 1
    ${EndIf}
    ${If} $Understood != 1
        ${Stop} ${EXIT_BAD_OPTION} TEXT_BAD_OPTION `the option $Word is not known`
    ${EndIf}
!macroend
!define StopUnlessUnderstood "!insertmacro StopUnlessUnderstood"

!macro StopUnlessAdministrator
    UserInfo::GetAccountType
    Pop $R0
    ${If} $R0 != "Admin"
        ${Stop} ${EXIT_NO_RIGHTS} TEXT_NO_RIGHTS `no administrator rights ($R0)`
    ${EndIf}
!macroend
!define StopUnlessAdministrator "!insertmacro StopUnlessAdministrator"

!macro CheckFunctions UN
; Takes the first word off $Words; "" at the end. Programs that start others put a value, or the whole option, in
; quotation marks when it has a blank; they belong to no word.
Function ${UN}NextWord
    StrCpy $Word ""
    StrCpy $Understood 0
    StrCpy $R2 0
    ${DoWhile} $Words != ""
        StrCpy $R1 $Words 1
        StrCpy $Words $Words "" 1
        ${If} $R1 == `"`
            IntOp $R2 1 - $R2
        ${ElseIf} $R1 == " "
        ${AndIf} $R2 = 0
            ${If} $Word != ""
                Return
            ${EndIf}
        ${Else}
            StrCpy $Word $Word$R1
        ${EndIf}
    ${Loop}
FunctionEnd

; A loaded module and a running program cannot be opened for writing.
; Stack: path. Leaves the path again, or "" when nobody holds the file (or it is not there).
Function ${UN}HeldFile
    Exch $R1
    Push $R2
    ${If} ${FileExists} $R1
        ClearErrors
        FileOpen $R2 $R1 a
        ${If} ${Errors}
            Goto held
        ${EndIf}
        FileClose $R2
    ${EndIf}
    StrCpy $R1 ""
held:
    Pop $R2
    Exch $R1
FunctionEnd

; Leaves the first file of ours that a program holds open, or "".
Function ${UN}FirstHeldFile
    Push "${PACKAGE_FOLDER}\Contents\TarvoRendering.gup"
    Call ${UN}HeldFile
    Exch $R3
    ${If} $R3 == ""
        Push "${DATA_FOLDER}\7-Zip\7z.exe"
        Call ${UN}HeldFile
        Pop $R3
    ${EndIf}
    ${If} $R3 == ""
        Push "${DATA_FOLDER}\7-Zip\7z.dll"
        Call ${UN}HeldFile
        Pop $R3
    ${EndIf}
    ${If} $R3 == ""
        Push "${PACKAGE_FOLDER}\Diagnostics\tarvo_diagnostics.exe"
        Call ${UN}HeldFile
        Pop $R3
    ${EndIf}
    Exch $R3
FunctionEnd

Function ${UN}StopIfInUse
again:
    Call ${UN}FirstHeldFile
    Pop $R4
    ${If} $R4 == ""
        Return
    ${EndIf}
    ${Log} `in use: $R4`
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(TEXT_IN_USE)$\r$\n$\r$\n$R4" /SD IDCANCEL IDRETRY again
    ${Log} `stopped (exit code ${EXIT_IN_USE}): nothing was changed`
    FileClose $LogHandle
    SetErrorLevel ${EXIT_IN_USE}
    Quit
FunctionEnd
!macroend

; The plugin starts 7-Zip with an unquoted path: Windows tries the path up to the blank first, with and without .exe.
; Leaves the path of such a file, or "". A folder of that name does no harm.
Function ProgramInTheWay
    Push $R1
    StrCpy $R1 "$APPDATA\Tarvo.exe"
    ${If} ${FileExists} "$R1"
    ${AndIfNot} ${FileExists} "$R1\*.*"
        Goto done
    ${EndIf}
    StrCpy $R1 "$APPDATA\Tarvo"
    ${If} ${FileExists} "$R1"
    ${AndIfNot} ${FileExists} "$R1\*.*"
        Goto done
    ${EndIf}
    StrCpy $R1 ""
done:
    Exch $R1
FunctionEnd

Function StopIfProgramInTheWay
again:
    Call ProgramInTheWay
    Pop $R4
    ${If} $R4 == ""
        Return
    ${EndIf}
    ${Log} `in the way: $R4 would be started in place of 7-Zip`
    ${If} $AllowProgramInTheWay == 1
        ${Log} `going on, because /ALLOWTARVOEXE was given`
        Return
    ${EndIf}
    MessageBox MB_ABORTRETRYIGNORE|MB_ICONEXCLAMATION|MB_DEFBUTTON2 "$R4$\r$\n$\r$\n$(TEXT_IN_THE_WAY)" \
        /SD IDABORT IDRETRY again IDIGNORE ignored
    ${Log} `stopped (exit code ${EXIT_IN_THE_WAY}): nothing was changed`
    FileClose $LogHandle
    SetErrorLevel ${EXIT_IN_THE_WAY}
    Quit
ignored:
    ${Log} `going on, because the user said so`
FunctionEnd
