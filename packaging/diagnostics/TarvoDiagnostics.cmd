@echo off
rem Looks through the installation of Tarvo Rendering and gathers what support needs. Options: --help
"%~dp0tarvo_diagnostics.exe" %*
set TARVO_RESULT=%ERRORLEVEL%
rem Started with a double click: the window stays until it has been read.
if "%~1"=="" pause
exit /b %TARVO_RESULT%
