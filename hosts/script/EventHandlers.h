// The script's procedures as handlers of events: called by name when an event is raised.
#pragma once

#include <oaidl.h>

#include <string>

#include "hosts/script/ErrorLog.h"
#include "hosts/script/ScriptEngine.h"

namespace hosts::script {

class EventHandlers {
  public:
    // Both outlive this.
    EventHandlers(const ScriptEngine& engine, ErrorLog& log) noexcept : mvarEngine(&engine), mvarLog(&log) {}

    // Calls the procedure with the event's arguments; what it leaves in those passed by reference goes back to the
    // source. A script without such a procedure ignores the event. A procedure that fails is reported to the log, with
    // the answers that it gave before, and the source goes on.
    void Raise(const std::wstring& procedure, const DISPPARAMS& event) const;

  private:
    void Call(IDispatch& globals, DISPID id, const std::wstring& procedure, const DISPPARAMS& event) const;

    const ScriptEngine* mvarEngine;
    ErrorLog* mvarLog;
};

} // namespace hosts::script
