#include "automation/ConnectionTable.h"

#include <oleauto.h>

#include <algorithm>
#include <atomic>

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

void FreeTexts(EXCEPINFO& exception) noexcept {
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

} // namespace

DWORD ConnectionTable::Advise(IUnknown& sink) {
    ComPtr<IDispatch> target = EventSinkOf(sink, mvarEvents);
    if (mvarConnections.empty()) mvarSubscriptions = mvarConnect(*this);
    mvarConnections.push_back({NextCookie(), std::move(target)});
    return mvarConnections.back().cookie;
}

void ConnectionTable::Unadvise(DWORD cookie) {
    const auto found = std::find_if(mvarConnections.begin(), mvarConnections.end(),
                                    [cookie](const Connection& connection) { return connection.cookie == cookie; });
    if (found == mvarConnections.end()) throw ComFailure{CONNECT_E_NOCONNECTION};
    const Connection leaving = *found; // letting go of the sink runs the host's code: last
    mvarConnections.erase(found);
    if (mvarConnections.empty()) mvarSubscriptions.clear();
}

bool ConnectionTable::IsAdvised(DWORD cookie) const noexcept {
    return std::any_of(mvarConnections.begin(), mvarConnections.end(),
                       [cookie](const Connection& connection) { return connection.cookie == cookie; });
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
