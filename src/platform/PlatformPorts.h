// The Windows side of the model's ports.
#pragma once

namespace kestrel {

class Dialogs;

// Installs the ports for the process, and with them the dialogs given, once; later calls do nothing. Any thread may
// call it. Without dialogs a rule cannot open any.
void InstallPlatformPorts(Dialogs* dialogs = nullptr);

} // namespace kestrel
