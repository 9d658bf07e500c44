// The component model: TPersistent (assignable, with published properties), TComponent (named,
// owned by another component that frees it, the unit of component streams) and TCollection of
// TCollectionItem. A component lists the components it owns in creation order; freeing a
// component frees what it owns and takes it out of its owner's list.
//
//   TComponent form(nullptr);
//   auto* button = new TButton(&form);      // owned by form, freed with it
//   button->SetName(u"OkButton");
//   form.FindComponent(u"okbutton");         // -> button (names compare case-insensitively)
//
// Declaring a streamable class: VEX_CLASS in the class body and a static DescribeProperties
// listing the published properties (see properties.h for every kind):
//
//   class TButton : public TComponent {
//     VEX_CLASS(TButton, TComponent)
//    public:
//     using TComponent::TComponent;
//     const String& Caption() const { return caption_; }
//     void SetCaption(const String& v) { caption_ = v; }
//     TFont* Font() { return &font_; }
//     static void DescribeProperties(TClassBuilder<TButton>& c) {
//       c.String(u"Caption", &TButton::Caption, &TButton::SetCaption);
//       c.Persistent(u"Font", &TButton::Font);       // streamed as Font.Name = ...
//     }
//    private:
//     String caption_;
//     TFont font_;
//   };
//
// Hooks for component trees whose visual parent differs from the owner (controls): the writer
// asks GetChildren which components to write below a component; the reader creates each child
// owned by GetChildOwner() (the root when null), calls SetParentComponent(reader's parent, which
// is the enclosing object's GetChildParent()), then ReadState; when the whole stream is read it
// resolves component references and calls Loaded on every component it read.
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

#include "vex/platform/object.h"
#include "vex/platform/properties.h"
#include "vex/platform/types.h"

namespace vex {

class TFiler;
class TReader;
class TWriter;

/// The root of the assignable, streamable classes.
class TPersistent : public TObject {
 public:
  TPersistent() = default;
  TPersistent(const TPersistent&) = delete;
  TPersistent& operator=(const TPersistent&) = delete;
  ~TPersistent() override = default;

  static const TClassInfo& StaticClassInfo();
  /// The description of the object's class (VEX_CLASS overrides it in every described class).
  virtual const TClassInfo& ClassInfo() const { return StaticClassInfo(); }

  /// Copies `source` into this object. The default asks source.AssignTo, which raises
  /// EConvertError "Cannot assign a <source class> to a <this class>".
  virtual void Assign(const TPersistent& source);
  /// Declares custom stored data next to the published properties (a list's lines, an image's
  /// bytes) through TFiler::DefineProperty / DefineBinaryProperty. Nothing by default.
  virtual void DefineProperties(TFiler& filer);
  /// The object this one belongs to (a collection's owner, an item's collection), or null.
  virtual TPersistent* GetOwner() const { return nullptr; }

 protected:
  virtual void AssignTo(TPersistent& dest) const;
  /// Copies every published property of `source`, which must be of this object's class or
  /// derive from it: values are set, nested persistents and string lists assigned in place,
  /// collections rebuilt. A helper for Assign overrides.
  void AssignProperties(const TPersistent& source);
};

/// Flags of TComponent::ComponentState.
enum TComponentStateFlag : uint8_t {
  csLoading,     ///< being read from a stream; cleared by Loaded
  csReading,     ///< its properties are being read
  csWriting,     ///< being written to a stream
  csDestroying,  ///< its destructor runs
  csDesigning,
  csAncestor,
  csUpdating,
  csFixups,
  csFreeNotification,
  csInline,  ///< read as an inline (frame) object
  csDesignInstance,
};
using TComponentState = Set<TComponentStateFlag>;

/// What TComponent::Notification reports.
enum TOperation : uint8_t { opInsert, opRemove };

/// The callback of GetChildren.
using TGetChildProc = std::function<void(TComponent* child)>;

class TComponent : public TPersistent {
  VEX_CLASS(TComponent, TPersistent)

 public:
  /// A component owned by `owner` (which then frees it), or a free-standing one.
  explicit TComponent(TComponent* owner = nullptr);
  /// Frees the owned components (last first), tells the components that asked for it, and
  /// leaves the owner's list.
  ~TComponent() override;

  /// The name: empty, or an identifier (a letter or "_", then letters, digits or "_"), unique
  /// among the owner's components regardless of case. A bad name raises EComponentError
  /// "'<name>' is not a valid component name", a taken one "A component named <name> already
  /// exists".
  const String& Name() const { return name_; }
  virtual void SetName(const String& name);
  intptr_t Tag() const { return tag_; }
  void SetTag(intptr_t value) { tag_ = value; }

  TComponent* Owner() const { return owner_; }
  int32_t ComponentCount() const { return static_cast<int32_t>(components_.size()); }
  /// The owned component at `index`; raises EListError "List index out of bounds (<i>)".
  TComponent* Components(int32_t index) const;
  /// The position in the owner's list; -1 without owner.
  int32_t ComponentIndex() const;
  /// Moves this component within its owner's list (clamped to the list).
  void SetComponentIndex(int32_t index);
  /// The owned component named `name`, compared case-insensitively; null when none or when
  /// `name` is empty.
  TComponent* FindComponent(const String& name) const;
  /// Takes `component` over from its current owner (if any) and appends it to this one's list.
  void InsertComponent(TComponent* component);
  /// Takes `component` out of this one's list; it is no longer freed by this component.
  void RemoveComponent(TComponent* component);
  /// Frees every owned component.
  void DestroyComponents();

  TComponentState ComponentState() const { return state_; }
  bool Loading() const { return state_.Contains(csLoading); }
  /// Asks for a Notification(this, opRemove) on `component` when this one is freed, and the
  /// other way round.
  void FreeNotification(TComponent* component);
  void RemoveFreeNotification(TComponent* component);

  // --- Streaming hooks ------------------------------------------------------------------------

  /// Calls `proc` for every child to be written below this component when `root` is written.
  /// The default gives the components this one owns that have no parent (HasParent false), in
  /// order; classes with a parent-child tree give their children instead.
  virtual void GetChildren(const TGetChildProc& proc, TComponent* root);
  /// The visual parent of this component, if it has one; null by default.
  virtual TComponent* GetParentComponent() const { return nullptr; }
  /// Called by the reader on every child it creates, with the enclosing object's
  /// GetChildParent(). Nothing by default.
  virtual void SetParentComponent(TComponent* parent);
  /// True when the component sits below a parent in the stream rather than below its owner.
  virtual bool HasParent() const { return false; }
  /// The owner of children read below this component; null means the root being read.
  virtual TComponent* GetChildOwner() { return nullptr; }
  /// The parent given to children read below this component; this component by default.
  virtual TComponent* GetChildParent() { return this; }
  /// Moves `child` to position `order` among the children (the reader calls it for objects
  /// written with a child position). The default reorders the owned list.
  virtual void SetChildOrder(TComponent* child, int32_t order);
  /// Reads the properties and children of this component from `reader`.
  virtual void ReadState(TReader& reader);
  /// Writes this component's properties and children (GetChildren) through `writer`.
  virtual void WriteState(TWriter& writer);
  /// Called once the whole stream holding this component has been read and component
  /// references have been resolved; clears csLoading.
  virtual void Loaded();

  /// Name (not stored: it travels in the object header) and Tag.
  static void DescribeProperties(TClassBuilder<TComponent>& c);

 protected:
  /// Called when a component is inserted into or removed from this one's list, when a
  /// component asked for free notification is freed, and passed on to owned components.
  virtual void Notification(TComponent* component, TOperation operation);
  /// Raises the name errors described at SetName for a `new_name` of `component`.
  virtual void ValidateRename(TComponent* component, const String& cur_name,
                              const String& new_name);
  void SetState(TComponentStateFlag flag, bool on);

 private:
  friend class TReader;
  friend class TWriter;

  void NotifyRemoval();

  String name_;
  intptr_t tag_ = 0;
  TComponent* owner_ = nullptr;
  std::vector<TComponent*> components_;
  std::vector<TComponent*> free_notifies_;
  TComponentState state_;
};

class TCollection;

/// An item of a TCollection: created with its collection, which owns and frees it.
class TCollectionItem : public TPersistent {
  VEX_CLASS(TCollectionItem, TPersistent)

 public:
  /// Adds the new item to `collection` when it is not null.
  explicit TCollectionItem(TCollection* collection);
  /// Leaves the collection.
  ~TCollectionItem() override;

  TCollection* Collection() const { return collection_; }
  /// Moves the item to another collection (or none).
  void SetCollection(TCollection* collection);
  /// The position in the collection, -1 without one.
  int32_t Index() const;
  void SetIndex(int32_t index);
  /// A number unique within the collection, given at insertion (0, 1, 2, ...).
  int32_t ID() const { return id_; }
  /// The class name unless a subclass says otherwise.
  virtual String DisplayName() const { return ClassName(); }
  /// Copies the published properties of an item of the same class (or a derived one); other
  /// sources raise as TPersistent::Assign.
  void Assign(const TPersistent& source) override;
  TPersistent* GetOwner() const override;

 private:
  friend class TCollection;
  TCollection* collection_ = nullptr;
  int32_t id_ = 0;
};

/// A list of items of one class, owned by a persistent (usually a component's property).
class TCollection : public TPersistent {
  VEX_CLASS(TCollection, TPersistent)

 public:
  /// A collection of `item_class` items (a TCollectionItem class described with VEX_CLASS).
  explicit TCollection(const TClassInfo& item_class, TPersistent* owner = nullptr);
  ~TCollection() override;

  const TClassInfo& ItemClass() const { return item_class_; }
  int32_t Count() const { return static_cast<int32_t>(items_.size()); }
  /// The item at `index`; raises EListError "List index out of bounds (<i>)".
  TCollectionItem* Items(int32_t index) const;
  /// Creates an item of the item class at the end / at `index`.
  TCollectionItem* Add();
  TCollectionItem* Insert(int32_t index);
  /// Frees the item at `index`; raises EListError for a bad index.
  void Delete(int32_t index);
  /// Frees every item.
  void Clear();
  /// The item whose ID is `id`, or null.
  TCollectionItem* FindItemID(int32_t id) const;
  /// Replaces the items by copies of those of another collection (TCollectionItem::Assign).
  void Assign(const TPersistent& source) override;
  TPersistent* GetOwner() const override { return owner_; }

 private:
  friend class TCollectionItem;
  void InsertItem(TCollectionItem* item, int32_t index);
  void RemoveItem(TCollectionItem* item);

  const TClassInfo& item_class_;
  TPersistent* owner_;
  std::vector<TCollectionItem*> items_;
  int32_t next_id_ = 0;
};

// --- Class descriptions ----------------------------------------------------------------------

template <class C, class P>
TClassInfo TClassInfo::Make(const String& name) {
  static_assert(std::derived_from<C, P> && std::derived_from<P, TPersistent>);
  std::vector<TPropInfo> props;
  if constexpr (requires(TClassBuilder<C> & b) { C::DescribeProperties(b); }) {
    TClassBuilder<C> builder(props);
    C::DescribeProperties(builder);
  }
  TClassFactories f;
  if constexpr (!std::is_abstract_v<C>) {
    if constexpr (std::derived_from<C, TComponent> && std::is_constructible_v<C, TComponent*>) {
      f.component = [](TComponent* owner) -> TComponent* { return new C(owner); };
    } else if constexpr (std::derived_from<C, TCollectionItem> &&
                         std::is_constructible_v<C, TCollection*>) {
      f.item = [](TCollection* collection) -> TCollectionItem* { return new C(collection); };
    } else if constexpr (std::is_default_constructible_v<C>) {
      f.persistent = []() -> TPersistent* { return new C(); };
    }
  }
  return TClassInfo(name, &P::StaticClassInfo(), std::move(props), f);
}

/// True when `instance`'s class is `info` or derives from it.
inline bool InheritsFrom(const TPersistent& instance, const TClassInfo& info) {
  return instance.ClassInfo().InheritsFrom(info);
}

/// Creates a component of a registered class through its factory, owned by `owner`; raises
/// EClassNotFound for an unknown class and EComponentError "Cannot create an instance of
/// <class>" for a class that is not a creatable component.
TComponent* CreateComponent(const String& class_name, TComponent* owner);
/// As above, free-standing: the caller owns it.
std::unique_ptr<TComponent> CreateComponent(const String& class_name);

}  // namespace vex
