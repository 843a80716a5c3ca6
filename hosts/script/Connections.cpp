#include "hosts/script/Connections.h"

#include "hosts/script/EventNames.h"

namespace hosts::script {

namespace {

ComPtr<IUnknown> IdentityOf(IDispatch& object) { return ComPtr<IDispatch>(&object).As<IUnknown>(IID_IUnknown); }

} // namespace

void Connections::Connect(IDispatch& object, const std::wstring& prefix) {
    const EventNames names = EventNamesOf(object);
    EventConnection connection(&object);
    for (const auto& [id, name] : names) {
        connection.Sink().On(id, [handlers = mvarHandlers, procedure = prefix + name](const EventArguments& event) {
            handlers.Raise(procedure, event.Raw());
        });
    }
    mvarConnected.push_back({IdentityOf(object), std::move(connection)});
}

void Connections::Disconnect(IDispatch& object) {
    const ComPtr<IUnknown> identity = IdentityOf(object);
    mvarConnected.remove_if([&](const Connected& connected) { return connected.identity.Get() == identity.Get(); });
}

} // namespace hosts::script
