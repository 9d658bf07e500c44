#include "vex/companion/query_list.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"

namespace vex {

namespace {

constexpr Char kTab = u'\t';
const String kLineBreak = u"\r\n";

// Lists shorter than this are scanned: building an index would cost more than it saves.
constexpr size_t kIndexFrom = 16;

// Only lines with an "=" have a name: the text before the first one. Lines without one give
// false.
bool NameOf(std::u16string_view key, std::u16string_view& name) {
  const auto eq = key.find(u'=');
  if (eq == std::u16string_view::npos) return false;
  name = key.substr(0, eq);
  return true;
}

// The segments of a path, as views into it.
std::vector<std::u16string_view> SplitPath(std::u16string_view path,
                                           std::u16string_view separator) {
  std::vector<std::u16string_view> segments;
  if (separator.empty()) {
    segments.push_back(path);
    return segments;
  }
  size_t start = 0;
  for (;;) {
    const auto at = path.find(separator, start);
    if (at == std::u16string_view::npos) break;
    segments.push_back(path.substr(start, at - start));
    start = at + separator.size();
  }
  segments.push_back(path.substr(start));
  return segments;
}

// Calls line(view) for every line of text; lines end at CR LF, LF or CR, and a final line
// break does not add an empty line.
template <class Line>
void ForEachLine(std::u16string_view text, Line&& line) {
  size_t start = 0;
  const size_t n = text.size();
  for (size_t i = 0; i < n; ++i) {
    const Char c = text[i];
    if (c != u'\r' && c != u'\n') continue;
    line(text.substr(start, i - start));
    if (c == u'\r' && i + 1 < n && text[i + 1] == u'\n') ++i;
    start = i + 1;
  }
  if (start < n) line(text.substr(start));
}

}  // namespace

// Builds a tree from tab-indented lines fed one at a time. The items of each open level wait in
// a reused vector until the level is closed, and then move into their list at its exact size,
// so no list grows step by step.
class TQueryList::TabImporter {
 public:
  explicit TabImporter(TQueryList& root) : root_(root) {}

  void Line(std::u16string_view line) {
    const size_t tabs = std::min(line.find_first_not_of(kTab), line.size());
    if (tabs == line.size()) return;  // empty after its tabs
    // A jump of more than one level below the previous line counts as one level.
    const size_t depth = std::min(tabs, open_);
    CloseLevelsFrom(depth + 1);
    if (levels_.size() <= depth) levels_.resize(depth + 1);
    levels_[depth].push_back(std::make_unique<TQueryItem>(String(line.substr(tabs))));
    open_ = depth + 1;
  }

  /// Places the items still waiting; call once after the last line.
  void Finish() { CloseLevelsFrom(0); }

 private:
  // Moves the waiting items of every level from `from` on into their lists, deepest first: the
  // items of level d belong to the last item waiting at level d - 1 (or to the root).
  void CloseLevelsFrom(size_t from) {
    for (size_t d = open_; d-- > from;) {
      TQueryList& list = d == 0 ? root_ : *levels_[d - 1].back()->SubList();
      std::vector<std::unique_ptr<TQueryItem>>& items = levels_[d];
      list.items_.reserve(list.items_.size() + items.size());
      for (auto& item : items) {
        item->owner_ = &list;
        list.items_.push_back(std::move(item));
      }
      items.clear();
    }
    open_ = std::min(open_, from);
  }

  TQueryList& root_;
  std::vector<std::vector<std::unique_ptr<TQueryItem>>> levels_;
  size_t open_ = 0;  // levels 0 .. open_ - 1 have been started and not closed
};

// Calls visit(item, depth) for every item, parents before children, in order, without recursion.
template <class Visit>
void TQueryList::WalkTree(Visit&& visit) const {
  struct Frame {
    const std::unique_ptr<TQueryItem>* next;
    const std::unique_ptr<TQueryItem>* end;
  };
  std::vector<Frame> stack{{items_.data(), items_.data() + items_.size()}};
  while (!stack.empty()) {
    Frame& top = stack.back();
    if (top.next == top.end) {
      stack.pop_back();
      continue;
    }
    const TQueryItem& item = **top.next++;
    visit(item, static_cast<int32_t>(stack.size()) - 1);
    if (const TQueryList* children = item.children_.get(); children && !children->items_.empty()) {
      stack.push_back({children->items_.data(), children->items_.data() + children->items_.size()});
    }
  }
}

// --- TQueryItem -------------------------------------------------------------------------------

TQueryItem::~TQueryItem() = default;

void TQueryItem::SetKey(String key) {
  if (owner_ != nullptr) owner_->KeysChanged();
  key_ = std::move(key);
}

TQueryList* TQueryItem::SubList() {
  if (!children_) children_ = std::make_unique<TQueryList>();
  return children_.get();
}

// --- TQueryList: items by index -------------------------------------------------------------

// The views point into the keys of the list's items, which live on the heap and stay put while
// the index exists: every change of a key drops or updates the index first.
struct TQueryList::Index {
  std::unordered_map<std::u16string_view, int32_t> first;

  void Note(IndexKind kind, std::u16string_view key, int32_t position) {
    std::u16string_view name;
    if (kind == ikKeys) {
      first.emplace(key, position);  // an earlier item with the same key keeps its entry
    } else if (NameOf(key, name)) {
      first.emplace(name, position);
    }
  }
};

TQueryList::~TQueryList() { Clear(); }

const TQueryList::Index& TQueryList::Indexed(IndexKind kind) const {
  std::atomic<Index*>& slot = indexes_[kind];
  Index* index = slot.load(std::memory_order_acquire);
  if (index != nullptr) return *index;
  auto built = std::make_unique<Index>();
  built->first.reserve(items_.size());
  for (size_t i = 0; i < items_.size(); ++i) {
    built->Note(kind, items_[i]->key_, static_cast<int32_t>(i));
  }
  // Another reader may have built the same index meanwhile; the first one stays.
  if (slot.compare_exchange_strong(index, built.get(), std::memory_order_acq_rel)) {
    return *built.release();
  }
  return *index;
}

int32_t TQueryList::Find(IndexKind kind, std::u16string_view text) const {
  if (items_.size() < kIndexFrom) {
    std::u16string_view name;
    for (size_t i = 0; i < items_.size(); ++i) {
      const String& key = items_[i]->key_;
      if (kind == ikKeys ? key == text : NameOf(key, name) && name == text) {
        return static_cast<int32_t>(i);
      }
    }
    return -1;
  }
  const Index& index = Indexed(kind);
  const auto it = index.first.find(text);
  return it == index.first.end() ? -1 : it->second;
}

void TQueryList::DropIndex(IndexKind kind) {
  // Changes are never concurrent with anything else, so no atomic exchange is needed.
  Index* index = indexes_[kind].load(std::memory_order_relaxed);
  if (index == nullptr) return;
  indexes_[kind].store(nullptr, std::memory_order_relaxed);
  delete index;
}

void TQueryList::KeysChanged() {
  DropIndex(ikKeys);
  DropIndex(ikNames);
}

TQueryItem* TQueryList::Append(std::unique_ptr<TQueryItem> item) {
  item->owner_ = this;
  items_.push_back(std::move(item));
  const int32_t position = static_cast<int32_t>(items_.size()) - 1;
  for (IndexKind kind : {ikKeys, ikNames}) {
    if (Index* index = indexes_[kind].load(std::memory_order_relaxed)) {
      index->Note(kind, items_.back()->key_, position);
    }
  }
  return items_.back().get();
}

void TQueryList::TakeItems(std::vector<std::unique_ptr<TQueryItem>>& items) {
  Clear();
  items_.swap(items);
  for (auto& item : items_) item->owner_ = this;
}

void TQueryList::IndexError(int32_t index) {
  throw EListError(u"List index out of bounds (" + IntToStr(index) + u")");
}

void TQueryList::CheckIndex(int32_t index) const {
  if (index < 0 || index >= Count()) IndexError(index);
}

const String& TQueryList::Keys(int32_t index) const { return Items(index)->key_; }

TQueryList* TQueryList::SubList(int32_t index) const { return Items(index)->children_.get(); }

bool TQueryList::GetItemByIndex(int32_t index, String& key, TQueryList*& items) const {
  if (index < 0 || index >= Count()) return false;
  const TQueryItem& item = *items_[static_cast<size_t>(index)];
  key = item.key_;
  items = item.children_.get();
  return items != nullptr;
}

String TQueryList::Names(int32_t index) const {
  const String& key = Keys(index);
  const auto eq = key.find(u'=');
  return eq == String::npos ? String() : key.substr(0, eq);
}

String TQueryList::ValueFromIndex(int32_t index) const {
  const String& key = Keys(index);
  const auto eq = key.find(u'=');
  return eq == String::npos ? String() : key.substr(eq + 1);
}

// --- adding and removing ----------------------------------------------------------------------

TQueryItem* TQueryList::Add(String key) {
  return Append(std::make_unique<TQueryItem>(std::move(key)));
}

TQueryItem* TQueryList::Insert(int32_t index, String key) {
  if (index < 0 || index > Count()) {
    throw EListError(u"List index out of bounds (" + IntToStr(index) + u")");
  }
  if (index == Count()) return Add(std::move(key));
  KeysChanged();  // the positions after index move
  auto it = items_.insert(items_.begin() + index, std::make_unique<TQueryItem>(std::move(key)));
  (*it)->owner_ = this;
  return it->get();
}

void TQueryList::Delete(int32_t index) {
  CheckIndex(index);
  KeysChanged();
  std::unique_ptr<TQueryItem> item = std::move(items_[static_cast<size_t>(index)]);
  items_.erase(items_.begin() + index);
  // item dies here; its child list frees its own subtree iteratively.
}

void TQueryList::FreeItems(std::vector<std::unique_ptr<TQueryList>>& pending, int depth) {
  // Nested recursion stays far below any thread's stack limit.
  constexpr int kMaxRecursion = 64;
  KeysChanged();
  for (auto& item : items_) {
    if (!item->children_) continue;
    if (depth < kMaxRecursion) {
      item->children_->FreeItems(pending, depth + 1);
    } else {
      pending.push_back(std::move(item->children_));
    }
  }
  items_.clear();
}

void TQueryList::Clear() {
  std::vector<std::unique_ptr<TQueryList>> pending;
  FreeItems(pending, 0);
  while (!pending.empty()) {
    std::unique_ptr<TQueryList> list = std::move(pending.back());
    pending.pop_back();
    list->FreeItems(pending, 0);
    // list is empty now, so its destructor does not descend.
  }
}

void TQueryList::Assign(const TQueryList& source) {
  if (&source == this) return;
  // Build the copy aside first: source may live inside this tree.
  TQueryList copy;
  std::vector<std::pair<const TQueryList*, TQueryList*>> work{{&source, &copy}};
  while (!work.empty()) {
    auto [from, to] = work.back();
    work.pop_back();
    to->items_.reserve(from->items_.size());
    for (const auto& item : from->items_) {
      TQueryItem* added = to->Add(item->key_);
      if (item->children_) work.emplace_back(item->children_.get(), added->SubList());
    }
  }
  TakeItems(copy.items_);
}

// --- items by key -----------------------------------------------------------------------------

int32_t TQueryList::IndexOfKey(const String& key) const { return Find(ikKeys, key); }

TQueryItem* TQueryList::FindItem(const String& key) const {
  const int32_t index = IndexOfKey(key);
  return index < 0 ? nullptr : items_[static_cast<size_t>(index)].get();
}

TQueryItem* TQueryList::FindOrCreate(const String& key) {
  TQueryItem* item = FindItem(key);
  return item != nullptr ? item : Add(key);
}

TQueryList* TQueryList::GetItemList(const String& key) const {
  const TQueryItem* item = FindItem(key);
  return item == nullptr ? nullptr : item->Items();
}

// --- values under a key -----------------------------------------------------------------------

int32_t TQueryList::IndexOfName(const String& name) const { return Find(ikNames, name); }

String TQueryList::GetValue(const String& name, const String& default_value) const {
  return ValueOf(name, default_value);
}

String TQueryList::ValueOf(std::u16string_view name, const String& default_value) const {
  const int32_t index = Find(ikNames, name);
  if (index < 0) return default_value;
  const String& key = items_[static_cast<size_t>(index)]->key_;
  return key.substr(key.find(u'=') + 1);
}

void TQueryList::SetValue(const String& name, const String& value) {
  String key = name + u"=" + value;
  const int32_t index = IndexOfName(name);
  if (index < 0) {
    Add(std::move(key));
    return;
  }
  // The item keeps its name and its position as the first with that name, so only the name
  // index's view of the old key has to be renewed.
  DropIndex(ikKeys);
  String& target = items_[static_cast<size_t>(index)]->key_;
  Index* names = indexes_[ikNames].load(std::memory_order_relaxed);
  if (names != nullptr) names->first.erase(name);
  target = std::move(key);
  if (names != nullptr) names->Note(ikNames, target, index);
}

// --- paths ------------------------------------------------------------------------------------

TQueryItem* TQueryList::ItemAt(const std::u16string_view* first,
                               const std::u16string_view* last) const {
  const TQueryList* list = this;
  TQueryItem* item = nullptr;
  for (; first != last; ++first) {
    if (list == nullptr) return nullptr;
    const int32_t index = list->Find(ikKeys, *first);
    if (index < 0) return nullptr;
    item = list->items_[static_cast<size_t>(index)].get();
    list = item->Items();
  }
  return item;
}

TQueryItem* TQueryList::GetItemByPath(const String& path, const String& separator) const {
  const std::vector<std::u16string_view> segments = SplitPath(path, separator);
  return ItemAt(segments.data(), segments.data() + segments.size());
}

String TQueryList::GetValueByPath(const String& path, const String& default_value,
                                  const String& separator) const {
  const std::vector<std::u16string_view> segments = SplitPath(path, separator);
  const TQueryList* list = this;
  if (segments.size() > 1) {
    const TQueryItem* item = ItemAt(segments.data(), segments.data() + segments.size() - 1);
    list = item == nullptr ? nullptr : item->Items();
  }
  return list == nullptr ? default_value : list->ValueOf(segments.back(), default_value);
}

void TQueryList::SetValueByPath(const String& path, const String& value, const String& separator) {
  const std::vector<std::u16string_view> segments = SplitPath(path, separator);
  TQueryList* list = this;
  for (size_t i = 0; i + 1 < segments.size(); ++i) {
    const int32_t index = list->Find(ikKeys, segments[i]);
    TQueryItem* item =
        index < 0 ? list->Add(String(segments[i])) : list->items_[static_cast<size_t>(index)].get();
    list = item->SubList();
  }
  list->SetValue(String(segments.back()), value);
}

// --- tab-indented text ------------------------------------------------------------------------

void TQueryList::AdoptItems(TQueryList& fresh) { TakeItems(fresh.items_); }

void TQueryList::ImportFromStrWithTabs(const String& text) {
  TQueryList fresh;
  TabImporter importer(fresh);
  ForEachLine(text, [&importer](std::u16string_view line) { importer.Line(line); });
  importer.Finish();
  AdoptItems(fresh);
}

void TQueryList::ImportFromListWithTabs(const TStrings& lines) {
  // lines may be the export of this very list's items, so the tree is built aside.
  TQueryList fresh;
  TabImporter importer(fresh);
  // A line of the list that holds line breaks itself is read as several lines, like text.
  for (int32_t i = 0; i < lines.Count(); ++i) {
    ForEachLine(lines.Strings(i), [&importer](std::u16string_view line) { importer.Line(line); });
  }
  importer.Finish();
  AdoptItems(fresh);
}

String TQueryList::ExportToStrWithTabs() const {
  // One walk only: the items lie scattered over the heap, so a walk that sized the text first
  // would cost more than the text's growth by doubling.
  String text;
  WalkTree([&text](const TQueryItem& item, int32_t depth) {
    text.append(static_cast<size_t>(depth), kTab);
    text += item.Key();
    text += kLineBreak;
  });
  return text;
}

void TQueryList::ExportToListWithTabs(TStrings& lines) const {
  lines.BeginUpdate();
  struct EndUpdate {
    TStrings& lines;
    ~EndUpdate() { lines.EndUpdate(); }
  } guard{lines};
  lines.Clear();
  WalkTree([&lines](const TQueryItem& item, int32_t depth) {
    lines.Add(String(static_cast<size_t>(depth), kTab) + item.Key());
  });
}

// --- TQueryGroupList ----------------------------------------------------------------------------

TQueryGroupList::TQueryGroupList() = default;
TQueryGroupList::~TQueryGroupList() = default;

TStrings* TQueryGroupList::GetItemStrings(const String& name) {
  const TQueryItem* section = FindItem(name);
  if (section == nullptr) return nullptr;
  std::unique_ptr<TStringList>& strings = strings_[name];
  if (!strings) {
    strings = std::make_unique<TStringList>();
    strings->SetCaseSensitive(true);
  }
  GetItemStrings(name, *strings);
  return strings.get();
}

bool TQueryGroupList::GetItemStrings(const String& name, TStrings& strings) const {
  const TQueryItem* section = FindItem(name);
  if (section == nullptr) return false;
  strings.BeginUpdate();
  struct EndUpdate {
    TStrings& lines;
    ~EndUpdate() { lines.EndUpdate(); }
  } guard{strings};
  strings.Clear();
  if (const TQueryList* items = section->Items()) {
    for (int32_t i = 0; i < items->Count(); ++i) strings.Add(items->Keys(i));
  }
  return true;
}

String TQueryGroupList::GetValueByKey(const String& section, const String& key,
                                      const String& default_value) const {
  const TQueryList* items = GetItemList(section);
  return items == nullptr ? default_value : items->GetValue(key, default_value);
}

}  // namespace vex
