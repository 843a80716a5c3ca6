WScript.Echo Twice(21)
WScript.Echo Twice(-1)
