// One run of a script: its engine, what the script sees, and the exit code.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "hosts/script/Connections.h"
#include "hosts/script/ErrorLog.h"
#include "hosts/script/EventHandlers.h"
#include "hosts/script/ScriptEngine.h"

namespace hosts::script {

struct Source {
    std::wstring path;
    std::wstring text;
};

// The includes and the script, in the order in which they run; fails with HostError on a file that cannot be read.
[[nodiscard]] std::vector<Source> ReadSources(const Options& options);

class Session {
  public:
    // Fails with HostError when the system has no engine for the language.
    explicit Session(const Options& options);
    Session(const Session&) = delete; // its parts refer to each other
    Session& operator=(const Session&) = delete;

    // Runs the sources until one cannot be run to its end. The exit code: 0, or 1 when an error was reported; a script
    // that calls Quit ends the program with its own.
    [[nodiscard]] int Run(const std::vector<Source>& sources);

  private:
    [[noreturn]] void Quit(int exitCode) noexcept;

    EndChecks mvarChecks;
    std::optional<BoxAnswers> mvarAnswers;
    ErrorLog mvarLog;
    ComPtr<ScriptSite> mvarSite;
    ScriptEngine mvarEngine;
    Connections mvarConnections;
};

} // namespace hosts::script
