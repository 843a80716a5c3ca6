// The names of the events that an automation object raises, by their dispatch ids.
#pragma once

#include <oaidl.h>

#include <map>
#include <string>

namespace hosts::script {

using EventNames = std::map<DISPID, std::wstring>;

// Those of the object's default event interface, as its class information tells; fails with HostError when the object
// describes no events.
[[nodiscard]] EventNames EventNamesOf(IUnknown& object);

} // namespace hosts::script
