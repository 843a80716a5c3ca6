#include "platform/PlatformPorts.h"

#include "common/Ports.h"
#include "platform/MessagePrompts.h"
#include "platform/ResourceStrings.h"
#include "platform/WindowsText.h"

namespace kestrel {

namespace {

bool Install(Dialogs* dialogs) {
    static const ResourceStrings strings;
    static const WindowsText text;
    static MessagePrompts prompts;
    InstallPorts({&strings, &text, &prompts, dialogs});
    return true;
}

} // namespace

void InstallPlatformPorts(Dialogs* dialogs) { [[maybe_unused]] static const bool installed = Install(dialogs); }

} // namespace kestrel
