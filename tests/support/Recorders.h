// Recorders of events: what was raised, in order, one line of text per event.
#pragma once

#include <vector>

#include "lists/Lists.h"
#include "lists/Names.h"
#include "relations/cNodes.h"

namespace kestrel::test {

using Lines = std::vector<String>;

class NodesRecorder {
  public:
    explicit NodesRecorder(cNodes& tree)
        : mvarChanged(tree.NodesChanged.Subscribe([this](const String& parentKey, const String& hotKey) {
              std::wstring line = parentKey;
              line += L'/';
              line += hotKey;
              lines.push_back(std::move(line));
          })) {}

    Lines lines; // parent key "/" hot key

  private:
    Subscription mvarChanged;
};

class ListsRecorder {
  public:
    explicit ListsRecorder(Lists& list)
        : mvarAdding(list.BeforeAdd.Subscribe([this](const String& name, bool&, const String&, std::int32_t index) {
              lines.push_back(L"adding " + name + L" at " + ToText(index));
          })),
          mvarRemoving(list.BeforeRemove.Subscribe(
              [this](const String& name, bool&, const String&) { lines.push_back(L"removing " + name); })),
          mvarChanged(list.CollectionChanged.Subscribe([this] { lines.emplace_back(L"changed"); })) {}

    Lines lines; // "adding NAME at INDEX", "removing NAME", "changed"

  private:
    Subscription mvarAdding;
    Subscription mvarRemoving;
    Subscription mvarChanged;
};

// The names of the items in order, joined with blanks.
[[nodiscard]] inline String NamesOf(const Lists& list) {
    std::vector<String> names;
    for (const auto& item : list.Snapshot())
        names.push_back(item->Name());
    return Join(names, L" ");
}

} // namespace kestrel::test
