// The automation component Kestrel.CodeClass as a host uses it: a rule that issues codes and takes them apart.
//
// The thread that makes a rule has an Apartment, and the rule stays on it.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/common/Dispatch.h"
#include "hosts/common/EventSink.h"

namespace hosts {

enum class BandStyle : long { Fixed = 0, Macro = 1, Field = 2, Number = 3, Letter = 4 };

// How a band changes the value of its field or macro, as the type library publishes it.
inline constexpr long NoSwap = 0;
inline constexpr long SimpleSwap = 1;
inline constexpr long LayersSwap = 2;

struct Band {
    std::wstring name;
    BandStyle style = BandStyle::Fixed;
    std::size_t position = 0; // where its part of a code begins, from 0
    std::size_t length = 0;
    std::vector<std::wstring> tracked; // the names of the bands whose values number it
};

class Rule {
  public:
    // The last code issued that matches the pattern ("?" stands for any character), or nothing: empty.
    using LastCode = std::function<std::wstring(const std::wstring& pattern)>;

    // Fails with HostError when the component is not registered.
    Rule();

    // Fails with HostError when the text makes no band.
    void Load(const std::wstring& definition);
    [[nodiscard]] std::wstring Definition() const { return mvarRule.Get(L"Definition").Text(); }

    void OnLastCode(LastCode lastCode);

    // The next code, after OnLastCode's answer for each number band that tracks others. Fails with DispatchError as the
    // component does, and with what OnLastCode throws.
    [[nodiscard]] std::wstring NextCode() { return GetCode(1); }
    // The last code instead of the next one.
    [[nodiscard]] std::wstring CurrentCode() { return GetCode(0); }
    // Gives the bands, fields and macros the values that the code was made of; fails with DispatchError.
    void TakeApart(const std::wstring& code);

    [[nodiscard]] std::size_t CodeLength() const;
    [[nodiscard]] std::vector<Band> Bands() const;
    [[nodiscard]] std::wstring BandValue(const std::wstring& name) const;

    // Fields first, then macros; the names in the order of their lists.
    [[nodiscard]] const std::vector<std::wstring>& Names() const noexcept { return mvarNames; }
    [[nodiscard]] bool Knows(const std::wstring& name) const;
    // The name is one that Knows; a field before a macro of the same name.
    void SetValue(const std::wstring& name, const std::wstring& value);
    [[nodiscard]] std::wstring Value(const std::wstring& name) const;

    [[nodiscard]] const Dispatch& Component() const noexcept { return mvarRule; }
    [[nodiscard]] EventSink& Events() const noexcept { return mvarEvents.Sink(); }

  private:
    [[nodiscard]] std::wstring GetCode(long style);
    void ReadNames(const std::wstring& list);
    [[nodiscard]] const Dispatch* Find(const std::wstring& name) const;

    Dispatch mvarRule;
    EventConnection mvarEvents;
    std::vector<std::wstring> mvarNames;
    std::vector<Dispatch> mvarItems; // beside their names
};

} // namespace hosts
