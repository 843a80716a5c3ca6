// The relation tree of the selected band, its buttons and its menu.

#include <utility>

#include "common/Ports.h"
#include "dialogs/Guard.h"
#include "dialogs/MenuRules.h"
#include "dialogs/RaisedFlag.h"
#include "dialogs/Texts.h"
#include "dialogs/Waiting.h"
#include "dialogs/frmDesigners.h"
#include "resources/dialogids.h"

namespace kestrel::dialogs {

namespace {

// A larger tree is read again once for all the changes that a step makes and not for each of them.
constexpr std::int32_t readAtOnce = 200;
// Building or clearing a larger tree takes long enough to be noticed.
constexpr std::int32_t noticeable = 2000;

std::vector<TreeView::Item> ItemsOf(const cNodes& tree) {
    const auto nodes = tree.View();
    std::int32_t position = 0;
    for (const cNode* node : nodes)
        node->SetLastPosition(++position); // so that no parent is searched for
    std::vector<TreeView::Item> items;
    items.reserve(nodes.size());
    for (const cNode* node : nodes) {
        const auto parent = node->Parent() ? static_cast<std::size_t>(tree.IndexOf(*node->Parent())) : nodes.size() + 1;
        items.push_back(
            {node->Key(), node->Text() + L" " + node->Tag(), parent > nodes.size() ? TreeView::NoParent : parent - 1});
    }
    return items;
}

} // namespace

void frmDesigners::ConnectRelations() {
    constexpr int offered[] = {tvwPrevious, tvwNext, tvwLast, tvwChild};
    for (int index = 0; index < 4; ++index)
        OnClick(ID_mnuSubNodeAdd + index, [this, relationship = offered[index]] { AddNode(relationship); });
    OnClick(ID_cmdAdd, [this] { AddNode(tvwLast); });
    for (const int id : {ID_cmdModify, ID_mnuNodeEdit})
        OnClick(id, [this] { cmdModify_Click(); });
    for (const int id : {ID_cmdDelete, ID_mnuNodeRemove})
        OnClick(id, [this] { cmdDelete_Click(); });
    for (const int id : {ID_cmdClear, ID_mnuNodeRemoveAll})
        OnClick(id, [this] { cmdClear_Click(); });
    OnNotify(ID_tvwAvailable, [this](NMHDR& header) { return tvwAvailable_Notify(header); });
}

// Keys are unique within a tree and not among trees: of the tree that was shown nothing stays selected or open.
void frmDesigners::LeaveRelations() {
    std::optional<WaitCursor> wait;
    if (tvwAvailable.Count() > noticeable) wait.emplace();
    mvarOpenBranches.Keep(cRelations, tvwAvailable.ExpandedKeys());
    tvwAvailable.SetItems({});
}

void frmDesigners::FollowRelations(const Ref<cNodes>& tree) {
    if (tree == cRelations) return;
    LeaveRelations();
    cRelations = tree;
    mvarReloadWaits = false; // of the other tree
    mvarNodesChanged =
        !tree ? Subscription() : tree->NodesChanged.Subscribe([this](const String&, const String& hotKey) {
            Guarded(0, [&] {
                cRelations_NodesChanged(hotKey);
                return 0;
            });
        });
}

void frmDesigners::cRelations_NodesChanged(const String& hotKey) {
    ShowFindingsSoon();
    if (cRelations->Count() <= readAtOnce) return LoadRelations(hotKey);
    mvarHotKey = hotKey;
    if (Window() != nullptr && !std::exchange(mvarReloadWaits, true)) PostMessageW(Window(), WM_APP, 0, 0);
}

void frmDesigners::LoadRelations(const String& hotKey) {
    if (Window() == nullptr) return;
    const FrozenDrawing frozen(Window());
    {
        const RaisedFlag loading(mvarLoading);
        std::optional<WaitCursor> wait;
        if (tvwAvailable.Count() > noticeable || (cRelations && cRelations->Count() > noticeable)) wait.emplace();
        const String selected = tvwAvailable.SelectedKey();
        tvwAvailable.SetItems(cRelations ? ItemsOf(*cRelations) : std::vector<TreeView::Item>());
        tvwAvailable.Expand(mvarOpenBranches.Take(cRelations));
        tvwAvailable.Select(tvwAvailable.Find(hotKey) != nullptr ? hotKey : selected);
    }
    LetTreeGrow();
    lblInfo[1].SetText(RelationsHint());
    EnableProperty(idRelations, static_cast<bool>(cRelations));
}

// What a large tree still lacks comes while nothing else is to be done.
void frmDesigners::LetTreeGrow() {
    constexpr UINT milliseconds = 25;
    if (tvwAvailable.IsGrowing())
        SetTimer(Window(), GrowthTimer, milliseconds, nullptr);
    else
        KillTimer(Window(), GrowthTimer);
}

String frmDesigners::RelationsHint() const {
    const auto band = SelectedBand();
    if (!band) return {};
    if (!cRelations) return TheStrings().Text(text::NoRelationsHint);
    return TheStrings().Text(band->SwapMode() == smLayersSwap ? text::LayeredRelationsHint : text::SimpleRelationsHint);
}

void frmDesigners::EnableRelations(bool enable) {
    const auto code = cCode.Lock();
    const auto band = SelectedBand();
    const auto rules = code && band && enable ? RelationRulesFor(*code, *band, SelectedNode()) : RelationRules();
    tvwAvailable.SetEnabled(enable);
    lblInfo[1].SetEnabled(enable);
    cmdAdd.SetEnabled(rules.append);
    cmdDelete.SetEnabled(rules.modifyAndRemove);
    cmdModify.SetEnabled(rules.modifyAndRemove);
    cmdClear.SetEnabled(rules.removeAll);
}

Ref<cNode> frmDesigners::SelectedNode() const {
    const String key = tvwAvailable.SelectedKey();
    if (!cRelations || key.empty()) return nullptr;
    Ref<cNode> node;
    Trapped([&] { node = cRelations->Node(key); }); // gone meanwhile: nothing is selected
    return node;
}

// False when no node is there.
bool frmDesigners::SelectNodeAt(POINT screen) {
    const HTREEITEM hit = tvwAvailable.HitTest(screen);
    if (hit != nullptr) tvwAvailable.Select(tvwAvailable.KeyOf(hit));
    return hit != nullptr;
}

std::optional<LRESULT> frmDesigners::tvwAvailable_Notify(NMHDR& header) {
    POINT mouse{};
    switch (header.code) {
    case TVN_SELCHANGEDW:
        if (!mvarLoading) EnableProperty(idRelations, static_cast<bool>(cRelations));
        return std::nullopt;
    case NM_RCLICK:
        GetCursorPos(&mouse);
        SelectNodeAt(mouse);
        ShowNodeMenu(mouse);
        return TRUE;
    case NM_DBLCLK:
        GetCursorPos(&mouse);
        if (!SelectNodeAt(mouse) || !cmdModify.IsEnabled()) return std::nullopt;
        cmdModify_Click();
        return TRUE; // the branch stays as it is
    case TVN_KEYDOWN: {
        const WORD key = reinterpret_cast<const NMTVKEYDOWN&>(header).wVKey;
        if (key == VK_DELETE && cmdDelete.IsEnabled()) cmdDelete_Click();
        if (key == VK_INSERT && cmdAdd.IsEnabled()) AddNode(tvwLast);
        if (key == VK_F2 && cmdModify.IsEnabled()) cmdModify_Click();
        if (key == VK_RETURN && cmdModify.IsEnabled()) cmdModify_Click();
        return std::nullopt;
    }
    case NM_CUSTOMDRAW: return TreeView::Draw(reinterpret_cast<NMTVCUSTOMDRAW&>(header));
    default: return std::nullopt;
    }
}

void frmDesigners::ShowNodeMenu(POINT screen) const {
    const auto code = cCode.Lock();
    const auto band = SelectedBand();
    if (!code || !band) return;
    const auto rules = tvwAvailable.IsEnabled() ? RelationRulesFor(*code, *band, SelectedNode()) : RelationRules();
    mnuNode.SetEnabled(ID_mnuNodeAdd, rules.append);
    mnuNode.SetEnabled(ID_mnuSubNodeAdd, rules.beforeAndAfter);
    mnuNode.SetEnabled(ID_mnuSubNodeAdd + 1, rules.beforeAndAfter);
    mnuNode.SetEnabled(ID_mnuSubNodeAdd + 2, rules.append);
    mnuNode.SetEnabled(ID_mnuSubNodeAdd + 3, rules.child);
    mnuNode.SetEnabled(ID_mnuNodeEdit, rules.modifyAndRemove);
    mnuNode.SetEnabled(ID_mnuNodeRemove, rules.modifyAndRemove);
    mnuNode.SetEnabled(ID_mnuNodeRemoveAll, rules.removeAll);
    mnuNode.PopUp(Window(), screen);
}

void frmDesigners::AddNode(int relationship) {
    mvarStatus.Clear();
    if (const auto code = cCode.Lock())
        code->ShowAddRelation(mvarIndex + 1, tvwAvailable.SelectedKey(), relationship, false);
}

void frmDesigners::cmdModify_Click() {
    mvarStatus.Clear();
    const auto code = cCode.Lock();
    if (code && SelectedNode()) code->ShowAddRelation(mvarIndex + 1, tvwAvailable.SelectedKey(), tvwLast, true);
}

// The item goes at once and the rest of the tree stays as it is; the node that takes its place becomes the selected
// one.
void frmDesigners::RemoveTreeNode(const String& key) {
    const RaisedFlag loading(mvarLoading);
    tvwAvailable.Remove(key);
}

void frmDesigners::cmdDelete_Click() {
    const String key = tvwAvailable.SelectedKey();
    const auto tree = cRelations;
    const auto node = SelectedNode();
    if (!tree || !node) return;
    String question = TheStrings().Text(Message::AskDeleteRelation);
    const int below = tvwAvailable.CountDescendants(tvwAvailable.Find(key));
    if (below > 0) question += L"\r\n" + ReplaceStar(TheStrings().Text(Message::ChildrenIncluded), ToText(below));
    if (!ThePrompts().Ask(question)) return;
    const WaitCursor wait;
    // A tree that was filled anew meanwhile has given the key to another node.
    if (node->Index() > tree->Count()) throw Error(Message::InvalidCall);
    if (tree == cRelations) RemoveTreeNode(key);
    tree->Remove(key);
}

void frmDesigners::cmdClear_Click() const {
    const auto tree = cRelations;
    if (!tree) return;
    const String question = ReplaceStar(TheStrings().Text(Message::AskClearRelations), ToText(tree->Count()));
    if (ThePrompts().AskDefaultNo(question)) tree->Cls();
}

} // namespace kestrel::dialogs
