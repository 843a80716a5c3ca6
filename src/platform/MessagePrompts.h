// Questions and information as message boxes, owned by the calling thread's active window and titled with the host
// application's name: what its file says it is, else its file name. In a process whose windows nobody can see (a
// service, a scheduled task, a web server) none comes up: every question is answered No, information is left out.
#pragma once

#include "common/Prompts.h"

namespace kestrel {

class MessagePrompts final : public Prompts {
  public:
    [[nodiscard]] bool Ask(const String& question) override;
    [[nodiscard]] bool AskDefaultNo(const String& question) override;
    void Inform(const String& text) override;
    void Warn(const String& text) override;
};

// The name of the program at that path, as titles show it.
[[nodiscard]] String ApplicationName(const String& programPath);

} // namespace kestrel
