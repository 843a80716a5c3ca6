// Makes the objects of one public class for hosts. Aggregation is refused: a face's identity belongs to its model
// object.
#pragma once

#include "automation/ClassFacts.h"
#include "platform/ComObject.h"

namespace kestrel {

class ClassFactory final : public ComObject<IClassFactory> {
  public:
    explicit ClassFactory(const ClassFacts& facts) noexcept : mvarFacts(facts) {}

    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID riid, void** object) noexcept override;
    STDMETHODIMP LockServer(BOOL lock) noexcept override;

  private:
    const ClassFacts& mvarFacts;
};

} // namespace kestrel
