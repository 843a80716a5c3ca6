// The late-bound side of a dual interface: names to ids, and calls by id.
#pragma once

#include "automation/DispatchTable.h"

namespace kestrel {

struct LateCall {
    DISPID member;
    LCID locale;
    WORD flags;
    DISPPARAMS* params;
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* failedArgument;
};

// The ids of a member and of its parameters; DISPID_UNKNOWN and DISP_E_UNKNOWNNAME for a name that is none.
HRESULT IdsOfNames(const DispatchTable& table, LPOLESTR* names, UINT count, DISPID* ids);

// Calls the member of the face, which is of the class that the table was made for. A property that takes no arguments
// and is read with some passes them on to the default member of the object that it returns.
HRESULT Call(const DispatchTable& table, void* face, const LateCall& call);

} // namespace kestrel
