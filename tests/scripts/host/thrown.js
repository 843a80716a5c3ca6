WScript.Echo("before");
throw new Error(-2147219501, "thrown here");
