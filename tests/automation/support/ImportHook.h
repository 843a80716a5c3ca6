// A function of Windows that a loaded library imports, replaced in that library alone.
#pragma once

#include <windows.h>

namespace kestrel::test {

class ImportHook {
  public:
    // Throws HostError when the library does not import the function.
    ImportHook(HMODULE library, const char* function, void* replacement);
    // Put back once.
    ImportHook(const ImportHook&) = delete;
    ImportHook& operator=(const ImportHook&) = delete;
    ~ImportHook();

  private:
    void** mvarPlace;
    void* mvarOriginal;
};

} // namespace kestrel::test
