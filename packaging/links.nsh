; Links in place of our folders: anybody may make some in C:\ProgramData. They are never followed.

!macro LookForLink UN PATH
    ${If} $R3 == ""
        Push "${PATH}"
        Call ${UN}Link
        Pop $R3
    ${EndIf}
!macroend

!macro LinkFunctions UN
; Stack: path. Leaves the path again, or "" when it is no link. A junction or a symbolic link has
; FILE_ATTRIBUTE_REPARSE_POINT; the answer for what is not there (-1) has that bit too.
Function ${UN}Link
    Exch $R1
    Push $R2
    System::Call 'kernel32::GetFileAttributesW(w R1) i .R2'
    ${If} $R2 = -1
        StrCpy $R2 0
    ${EndIf}
    IntOp $R2 $R2 & 0x400
    ${If} $R2 = 0
        StrCpy $R1 ""
    ${EndIf}
    Pop $R2
    Exch $R1
FunctionEnd

; Leaves the first of our folders (or the ini file) that is a link, or "". A folder comes before what lies in it: behind
; a link everything belongs to others.
Function ${UN}FirstLink
    Push $R3
    StrCpy $R3 ""
    !insertmacro LookForLink "${UN}" "${PACKAGE_FOLDER}"
    !insertmacro LookForLink "${UN}" "${PACKAGE_FOLDER}\Contents"
    !insertmacro LookForLink "${UN}" "${PACKAGE_FOLDER}\Diagnostics"
    !insertmacro LookForLink "${UN}" "${PACKAGE_FOLDER}\Licences"
    !insertmacro LookForLink "${UN}" "${PACKAGE_FOLDER}\Guide"
    !insertmacro LookForLink "${UN}" "${PACKAGE_FOLDER}\Guide\en"
    !insertmacro LookForLink "${UN}" "${PACKAGE_FOLDER}\Guide\zh"
    !insertmacro LookForLink "${UN}" "${DATA_FOLDER}"
    !insertmacro LookForLink "${UN}" "${DATA_FOLDER}\7-Zip"
    !insertmacro LookForLink "${UN}" "${DATA_FOLDER}\script"
    !insertmacro LookForLink "${UN}" "${INI_FILE}"
    !insertmacro LookForLink "${UN}" "${DATA_FOLDER}\json"
    !insertmacro LookForLink "${UN}" "${DATA_FOLDER}\compress"
    ${If} $R3 == ""
        FindFirst $R1 $R2 "${DATA_FOLDER}\log*"
        ${DoWhile} $R2 != ""
            !insertmacro LookForLink "${UN}" "${DATA_FOLDER}\$R2"
            FindNext $R1 $R2
        ${Loop}
        FindClose $R1
    ${EndIf}
    Exch $R3
FunctionEnd

; Links are removed themselves; what they lead to is not ours.
Function ${UN}RemoveLinks
again:
    Call ${UN}FirstLink
    Pop $R4
    ${If} $R4 == ""
        Return
    ${EndIf}
    ${Log} `a link, removed and not followed: $R4`
    Delete "$R4"
    RMDir "$R4"
    Push "$R4"
    Call ${UN}Link
    Pop $R5
    ${If} $R5 == ""
        Goto again
    ${EndIf}
    ${Stop} ${EXIT_LINK} TEXT_LINK `the link cannot be removed`
FunctionEnd
!macroend

; Any user may have made our folders before, as links to folders of the administrators: what setup deletes, lays down and
; opens would then be deleted, laid down and opened there.
Function StopIfLinkInTheWay
again:
    Call FirstLink
    Pop $R4
    ${If} $R4 == ""
        Return
    ${EndIf}
    ${Log} `a link: $R4`
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(TEXT_LINK)$\r$\n$\r$\n$R4" /SD IDCANCEL IDRETRY again
    ${Log} `stopped (exit code ${EXIT_LINK}): nothing was changed`
    FileClose $LogHandle
    SetErrorLevel ${EXIT_LINK}
    Quit
FunctionEnd
