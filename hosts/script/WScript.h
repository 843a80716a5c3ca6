// The object WScript of a script: what the system's own script hosts offer under that name, as far as scripts that run
// on a console use it.
//
// Echo, Quit, CreateObject, ConnectObject, DisconnectObject, Arguments, ScriptName, ScriptFullName, Sleep, StdIn,
// StdOut, StdErr.
#pragma once

#include <functional>
#include <string>

#include "hosts/common/ComPtr.h"
#include "hosts/script/ArgumentList.h"
#include "hosts/script/Connections.h"
#include "hosts/script/ScriptedObject.h"

namespace hosts::script {

class WScript final : public ScriptedObject {
  public:
    // Ends the program; never returns.
    using Quit = std::function<void(int exitCode)>;

    // The connections outlive this.
    WScript(const Options& options, Connections& connections, Quit quit);

  private:
    void DefineEvents();
    void DefineScript(const Options& options);
    void DefineStreams();

    Connections* mvarConnections;
    ComPtr<ArgumentList> mvarArguments;
};

} // namespace hosts::script
