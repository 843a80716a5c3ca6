// The string table in one language, whatever the language of the system.
#pragma once

#include "common/Ports.h"

namespace kestrel::test {

enum class Language { English, German };

class TableStrings final : public Strings {
  public:
    explicit TableStrings(Language language) noexcept : mvarLanguage(language) {}
    [[nodiscard]] String Text(int wanted) const override {
#define STRING(number, english, german)                                                                                \
    if (wanted == (number)) return mvarLanguage == Language::German ? L##german : L##english;
#include "resources/strings.inc"
#undef STRING
        return {};
    }
    using Strings::Text;

  private:
    Language mvarLanguage;
};

} // namespace kestrel::test
