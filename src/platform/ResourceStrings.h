// The string table in this module's resources. The language is chosen here, as the system's own loading of strings
// would take a neutral block before the user's language: German when the user interface is German, otherwise English.
#pragma once

#include "common/Strings.h"

namespace kestrel {

class ResourceStrings final : public Strings {
  public:
    [[nodiscard]] String Text(int number) const override;
    using Strings::Text;
};

} // namespace kestrel
