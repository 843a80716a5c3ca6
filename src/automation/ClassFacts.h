// What the automation layer knows of a public class.
#pragma once

#include <windows.h>

#include <unknwn.h>

namespace kestrel {

struct ClassFacts {
    const wchar_t* name;        // as hosts write it after "Kestrel."
    const wchar_t* description; // as the registry and the type library show it
    const CLSID& clsid;
    const IID& iid;    // of the default interface
    const IID* events; // of the event interface; null when the class raises none
    // Makes a new object; null when hosts cannot.
    HRESULT (*create)(REFIID riid, void** object) noexcept;
};

} // namespace kestrel
