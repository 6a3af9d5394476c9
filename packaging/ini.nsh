; The ini file belongs to the desktop client, which writes its address and its lowest version there. The setup makes one
; only when the command line gives a value for it, and leaves one that is there as it is, with its rights.

; What no option has set: neither an address nor a version can be this.
!define NOT_GIVEN "?"

; The open ini file, and its rights as they were with their length; "" when there was none.
Var IniHandle
Var IniRights
Var IniRightsSize
Var IniMade

; Reads the rights of the file $R1 into memory of its own: $R3, with the length $R2; $R4 is 0 when that is not possible.
Function ReadRights
    ; DACL_SECURITY_INFORMATION is 4.
    System::Call 'advapi32::GetKernelObjectSecurity(p R1, i 4, p 0, i 0, *i .R2)'
    System::Alloc $R2
    Pop $R3
    System::Call 'advapi32::GetKernelObjectSecurity(p R1, i 4, p R3, i R2, *i .R2) i .R4'
FunctionEnd

; Rights that a folder is given are passed on to the files in it. The file is held by its handle: its owner may put a
; link to another file in its place in between, which would then get these rights.
Function HoldIniRights
    StrCpy $IniHandle ""
    StrCpy $R5 "${INI_FILE}"
    ; READ_CONTROL and WRITE_DAC (0x60000), shared with everybody (7), OPEN_EXISTING (3), FILE_FLAG_OPEN_REPARSE_POINT
    System::Call 'kernel32::CreateFileW(w R5, i 0x60000, i 7, p 0, i 3, i 0x200000, p 0) p .R1'
    ${If} $R1 = -1
        Return
    ${EndIf}
    Call ReadRights
    StrCpy $IniHandle $R1
    StrCpy $IniRights $R3
    StrCpy $IniRightsSize $R2
    ${If} $R4 = 0
        StrCpy $IniRightsSize 0
    ${EndIf}
FunctionEnd

; Gives the file its rights back where they have changed.
Function ReturnIniRights
    ${If} $IniHandle == ""
        Return
    ${EndIf}
    StrCpy $R1 $IniHandle
    StrCpy $IniHandle ""
    Call ReadRights
    StrCpy $R5 $IniRights
    StrCpy $R6 0
    ${If} $IniRightsSize = $R2
        System::Call 'ntdll::RtlCompareMemory(p R5, p R3, p R2) p .R6'
    ${EndIf}
    ${If} $R6 <> $IniRightsSize
        System::Call 'advapi32::SetKernelObjectSecurity(p R1, i 4, p R5) i .R4'
        ${Log} `the rights of ${INI_FILE} were put back ($R4)`
    ${EndIf}
    System::Free $R3
    System::Free $R5
    System::Call 'kernel32::CloseHandle(p R1)'
FunctionEnd

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

Function CheckIniOptions
    ${If} $Port != "${NOT_GIVEN}"
        IntOp $R1 $Port + 0
        ${If} $Port != $R1
        ${OrIf} $Port < 1
        ${OrIf} $Port > 65535
            ${Stop} ${EXIT_BAD_OPTION} TEXT_BAD_OPTION `/PORT=$Port is no port from 1 to 65535`
        ${EndIf}
    ${EndIf}
    ${If} $LowerVersion != "${NOT_GIVEN}"
        Push $LowerVersion
        Call CanEndAName
        Pop $R1
        ${If} $R1 = 0
            ${Stop} ${EXIT_BAD_OPTION} TEXT_BAD_OPTION `/LOWERVERSION=$LowerVersion cannot end the name of a folder`
        ${EndIf}
    ${EndIf}
FunctionEnd

; The lowest version is written only when it was given: without it the plugin says that the client is not set up.
Function MakeIniFile
    StrCpy $IniMade 1
    ${If} $Ip == "${NOT_GIVEN}"
        StrCpy $Ip "127.0.0.1"
    ${EndIf}
    ${If} $Port == "${NOT_GIVEN}"
        StrCpy $Port "80"
    ${EndIf}
    WriteINIStr "${INI_FILE}" general ip $Ip
    WriteINIStr "${INI_FILE}" general port $Port
    ${If} $LowerVersion != "${NOT_GIVEN}"
        WriteINIStr "${INI_FILE}" general lowerversion $LowerVersion
    ${EndIf}
    ${StopIfErrors} `the ini file could not be written`
    ; Calls it an error when all is well.
    FlushINI "${INI_FILE}"
    ClearErrors
    ${If} $IniWritable == 1
        ${SetRights} "${INI_FILE}" "${RIGHTS_OPEN_INI}"
    ${Else}
        ${SetRights} "${INI_FILE}" "${RIGHTS_FILE}"
    ${EndIf}
    ${Log} `file: ${INI_FILE}`
FunctionEnd

Function WriteIniFile
    ${If} ${FileExists} "${INI_FILE}"
        ${Log} `kept, with its rights: ${INI_FILE}`
    ${ElseIf} "$Ip$Port$LowerVersion" == "${NOT_GIVEN}${NOT_GIVEN}${NOT_GIVEN}"
        ${Log} `no ini file was made: the desktop client writes ${INI_FILE}`
    ${Else}
        Call MakeIniFile
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
