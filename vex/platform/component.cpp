#include "vex/platform/component.h"

#include <algorithm>

#include "vex/platform/component_io.h"
#include "vex/platform/sysutils.h"

namespace vex {

namespace {

bool IsIdentStart(Char c) {
  return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'_';
}

bool IsValidIdent(const String& s) {
  if (s.empty() || !IsIdentStart(s[0])) return false;
  return std::all_of(s.begin() + 1, s.end(),
                     [](Char c) { return IsIdentStart(c) || (c >= u'0' && c <= u'9'); });
}

template <class T>
void MoveWithin(std::vector<T*>& list, T* item, int32_t index) {
  auto it = std::find(list.begin(), list.end(), item);
  if (it == list.end()) return;
  list.erase(it);
  index = std::clamp<int32_t>(index, 0, static_cast<int32_t>(list.size()));
  list.insert(list.begin() + index, item);
}

}  // namespace

// --- TPersistent -----------------------------------------------------------------------------

const TClassInfo& TPersistent::StaticClassInfo() {
  static const TClassInfo info(u"TPersistent", nullptr, {});
  return info;
}

void TPersistent::Assign(const TPersistent& source) { source.AssignTo(*this); }

void TPersistent::DefineProperties(TFiler& /*filer*/) {}

void TPersistent::AssignTo(TPersistent& dest) const {
  throw EConvertError(u"Cannot assign a " + ClassName() + u" to a " + dest.ClassName());
}

void TPersistent::AssignProperties(const TPersistent& source) {
  if (!source.ClassInfo().InheritsFrom(ClassInfo())) source.AssignTo(*this);
  for (const TPropInfo* p : ClassInfo().Properties()) {
    switch (p->kind) {
      case pkInteger:
      case pkInt64:
      case pkEnumeration:
      case pkSet:
      case pkBoolean:
        p->set_ordinal(*this, p->get_ordinal(source));
        break;
      case pkFloat:
        p->set_float(*this, p->get_float(source));
        break;
      case pkString:
      case pkEvent:
        p->set_string(*this, p->get_string(source));
        break;
      case pkBinary:
        p->set_bytes(*this, p->get_bytes(source));
        break;
      case pkComponent:
        p->set_component(*this, p->get_component(source));
        break;
      case pkStrings: {
        auto* to = static_cast<TStrings*>(p->get_object(*this));
        auto* from = static_cast<const TStrings*>(p->get_object(source));
        if (to != nullptr && from != nullptr) to->Assign(*from);
        break;
      }
      case pkPersistent: {
        auto* to = dynamic_cast<TPersistent*>(p->get_object(*this));
        auto* from = dynamic_cast<const TPersistent*>(p->get_object(source));
        if (to != nullptr && from != nullptr) to->AssignProperties(*from);
        break;
      }
      case pkCollection: {
        auto* to = dynamic_cast<TCollection*>(p->get_object(*this));
        auto* from = dynamic_cast<const TCollection*>(p->get_object(source));
        if (to != nullptr && from != nullptr) to->Assign(*from);
        break;
      }
    }
  }
}

// --- TComponent ------------------------------------------------------------------------------

void TComponent::DescribeProperties(TClassBuilder<TComponent>& c) {
  // The name travels in the object header, not as a property.
  c.String(u"Name", &TComponent::Name, &TComponent::SetName).Stored(false);
  c.Int64(u"Tag", &TComponent::Tag, &TComponent::SetTag);
}

TComponent::TComponent(TComponent* owner) {
  if (owner != nullptr) owner->InsertComponent(this);
}

TComponent::~TComponent() {
  state_.Include(csDestroying);
  NotifyRemoval();
  DestroyComponents();
  if (owner_ != nullptr) owner_->RemoveComponent(this);
}

void TComponent::NotifyRemoval() {
  // Each side of a free-notification pair removes the other from its list in Notification,
  // so the list is taken first.
  std::vector<TComponent*> others;
  others.swap(free_notifies_);
  for (TComponent* other : others) {
    auto& theirs = other->free_notifies_;
    theirs.erase(std::remove(theirs.begin(), theirs.end(), this), theirs.end());
    other->Notification(this, opRemove);
  }
}

void TComponent::SetName(const String& name) {
  if (name_ == name) return;
  if (owner_ != nullptr) {
    owner_->ValidateRename(this, name_, name);
  } else {
    ValidateRename(nullptr, name_, name);
  }
  name_ = name;
}

void TComponent::ValidateRename(TComponent* component, const String& cur_name,
                                const String& new_name) {
  if (!new_name.empty() && !IsValidIdent(new_name)) {
    throw EComponentError(u"'" + new_name + u"' is not a valid component name");
  }
  if (component == nullptr || new_name.empty() || SameText(cur_name, new_name)) return;
  TComponent* existing = FindComponent(new_name);
  if (existing != nullptr && existing != component) {
    throw EComponentError(u"A component named " + new_name + u" already exists");
  }
}

TComponent* TComponent::Components(int32_t index) const {
  if (index < 0 || index >= ComponentCount()) RaiseListIndexError(index);
  return components_[static_cast<size_t>(index)];
}

int32_t TComponent::ComponentIndex() const {
  if (owner_ == nullptr) return -1;
  const auto& list = owner_->components_;
  return static_cast<int32_t>(std::find(list.begin(), list.end(), this) - list.begin());
}

void TComponent::SetComponentIndex(int32_t index) {
  if (owner_ != nullptr) MoveWithin(owner_->components_, this, index);
}

TComponent* TComponent::FindComponent(const String& name) const {
  if (name.empty()) return nullptr;
  for (TComponent* c : components_) {
    if (SameText(c->name_, name)) return c;
  }
  return nullptr;
}

void TComponent::InsertComponent(TComponent* component) {
  if (component->owner_ == this) return;
  ValidateRename(component, String(), component->name_);
  if (component->owner_ != nullptr) component->owner_->RemoveComponent(component);
  components_.push_back(component);
  component->owner_ = this;
  Notification(component, opInsert);
}

void TComponent::RemoveComponent(TComponent* component) {
  auto it = std::find(components_.begin(), components_.end(), component);
  if (it == components_.end()) return;
  Notification(component, opRemove);
  // Notification may have changed the list; look the component up again.
  it = std::find(components_.begin(), components_.end(), component);
  if (it != components_.end()) components_.erase(it);
  component->owner_ = nullptr;
}

void TComponent::DestroyComponents() {
  while (!components_.empty()) {
    TComponent* last = components_.back();
    RemoveComponent(last);
    delete last;
  }
}

void TComponent::FreeNotification(TComponent* component) {
  if (component == nullptr || component == this) return;
  if (std::find(free_notifies_.begin(), free_notifies_.end(), component) == free_notifies_.end()) {
    free_notifies_.push_back(component);
    component->FreeNotification(this);
  }
  state_.Include(csFreeNotification);
}

void TComponent::RemoveFreeNotification(TComponent* component) {
  auto it = std::find(free_notifies_.begin(), free_notifies_.end(), component);
  if (it == free_notifies_.end()) return;
  free_notifies_.erase(it);
  component->RemoveFreeNotification(this);
}

void TComponent::Notification(TComponent* component, TOperation operation) {
  if (operation == opRemove && component != nullptr) RemoveFreeNotification(component);
  for (TComponent* owned : components_) owned->Notification(component, operation);
}

void TComponent::GetChildren(const TGetChildProc& proc, TComponent* /*root*/) {
  for (TComponent* c : components_) {
    if (!c->HasParent()) proc(c);
  }
}

void TComponent::SetParentComponent(TComponent* /*parent*/) {}

void TComponent::SetChildOrder(TComponent* child, int32_t order) {
  MoveWithin(components_, child, order);
}

void TComponent::ReadState(TReader& reader) { reader.ReadData(*this); }

void TComponent::WriteState(TWriter& writer) { writer.WriteData(*this); }

void TComponent::Loaded() { state_.Exclude(csLoading); }

void TComponent::SetState(TComponentStateFlag flag, bool on) {
  if (on) {
    state_.Include(flag);
  } else {
    state_.Exclude(flag);
  }
}

TComponent* CreateComponent(const String& class_name, TComponent* owner) {
  const TClassInfo& info = FindClass(class_name);
  if (info.Factories().component == nullptr) {
    throw EComponentError(u"Cannot create an instance of " + info.Name());
  }
  return info.Factories().component(owner);
}

std::unique_ptr<TComponent> CreateComponent(const String& class_name) {
  return std::unique_ptr<TComponent>(CreateComponent(class_name, nullptr));
}

// --- TCollectionItem -------------------------------------------------------------------------

TCollectionItem::TCollectionItem(TCollection* collection) { SetCollection(collection); }

TCollectionItem::~TCollectionItem() { SetCollection(nullptr); }

void TCollectionItem::SetCollection(TCollection* collection) {
  if (collection_ == collection) return;
  if (collection_ != nullptr) collection_->RemoveItem(this);
  if (collection != nullptr) collection->InsertItem(this, collection->Count());
}

int32_t TCollectionItem::Index() const {
  if (collection_ == nullptr) return -1;
  const auto& items = collection_->items_;
  return static_cast<int32_t>(std::find(items.begin(), items.end(), this) - items.begin());
}

void TCollectionItem::SetIndex(int32_t index) {
  if (collection_ != nullptr) MoveWithin(collection_->items_, this, index);
}

void TCollectionItem::Assign(const TPersistent& source) {
  if (dynamic_cast<const TCollectionItem*>(&source) != nullptr &&
      source.ClassInfo().InheritsFrom(ClassInfo())) {
    AssignProperties(source);
  } else {
    TPersistent::Assign(source);
  }
}

TPersistent* TCollectionItem::GetOwner() const { return collection_; }

// --- TCollection -----------------------------------------------------------------------------

TCollection::TCollection(const TClassInfo& item_class, TPersistent* owner)
    : item_class_(item_class), owner_(owner) {}

TCollection::~TCollection() { Clear(); }

TCollectionItem* TCollection::Items(int32_t index) const {
  if (index < 0 || index >= Count()) RaiseListIndexError(index);
  return items_[static_cast<size_t>(index)];
}

TCollectionItem* TCollection::Add() { return Insert(Count()); }

TCollectionItem* TCollection::Insert(int32_t index) {
  if (index < 0 || index > Count()) RaiseListIndexError(index);
  auto create = item_class_.Factories().item;
  if (create == nullptr) {
    throw EComponentError(u"Cannot create an instance of " + item_class_.Name());
  }
  TCollectionItem* item = create(this);
  MoveWithin(items_, item, index);
  return item;
}

void TCollection::Delete(int32_t index) { delete Items(index); }

void TCollection::Clear() {
  while (!items_.empty()) delete items_.back();
}

TCollectionItem* TCollection::FindItemID(int32_t id) const {
  for (TCollectionItem* item : items_) {
    if (item->id_ == id) return item;
  }
  return nullptr;
}

void TCollection::Assign(const TPersistent& source) {
  const auto* other = dynamic_cast<const TCollection*>(&source);
  if (other == nullptr) {
    TPersistent::Assign(source);
    return;
  }
  if (other == this) return;
  Clear();
  for (const TCollectionItem* item : other->items_) Add()->Assign(*item);
}

void TCollection::InsertItem(TCollectionItem* item, int32_t index) {
  items_.insert(items_.begin() + index, item);
  item->collection_ = this;
  item->id_ = next_id_++;
}

void TCollection::RemoveItem(TCollectionItem* item) {
  items_.erase(std::remove(items_.begin(), items_.end(), item), items_.end());
  item->collection_ = nullptr;
}

}  // namespace vex
