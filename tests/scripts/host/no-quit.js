WScript.Echo("whole");
