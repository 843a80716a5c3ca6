// The one exception of the model: a number, and what is appended to the number's text.
#pragma once

#include <cstdint>
#include <exception>

#include "common/Messages.h"
#include "common/String.h"

namespace kestrel {

class Error final : public std::exception {
  public:
    // A library error (2001 and above, raised on the object-error base) or an error of the run-time library (below
    // 2001, raised plainly). `appended` follows the text directly.
    explicit Error(Message message, String appended = {});

    // The library error whose text is followed by two line breaks and then `detail`.
    [[nodiscard]] static Error WithDetail(Message message, const String& detail);
    // A message number raised without the object-error base.
    [[nodiscard]] static Error Plain(Message message);

    [[nodiscard]] int Number() const noexcept { return static_cast<int>(mvarMessage); }
    // The automation result code: 0x80040000 plus the number, or 0x800A0000 plus the number of a plain error.
    [[nodiscard]] std::uint32_t Code() const noexcept;
    // The text in the language of the user interface, extended by what was appended.
    [[nodiscard]] String Description() const;
    [[nodiscard]] const char* what() const noexcept override { return "kestrel::Error"; }

  private:
    Message mvarMessage;
    bool mvarPlain;
    String mvarAppended;
};

} // namespace kestrel
