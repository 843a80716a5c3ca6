WScript.Echo "héllo €"
