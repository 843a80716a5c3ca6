#include "dialogs/VisualStyles.h"

#include "platform/Module.h"

namespace kestrel::dialogs {

VisualStyles::VisualStyles() {
    const HMODULE module = ThisModule();
    const String path = ModulePath(module);
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
    description.lpSource = path.c_str();
    description.hModule = module;
    description.lpResourceName = MAKEINTRESOURCEW(2);
    mvarContext = CreateActCtxW(&description);
    if (mvarContext != INVALID_HANDLE_VALUE) ActivateActCtx(mvarContext, &mvarCookie);
}

VisualStyles::~VisualStyles() {
    if (mvarContext == INVALID_HANDLE_VALUE) return; // the host's controls are used then
    DeactivateActCtx(0, mvarCookie);
    ReleaseActCtx(mvarContext);
}

} // namespace kestrel::dialogs
