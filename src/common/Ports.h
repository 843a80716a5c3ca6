// The ports in use: one set for the process, installed before the first model object is made.
#pragma once

#include "common/Prompts.h"
#include "common/Strings.h"
#include "common/TextPort.h"

namespace kestrel {

class Dialogs;

struct PortSet {
    const Strings* strings = nullptr;
    const TextPort* text = nullptr;
    Prompts* prompts = nullptr;
    Dialogs* dialogs = nullptr;
};

// Replaces the ports in use and returns those before; what the set points to must outlive its use.
PortSet InstallPorts(const PortSet& ports) noexcept;

// Each fails with Mistake as long as its port is not installed.
[[nodiscard]] const Strings& TheStrings();
[[nodiscard]] const TextPort& TheText();
[[nodiscard]] Prompts& ThePrompts();
[[nodiscard]] Dialogs& TheDialogs();

} // namespace kestrel
