; Where everything lies. The plugin and 3ds Max know these places; they cannot be chosen.
!define PRODUCT "Tarvo Rendering"
; What the setup calls itself.
!ifdef REHEARSAL
    !define TITLE "${PRODUCT} (rehearsal)"
!else
    !define TITLE "${PRODUCT}"
!endif
; $APPDATA is C:\ProgramData: SetShellVarContext all comes first in .onInit and un.onInit.
!define PACKAGE "Autodesk\ApplicationPlugins\TarvoRendering"
!define PACKAGE_FOLDER "$APPDATA\${PACKAGE}"
!define DATA_FOLDER "$APPDATA\${PRODUCT}"
!define INI_FILE "${DATA_FOLDER}\script\qfx_plugin.ini"
!define MENU_FOLDER "$SMPROGRAMS\${PRODUCT}"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\TarvoRendering"

; Exit codes; the installation notes explain them. 0, 1 (cancelled) and 2 (aborted) are given by NSIS itself.
!define EXIT_FAILED 2
!define EXIT_IN_USE 3
!define EXIT_IN_THE_WAY 4
!define EXIT_NO_RIGHTS 5
!define EXIT_RIGHTS_NOT_SET 6
!define EXIT_BAD_OPTION 7
!define EXIT_LINK 8
!define EXIT_REHEARSAL 9
