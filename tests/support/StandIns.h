// Plain stand-ins for the ports, for tests of the model away from Windows, and one fixture that installs them.
//
// StandInText knows the few formats that tests need: "0"s pad a number, "#,##0" groups its digits, ">" and "<" change
// case, "yymm", "yyyy" and "yyyy-mm-dd" write a date given as yyyy-mm-dd, a character after "\" at the beginning or end
// stands there as it is; anything else cannot be applied. Upper and Lower know ASCII only; SameText compares as locales
// do in that it ignores case, the width of letters and soft hyphens.
#pragma once

#include <functional>
#include <vector>

#include "common/Ports.h"
#include "engine/Dialogs.h"

namespace kestrel::test {

// The English texts.
class StandInStrings final : public Strings {
  public:
    [[nodiscard]] String Text(int number) const override;
    using Strings::Text;
};

class StandInText final : public TextPort {
  public:
    [[nodiscard]] String Format(const String& value, const String& format) const override;
    [[nodiscard]] std::optional<double> Number(const String& text) const override;
    [[nodiscard]] std::optional<Date> ParseDate(const String& text) const override;
    [[nodiscard]] bool SameText(StringView left, StringView right) const override;
    [[nodiscard]] String SortKey(const String& text) const override;
    [[nodiscard]] String Upper(const String& text) const override;
    [[nodiscard]] String Lower(const String& text) const override;
};

// Records what was asked and told, and answers as the test says.
class ScriptedPrompts final : public Prompts {
  public:
    [[nodiscard]] bool Ask(const String& question) override;
    [[nodiscard]] bool AskDefaultNo(const String& question) override;
    void Inform(const String& text) override { informed.push_back(text); }
    void Warn(const String& text) override { warned.push_back(text); }

    bool answer = true;
    std::vector<String> asked;
    std::vector<String> informed;
    std::vector<String> warned;
    // Runs while a question is open, as a host's code may.
    std::function<void()> whileAsking;
};

// Installs the stand-ins for as long as it lives.
class StandIns {
  public:
    explicit StandIns(Dialogs* dialogs = nullptr);
    ~StandIns() { InstallPorts(mvarBefore); }
    // Installed once, taken back once.
    StandIns(const StandIns&) = delete;
    StandIns& operator=(const StandIns&) = delete;

    ScriptedPrompts prompts;

  private:
    StandInStrings mvarStrings;
    StandInText mvarText;
    PortSet mvarBefore;
};

} // namespace kestrel::test
