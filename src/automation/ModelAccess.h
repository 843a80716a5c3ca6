// How the library recognises its own objects among those that hosts pass in: a private interface of every face.
#pragma once

#include <unknwn.h>

#include "common/Error.h"
#include "common/Exposed.h"
#include "platform/ComPtr.h"

namespace kestrel {

// {5FCF66F0-4BF4-4628-AC4C-29A59E8E09EF}; in no type library and without a proxy, so that an object of another thread's
// apartment is foreign too.
inline constexpr IID IID_ModelAccess = {0x5FCF66F0, 0x4BF4, 0x4628, {0xAC, 0x4C, 0x29, 0xA5, 0x9E, 0x8E, 0x09, 0xEF}};

// The address of one of these stands for a class, and for this copy of the library. Not constant, or a linker may fold
// equal ones into one.
struct ClassTag {
    char unused = 0;
};
template <class Model>
inline ClassTag TagOf{}; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables): only its address counts

class ModelAccess : public IUnknown {
  public:
    // The model object, or null when it is not of that class. Valid as long as the caller holds the face.
    virtual Exposed* STDMETHODCALLTYPE Model(const ClassTag* tag) noexcept = 0;
};

// The model object behind what a host passed in; nothing for nothing and for a foreign object.
template <class Model>
[[nodiscard]] Ref<Model> KnownModelOf(IUnknown* object) noexcept {
    if (object == nullptr) return nullptr;
    ComPtr<ModelAccess> access;
    object->QueryInterface(IID_ModelAccess, access.OutVoid());
    return access ? Ref<Model>(static_cast<Model*>(access->Model(&TagOf<Model>))) : nullptr;
}

// The same, but a foreign object fails with 2003.
template <class Model>
[[nodiscard]] Ref<Model> ModelOf(IUnknown* object) {
    auto model = KnownModelOf<Model>(object);
    if (object != nullptr && !model) throw Error(Message::InvalidParameter);
    return model;
}

} // namespace kestrel
