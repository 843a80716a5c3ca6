// WScript.StdIn, WScript.StdOut and WScript.StdErr: the program's standard streams as scripts use them. Texts are
// UTF-8.
#pragma once

#include "hosts/script/ScriptedObject.h"

namespace hosts::script {

// ReadLine, ReadAll, AtEndOfStream.
class InputStream final : public ScriptedObject {
  public:
    InputStream();
};

// Write, WriteLine.
class OutputStream final : public ScriptedObject {
  public:
    enum class Target { Out, Error };
    explicit OutputStream(Target target);
};

} // namespace hosts::script
