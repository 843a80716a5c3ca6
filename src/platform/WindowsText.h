// Formatting, numbers, dates, comparison and case as the automation runtime and the user's locale have them.
#pragma once

#include "common/TextPort.h"
#include "platform/PreparedFormats.h"

namespace kestrel {

class WindowsText final : public TextPort {
  public:
    // A text of digits keeps them all, up to 28, under a format with digit placeholders.
    [[nodiscard]] String Format(const String& value, const String& format) const override;
    // The same, always through the platform's formatting function, with nothing prepared.
    [[nodiscard]] static String FormatByPlatform(const String& value, const String& format);
    [[nodiscard]] std::optional<double> Number(const String& text) const override;
    [[nodiscard]] std::optional<Date> ParseDate(const String& text) const override;
    [[nodiscard]] bool SameText(StringView left, StringView right) const override;
    // One character for each byte of the system's key.
    [[nodiscard]] String SortKey(const String& text) const override;
    [[nodiscard]] String Upper(const String& text) const override;
    [[nodiscard]] String Lower(const String& text) const override;

  private:
    mutable PreparedFormats mvarPrepared;
};

} // namespace kestrel
