// A value that the model keeps for a host without looking into it, and can only turn into text.
#pragma once

#include <utility>

#include "common/Counted.h"
#include "common/String.h"

namespace kestrel {

class FreeValue : public Counted {
  public:
    // As it is written into a text form; empty for what has no text.
    [[nodiscard]] virtual String Text() const = 0;
};

class TextValue final : public FreeValue {
  public:
    explicit TextValue(String text) : mvarText(std::move(text)) {}
    [[nodiscard]] String Text() const override { return mvarText; }

  private:
    String mvarText;
};

} // namespace kestrel
