// The account that an automation object gives of an error, taken over from the runtime.
#pragma once

#include <oaidl.h>

#include <string>

namespace hosts {

// The code with its hexadecimal digits, as error messages show it.
[[nodiscard]] std::wstring CodeText(HRESULT code);

class ExceptionTexts {
  public:
    ExceptionTexts() = default;
    ~ExceptionTexts();
    ExceptionTexts(const ExceptionTexts&) = delete; // owns what it frees
    ExceptionTexts& operator=(const ExceptionTexts&) = delete;

    // For the call that may fail.
    [[nodiscard]] EXCEPINFO* Out() noexcept { return &mvarInfo; }
    // Once after the call: lets the object write texts that it had put off.
    void FillIn() noexcept;

    // Each may be empty.
    [[nodiscard]] std::wstring Source() const;
    [[nodiscard]] std::wstring Description() const;
    // The number, whichever of the two ways of giving it the object chose.
    [[nodiscard]] HRESULT Code() const noexcept;

  private:
    EXCEPINFO mvarInfo{};
};

} // namespace hosts
