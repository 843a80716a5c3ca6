// What only a mistake in the library's own sources can bring about, such as a table that does not fit what it
// describes. Hosts see it as an unexpected failure, without a text. The standard library's std::logic_error says the
// same, but keeps a copy of its text, for which a library of this size would carry two kinds of strings more.
#pragma once

#include <exception>

namespace kestrel {

class Mistake final : public std::exception {
  public:
    // The text lives as long as the program.
    explicit Mistake(const char* text) noexcept : mvarText(text) {}
    [[nodiscard]] const char* what() const noexcept override { return mvarText; }

  private:
    const char* mvarText;
};

} // namespace kestrel
