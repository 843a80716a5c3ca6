#include "hosts/script/Session.h"

#include <windows.h>

#include "hosts/common/Console.h"
#include "hosts/common/HostError.h"
#include "hosts/common/TextFile.h"
#include "hosts/script/WScript.h"

namespace hosts::script {

namespace {

constexpr const wchar_t* HostObject = L"WScript";

// UTF-8, UTF-16 with its mark, or else the system's own code page.
std::wstring ReadScript(const std::wstring& path) {
    try {
        return ReadTextFile(path);
    } catch (const HostError&) {
        return ReadTextFile(path, GetACP());
    }
}

} // namespace

std::vector<Source> ReadSources(const Options& options) {
    std::vector<Source> sources;
    for (const std::wstring& include : options.includes)
        sources.push_back({include, ReadScript(include)});
    sources.push_back({options.script, ReadScript(options.script)});
    return sources;
}

Session::Session(const Options& options)
    : mvarChecks(options.checks), mvarSite(new ScriptSite(mvarLog)), mvarEngine(options.language, mvarSite),
      mvarConnections(EventHandlers(mvarEngine, mvarLog)) {
    if (options.answer) mvarAnswers.emplace(*options.answer);
    const ComPtr<WScript> host(new WScript(options, mvarConnections, [this](int exitCode) { Quit(exitCode); }));
    mvarSite->SetItem(HostObject, ComPtr<IDispatch>(host.Get()));
    mvarEngine.AddName(HostObject);
}

int Session::Run(const std::vector<Source>& sources) {
    for (const Source& source : sources) {
        const std::size_t reported = mvarLog.Count();
        if (mvarEngine.Run(source.text, mvarLog.AddFile(source.path))) continue;
        if (mvarLog.Count() == reported)
            mvarLog.Report(source.path + L": the engine ended the script without a reason");
        break;
    }
    mvarConnections.DisconnectAll();
    return mvarLog.Count() == 0 ? 0 : 1;
}

void Session::Quit(int exitCode) noexcept {
    try {
        mvarConnections.DisconnectAll();
        FlushOut();
    } catch (const HostError&) {
        exitCode = exitCode == 0 ? 1 : exitCode; // the output is lost
    }
    ExitProcess(static_cast<UINT>(mvarChecks.AfterQuit(exitCode)));
}

} // namespace hosts::script
