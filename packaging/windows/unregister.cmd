@echo off
rem Takes back what register.cmd entered. The files stay. /s shows no boxes.
call "%~dp0server.cmd" /u %1
exit /b %errorlevel%
