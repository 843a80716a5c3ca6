// The objects whose events reach the script, each with the prefix of the procedures that handle them.
#pragma once

#include <list>
#include <string>

#include "hosts/common/ComPtr.h"
#include "hosts/common/EventSink.h"
#include "hosts/script/EventHandlers.h"

namespace hosts::script {

class Connections {
  public:
    explicit Connections(const EventHandlers& handlers) : mvarHandlers(handlers) {}

    // From here on the event E of the object calls the procedure prefix + E. An object connected again keeps its
    // earlier connections too. Fails with HostError when the object raises no events.
    void Connect(IDispatch& object, const std::wstring& prefix);
    // Ends all connections of the object; one that has none is no error. A connected object stays alive until then.
    void Disconnect(IDispatch& object);
    void DisconnectAll() noexcept { mvarConnected.clear(); }

  private:
    struct Connected {
        ComPtr<IUnknown> identity;
        EventConnection connection;
    };

    EventHandlers mvarHandlers;
    std::list<Connected> mvarConnected;
};

} // namespace hosts::script
