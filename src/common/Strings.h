// The string table: every caption and message by its number, in the language of the user interface.
#pragma once

#include "common/Messages.h"
#include "common/String.h"

namespace kestrel {

// The port that the platform implements.
class Strings {
  public:
    virtual ~Strings() = default;
    // The text with that number; empty when there is none.
    [[nodiscard]] virtual String Text(int number) const = 0;

    [[nodiscard]] String Text(Message message) const { return Text(static_cast<int>(message)); }
};

} // namespace kestrel
