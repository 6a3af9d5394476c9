; Who may do what in the folders, as Windows writes it (SDDL). SY: the system, BA: administrators, BU: ordinary users,
; CO: whoever made the file. FA: everything, 0x1200a9: read and start, 0x1301bf: change and delete, 0x2: add files to
; this folder, 0x4: add folders to this folder. Nothing is inherited from C:\ProgramData (P), where anybody may add
; files. tests/packaging reads these lines and works out what each group may do.

; The plugin itself makes folders in the data folder (json, compress, and a new log folder for each client version);
; what it makes there, everybody may fill.
!define RIGHTS_DATA    "O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)(A;;0x4;;;BU)(A;CIIO;0x2;;;BU)(A;OIIO;0x1301bf;;;BU)"
; The host, running as the user, writes MaxRenderGlobalsParser.mse beside the .ms.
!define RIGHTS_SCRIPT  "O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)(A;;0x2;;;BU)(A;OIIO;0x1301bf;;;CO)"
; json, compress, log…: files only, no folders. A link that stood there before gets no rights: see MakeFolder.
!define RIGHTS_WRITTEN "O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)(A;;0x2;;;BU)(A;OIIO;0x1301bf;;;BU)"
; The module's package and 7-Zip.
!define RIGHTS_PROGRAM "O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;0x1200a9;;;BU)"
; One file of ours among others: a script, the ini file.
!define RIGHTS_FILE    "O:BAD:P(A;;FA;;;SY)(A;;FA;;;BA)(A;;0x1200a9;;;BU)"
; The ini file where /INIWRITABLE was given, for a desktop client that writes its address without administrator rights.
!define RIGHTS_OPEN_INI "O:BAD:P(A;;FA;;;SY)(A;;FA;;;BA)(A;;0x1201bf;;;BU)"

; Stack: path, SDDL. Leaves 0, or the system's error number. The owner is set too: whoever owns a folder can change
; its rights, and anybody could have made this one before.
Function SetRights
    Exch $1
    Exch
    Exch $0
    Push $2
    Push $3
    Push $4
    Push $5
    Push $6
    StrCpy $6 87
    System::Call 'advapi32::ConvertStringSecurityDescriptorToSecurityDescriptorW(w r1, i 1, *p .r2, p 0) i .r3'
    ${If} $3 <> 0
        System::Call 'advapi32::GetSecurityDescriptorDacl(p r2, *i .r3, *p .r4, *i .r3)'
        System::Call 'advapi32::GetSecurityDescriptorOwner(p r2, *p .r5, *i .r3)'
        ; SE_FILE_OBJECT; OWNER, DACL and PROTECTED_DACL_SECURITY_INFORMATION (0x80000005)
        System::Call 'advapi32::SetNamedSecurityInfoW(w r0, i 1, i -2147483643, p r5, p 0, p r4, p 0) i .r6'
        System::Call 'kernel32::LocalFree(p r2)'
    ${EndIf}
    StrCpy $1 $6
    Pop $6
    Pop $5
    Pop $4
    Pop $3
    Pop $2
    Pop $0
    Exch $1
FunctionEnd
