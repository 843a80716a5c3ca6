#include "hosts/script/WScript.h"

#include <windows.h>

#include <objbase.h>

#include <filesystem>

#include "hosts/common/Console.h"
#include "hosts/common/Dispatch.h"
#include "hosts/script/Pause.h"
#include "hosts/script/TextStreams.h"

namespace hosts::script {

namespace {

Variant Echo(const CallArguments& arguments) {
    std::wstring line;
    for (std::size_t position = 0; position < arguments.Count(); ++position)
        line += (position == 0 ? L"" : L" ") + arguments.Text(position);
    PrintLine(line);
    return Variant();
}

ComPtr<IDispatch> NewObject(const std::wstring& progId) {
    ComPtr<IDispatch> object;
    const HRESULT result = Dispatch::TryCreate(progId, object);
    if (FAILED(result)) throw DispatchError(result, L"cannot create an object named \"" + progId + L"\"");
    return object;
}

Variant Sleep(const CallArguments& arguments) {
    Pause(static_cast<DWORD>(std::max(arguments.Number(0), 0L)));
    return Variant();
}

} // namespace

WScript::WScript(const Options& options, Connections& connections, Quit quit)
    : mvarConnections(&connections), mvarArguments(new ArgumentList(options.arguments)) {
    Define(L"Echo", &Echo);
    Define(L"Sleep", &Sleep);
    Define(L"Quit", [quit = std::move(quit)](const CallArguments& arguments) {
        quit(arguments.Count() == 0 ? 0 : static_cast<int>(arguments.Number(0)));
        return Variant();
    });
    DefineEvents();
    DefineScript(options);
    DefineStreams();
}

void WScript::DefineEvents() {
    Define(L"CreateObject", [this](const CallArguments& arguments) {
        const ComPtr<IDispatch> object = NewObject(arguments.Text(0));
        if (arguments.Count() > 1) mvarConnections->Connect(*object.Get(), arguments.Text(1));
        return Variant(object.Get());
    });
    Define(L"ConnectObject", [this](const CallArguments& arguments) {
        mvarConnections->Connect(arguments.Object(0), arguments.Text(1));
        return Variant();
    });
    Define(L"DisconnectObject", [this](const CallArguments& arguments) {
        mvarConnections->Disconnect(arguments.Object(0));
        return Variant();
    });
}

void WScript::DefineScript(const Options& options) {
    const std::filesystem::path path = std::filesystem::absolute(options.script);
    Define(L"ScriptName", [name = path.filename().wstring()](const CallArguments&) { return Variant(name); });
    Define(L"ScriptFullName", [name = path.wstring()](const CallArguments&) { return Variant(name); });
    Define(L"Arguments", [this](const CallArguments& arguments) {
        if (arguments.Count() > 0) return mvarArguments->Item(arguments);
        return Variant(mvarArguments.Get());
    });
}

void WScript::DefineStreams() {
    const auto define = [this](const wchar_t* name, ScriptedObject* stream) {
        Define(name, [held = ComPtr<ScriptedObject>(stream)](const CallArguments&) { return Variant(held.Get()); });
    };
    define(L"StdIn", new InputStream());
    define(L"StdOut", new OutputStream(OutputStream::Target::Out));
    define(L"StdErr", new OutputStream(OutputStream::Target::Error));
}

} // namespace hosts::script
