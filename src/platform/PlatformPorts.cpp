#include "platform/PlatformPorts.h"

#include "common/Ports.h"
#include "platform/MessagePrompts.h"
#include "platform/ResourceStrings.h"
#include "platform/WindowsText.h"

namespace kestrel {

namespace {

bool Install() {
    static const ResourceStrings strings;
    static const WindowsText text;
    static MessagePrompts prompts;
    InstallPorts({&strings, &text, &prompts, nullptr});
    return true;
}

} // namespace

void InstallPlatformPorts() { [[maybe_unused]] static const bool installed = Install(); }

} // namespace kestrel
