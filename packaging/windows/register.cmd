@echo off
rem Registers the library for hosts of 64 and of 32 bits: for all users in an
rem administrator's prompt, else for this user. /s shows no boxes.
call "%~dp0server.cmd" %1
exit /b %errorlevel%
