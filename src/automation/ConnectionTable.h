// The sinks that listen to the events of one model object. It is attached to the model object, not to a face: an event
// reaches every sink, whichever face it was advised through, for as long as the model object lives.
//
// The model's events are subscribed to only while there is a sink, so that an event nobody hears costs nothing. A raise
// calls the sinks that were advised when it began and still are when their turn comes, in the order of advising; each
// sees the arguments as the one before left them. What a sink answers with a failure is its own affair. Want of memory
// is the failure of the operation that raises the event: a host that could not be asked has not agreed to anything.
#pragma once

#include <ocidl.h>
#include <olectl.h>

#include <functional>
#include <memory>
#include <vector>

#include "automation/Boundary.h"
#include "automation/EventArguments.h"
#include "common/Counted.h"
#include "common/Event.h"
#include "platform/ComPtr.h"

namespace kestrel {

class ConnectionTable final : public Counted {
  public:
    // Subscribes the table to the events of the model object that it is attached to.
    using Connector = std::function<std::vector<Subscription>(ConnectionTable&)>;
    struct Connection {
        DWORD cookie;
        ComPtr<IDispatch> sink;
    };

    ConnectionTable(const IID& events, Connector connect) : mvarEvents(events), mvarConnect(std::move(connect)) {}

    // A cookie that no connection in this process had before. A sink that takes neither the event interface nor
    // IDispatch fails with ComFailure.
    DWORD Advise(IUnknown& sink);
    // Fails with ComFailure on a cookie that is not in use here.
    void Unadvise(DWORD cookie);
    [[nodiscard]] const std::vector<Connection>& Connections() const noexcept { return *mvarConnections; }

    // A handler that raises the model event as the event of that id.
    template <class... Args>
    [[nodiscard]] Subscription Forward(Event<Args...>& event, DISPID id) {
        return event.Subscribe([this, id](Args... args) { Raise(id, args...); });
    }

    // Fails with std::bad_alloc.
    template <class... Args>
    void Raise(DISPID id, Args&&... args) {
        const Ref<ConnectionTable> self(this);
        const auto connections = mvarConnections;
        EventArguments<Args...> arguments(std::forward<Args>(args)...);
        const auto values = arguments.Values();
        for (const auto& [cookie, sink] : *connections) {
            auto own = values; // each sink may do to them what it likes
            if (IsAdvised(cookie)) Notify(*sink.Get(), id, own.data(), static_cast<UINT>(own.size()));
        }
        arguments.CopyBack();
    }

  private:
    static void Notify(IDispatch& sink, DISPID id, VARIANT* arguments, UINT count) noexcept;
    [[nodiscard]] bool IsAdvised(DWORD cookie) const noexcept;
    [[nodiscard]] std::vector<Connection>& ListToChange();

    const IID& mvarEvents;
    Connector mvarConnect;
    // A raise shares the list that it goes on with: only one that nobody shares is changed.
    std::shared_ptr<std::vector<Connection>> mvarConnections = std::make_shared<std::vector<Connection>>();
    std::vector<Subscription> mvarSubscriptions;
};

} // namespace kestrel
