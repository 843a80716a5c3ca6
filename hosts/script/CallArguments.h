// The arguments that a script passes in one call, in the order in which it wrote them.
#pragma once

#include <oaidl.h>

#include <cstddef>
#include <string>

namespace hosts::script {

// A call that cannot be made: the automation code for it. The script's engine knows the text.
class BadCall {
  public:
    explicit BadCall(HRESULT code) noexcept : mvarCode(code) {}
    [[nodiscard]] HRESULT Code() const noexcept { return mvarCode; }

  private:
    HRESULT mvarCode;
};

class CallArguments {
  public:
    explicit CallArguments(const DISPPARAMS& parameters) noexcept : mvarParameters(parameters) {}

    [[nodiscard]] std::size_t Count() const noexcept { return mvarParameters.cArgs; }
    // Positions from 0. Each fails with BadCall when there is no such argument or its value cannot be converted.
    [[nodiscard]] const VARIANT& At(std::size_t position) const;
    [[nodiscard]] std::wstring Text(std::size_t position) const;
    [[nodiscard]] long Number(std::size_t position) const;
    // The reference stays with the argument; never null.
    [[nodiscard]] IDispatch& Object(std::size_t position) const;

  private:
    const DISPPARAMS& mvarParameters;
};

} // namespace hosts::script
