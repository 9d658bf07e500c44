// TQueryList, a hierarchical keyed list, and TQueryGroupList, the same list read as sections.
//
// A TQueryList is an ordered list of items; each item is a line of text (its key) and may own a
// child TQueryList. Settings-like data is kept as name=value lines under keyed items, and the
// whole tree has a tab-indented text form (one item per line, depth = number of leading tabs):
//
//   TQueryList list;
//   list.ImportFromStrWithTabs(u"Options\r\n\tChars=.X\r\nRows\r\n\tR1\r\n");
//   list.GetItemList(u"Options")->GetValue(u"Chars");       // u".X"
//   list.GetValueByPath(u"Options.Chars");                  // u".X"
//   list.SetValueByPath(u"Display.Font.Size", u"12");       // creates "Display" and "Font"
//   list.ExportToStrWithTabs();  // "Options\r\n\tChars=.X\r\nRows\r\n\tR1\r\nDisplay\r\n..."
//
// Keys compare whole and case-sensitively everywhere. Lookups in a long list go through hash
// indexes of its keys and names, built on the first lookup and kept up to date by appends (any
// other change of keys drops them); short lists are scanned. Concurrent lookups are safe as
// long as nothing changes the list. Import, export, copy and destruction never recurse, so deep
// trees are safe.
#pragma once

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

class TStrings;
class TStringList;
class TQueryList;

/// One item of a TQueryList: a key and an optional child list that the item owns.
class TQueryItem : public TObject {
 public:
  explicit TQueryItem(String key) : key_(std::move(key)) {}
  ~TQueryItem() override;
  TQueryItem(const TQueryItem&) = delete;
  TQueryItem& operator=(const TQueryItem&) = delete;

  const String& Key() const { return key_; }
  void SetKey(String key);

  /// The child list, or nullptr when the item has none.
  TQueryList* Items() const { return children_.get(); }
  /// The child list, created empty when the item has none yet; never null.
  TQueryList* SubList();
  /// True when the item owns a child list (which may be empty).
  bool HasItems() const { return children_ != nullptr; }

  String ClassName() const override { return u"TQueryItem"; }

 private:
  friend class TQueryList;
  String key_;
  std::unique_ptr<TQueryList> children_;
  TQueryList* owner_ = nullptr;  // the list holding this item, told when the key changes
};

/// An ordered list of keyed items. The list owns its items and, through them, the whole tree.
/// Item pointers stay valid until the item is deleted or the list is cleared, re-imported or
/// assigned (inserting or deleting other items does not move them).
class TQueryList : public TObject {
 public:
  TQueryList() = default;
  /// Frees the whole tree, iteratively: any depth of nesting is safe.
  ~TQueryList() override;
  TQueryList(const TQueryList&) = delete;
  TQueryList& operator=(const TQueryList&) = delete;

  String ClassName() const override { return u"TQueryList"; }

  // --- items by index ----------------------------------------------------------------------
  // Index arguments are 0-based; an index outside 0..Count()-1 raises EListError
  // "List index out of bounds (<index>)" unless the operation says otherwise.

  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  /// The item at index.
  TQueryItem* Items(int32_t index) const {
    if (index < 0 || index >= Count()) IndexError(index);
    return items_[static_cast<size_t>(index)].get();
  }
  /// The key (the whole line) of the item at index.
  const String& Keys(int32_t index) const;
  /// The child list of the item at index, or nullptr when it has none.
  TQueryList* SubList(int32_t index) const;
  /// Key and child list of the item at index. False when index is out of range (outputs
  /// untouched) or when the item has no child list (key set, items set to nullptr).
  bool GetItemByIndex(int32_t index, String& key, TQueryList*& items) const;
  /// The text of the key at index before its first "="; empty when it has no "=".
  String Names(int32_t index) const;
  /// The text of the key at index after its first "="; empty when it has no "=".
  String ValueFromIndex(int32_t index) const;

  // --- adding and removing -----------------------------------------------------------------

  /// Appends an item with key (duplicates allowed) and returns it.
  TQueryItem* Add(String key);
  /// Inserts an item with key before index (0..Count(); Count() appends) and returns it.
  TQueryItem* Insert(int32_t index, String key);
  /// Deletes the item at index with its whole subtree.
  void Delete(int32_t index);
  /// Removes every item with its subtree.
  void Clear();
  /// Replaces this list's content by a deep copy of source's. The copy shares nothing with
  /// source; assigning a list to itself, or from a list inside this tree, is safe.
  void Assign(const TQueryList& source);

  // --- items by key ------------------------------------------------------------------------

  /// Index of the first item whose key equals key (whole, case-sensitive); -1 when none.
  int32_t IndexOfKey(const String& key) const;
  /// The first item whose key equals key, or nullptr.
  TQueryItem* FindItem(const String& key) const;
  /// The first item whose key equals key; appended when there is none. Never null.
  TQueryItem* FindOrCreate(const String& key);
  /// The child list of the first item with key, or nullptr when there is no such item or it
  /// has no child list.
  TQueryList* GetItemList(const String& key) const;

  // --- values under a key (name=value lines) -----------------------------------------------
  // The value of name N in a list is the text after the first "=" of the first item whose text
  // before that "=" equals N exactly. Neither side is trimmed: "a = 1" has the name "a ". A line
  // without "=" has no name and is never found by name.

  /// Index of the first item whose name is name; -1 when none.
  int32_t IndexOfName(const String& name) const;
  /// The value of name, or default_value when no item has that name.
  String GetValue(const String& name, const String& default_value = String()) const;
  /// Sets the value of name: the first item with that name gets the key name + "=" + value
  /// (keeping its position and children); when there is none, that key is appended.
  void SetValue(const String& name, const String& value);

  // --- paths -------------------------------------------------------------------------------
  // A path joins keys with a separator ("." unless told). It is split at every occurrence of
  // the separator (an empty separator gives one segment); empty segments are keys like any
  // other. In the value operations the last segment is a name (see GetValue) in the list of
  // the item named by the segments before it; a single segment is a name in this list.

  /// The item reached by taking every segment as a whole key, level by level; nullptr when a
  /// segment is not found.
  TQueryItem* GetItemByPath(const String& path, const String& separator = u".") const;
  /// The value at path, or default_value when an item or the name is missing.
  String GetValueByPath(const String& path, const String& default_value = String(),
                        const String& separator = u".") const;
  /// Sets the value at path, creating the missing items (found or created by whole key).
  void SetValueByPath(const String& path, const String& value, const String& separator = u".");

  // --- tab-indented text -------------------------------------------------------------------
  // One item per line; its depth is the number of leading tab characters. Import replaces the
  // content of the list: a line at depth d becomes a child of the last item at depth d - 1; a
  // jump of more than one level below the previous line counts as one level (so the first line
  // is always at depth 0); lines that are empty after their tabs are skipped. Line breaks on
  // input are CR LF, LF or CR. Export writes each item as depth tabs + key + CR LF, parents
  // before children, so importing an export gives the same tree. Both run in linear time.

  void ImportFromStrWithTabs(const String& text);
  String ExportToStrWithTabs() const;
  /// Import from the lines of a string list (each line is one line of the text).
  void ImportFromListWithTabs(const TStrings& lines);
  /// Export into a string list: clears it, then adds one line per item, inside one
  /// BeginUpdate/EndUpdate bracket.
  void ExportToListWithTabs(TStrings& lines) const;

 private:
  friend class TQueryItem;
  // Frees this level's items. Their subtrees are freed by bounded recursion; child lists deeper
  // than that are moved into pending, so any depth is freed without deep recursion.
  void FreeItems(std::vector<std::unique_ptr<TQueryList>>& pending, int depth);
  // Frees this list's items and takes over those of fresh (used to replace the content only
  // after a new tree is complete).
  void AdoptItems(TQueryList& fresh);
  void CheckIndex(int32_t index) const;
  [[noreturn]] static void IndexError(int32_t index);

  // The hash index of a long list: the first position of each key, or of each name.
  struct Index;
  enum IndexKind { ikKeys, ikNames };
  // Position of the first item with that key or name; -1 when none.
  int32_t Find(IndexKind kind, std::u16string_view text) const;
  // The item reached by the keys first..last level by level; nullptr when one is missing.
  TQueryItem* ItemAt(const std::u16string_view* first, const std::u16string_view* last) const;
  String ValueOf(std::u16string_view name, const String& default_value) const;
  const Index& Indexed(IndexKind kind) const;
  // Drops the index of one kind (both when keys changed in any way an append does not cover).
  void DropIndex(IndexKind kind);
  void KeysChanged();
  // Appends an item that the list owns from now on, keeping the indexes current.
  TQueryItem* Append(std::unique_ptr<TQueryItem> item);
  // Takes over items built in another list and points them at this one.
  void TakeItems(std::vector<std::unique_ptr<TQueryItem>>& items);
  // Builds a tree from tab-indented lines (the import's engine).
  class TabImporter;
  // Calls visit(item, depth) for every item of the tree, parents before children.
  template <class Visit>
  void WalkTree(Visit&& visit) const;

  std::vector<std::unique_ptr<TQueryItem>> items_;
  // Built on demand by lookups (hence mutable and atomic: concurrent readers may race to build
  // one, and one wins); owned by the list.
  mutable std::atomic<Index*> indexes_[2] = {nullptr, nullptr};
};

/// A TQueryList whose top-level items are sections; each section's child list holds its lines.
///
///   Options
///   	Headers=Cols
///   Cols
///   	A
///   	B
///
/// GetItemList(u"Cols") gives the list A, B; GetValueByKey(u"Options", u"Headers") gives "Cols".
class TQueryGroupList : public TQueryList {
 public:
  TQueryGroupList();
  ~TQueryGroupList() override;

  String ClassName() const override { return u"TQueryGroupList"; }

  // GetItemList (the child list of section name, nullptr when absent) and ImportFromStrWithTabs
  // (replaces the sections) are those of TQueryList.

  /// The keys of the items of section name as a string list that this group list owns, or
  /// nullptr when there is no such section. A section that exists without items gives an empty
  /// list. Each name has one list object, refilled on every call and kept alive until the
  /// group list is destroyed (a re-import does not invalidate it; call again to refresh it).
  /// The list is case-sensitive and unsorted, like the keys.
  TStrings* GetItemStrings(const String& name);
  /// Clears strings and fills it with the keys of the items of section name. False (and
  /// strings left untouched) when there is no such section.
  bool GetItemStrings(const String& name, TStrings& strings) const;
  /// The value of key in section name (see TQueryList::GetValue); default_value when the
  /// section or the key is missing.
  String GetValueByKey(const String& section, const String& key,
                       const String& default_value = String()) const;

 private:
  std::map<String, std::unique_ptr<TStringList>> strings_;
};

}  // namespace vex
