; What the module is, as the module itself says: one that imports the stand-in's library is a rehearsal, which 3ds Max
; cannot load. And whether there is a 3ds Max that could.

!define STANDIN_LIBRARY "host_standin.dll"
; As 3ds Max 2019 (internal version 21) writes it.
!define HOST_KEY "Software\Autodesk\3dsMax\21.0"
!define HOST_VARIABLE "ADSK_3DSMAX_x64_2019"

; $R4: a module mapped as it lies on the disk. Leaves 1 in $R0 when it imports the stand-in's library, otherwise 0.
Function LookThroughImports
    StrCpy $R0 0
    System::Call 'dbghelp::ImageNtHeader(p R4) p .R5'
    ${If} $R5 P= 0
        Return
    ${EndIf}
    ; IMAGE_DIRECTORY_ENTRY_IMPORT is 1.
    System::Call 'dbghelp::ImageDirectoryEntryToData(p R4, i 0, i 1, *i .R6) p .R7'
    ${DoUntil} $R7 P= 0
        ; An IMAGE_IMPORT_DESCRIPTOR: five numbers, the fourth is where the name lies; 0 in the last descriptor.
        System::Call '*$R7(i, i, i, i .R8, i)'
        ${If} $R8 = 0
            ${ExitDo}
        ${EndIf}
        System::Call 'dbghelp::ImageRvaToVa(p R5, p R4, i R8, p 0) p .R9'
        System::Call 'kernel32::lstrcmpiA(p R9, m "${STANDIN_LIBRARY}") i .R6'
        ${If} $R6 = 0
            StrCpy $R0 1
            ${ExitDo}
        ${EndIf}
        IntPtrOp $R7 $R7 + 20
    ${Loop}
FunctionEnd

; Leaves 1 in $R0 when the module that this setup brings imports the stand-in's library, otherwise 0.
Function LookAtModule
    StrCpy $R0 0
    InitPluginsDir
    File "/oname=$PLUGINSDIR\module" "${LAYOUT}/${PACKAGE}/Contents/TarvoRendering.gup"
    StrCpy $R1 "$PLUGINSDIR\module"
    ; GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING; PAGE_READONLY; FILE_MAP_READ
    System::Call 'kernel32::CreateFileW(w R1, i 0x80000000, i 1, p 0, i 3, i 0, p 0) p .R2'
    System::Call 'kernel32::CreateFileMappingW(p R2, p 0, i 2, i 0, i 0, p 0) p .R3'
    System::Call 'kernel32::MapViewOfFile(p R3, i 4, i 0, i 0, p 0) p .R4'
    ${If} $R4 P<> 0
        Call LookThroughImports
        System::Call 'kernel32::UnmapViewOfFile(p R4)'
    ${EndIf}
    System::Call 'kernel32::CloseHandle(p R3)'
    System::Call 'kernel32::CloseHandle(p R2)'
    Delete "$PLUGINSDIR\module"
FunctionEnd

; A setup that is not labelled as a rehearsal installs none, whatever its options.
Function StopIfRehearsal
    Call LookAtModule
    ${If} $R0 = 0
        Return
    ${EndIf}
    ${Log} `the module imports ${STANDIN_LIBRARY}: 3ds Max cannot load it`
    !ifdef REHEARSAL
        ${If} $Rehearsal == 1
            ${Log} `going on with the rehearsal, because /REHEARSAL was given`
            Return
        ${EndIf}
    !endif
    ${Stop} ${EXIT_REHEARSAL} TEXT_REHEARSAL `this is a rehearsal and no installation; nothing was changed`
FunctionEnd

; The plugin can lie there before 3ds Max does.
Function SayWhetherHostIsThere
    ReadRegStr $R1 HKLM "${HOST_KEY}" "Installdir"
    ${If} $R1 == ""
        ReadEnvStr $R1 "${HOST_VARIABLE}"
    ${EndIf}
    ${If} $R1 == ""
        ${Log} `3ds Max 2019 was not found on this computer`
        MessageBox MB_OK|MB_ICONINFORMATION "$(TEXT_NO_HOST)" /SD IDOK
    ${Else}
        ${Log} `3ds Max 2019: $R1`
    ${EndIf}
    ClearErrors
FunctionEnd
