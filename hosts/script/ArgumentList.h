// WScript.Arguments: the texts given to the script on the command line. Item (the default member) counts from 0.
#pragma once

#include <string>
#include <vector>

#include "hosts/script/ScriptedObject.h"

namespace hosts::script {

class ArgumentList final : public ScriptedObject {
  public:
    explicit ArgumentList(std::vector<std::wstring> texts);

    // Fails with DispatchError when there is no argument at the position.
    [[nodiscard]] Variant Item(const CallArguments& arguments) const;

  private:
    [[nodiscard]] Variant Count() const { return Variant(static_cast<long>(mvarTexts.size())); }
    [[nodiscard]] Variant NewEnum() const;

    std::vector<std::wstring> mvarTexts;
};

} // namespace hosts::script
