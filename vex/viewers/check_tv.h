// uCheckTV: a tree whose nodes may carry a check box or a radio button, and its text form.
// Each node is written as a node key - "1#3|Motor" is a ticked check box with image 2, "0@0|Off"
// an unticked radio button without image, "[]0|Group" a plain node - inside a TQueryList or
// tab-indented lines:
//
//   TCheckTree tree;
//   ImportTreeFromList(tree, lines);   // "1#3|Motor\r\n\t0@0|Fast\r\n" -> two nodes
//   tree.Items(0)->Text();             // u"Motor"
//   ExportTreeToList(tree, lines);     // the same lines again
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

class TQueryItem;
class TQueryList;
class TRegEx;
class TStrings;
class TCheckTree;

/// What a node shows before its text. The values are the kind byte of TNodeDataRec.
enum TNodeKind : uint8_t { nkPlain = 0, nkCheckBox = 1, nkRadio = 2 };

/// Bits of the option byte of the check tree viewer.
constexpr uint8_t ctvShowLoad = 1;   ///< the "Load..." button is shown
constexpr uint8_t ctvShowSave = 2;   ///< the "Save..." button is shown
constexpr uint8_t ctvExpanded = 32;  ///< the tree starts fully expanded (else fully collapsed)
constexpr uint8_t ctvReadOnly = 64;  ///< the tree cannot be edited

/// The decoded prefix of a node key; all zero when the key has no prefix.
struct TNodeDataRec {
  uint8_t Kind = 0;
  int32_t ImageIndex = 0;
  bool Checked = false;

  bool operator==(const TNodeDataRec&) const = default;
};

/// One node of a TCheckTree. Nodes are created and owned by their tree; a node pointer stays
/// valid until the tree is cleared or destroyed.
class TCheckTreeNode : public TObject {
 public:
  TCheckTreeNode(const TCheckTreeNode&) = delete;
  TCheckTreeNode& operator=(const TCheckTreeNode&) = delete;

  String ClassName() const override { return u"TCheckTreeNode"; }

  const String& Text() const { return text_; }
  void SetText(const String& text);
  /// Image index; -1 means no image (the default).
  int32_t ImageIndex() const { return image_index_; }
  void SetImageIndex(int32_t index);

  TNodeKind Kind() const { return kind_; }
  bool CheckBox() const { return kind_ == nkCheckBox; }
  bool RadioItem() const { return kind_ == nkRadio; }
  /// Gives the node a check box (true) or makes it plain (false, only when it has one).
  void SetCheckBox(bool value);
  /// Gives the node a radio button (true) or makes it plain (false, only when it has one).
  void SetRadioItem(bool value);

  bool Checked() const { return checked_; }
  /// Sets the checked state. Ticking a radio item unticks every other radio item among its
  /// siblings, so a sibling group has at most one ticked radio. No cascade to children.
  void SetChecked(bool value);

  bool Expanded() const { return expanded_; }
  void SetExpanded(bool value);

  /// The parent node; nullptr for a root node.
  TCheckTreeNode* Parent() const;
  /// 0 for root nodes, 1 for their children and so on.
  int32_t Level() const { return level_; }
  /// Position among its siblings, 0-based.
  int32_t Index() const { return index_; }
  /// Position in the whole tree, parents before children, 0-based (TCheckTree::Items).
  int32_t AbsoluteIndex() const;

  int32_t Count() const { return static_cast<int32_t>(children_.size()); }
  bool HasChildren() const { return !children_.empty(); }
  /// The child at index; raises EListError outside 0..Count()-1.
  TCheckTreeNode* Item(int32_t index) const;
  TCheckTreeNode* GetFirstChild() const;
  /// The next node with the same parent, or nullptr.
  TCheckTreeNode* GetNextSibling() const;
  /// The previous node with the same parent, or nullptr.
  TCheckTreeNode* GetPrevSibling() const;

  TCheckTree& Owner() const { return *owner_; }

 private:
  friend class TCheckTree;
  TCheckTreeNode(TCheckTree* owner, TCheckTreeNode* parent, int32_t level, int32_t index)
      : owner_(owner), parent_(parent), level_(level), index_(index) {}
  void SetKind(TNodeKind kind);
  void Changed();
  std::vector<std::unique_ptr<TCheckTreeNode>>& Siblings() const;

  TCheckTree* owner_;
  TCheckTreeNode* parent_;  // the tree's hidden root for level 0 nodes
  int32_t level_;
  int32_t index_;
  int32_t absolute_index_ = -1;
  String text_;
  int32_t image_index_ = -1;
  TNodeKind kind_ = nkPlain;
  bool checked_ = false;
  bool expanded_ = false;
  std::vector<std::unique_ptr<TCheckTreeNode>> children_;
};

/// Told about changes of a TCheckTree, so a view can follow its model.
class TCheckTreeObserver {
 public:
  virtual ~TCheckTreeObserver() = default;
  /// Nodes are about to be added or removed (once per outermost update bracket).
  virtual void TreeChanging() = 0;
  /// The adding or removing has ended; every node pointer held before may be stale.
  virtual void TreeChanged() = 0;
  /// Text, image, kind or checked state of one node changed (outside an update bracket).
  virtual void NodeChanged(TCheckTreeNode& node) = 0;
  /// Expanded state: of one node, or of every node at once when node is nullptr.
  virtual void ExpansionChanged(TCheckTreeNode* node) = 0;
  /// The selected node changed.
  virtual void SelectionChanged() = 0;
};

/// A tree of check-box, radio and plain nodes: the model behind the check tree viewer.
class TCheckTree : public TObject {
 public:
  TCheckTree();
  /// Frees every node without deep recursion: any depth is safe.
  ~TCheckTree() override;
  TCheckTree(const TCheckTree&) = delete;
  TCheckTree& operator=(const TCheckTree&) = delete;

  String ClassName() const override { return u"TCheckTree"; }

  /// Adds a node with text as the last child of parent (a root node when parent is null).
  TCheckTreeNode* AddChild(TCheckTreeNode* parent, const String& text);
  /// Removes every node.
  void Clear();

  /// The number of nodes in the whole tree.
  int32_t Count() const;
  /// The node at absolute index (parents before children); raises EListError when out of
  /// range.
  TCheckTreeNode* Items(int32_t absolute_index) const;
  int32_t RootCount() const { return root_.Count(); }
  /// The first root node, or nullptr when the tree is empty.
  TCheckTreeNode* GetFirstNode() const { return root_.GetFirstChild(); }

  /// Update bracket: observers hear TreeChanging at the outermost BeginUpdate and TreeChanged
  /// at the matching EndUpdate, and nothing about single nodes in between.
  void BeginUpdate();
  void EndUpdate();
  bool Updating() const { return update_count_ > 0; }

  void FullExpand();
  void FullCollapse();

  /// A read-only tree refuses changes made through ToggleByUser; code may still change it.
  bool ReadOnly() const { return read_only_; }
  void SetReadOnly(bool value) { read_only_ = value; }

  /// Number of levels below a ticked or unticked check box that follow it in ToggleByUser.
  int32_t CascadeLevels() const { return cascade_levels_; }
  void SetCascadeLevels(int32_t levels) { cascade_levels_ = levels; }
  /// What a click or the space key does to node: a check box flips and passes its new state
  /// to the check boxes up to CascadeLevels levels below it; a radio item becomes the ticked
  /// one of its group (ticking it again changes nothing, as with radio buttons). Returns false,
  /// changing nothing, for a plain node or a read-only tree.
  bool ToggleByUser(TCheckTreeNode& node);

  TCheckTreeNode* Selected() const { return selected_; }
  void SetSelected(TCheckTreeNode* node);

  /// The first node, in absolute-index order, whose level is level (any level when level is
  /// negative) and whose text equals text exactly; nullptr when there is none.
  TCheckTreeNode* FindNode(int32_t level, const String& text) const;

  void SetObserver(TCheckTreeObserver* observer) { observer_ = observer; }

 private:
  friend class TCheckTreeNode;
  void EnsureOrder() const;
  void NodeChanged(TCheckTreeNode& node);
  void SetAllExpanded(bool value);
  void CascadeChecked(TCheckTreeNode& node);

  TCheckTreeNode root_;  // hidden: its children are the root nodes
  int32_t update_count_ = 0;
  bool read_only_ = false;
  int32_t cascade_levels_ = 8;
  TCheckTreeNode* selected_ = nullptr;
  TCheckTreeObserver* observer_ = nullptr;
  mutable std::vector<TCheckTreeNode*> order_;  // absolute-index order, rebuilt on demand
  mutable bool order_valid_ = true;
};

/// Maps the items SplitNodesAndData creates to the data decoded from their keys. Adding an
/// item that is already there raises EListError "Duplicates not allowed".
class TNodeDataDictionary {
 public:
  void Add(const TQueryItem* item, const TNodeDataRec& data);
  bool TryGetValue(const TQueryItem* item, TNodeDataRec& data) const;
  bool ContainsKey(const TQueryItem* item) const { return map_.count(item) != 0; }
  int32_t Count() const { return static_cast<int32_t>(map_.size()); }
  void Clear() { map_.clear(); }

 private:
  std::unordered_map<const TQueryItem*, TNodeDataRec> map_;
};

// --- node keys ------------------------------------------------------------------------------

/// The node-key pattern "([01])([\@\#])(\d+)(\|)", compiled once when the library is loaded.
const TRegEx& NodeKeyRegEx();

/// The key of a node: "[]" for a plain node, else the checked character ("0"/"1") and the
/// kind character ("#" check box, "@" radio); then image index + 1 in decimal, "|", the text.
String EncodeNodeKey(const TCheckTreeNode& node);
String EncodeNodeKey(TNodeKind kind, int32_t image_index, bool checked, const String& text);

/// Decodes key: when the pattern occurs anywhere in it, data gets the decoded prefix, text
/// everything after the first match's "|" (characters before the match are dropped) and the
/// result is true. Otherwise data is all zero, text is the whole key and the result false.
/// A plain node's "[]" prefix never matches: it stays part of the text.
bool DecodeNodeKey(const String& key, TNodeDataRec& data, String& text);

// --- trees and lists ------------------------------------------------------------------------

/// Clears tree and rebuilds it from list, one node per item, inside one update bracket; then
/// expands every node. Keys that do not match the node-key pattern become plain nodes with
/// the whole key as text.
void ImportTreeFromQueryList(TCheckTree& tree, const TQueryList& list);
/// Reads tab-indented lines into a temporary TQueryList and imports that.
void ImportTreeFromList(TCheckTree& tree, const TStrings& lines);
/// Clears list and writes every node as an item keyed by its node key, root nodes in order,
/// each followed by its children. Sibling nodes with equal keys become one item holding the
/// children of both (deliberate: the list is keyed).
void ExportTreeToQueryList(const TCheckTree& tree, TQueryList& list);
/// ExportTreeToQueryList into a temporary list, then its tab-indented lines into lines.
void ExportTreeToList(const TCheckTree& tree, TStrings& lines);

/// Rewrites a keyed tree of node keys as a tree of plain names. Each source item, depth-first,
/// is decoded (TNodeDataRec all zero when it has no prefix) and stripped of its prefix; when
/// the remaining text has a ":" after its first character, only the part before the first ":"
/// is kept, without trailing blanks. The item is found or created by that name under its
/// parent's destination item, and (item, data) is added to dictionary when one is given.
/// destination is cleared first; when it is null, source itself is rewritten.
void SplitNodesAndData(TQueryList& source, TQueryList* destination,
                       TNodeDataDictionary* dictionary);

// --- texts the viewer shows -----------------------------------------------------------------

/// The node's path: each ancestor's full text followed by "/", from the root down, then the
/// node's own text up to its first "=" (Root/Child/Leaf).
String NodePath(const TCheckTreeNode& node);
/// "Failed to find node with level %d and text %s", the text in single quotes.
String FindNodeFailureMessage(int32_t level, const String& text);

}  // namespace vex
