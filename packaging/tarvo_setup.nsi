; The setup. tools/package.sh builds it: VERSION is the product's, LAYOUT the folder with the files as they are to
; lie, OUT the setup itself,
; SIZE_KB what the files take, FILE_LIST one line for each licence text and each file of the guide, PICTURE the
; picture of the first and the last page. REHEARSAL is defined where the module is built against the stand-in of 3ds Max.
Unicode true
Target amd64-unicode
SetCompressor zlib
; The files get the time of their installation: the same bytes from every build, and the analysis script's encrypted
; form, made later, is newer than the script.
SetDateSave off
CRCCheck force
RequestExecutionLevel admin
ManifestDPIAware true
ManifestSupportedOS all

!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include nsDialogs.nsh
!include paths.nsh

Name "${TITLE}"
OutFile "${OUT}"
BrandingText "${TITLE} ${VERSION}"
ShowInstDetails nevershow
ShowUninstDetails nevershow

Var AllowProgramInTheWay
Var IniWritable
Var Ip
Var Port
Var LowerVersion
Var FirstInstallation
Var Rehearsal
Var Purge
Var PurgeBox

!define MUI_ICON "${NSISDIR}\Contrib\Graphics\Icons\modern-install-blue-full.ico"
!define MUI_UNICON "${NSISDIR}\Contrib\Graphics\Icons\modern-uninstall-blue-full.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURE}"
!define MUI_ABORTWARNING
; Nobody has chosen a language yet when this window opens.
!define MUI_LANGDLL_WINDOWTITLE "${TITLE}"
!define MUI_LANGDLL_INFO "Please choose a language.$\r$\n请选择语言。"
; The language is asked for once; upgrades and the uninstaller take the same.
!define MUI_LANGDLL_REGISTRY_ROOT HKLM
!define MUI_LANGDLL_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MUI_LANGDLL_REGISTRY_VALUENAME "Language"

!define MUI_WELCOMEPAGE_TITLE "$(TEXT_WELCOME_TITLE)"
!define MUI_WELCOMEPAGE_TEXT "$(TEXT_WELCOME)"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TITLE "$(TEXT_FINISH_TITLE)"
!define MUI_FINISHPAGE_TEXT "$(TEXT_FINISH)"
!insertmacro MUI_PAGE_FINISH
UninstPage custom un.AskWhatToRemove un.TakeAnswer
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE SimpChinese
!include texts_en.nsh
!include texts_zh.nsh

VIProductVersion "${VERSION}.0"
!macro VersionTexts LANGUAGE DESCRIPTION
    VIAddVersionKey /LANG=${LANGUAGE} ProductName "${TITLE}"
    VIAddVersionKey /LANG=${LANGUAGE} ProductVersion "${VERSION}"
    VIAddVersionKey /LANG=${LANGUAGE} FileVersion "${VERSION}"
    VIAddVersionKey /LANG=${LANGUAGE} CompanyName "Marrowby"
    VIAddVersionKey /LANG=${LANGUAGE} LegalCopyright "© Marrowby"
    VIAddVersionKey /LANG=${LANGUAGE} FileDescription "${DESCRIPTION}"
!macroend
!insertmacro VersionTexts ${LANG_ENGLISH} "Setup of ${TITLE} for 3ds Max 2019"
!insertmacro VersionTexts ${LANG_SIMPCHINESE} "${TITLE} 安装程序（用于 3ds Max 2019）"

!include log.nsh
!include checks.nsh
!include links.nsh
!include rights.nsh
!include remove.nsh
!insertmacro CheckFunctions ""
!insertmacro CheckFunctions "un."
!insertmacro LogFunctions ""
!insertmacro LogFunctions "un."
!insertmacro LinkFunctions ""
!insertmacro LinkFunctions "un."
!insertmacro RemoveFunctions ""
!insertmacro RemoveFunctions "un."
!insertmacro PurgeFunction
!include install.nsh
!include uninstall.nsh
