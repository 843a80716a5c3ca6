// Writes and removes what the system must know to find the library: classes, program names, type library and the
// marshalling of its interfaces.
//
// The 32-bit and the 64-bit library share the program names and the key of the type library; the one that leaves last
// removes them.
#pragma once

namespace kestrel {

enum class RegistrationScope { Machine, User };

// Replaces what was registered before. Fails with ComFailure; then nothing stays.
void Register(RegistrationScope scope);
// Removes all of it; what is not there is no failure.
void Unregister(RegistrationScope scope);

} // namespace kestrel
