WScript.Echo "héllo €"
