// The Windows side of the model's ports.
#pragma once

namespace kestrel {

// Installs the ports for the process, once; later calls do nothing. Any thread may call it.
void InstallPlatformPorts();

} // namespace kestrel
