#include "hosts/script/EventHandlers.h"

#include <vector>

#include "hosts/common/ExceptionTexts.h"
#include "hosts/script/ReferenceArgument.h"

namespace hosts::script {

namespace {

// Arguments keep the order in which the runtime passes them, last first.
std::vector<ReferenceArgument> ArgumentsOf(const DISPPARAMS& event) {
    std::vector<ReferenceArgument> arguments;
    arguments.reserve(event.cArgs);
    for (UINT index = 0; index < event.cArgs; ++index)
        arguments.emplace_back(event.rgvarg[index]);
    return arguments;
}

std::vector<VARIANT> PassedOf(std::vector<ReferenceArgument>& arguments) {
    std::vector<VARIANT> passed;
    passed.reserve(arguments.size());
    for (ReferenceArgument& argument : arguments)
        passed.push_back(argument.Passed());
    return passed;
}

std::wstring FailureOf(const std::wstring& procedure, HRESULT result, ExceptionTexts& texts) {
    texts.FillIn();
    const HRESULT code = result == DISP_E_EXCEPTION ? texts.Code() : result;
    return procedure + L": " + texts.Description() + L" (" + CodeText(code) + L")";
}

} // namespace

void EventHandlers::Raise(const std::wstring& procedure, const DISPPARAMS& event) const {
    const ComPtr<IDispatch> globals = mvarEngine->Globals();
    if (!globals) return;
    std::wstring asked = procedure; // the declaration takes no constant text
    LPOLESTR name = asked.data();
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(globals->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_USER_DEFAULT, &id))) return;
    Call(*globals.Get(), id, procedure, event);
}

void EventHandlers::Call(IDispatch& globals, DISPID id, const std::wstring& procedure, const DISPPARAMS& event) const {
    std::vector<ReferenceArgument> arguments = ArgumentsOf(event);
    std::vector<VARIANT> passed = PassedOf(arguments);
    DISPPARAMS parameters{passed.data(), nullptr, event.cArgs, 0};
    ExceptionTexts texts;
    const std::size_t reported = mvarLog->Count();
    const HRESULT result =
        globals.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, texts.Out(), nullptr);
    if (FAILED(result) && mvarLog->Count() == reported) mvarLog->Report(FailureOf(procedure, result, texts));
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        if (!arguments[index].CopyBack())
            mvarLog->Report(procedure + L": the value left in argument " + std::to_wstring(arguments.size() - index) +
                            L" does not fit the event");
    }
}

} // namespace hosts::script
