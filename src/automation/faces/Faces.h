// The face of each model object: the one that hosts hold already, or a new one. No model object has no face.
#pragma once

#include "KestrelTypeLib.h"
#include "bands/Band.h"
#include "engine/CodeClass.h"
#include "platform/ComPtr.h"

namespace kestrel {

[[nodiscard]] ComPtr<::_List> FaceOf(const Ref<List>& model);
[[nodiscard]] ComPtr<::_Lists> FaceOf(const Ref<Lists>& model);
[[nodiscard]] ComPtr<::_Names> FaceOf(const Ref<Names>& model);
[[nodiscard]] ComPtr<::_cNode> FaceOf(const Ref<cNode>& model);
[[nodiscard]] ComPtr<::_cNodes> FaceOf(const Ref<cNodes>& model);
[[nodiscard]] ComPtr<::_Band> FaceOf(const Ref<Band>& model);
[[nodiscard]] ComPtr<::_CodeClass> FaceOf(const Ref<CodeClass>& model);

} // namespace kestrel
