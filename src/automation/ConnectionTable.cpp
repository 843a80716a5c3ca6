#include "automation/ConnectionTable.h"

#include <oleauto.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace kestrel {

namespace {

DWORD NextCookie() noexcept {
    static std::atomic<DWORD> last{0};
    return ++last;
}

ComPtr<IDispatch> EventSinkOf(IUnknown& object, const IID& events) {
    ComPtr<IDispatch> sink;
    if (FAILED(object.QueryInterface(events, sink.OutVoid()))) object.QueryInterface(IID_IDispatch, sink.OutVoid());
    if (!sink) throw ComFailure{CONNECT_E_CANNOTCONNECT};
    return sink;
}

auto Find(const std::vector<ConnectionTable::Connection>& connections, DWORD cookie) noexcept {
    return std::find_if(
        connections.begin(), connections.end(),
        [cookie](const ConnectionTable::Connection& connection) { return connection.cookie == cookie; });
}

void FreeTexts(EXCEPINFO& exception) noexcept {
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

} // namespace

DWORD ConnectionTable::Advise(IUnknown& sink) {
    ComPtr<IDispatch> target = EventSinkOf(sink, mvarEvents);
    auto& connections = ListToChange();
    if (connections.empty()) mvarSubscriptions = mvarConnect(*this);
    connections.push_back({NextCookie(), std::move(target)});
    return connections.back().cookie;
}

void ConnectionTable::Unadvise(DWORD cookie) {
    if (!IsAdvised(cookie)) throw ComFailure{CONNECT_E_NOCONNECTION};
    auto& connections = ListToChange();
    const auto found = connections.begin() + (Find(connections, cookie) - connections.cbegin());
    const Connection leaving = std::move(*found); // letting go of the sink runs the host's code: last
    connections.erase(found);
    if (connections.empty()) mvarSubscriptions.clear();
}

std::vector<ConnectionTable::Connection>& ConnectionTable::ListToChange() {
    if (mvarConnections.use_count() != 1) mvarConnections = std::make_shared<std::vector<Connection>>(*mvarConnections);
    return *mvarConnections;
}

bool ConnectionTable::IsAdvised(DWORD cookie) const noexcept {
    return Find(*mvarConnections, cookie) != mvarConnections->end();
}

void ConnectionTable::Notify(IDispatch& sink, DISPID id, VARIANT* arguments, UINT count) noexcept {
    DISPPARAMS params{arguments, nullptr, count, 0};
    EXCEPINFO exception{};
    Variant result;
    UINT failedArgument = 0;
    const HRESULT answer = sink.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &params, result.Out(),
                                       &exception, &failedArgument);
    FreeTexts(exception);
    // The sink's failure is not the failure of the call that raised the event.
    if (FAILED(answer)) SetErrorInfo(0, nullptr);
}

} // namespace kestrel
