// What ends a host's command: one line for people that names the cause and what to do about it.
#pragma once

#include <exception>
#include <string>

namespace hosts {

class HostError : public std::exception {
  public:
    // One line, without a full stop at its end and without a line break.
    explicit HostError(std::wstring message) : mvarMessage(std::move(message)) {}

    [[nodiscard]] const std::wstring& Message() const noexcept { return mvarMessage; }
    [[nodiscard]] const char* what() const noexcept override { return "hosts::HostError"; }

  private:
    std::wstring mvarMessage;
};

// What keeps one record from getting a code; the others can go on.
class RecordError : public HostError {
  public:
    using HostError::HostError;
};

// Nobody takes the program's output any more.
class OutputError final : public HostError {
  public:
    using HostError::HostError;
};

} // namespace hosts
