#include "relations/cNodes.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "common/Error.h"
#include "common/Numbers.h"
#include "common/Ports.h"

namespace kestrel {

namespace {

String KeyOf(const cNode* node) { return node != nullptr ? node->Key() : String(); }

} // namespace

Ref<cNode> cNodes::Add(const IndexKey& relative, int relationship, const String& text, const String& tag) {
    const Ref<cNodes> alive(this);
    if (mvarKeyCounter == std::numeric_limits<std::int32_t>::max()) throw Error(Message::Overflow);
    ++mvarKeyCounter;
    auto node = Make<cNode>();
    node->SetText(text);
    node->SetTag(tag);
    node->SetKey(L"N" + ToText(mvarKeyCounter));
    node->SetOwner(this);
    PlaceNode(relative, relationship, node);
    return node;
}

void cNodes::PlaceNode(const IndexKey& relative, int relationship, const Ref<cNode>& node) {
    if (relative.IsMissing()) {
        node->SetParent(nullptr);
        RefuseDuplicate(nullptr, *node);
        return PlaceAt(node, {nullptr, tvwLast, nullptr, Count() + 1});
    }
    const auto anchor = Node(relative);
    const cNode* parent = relationship == tvwChild ? anchor.Get() : anchor->Parent().Get();
    RefuseDuplicate(parent, *node);
    const auto place = [&](std::int32_t position) { PlaceAt(node, {parent, relationship, anchor.Get(), position}); };
    switch (relationship) {
    case tvwFirst: return place(IndexOf(*FirstSiblingOf(*anchor)));
    case tvwLast: return place(IndexOf(*LastSiblingOf(*anchor)) + 1);
    case tvwNext: return place(IndexOf(*anchor) + 1);
    case tvwPrevious: return place(IndexOf(*anchor));
    case tvwChild:
        if (mvarStyle == tsSimplified) break;
        return place(Count() + 1);
    default: break;
    }
    throw Error(Message::InvalidParameter);
}

void cNodes::PlaceAt(const Ref<cNode>& node, const Placement& placement) {
    TreeIndexes::Change change(mvarIndexes);
    mvarIndexes.Place(*node, placement.parent, placement.relationship, placement.anchor);
    mvarNodes.Insert(node, placement.position);
    change.Made();
    node->SetParent(Ref<cNode>(const_cast<cNode*>(placement.parent)));
    node->SetLastPosition(placement.position);
    NodesChanged.Raise(KeyOf(placement.parent), node->Key());
}

void cNodes::RefuseDuplicate(const cNode* parent, const cNode& node) const {
    const bool hasCode = IsTaken(&cNode::Text, parent, node.Text(), &node);
    const bool hasValue = IsTaken(&cNode::Tag, parent, node.Tag(), &node);
    if (!hasCode && !hasValue) return;
    // Of two siblings the first one tells.
    std::size_t walked = 0;
    const auto* twin = FindInLayer(parent, walked, [&node](const cNode& sibling) {
        return sibling.Text() == node.Text() || sibling.Tag() == node.Tag();
    });
    throw Error(twin->Text() == node.Text() ? Message::SameCode : Message::SameValue);
}

bool cNodes::IsTaken(TreeIndexes::Side side, const cNode* parent, const String& text, const cNode* except) const {
    if (const auto* index = mvarIndexes.Texts(*this, side)) return index->FindEqual(parent, text, except) != nullptr;
    std::size_t walked = 0;
    const auto* found = FindInLayer(
        parent, walked, [&](const cNode& sibling) { return &sibling != except && (sibling.*side)() == text; });
    mvarIndexes.WalkedForTexts(side, walked);
    return found != nullptr;
}

void cNodes::NoteText(const cNode& node, TreeIndexes::Side side, const String& text) {
    if (IndexOf(node) > Count()) return;
    TreeIndexes::Change change(mvarIndexes);
    mvarIndexes.Rename(node, side, text);
    change.Made();
}

std::vector<const cNode*> cNodes::View() const {
    std::vector<const cNode*> nodes(static_cast<std::size_t>(Count()));
    for (std::int32_t position = 1; position <= Count(); ++position)
        nodes[static_cast<std::size_t>(position) - 1] = mvarNodes[position].Get();
    return nodes;
}

void cNodes::Remove(const IndexKey& indexKey) {
    const Ref<cNodes> alive(this);
    const String parentKey = KeyOf(Node(indexKey)->Parent().Get());
    RemoveItem(indexKey);
    if (Count() == 0) mvarKeyCounter = 0;
    NodesChanged.Raise(parentKey, parentKey);
}

void cNodes::RemoveItem(const IndexKey& indexKey) {
    const auto node = Node(indexKey);
    const bool isParent = FirstWithParent(node.Get()) != nullptr;
    mvarIndexes.Drop();
    if (!isParent) {
        mvarNodes.Remove(IndexOf(*node));
        return;
    }
    auto leaves = MarkSubtree(*node);
    leaves[static_cast<std::size_t>(IndexOf(*node)) - 1] = true;
    mvarNodes.Remove(leaves);
}

// One entry per position: whether the node there lies below the root. A chain of parents is followed only through nodes
// of the list, and each of its nodes once.
std::vector<bool> cNodes::MarkSubtree(const cNode& root) const {
    enum : char { Unseen, Outside, Below };
    const auto count = Count();
    std::vector<char> marks(static_cast<std::size_t>(count), Unseen);
    for (std::int32_t position = 1; position <= count; ++position)
        mvarNodes[position]->SetLastPosition(position);
    std::vector<std::size_t> chain;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        char mark = marks[i];
        chain.clear();
        for (std::size_t offset = i; mark == Unseen;) {
            chain.push_back(offset);
            const cNode* parent = mvarNodes[static_cast<std::int32_t>(offset) + 1]->Parent().Get();
            if (parent == &root)
                mark = Below;
            else if (parent == nullptr || !StandsAt(*parent, parent->LastPosition()))
                mark = Outside;
            else
                mark = marks[offset = static_cast<std::size_t>(parent->LastPosition()) - 1];
        }
        for (const auto offset : chain)
            marks[offset] = mark;
    }
    std::vector<bool> below(marks.size());
    std::transform(marks.begin(), marks.end(), below.begin(), [](char mark) { return mark == Below; });
    return below;
}

void cNodes::Drag(const IndexKey& relative, int relationship, const IndexKey& indexKey) {
    const Ref<cNodes> alive(this);
    if (indexKey.IsMissing() || Count() < 2) return;
    const auto node = Node(indexKey);
    RefuseCycle(relative, relationship, *node);
    mvarIndexes.Drop();
    mvarNodes.Remove(IndexOf(*node));
    PlaceNode(relative, relationship, node);
}

void cNodes::RefuseCycle(const IndexKey& relative, int relationship, const cNode& node) const {
    const auto anchor = AnchorBeside(relative, node);
    if (!anchor) return; // the placement itself tells
    const cNode* parent = relationship == tvwChild ? anchor.Get() : anchor->Parent().Get();
    for (; parent != nullptr; parent = parent->Parent().Get())
        if (parent == &node) throw Error(Message::InvalidParameter);
}

// What Relative names once the node has left the list: a position then counts without it. Nothing when it names
// nothing.
Ref<cNode> cNodes::AnchorBeside(const IndexKey& relative, const cNode& node) const {
    if (!mvarNodes.Knows(relative)) return nullptr;
    const auto* position = relative.Position();
    if (position == nullptr || *position < IndexOf(node)) return Node(relative);
    return *position < Count() ? Node(*position + 1) : nullptr;
}

void cNodes::Cls() {
    const Ref<cNodes> alive(this);
    mvarIndexes.Drop();
    mvarNodes.Clear();
    mvarKeyCounter = 0;
    NodesChanged.Raise(String(), String());
}

void cNodes::SetStyle(int style) {
    if (Count() > 0) throw Error(Message::CantBeChanged);
    if (style < tsNormal || style > tsUbound) throw Error(Message::InvalidParameter);
    mvarStyle = static_cast<tvwStyles>(style);
}

void cNodes::NotifyChanged(const String& key) {
    const Ref<cNodes> alive(this);
    if (const cNode* node = mvarNodes.Find(key)) NodesChanged.Raise(KeyOf(node->Parent().Get()), String(key));
}

String cNodes::Conversion(int convStyle, String& value, const IndexKey& indexKey) const {
    const cNode& node = Converting(convStyle, value, indexKey);
    value = convStyle == csCodeToValue ? node.Tag() : node.Text();
    return node.Key();
}

const cNode& cNodes::Converting(int convStyle, const String& value, const IndexKey& indexKey) const {
    if (convStyle != csCodeToValue && convStyle != csValueToCode) throw Error(Message::InvalidParameter);
    if (value.empty()) throw Error(Message::InvalidParameter);
    if (Count() == 0) throw Error(Message::NoRelations);
    const auto parent = indexKey.IsMissing() ? Ref<cNode>() : Node(indexKey);
    const auto* node = FindAlike(convStyle == csCodeToValue ? &cNode::Text : &cNode::Tag, parent.Get(), value);
    if (node == nullptr) throw Error(Message::NoRelatedRelation);
    return *node;
}

const cNode* cNodes::FindAlike(TreeIndexes::Side side, const cNode* parent, const String& value) const {
    if (const auto* index = mvarIndexes.Alike(*this, side, value)) return index->FindSame(parent, value);
    const auto& text = TheText();
    std::size_t walked = 0;
    const auto* node =
        FindInLayer(parent, walked, [&](const cNode& candidate) { return text.SameText((candidate.*side)(), value); });
    mvarIndexes.WalkedForAlike(side, walked);
    return node;
}

std::int32_t cNodes::IndexOf(const cNode& node) const {
    // Where it was last found is nearly always where it still is; the list itself decides.
    if (StandsAt(node, node.LastPosition())) return node.LastPosition();
    for (std::int32_t position = 1; position <= Count(); ++position) {
        if (!StandsAt(node, position)) continue;
        node.SetLastPosition(position);
        return position;
    }
    return Count() + 1;
}

bool cNodes::StandsAt(const cNode& node, std::int32_t position) const {
    return position >= 1 && position <= Count() && mvarNodes[position] == &node;
}

Ref<cNode> cNodes::FirstSiblingOf(const cNode& node) const {
    auto first = FirstWithParent(node.Parent().Get());
    return first ? first : Ref<cNode>(const_cast<cNode*>(&node));
}

Ref<cNode> cNodes::LastSiblingOf(const cNode& node) const {
    const auto index = IndexOf(node);
    const auto* ends = index <= Count() ? mvarIndexes.Ends(*this) : nullptr;
    if (ends != nullptr) return Ref<cNode>(const_cast<cNode*>(ends->Last(node.Parent().Get())));
    auto position = Count();
    while (position > index && mvarNodes[position]->Parent() != node.Parent())
        --position;
    mvarIndexes.WalkedForEnds(static_cast<std::size_t>(Count() - position));
    return position > index ? mvarNodes[position] : Ref<cNode>(const_cast<cNode*>(&node));
}

Ref<cNode> cNodes::NextSiblingOf(const cNode& node) const {
    for (auto position = IndexOf(node) + 1; position <= Count(); ++position) {
        if (mvarNodes[position]->Parent() != node.Parent()) continue;
        mvarNodes[position]->SetLastPosition(position);
        return mvarNodes[position];
    }
    return nullptr;
}

Ref<cNode> cNodes::PreviousSiblingOf(const cNode& node) const {
    for (auto position = std::min(IndexOf(node), Count() + 1) - 1; position >= 1; --position)
        if (mvarNodes[position]->Parent() == node.Parent()) return mvarNodes[position];
    return nullptr;
}

Ref<cNode> cNodes::FirstWithParent(const cNode* parent) const {
    if (const auto* ends = mvarIndexes.Ends(*this)) return Ref<cNode>(const_cast<cNode*>(ends->First(parent)));
    std::size_t walked = 0;
    const auto* first = FindInLayer(parent, walked, [](const cNode&) { return true; });
    mvarIndexes.WalkedForEnds(walked);
    return Ref<cNode>(const_cast<cNode*>(first));
}

std::int32_t cNodes::CountDescendants(const cNode& node) const {
    if (!FirstWithParent(&node)) return 0;
    const auto below = MarkSubtree(node);
    return static_cast<std::int32_t>(std::count(below.begin(), below.end(), true));
}

String cNodes::ExportNodes() const {
    const auto number = [](const cNode& node) { return StringView(node.Key()).substr(1); };
    String text = ToText(mvarKeyCounter);
    text.reserve(text.size() + ExpectedLength());
    for (std::int32_t position = 1; position <= Count(); ++position) {
        const cNode& node = *mvarNodes[position];
        text += L';';
        if (node.Parent()) text += number(*node.Parent());
        text += L',';
        text += number(node);
        text += L',';
        text += node.Text();
        text += L',';
        text += node.Tag();
    }
    return text;
}

// About the length of all records, from some of them all over the list: a pass over all nodes for the exact one would
// cost a large tree more than it saves.
std::size_t cNodes::ExpectedLength() const {
    constexpr std::int32_t sample = 64;
    const auto step = std::max(1, Count() / sample);
    std::size_t length = 0;
    for (std::int32_t position = step; position <= Count(); position += step) {
        const cNode& node = *mvarNodes[position];
        const std::size_t parent = node.Parent() ? node.Parent()->Key().size() : 0;
        length += std::size_t{4} + parent + node.Key().size() + node.Text().size() + node.Tag().size();
    }
    return length * static_cast<std::size_t>(step);
}

void cNodes::ImportNodes(StringView text) {
    if (text.empty()) return;
    Splitter records(text, L';');
    const auto counter = ToInteger(LeadingNumber(*records.Next()).value_or(0));
    if (!counter) throw Error(Message::Overflow);
    mvarKeyCounter = *counter;
    mvarIndexes.Drop();
    mvarNodes.Clear();
    mvarNodes.Reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), L';')));
    while (const auto record = records.Next())
        ImportRecord(*record);
}

void cNodes::ImportRecord(StringView record) {
    std::array<StringView, 4> fields; // parent number, own number, Text, Tag
    std::size_t count = 0;
    Splitter splitter(record, L',');
    while (count < fields.size()) {
        const auto field = splitter.Next();
        if (!field) break;
        fields[count++] = *field;
    }
    auto node = Make<cNode>();
    if (!fields[0].empty()) node->SetParent(Node(L"N" + String(fields[0])));
    if (count < fields.size()) throw Error(Message::OutOfRange);
    node->Fill(fields[2], fields[3]);
    node->SetOwner(this);
    node->SetKey(String(L"N").append(fields[1]));
    node->SetLastPosition(Count() + 1);
    mvarNodes.Insert(node, Count() + 1);
}

} // namespace kestrel
