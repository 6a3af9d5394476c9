@echo off
rem HostCheck.cmd [SCENE.max]: starts 3ds Max 2019, runs HostCheck.ms in it, and ends it again. Nothing is saved.
rem The options are those of the documentation: -U MAXScript FILE runs a script when 3ds Max has started, -mxs runs a
rem command afterwards and then ends 3ds Max without asking.
setlocal
set "MAX=%ADSK_3DSMAX_x64_2019%"
if not defined MAX set "MAX=%ProgramFiles%\Autodesk\3ds Max 2019"
if not exist "%MAX%\3dsmax.exe" (
    echo 3dsmax.exe is not in "%MAX%". Set ADSK_3DSMAX_x64_2019 to its folder.
    exit /b 2
)
del /q "%~dp0TarvoHostCheck.txt" "%TEMP%\TarvoHostCheck.txt" 2>nul
if "%~1"=="" (
    start "" /wait "%MAX%\3dsmax.exe" -q -mxs "ok" -U MAXScript "%~dp0HostCheck.ms"
) else (
    start "" /wait "%MAX%\3dsmax.exe" -q -mxs "ok" -U MAXScript "%~dp0HostCheck.ms" "%~f1"
)
set "REPORT=%~dp0TarvoHostCheck.txt"
if not exist "%REPORT%" set "REPORT=%TEMP%\TarvoHostCheck.txt"
if not exist "%REPORT%" (
    echo There is no report: the script did not run.
    exit /b 3
)
findstr /b /c:"DIFFERENT" /c:"# same" "%REPORT%"
findstr /b /c:"# end" "%REPORT%" >nul || (
    echo The report has no end: the last line names the fact at which 3ds Max stopped.
    exit /b 3
)
echo The report is "%REPORT%"
findstr /b /c:"DIFFERENT" "%REPORT%" >nul && exit /b 1
exit /b 0
