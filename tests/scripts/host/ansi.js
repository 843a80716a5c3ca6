WScript.Echo("héllo €");
