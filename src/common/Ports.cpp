#include "common/Ports.h"

#include <utility>

#include "common/Mistake.h"

namespace kestrel {

namespace {

PortSet& Installed() noexcept {
    static PortSet ports;
    return ports;
}

template <class Port>
Port& Required(Port* port) {
    if (port == nullptr) throw Mistake("a port is not installed");
    return *port;
}

} // namespace

PortSet InstallPorts(const PortSet& ports) noexcept { return std::exchange(Installed(), ports); }

const Strings& TheStrings() { return Required(Installed().strings); }
const TextPort& TheText() { return Required(Installed().text); }
Prompts& ThePrompts() { return Required(Installed().prompts); }
Dialogs& TheDialogs() { return Required(Installed().dialogs); }

} // namespace kestrel
