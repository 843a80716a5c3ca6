// Texts as they may stand in one line.
#pragma once

#include <string>
#include <string_view>

namespace hosts {

// Line breaks and what stands around them become "; ", so that a message of several lines is one.
[[nodiscard]] std::wstring OneLine(std::wstring_view message);

} // namespace hosts
