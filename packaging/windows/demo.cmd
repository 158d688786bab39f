@echo off
rem Shows the rules at work on an embedded database, in a console that shows UTF-8.
rem
rem   demo.cmd               to read
rem   demo.cmd --db FILE     keeps the database
setlocal
for /f "tokens=2 delims=:." %%p in ('chcp') do set before=%%p
chcp 65001 >nul
rem A server is named on the command line or not at all.
set TAVCC_DSN=
"%~dp0tavcc.exe" demo %*
set status=%errorlevel%
chcp %before% >nul
exit /b %status%
