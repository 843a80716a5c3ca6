// The errors of a run: each is one line on standard error, and their number decides the exit code.
#pragma once

#include <activscp.h>

#include <cstddef>
#include <string>
#include <vector>

namespace hosts::script {

class ErrorLog {
  public:
    // A script file; the number returned is what the engines call its source context.
    [[nodiscard]] DWORD AddFile(const std::wstring& path);

    // FILE(LINE, COLUMN) SOURCE: DESCRIPTION (0xNUMBER); line and column from 1.
    void Report(IActiveScriptError& error);
    void Report(const std::wstring& message);

    [[nodiscard]] std::size_t Count() const noexcept { return mvarCount; }

  private:
    [[nodiscard]] std::wstring PlaceOf(IActiveScriptError& error) const;

    std::vector<std::wstring> mvarFiles;
    std::size_t mvarCount = 0;
};

} // namespace hosts::script
