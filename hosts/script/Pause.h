// Waiting without keeping others waiting.
#pragma once

#include <windows.h>

namespace hosts::script {

// Returns after the time; the thread's messages are handled meanwhile, as its apartment and its windows need.
void Pause(DWORD milliseconds);

} // namespace hosts::script
