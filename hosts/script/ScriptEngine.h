// One engine of the platform running scripts of one language. Ends the script, with all that it holds, when it ends.
#pragma once

#include <activscp.h>

#include <string>

#include "hosts/common/ComPtr.h"
#include "hosts/script/Options.h"
#include "hosts/script/ScriptSite.h"

namespace hosts::script {

class ScriptEngine {
  public:
    // Fails with HostError when the platform has no engine for the language.
    ScriptEngine(Language language, const ComPtr<ScriptSite>& site);
    ~ScriptEngine();
    ScriptEngine(const ScriptEngine&) = delete; // the engine is one
    ScriptEngine& operator=(const ScriptEngine&) = delete;

    // A name under which scripts find what the site holds under it.
    void AddName(const std::wstring& name);
    // Runs the text at once; its procedures and variables stay. False when it could not be run to its end; the site has
    // been told then, or the log is.
    [[nodiscard]] bool Run(const std::wstring& text, DWORD sourceContext);
    // What scripts have defined; null when the engine does not tell.
    [[nodiscard]] ComPtr<IDispatch> Globals() const;

  private:
    ComPtr<IActiveScript> mvarEngine;
    ComPtr<IActiveScriptParse> mvarParser;
};

} // namespace hosts::script
