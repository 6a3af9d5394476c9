; Takes away what setup laid down, and what the host made from it. Used by the uninstaller, and by a first installation
; that could not be finished.

!macro RemoveFunctions UN
; What the host makes of the analysis script: the encrypted form, and a copy of what it was made from.
Function ${UN}RemoveEncryptedScript
    Delete "${DATA_FOLDER}\script\MaxRenderGlobalsParser.mse"
    Delete "${DATA_FOLDER}\script\MaxRenderGlobalsParser.mse.source"
FunctionEnd

; In whichever language they were made.
Function ${UN}RemoveMenuEntries
    Delete "${MENU_FOLDER}\${LINK_NAME_EN}.lnk"
    Delete "${MENU_FOLDER}\${LINK_NAME_ZH}.lnk"
    Delete "${MENU_FOLDER}\${GUIDE_NAME_EN}.lnk"
    Delete "${MENU_FOLDER}\${GUIDE_NAME_ZH}.lnk"
    RMDir "${MENU_FOLDER}"
FunctionEnd

Function ${UN}RemoveProgram
    Call ${UN}RemoveLinks
    ; Without this file 3ds Max no longer sees the package.
    Delete "${PACKAGE_FOLDER}\PackageContents.xml"
    Delete "${PACKAGE_FOLDER}\Contents\TarvoRendering.gup"
    Delete "${PACKAGE_FOLDER}\Contents\PrepareAnalysisScript.ms"
    RMDir "${PACKAGE_FOLDER}\Contents"
    Delete "${PACKAGE_FOLDER}\Diagnostics\tarvo_diagnostics.exe"
    Delete "${PACKAGE_FOLDER}\Diagnostics\TarvoDiagnostics.cmd"
    Delete "${PACKAGE_FOLDER}\Diagnostics\manifest.txt"
    RMDir "${PACKAGE_FOLDER}\Diagnostics"
    Delete "${PACKAGE_FOLDER}\Licences\*.txt"
    RMDir "${PACKAGE_FOLDER}\Licences"
    ; Only administrators can have put anything there.
    Delete "${PACKAGE_FOLDER}\Guide\en\*.*"
    RMDir "${PACKAGE_FOLDER}\Guide\en"
    Delete "${PACKAGE_FOLDER}\Guide\zh\*.*"
    RMDir "${PACKAGE_FOLDER}\Guide\zh"
    Delete "${PACKAGE_FOLDER}\Guide\*.*"
    RMDir "${PACKAGE_FOLDER}\Guide"
    Delete "${PACKAGE_FOLDER}\INSTALL.txt"
    Delete "${PACKAGE_FOLDER}\Uninstall.exe"
    RMDir "${PACKAGE_FOLDER}"
    ; Only when nobody else uses them.
    RMDir "$APPDATA\Autodesk\ApplicationPlugins"
    RMDir "$APPDATA\Autodesk"

    Delete "${DATA_FOLDER}\7-Zip\7z.exe"
    Delete "${DATA_FOLDER}\7-Zip\7z.dll"
    Delete "${DATA_FOLDER}\7-Zip\License.txt"
    RMDir "${DATA_FOLDER}\7-Zip"
    Delete "${DATA_FOLDER}\script\MaxRenderGlobalsParser.ms"
    Call ${UN}RemoveEncryptedScript
    Delete "${DATA_FOLDER}\script\TarvoAntivirusAdsl_UTF8.ms"
    Delete "${DATA_FOLDER}\script\TarvoAntivirusAlc_UTF8.ms"
    Delete "${DATA_FOLDER}\script\TarvoAntivirusCrp_UTF8.ms"

    Call ${UN}RemoveMenuEntries
    DeleteRegKey HKLM "${UNINSTALL_KEY}"
FunctionEnd

; Folders that have become empty; what the user's work left keeps its folder.
Function ${UN}RemoveEmptyFolders
    RMDir "${DATA_FOLDER}\json"
    RMDir "${DATA_FOLDER}\compress"
    FindFirst $R1 $R2 "${DATA_FOLDER}\log*"
    ${DoWhile} $R2 != ""
        RMDir "${DATA_FOLDER}\$R2"
        FindNext $R1 $R2
    ${Loop}
    FindClose $R1
    RMDir "${DATA_FOLDER}\script"
    RMDir "${DATA_FOLDER}"
FunctionEnd
!macroend

; Settings, documents, archives and logs. By name and without descending: anybody may put files into these folders.
!macro PurgeFunction
Function un.Purge
    Call un.RemoveLinks
    Delete "${INI_FILE}"
    Delete "${DATA_FOLDER}\json\*.json"
    Delete "${DATA_FOLDER}\compress\*.7z"
    Delete "${DATA_FOLDER}\compress\*.7z.tmp*"
    FindFirst $R1 $R2 "${DATA_FOLDER}\log*"
    ${DoWhile} $R2 != ""
        ; Users may add folders here at any time.
        Push "${DATA_FOLDER}\$R2"
        Call un.Link
        Pop $R4
        ${If} $R4 == ""
            Delete "${DATA_FOLDER}\$R2\qfx_*.log"
        ${EndIf}
        FindNext $R1 $R2
    ${Loop}
    FindClose $R1
FunctionEnd
!macroend
