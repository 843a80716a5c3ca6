#include "hosts/script/ScriptEngine.h"

#include <objbase.h>

#include "hosts/common/ExceptionTexts.h"
#include "hosts/common/HostError.h"

namespace hosts::script {

namespace {

const wchar_t* ProgIdOf(Language language) { return language == Language::VBScript ? L"VBScript" : L"JScript"; }

ComPtr<IActiveScript> CreateEngine(const wchar_t* progId) {
    CLSID clsid{};
    ComPtr<IActiveScript> engine;
    if (FAILED(CLSIDFromProgID(progId, &clsid)) ||
        FAILED(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript, engine.OutVoid())))
        throw HostError(std::wstring(L"this system has no engine for ") + progId);
    return engine;
}

void Demand(HRESULT result) {
    if (FAILED(result)) throw HostError(L"the script engine cannot be started, error " + CodeText(result));
}

} // namespace

ScriptEngine::ScriptEngine(Language language, const ComPtr<ScriptSite>& site)
    : mvarEngine(CreateEngine(ProgIdOf(language))),
      mvarParser(mvarEngine.As<IActiveScriptParse>(__uuidof(IActiveScriptParse))) {
    if (!mvarParser) throw HostError(L"the script engine takes no text");
    Demand(mvarParser->InitNew());
    Demand(mvarEngine->SetScriptSite(site.Get()));
    Demand(mvarEngine->SetScriptState(SCRIPTSTATE_STARTED));
}

ScriptEngine::~ScriptEngine() { mvarEngine->Close(); }

void ScriptEngine::AddName(const std::wstring& name) {
    Demand(mvarEngine->AddNamedItem(name.c_str(), SCRIPTITEM_ISVISIBLE));
}

bool ScriptEngine::Run(const std::wstring& text, DWORD sourceContext) {
    EXCEPINFO unused{}; // the site hears of errors first
    return SUCCEEDED(mvarParser->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, sourceContext, 0,
                                                 SCRIPTTEXT_ISVISIBLE, nullptr, &unused));
}

ComPtr<IDispatch> ScriptEngine::Globals() const {
    ComPtr<IDispatch> globals;
    return SUCCEEDED(mvarEngine->GetScriptDispatch(nullptr, globals.Out())) ? globals : ComPtr<IDispatch>();
}

} // namespace hosts::script
