// The port through which the model asks and tells the user. Where there is no user every answer is No.
#pragma once

#include "common/String.h"

namespace kestrel {

class Prompts {
  public:
    virtual ~Prompts() = default;

    // A Yes/No question, titled with the host application's name; true for Yes.
    [[nodiscard]] virtual bool Ask(const String& question) = 0;

    // The same with No as the default button.
    [[nodiscard]] virtual bool AskDefaultNo(const String& question) = 0;

    // A piece of information to acknowledge.
    virtual void Inform(const String& text) = 0;

    // A refusal to acknowledge.
    virtual void Warn(const String& text) = 0;
};

} // namespace kestrel
