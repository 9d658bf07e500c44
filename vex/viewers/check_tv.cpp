#include "vex/viewers/check_tv.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "vex/companion/query_list.h"
#include "vex/patterns/regex.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"

namespace vex {

namespace {

// Compiled when the library is loaded, released when it is unloaded.
const TRegEx kNodeKeyRegEx(u"([01])([\\@\\#])(\\d+)(\\|)");

constexpr std::u16string_view kCheckedChars = u"01";
constexpr std::u16string_view kKindChars = u"#@";

}  // namespace

// --- TCheckTreeNode ---------------------------------------------------------------------------

void TCheckTreeNode::Changed() { owner_->NodeChanged(*this); }

void TCheckTreeNode::SetText(const String& text) {
  if (text_ == text) return;
  text_ = text;
  Changed();
}

void TCheckTreeNode::SetImageIndex(int32_t index) {
  if (image_index_ == index) return;
  image_index_ = index;
  Changed();
}

void TCheckTreeNode::SetKind(TNodeKind kind) {
  if (kind_ == kind) return;
  kind_ = kind;
  Changed();
}

void TCheckTreeNode::SetCheckBox(bool value) {
  if (value) {
    SetKind(nkCheckBox);
  } else if (kind_ == nkCheckBox) {
    SetKind(nkPlain);
  }
}

void TCheckTreeNode::SetRadioItem(bool value) {
  if (value) {
    SetKind(nkRadio);
  } else if (kind_ == nkRadio) {
    SetKind(nkPlain);
  }
}

void TCheckTreeNode::SetChecked(bool value) {
  if (value && kind_ == nkRadio) {
    for (auto& sibling : Siblings()) {
      if (sibling.get() != this && sibling->kind_ == nkRadio && sibling->checked_) {
        sibling->checked_ = false;
        sibling->Changed();
      }
    }
  }
  if (checked_ == value) return;
  checked_ = value;
  Changed();
}

void TCheckTreeNode::SetExpanded(bool value) {
  if (expanded_ == value) return;
  expanded_ = value;
  if (owner_->observer_ != nullptr && !owner_->Updating())
    owner_->observer_->ExpansionChanged(this);
}

TCheckTreeNode* TCheckTreeNode::Parent() const { return parent_->level_ < 0 ? nullptr : parent_; }

std::vector<std::unique_ptr<TCheckTreeNode>>& TCheckTreeNode::Siblings() const {
  return parent_->children_;
}

int32_t TCheckTreeNode::AbsoluteIndex() const {
  owner_->EnsureOrder();
  return absolute_index_;
}

TCheckTreeNode* TCheckTreeNode::Item(int32_t index) const {
  if (index < 0 || index >= Count()) {
    RaiseListIndexError(index);
  }
  return children_[static_cast<size_t>(index)].get();
}

TCheckTreeNode* TCheckTreeNode::GetFirstChild() const {
  return children_.empty() ? nullptr : children_.front().get();
}

TCheckTreeNode* TCheckTreeNode::GetNextSibling() const {
  const auto& siblings = Siblings();
  const auto next = static_cast<size_t>(index_) + 1;
  return next < siblings.size() ? siblings[next].get() : nullptr;
}

TCheckTreeNode* TCheckTreeNode::GetPrevSibling() const {
  return index_ == 0 ? nullptr : Siblings()[static_cast<size_t>(index_) - 1].get();
}

// --- TCheckTree -------------------------------------------------------------------------------

TCheckTree::TCheckTree() : root_(this, nullptr, -1, 0) {}

TCheckTree::~TCheckTree() {
  observer_ = nullptr;
  Clear();
}

TCheckTreeNode* TCheckTree::AddChild(TCheckTreeNode* parent, const String& text) {
  TCheckTreeNode& under = parent == nullptr ? root_ : *parent;
  BeginUpdate();
  under.children_.push_back(std::unique_ptr<TCheckTreeNode>(
      new TCheckTreeNode(this, &under, under.level_ + 1, under.Count())));
  TCheckTreeNode* node = under.children_.back().get();
  node->text_ = text;
  order_valid_ = false;
  EndUpdate();
  return node;
}

void TCheckTree::Clear() {
  BeginUpdate();
  selected_ = nullptr;
  // Bottom-up through an explicit stack, so depth costs no call stack.
  std::vector<std::unique_ptr<TCheckTreeNode>> pending;
  pending.swap(root_.children_);
  while (!pending.empty()) {
    std::unique_ptr<TCheckTreeNode> node = std::move(pending.back());
    pending.pop_back();
    for (auto& child : node->children_) pending.push_back(std::move(child));
    node->children_.clear();
  }
  order_.clear();
  order_valid_ = true;
  EndUpdate();
}

void TCheckTree::EnsureOrder() const {
  if (order_valid_) return;
  order_.clear();
  std::vector<std::pair<const TCheckTreeNode*, size_t>> stack{{&root_, 0}};
  while (!stack.empty()) {
    auto& [parent, next] = stack.back();
    if (next >= parent->children_.size()) {
      stack.pop_back();
      continue;
    }
    TCheckTreeNode* node = parent->children_[next++].get();
    node->absolute_index_ = static_cast<int32_t>(order_.size());
    order_.push_back(node);
    if (node->HasChildren()) stack.emplace_back(node, 0);
  }
  order_valid_ = true;
}

int32_t TCheckTree::Count() const {
  EnsureOrder();
  return static_cast<int32_t>(order_.size());
}

TCheckTreeNode* TCheckTree::Items(int32_t absolute_index) const {
  EnsureOrder();
  if (absolute_index < 0 || absolute_index >= static_cast<int32_t>(order_.size())) {
    RaiseListIndexError(absolute_index);
  }
  return order_[static_cast<size_t>(absolute_index)];
}

void TCheckTree::BeginUpdate() {
  if (update_count_++ == 0 && observer_ != nullptr) observer_->TreeChanging();
}

void TCheckTree::EndUpdate() {
  if (--update_count_ == 0 && observer_ != nullptr) observer_->TreeChanged();
}

void TCheckTree::NodeChanged(TCheckTreeNode& node) {
  if (observer_ != nullptr && !Updating() && &node != &root_) observer_->NodeChanged(node);
}

void TCheckTree::SetAllExpanded(bool value) {
  EnsureOrder();
  for (TCheckTreeNode* node : order_) node->expanded_ = value;
  if (observer_ != nullptr && !Updating()) observer_->ExpansionChanged(nullptr);
}

void TCheckTree::FullExpand() { SetAllExpanded(true); }

void TCheckTree::FullCollapse() { SetAllExpanded(false); }

void TCheckTree::SetSelected(TCheckTreeNode* node) {
  if (selected_ == node) return;
  selected_ = node;
  if (observer_ != nullptr) observer_->SelectionChanged();
}

bool TCheckTree::ToggleByUser(TCheckTreeNode& node) {
  if (read_only_ || node.Kind() == nkPlain) return false;
  if (node.RadioItem()) {
    node.SetChecked(true);
  } else {
    node.SetChecked(!node.Checked());
    CascadeChecked(node);
  }
  return true;
}

// Passes node's state to the check boxes of its subtree, at most CascadeLevels levels down.
void TCheckTree::CascadeChecked(TCheckTreeNode& node) {
  const int32_t deepest = node.Level() + cascade_levels_;
  std::vector<TCheckTreeNode*> stack{&node};
  while (!stack.empty()) {
    TCheckTreeNode* parent = stack.back();
    stack.pop_back();
    if (parent->Level() >= deepest) continue;
    for (auto& child : parent->children_) {
      if (child->CheckBox()) child->SetChecked(node.Checked());
      stack.push_back(child.get());
    }
  }
}

TCheckTreeNode* TCheckTree::FindNode(int32_t level, const String& text) const {
  EnsureOrder();
  for (TCheckTreeNode* node : order_) {
    if ((level < 0 || node->Level() == level) && node->Text() == text) return node;
  }
  return nullptr;
}

// --- TNodeDataDictionary ----------------------------------------------------------------------

void TNodeDataDictionary::Add(const TQueryItem* item, const TNodeDataRec& data) {
  if (!map_.emplace(item, data).second) throw EListError(u"Duplicates not allowed");
}

bool TNodeDataDictionary::TryGetValue(const TQueryItem* item, TNodeDataRec& data) const {
  const auto it = map_.find(item);
  if (it == map_.end()) return false;
  data = it->second;
  return true;
}

// --- node keys --------------------------------------------------------------------------------

const TRegEx& NodeKeyRegEx() { return kNodeKeyRegEx; }

String EncodeNodeKey(TNodeKind kind, int32_t image_index, bool checked, const String& text) {
  String key;
  key.reserve(text.size() + 16);
  if (kind == nkPlain) {
    key = u"[]";
  } else {
    key += kCheckedChars[checked ? 1 : 0];
    key += kKindChars[kind == nkRadio ? 1 : 0];
  }
  key += IntToStr(static_cast<int64_t>(image_index) + 1);
  key += u'|';
  key += text;
  return key;
}

String EncodeNodeKey(const TCheckTreeNode& node) {
  return EncodeNodeKey(node.Kind(), node.ImageIndex(), node.Checked(), node.Text());
}

bool DecodeNodeKey(const String& key, TNodeDataRec& data, String& text) {
  data = TNodeDataRec();
  // Every match ends in "|": a key without one is plain text without asking the pattern.
  const TRegExMatch match =
      key.find(u'|') == String::npos ? TRegExMatch() : kNodeKeyRegEx.Match(key);
  if (!match.Success()) {
    text = key;
    return false;
  }
  const auto& digits = match.Group(3);
  data.Checked = kCheckedChars.find(key[static_cast<size_t>(match.GroupIndex(1)) - 1]) == 1;
  data.Kind =
      static_cast<uint8_t>(kKindChars.find(key[static_cast<size_t>(match.GroupIndex(2)) - 1]) + 1);
  data.ImageIndex = StrToIntDef(digits, 0) - 1;
  text = key.substr(static_cast<size_t>(match.Index() + match.Length()) - 1);
  return true;
}

// --- trees and lists --------------------------------------------------------------------------

namespace {

// Adds the node of key under parent.
TCheckTreeNode* AddDecodedNode(TCheckTree& tree, TCheckTreeNode* parent, const String& key) {
  TNodeDataRec data;
  String text;
  if (!DecodeNodeKey(key, data, text)) return tree.AddChild(parent, key);
  TCheckTreeNode* node = tree.AddChild(parent, text);
  node->SetImageIndex(data.ImageIndex);
  if (data.Kind == nkCheckBox) node->SetCheckBox(true);
  if (data.Kind == nkRadio) node->SetRadioItem(true);
  node->SetChecked(data.Checked);
  return node;
}

// Merges a forest into a TQueryList: every source node is found or created by its key under
// the destination item of its parent, so sibling sources with equal keys share one item and
// their children meet in its child list. Works level by level with an explicit stack, and looks
// keys up through a hash index once a list grows, so wide and deep trees both stay linear.
template <class Source>
class TreeMerger {
 public:
  using KeyOf = std::function<String(const Source&)>;
  using ChildrenOf = std::function<void(const Source&, std::vector<const Source*>&)>;
  using Created = std::function<void(TQueryItem&, const Source&)>;

  TreeMerger(KeyOf key_of, ChildrenOf children_of, Created created)
      : key_of_(std::move(key_of)),
        children_of_(std::move(children_of)),
        created_(std::move(created)) {}

  void Merge(TQueryList& destination, std::vector<const Source*> sources) {
    std::vector<Frame> stack;
    stack.push_back({&destination, std::move(sources)});
    while (!stack.empty()) {
      Frame frame = std::move(stack.back());
      stack.pop_back();
      MergeLevel(frame, stack);
    }
  }

 private:
  struct Frame {
    TQueryList* list;
    std::vector<const Source*> sources;
  };

  static constexpr int32_t kIndexFrom = 8;

  void MergeLevel(Frame& frame, std::vector<Frame>& stack) {
    std::unordered_map<std::u16string_view, size_t> index;  // key -> slot in next
    std::vector<Frame> next;                                // one per item, in list order
    for (const Source* source : frame.sources) {
      String key = key_of_(*source);
      size_t slot = Find(frame, next, index, key);
      if (slot == next.size()) {
        TQueryItem* item = frame.list->Add(key);
        next.push_back({nullptr, {}});
        if (next.size() >= kIndexFrom) {
          if (index.empty()) {
            for (size_t i = 0; i < next.size(); ++i) index.emplace(frame.list->Keys(int32_t(i)), i);
          } else {
            index.emplace(item->Key(), slot);
          }
        }
      }
      TQueryItem* item = frame.list->Items(static_cast<int32_t>(slot));
      created_(*item, *source);
      children_of_(*source, next[slot].sources);
    }
    // Pushed in reverse, so the first item's subtree is merged first (depth-first order).
    for (size_t i = next.size(); i-- > 0;) {
      if (next[i].sources.empty()) continue;
      next[i].list = frame.list->Items(static_cast<int32_t>(i))->SubList();
      stack.push_back(std::move(next[i]));
    }
  }

  // The slot of key among this level's items, or next.size() when it has none.
  static size_t Find(const Frame& frame, const std::vector<Frame>& next,
                     const std::unordered_map<std::u16string_view, size_t>& index,
                     const String& key) {
    if (!index.empty()) {
      const auto it = index.find(key);
      return it == index.end() ? next.size() : it->second;
    }
    const int32_t found = frame.list->IndexOfKey(key);
    return found < 0 ? next.size() : static_cast<size_t>(found);
  }

  KeyOf key_of_;
  ChildrenOf children_of_;
  Created created_;
};

}  // namespace

void ImportTreeFromQueryList(TCheckTree& tree, const TQueryList& list) {
  struct Frame {
    const TQueryList* list;
    int32_t next;
    TCheckTreeNode* parent;
  };
  tree.BeginUpdate();
  tree.Clear();
  std::vector<Frame> stack{{&list, 0, nullptr}};
  while (!stack.empty()) {
    Frame& top = stack.back();
    if (top.next >= top.list->Count()) {
      stack.pop_back();
      continue;
    }
    const TQueryItem* item = top.list->Items(top.next++);
    TCheckTreeNode* node = AddDecodedNode(tree, top.parent, item->Key());
    if (item->Items() != nullptr && item->Items()->Count() > 0) {
      stack.push_back({item->Items(), 0, node});
    }
  }
  tree.FullExpand();
  tree.EndUpdate();
}

void ImportTreeFromList(TCheckTree& tree, const TStrings& lines) {
  TQueryList list;
  list.ImportFromListWithTabs(lines);
  ImportTreeFromQueryList(tree, list);
}

void ExportTreeToQueryList(const TCheckTree& tree, TQueryList& list) {
  list.Clear();
  std::vector<const TCheckTreeNode*> roots;
  for (auto* node = tree.GetFirstNode(); node != nullptr; node = node->GetNextSibling()) {
    roots.push_back(node);
  }
  TreeMerger<TCheckTreeNode> merger(
      [](const TCheckTreeNode& node) { return EncodeNodeKey(node); },
      [](const TCheckTreeNode& node, std::vector<const TCheckTreeNode*>& out) {
        for (int32_t i = 0; i < node.Count(); ++i) out.push_back(node.Item(i));
      },
      [](TQueryItem&, const TCheckTreeNode&) {});
  merger.Merge(list, std::move(roots));
}

void ExportTreeToList(const TCheckTree& tree, TStrings& lines) {
  TQueryList list;
  ExportTreeToQueryList(tree, list);
  list.ExportToListWithTabs(lines);
}

namespace {

// The name SplitNodesAndData gives a stripped key: the part before a ":" that is not its first
// character, without trailing blanks.
String SplitName(const String& text) {
  const auto colon = text.find(u':');
  if (colon == String::npos || colon == 0) return text;
  return TrimRight(text.substr(0, colon));
}

}  // namespace

void SplitNodesAndData(TQueryList& source, TQueryList* destination,
                       TNodeDataDictionary* dictionary) {
  TQueryGroupList copy;
  const TQueryList* from = &source;
  TQueryList* to = destination;
  if (to == nullptr) {
    copy.Assign(source);
    from = &copy;
    to = &source;
  }
  to->Clear();
  std::vector<const TQueryItem*> roots;
  for (int32_t i = 0; i < from->Count(); ++i) roots.push_back(from->Items(i));
  TreeMerger<TQueryItem> merger(
      [](const TQueryItem& item) {
        TNodeDataRec data;
        String text;
        DecodeNodeKey(item.Key(), data, text);
        return SplitName(text);
      },
      [](const TQueryItem& item, std::vector<const TQueryItem*>& out) {
        if (item.Items() == nullptr) return;
        for (int32_t i = 0; i < item.Items()->Count(); ++i) out.push_back(item.Items()->Items(i));
      },
      [dictionary](TQueryItem& created, const TQueryItem& item) {
        if (dictionary == nullptr) return;
        TNodeDataRec data;
        String text;
        DecodeNodeKey(item.Key(), data, text);
        dictionary->Add(&created, data);
      });
  merger.Merge(*to, std::move(roots));
}

// --- texts the viewer shows -------------------------------------------------------------------

String NodePath(const TCheckTreeNode& node) {
  String path = node.Text().substr(0, node.Text().find(u'='));
  for (const TCheckTreeNode* up = node.Parent(); up != nullptr; up = up->Parent()) {
    path = up->Text() + u"/" + path;
  }
  return path;
}

String FindNodeFailureMessage(int32_t level, const String& text) {
  const String quoted = u"'" + StringReplace(text, u"'", u"''", {rfReplaceAll}) + u"'";
  return Format(u"Failed to find node with level %d and text %s", {level, quoted});
}

}  // namespace vex
