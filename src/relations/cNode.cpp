#include "relations/cNode.h"

#include <utility>

#include "common/Error.h"
#include "relations/cNodes.h"

namespace kestrel {

cNode::~cNode() {
    // A chain of parents that only this node held would end one inside the other; a long one would exhaust the stack.
    auto parent = std::move(mvarParent);
    while (parent && parent->References() == 1)
        parent = std::exchange(parent->mvarParent, nullptr);
}

void cNode::SetOwner(cNodes* tree) { mvarOwner = WeakRef<cNodes>(tree); }

Ref<cNodes> cNode::GetOwner() const noexcept { return mvarOwner.Lock(); }

Ref<cNode> cNode::LastSibling() const {
    const auto tree = GetOwner();
    return tree ? tree->LastSiblingOf(*this) : Ref<cNode>(const_cast<cNode*>(this));
}

Ref<cNode> cNode::FirstSibling() const {
    const auto tree = GetOwner();
    return tree ? tree->FirstSiblingOf(*this) : Ref<cNode>(const_cast<cNode*>(this));
}

Ref<cNode> cNode::Child() const {
    const auto tree = GetOwner();
    return tree ? tree->FirstWithParent(this) : nullptr;
}

Ref<cNode> cNode::Root() const {
    const cNode* node = this;
    while (node->mvarParent)
        node = node->mvarParent.Get();
    return Ref<cNode>(const_cast<cNode*>(node));
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): hosts ask a node for it, whatever the answer
std::int32_t cNode::Children() const noexcept {
    // The sum of the children's own Children, with nothing added for a child itself: by induction from the leaves up,
    // 0. Hosts rely on what they have always been shown here.
    return 0;
}

Ref<cNode> cNode::Previous() const {
    const auto tree = GetOwner();
    if (!tree) return nullptr;
    const auto index = Index();
    // The walk goes upwards from the place before this node to its first sibling, so it has no step for most nodes, and
    // its first step compares two parents by their default member, which nodes do not have.
    if (index <= 1 || index > tree->Count() || FirstSibling()->Index() < index - 1) return nullptr;
    throw Error(mvarParent && tree->Node(index - 1)->mvarParent ? Message::MemberNotSupported : Message::ObjectNotSet);
}

Ref<cNode> cNode::Nexts() const {
    const auto tree = GetOwner();
    return tree ? tree->NextSiblingOf(*this) : nullptr;
}

std::int32_t cNode::Index() const {
    const auto tree = GetOwner();
    return tree ? tree->IndexOf(*this) : 0;
}

std::int32_t cNode::Layer() const {
    if (!GetOwner()) return 0;
    std::int32_t layer = 0;
    for (const cNode* node = mvarParent.Get(); node != nullptr; node = node->mvarParent.Get())
        ++layer;
    return layer;
}

Ref<cNode> cNode::PreviousSibling() const {
    const auto tree = GetOwner();
    return tree ? tree->PreviousSiblingOf(*this) : nullptr;
}

std::int32_t cNode::Descendants() const {
    const auto tree = GetOwner();
    return tree ? tree->CountDescendants(*this) : 0;
}

void cNode::SetText(const String& text) {
    if (text == mvarText) return;
    RefuseTaken(text, mvarTag);
    Change(&cNode::mvarText, &cNode::Text, text);
}

void cNode::SetTag(const String& tag) {
    if (tag == mvarTag) return;
    RefuseTaken(mvarText, tag);
    Change(&cNode::mvarTag, &cNode::Tag, tag);
}

void cNode::Change(String cNode::*field, Side side, String text) {
    if (const auto tree = GetOwner()) tree->NoteText(*this, side, text);
    this->*field = std::move(text);
    Announce();
}

// What the node has already may stay, whatever its siblings have.
void cNode::RefuseTaken(const String& text, const String& tag) const {
    if (text != mvarText) RefuseSibling(&cNode::Text, text, Message::SameCode);
    if (tag != mvarTag) RefuseSibling(&cNode::Tag, tag, Message::SameValue);
}

void cNode::RefuseSibling(Side side, const String& text, Message message) const {
    const auto tree = GetOwner();
    if (!tree) return;
    if (tree->IsTaken(side, mvarParent.Get(), text, this)) throw Error(message);
}

void cNode::Announce() {
    const Ref<cNode> alive(this);
    // A node that has left the tree may have the key of a newer one.
    if (const auto tree = GetOwner(); tree && tree->IndexOf(*this) <= tree->Count()) tree->NotifyChanged(mvarKey);
}

} // namespace kestrel
