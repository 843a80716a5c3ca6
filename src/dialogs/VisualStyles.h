// The look of the common controls that the library's own manifest asks for.
#pragma once

#include <windows.h>

namespace kestrel::dialogs {

// While it lives, windows made on this thread get the common controls that the manifest (resource 2) of the module with
// this code asks for, whatever the host program's manifest says.
class VisualStyles {
  public:
    VisualStyles();
    // Deactivated once, on the same thread.
    VisualStyles(const VisualStyles&) = delete;
    VisualStyles& operator=(const VisualStyles&) = delete;
    ~VisualStyles();

  private:
    HANDLE mvarContext = INVALID_HANDLE_VALUE;
    ULONG_PTR mvarCookie = 0;
};

} // namespace kestrel::dialogs
