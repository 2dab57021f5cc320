@echo off
rem Hands the words to regsvr32 for each of the two servers: register.cmd and unregister.cmd.
setlocal
set failed=0
set native=%SystemRoot%\System32
rem A prompt of 32 bits on a system of 64 sees its own programs under System32.
if defined PROCESSOR_ARCHITEW6432 set native=%SystemRoot%\Sysnative
set server=x64
if /i "%PROCESSOR_ARCHITECTURE%"=="x86" set server=x86
if defined PROCESSOR_ARCHITEW6432 set server=x64
"%native%\regsvr32.exe" %* "%~dp0%server%\Orv2_Geo.dll"
if errorlevel 1 set failed=1
if %server%==x86 goto done
if not exist "%SystemRoot%\SysWOW64\regsvr32.exe" goto done
"%SystemRoot%\SysWOW64\regsvr32.exe" %* "%~dp0x86\Orv2_Geo.dll"
if errorlevel 1 set failed=1
:done
if %failed%==1 echo Not every server answered: unpack the whole zip, and keep its folders together.
exit /b %failed%
