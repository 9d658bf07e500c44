// Published properties: each persistent class describes its streamable properties once, next to
// its declaration, and the class registry finds classes by name for the component reader.
// The description drives component writing and reading and the by-name access of GetPropValue,
// SetPropValue, GetPropText and SetPropText (dotted names walk into nested persistents).
//
//   class TFont : public TPersistent {
//     VEX_CLASS(TFont, TPersistent)
//    public:
//     const String& Name() const { return name_; }
//     void SetName(const String& v) { name_ = v; }
//     int32_t Size() const { return size_; }
//     void SetSize(int32_t v) { size_ = v; }
//     static void DescribeProperties(TClassBuilder<TFont>& c) {
//       c.String(u"Name", &TFont::Name, &TFont::SetName, u"Tahoma");
//       c.Integer(u"Size", &TFont::Size, &TFont::SetSize, 8);
//     }
//    private:
//     String name_ = u"Tahoma";
//     int32_t size_ = 8;
//   };
//   RegisterClass<TFont>();
//   SetPropText(font, u"Size", u"10");       // GetPropValue(font, u"Size") -> 10
#pragma once

#include <concepts>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"
#include "vex/platform/variant.h"

namespace vex {

class TPersistent;
class TComponent;
class TCollection;
class TCollectionItem;

/// Raised by the by-name property access: EPropertyError for a name that is not a published
/// property ("Unknown property: \"Foo\""), EPropertyConvertError for a value that does not fit
/// the property's kind.
class EPropertyError : public Exception {
 public:
  using Exception::Exception;
};
class EPropertyConvertError : public Exception {
 public:
  using Exception::Exception;
};

/// The kinds of published properties.
enum TPropKind : uint8_t {
  pkInteger,      ///< 32-bit integer
  pkInt64,        ///< 64-bit integer
  pkEnumeration,  ///< one of a list of names, held as its ordinal
  pkSet,          ///< a set of names, held as a bit mask (bit n = name n)
  pkFloat,        ///< a floating-point number of one of the TFloatKind flavours
  pkBoolean,      ///< False / True
  pkString,       ///< text
  pkStrings,      ///< a TStrings owned by the object, streamed as "<Name>.Strings = (...)"
  pkPersistent,   ///< a nested TPersistent owned by the object, streamed as "<Name>.<Sub> = ..."
  pkCollection,   ///< a TCollection owned by the object, streamed as "<Name> = <...>"
  pkBinary,       ///< a byte block, streamed as "{HEX}"
  pkEvent,        ///< an event handler, kept and streamed as the handler's name
  pkComponent,    ///< a reference to another component, kept as a pointer, streamed as its name
};

/// The flavours of float properties. They differ in how they are streamed: Single, Currency
/// and Date keep their own value codes, Extended and Double are both written as Extended.
enum TFloatKind : uint8_t { fkExtended, fkSingle, fkCurrency, fkDate, fkDouble };

/// One published property. Built by TClassBuilder; the accessors are filled according to the
/// kind (ordinal for Integer/Int64/Enumeration/Set/Boolean, `get_float` for floats, `get_string`
/// for String/Event, `get_bytes` for Binary, `get_object` for Strings/Persistent/Collection,
/// `get_component` for component references).
struct TPropInfo {
  String name;
  TPropKind kind = pkInteger;
  TFloatKind float_kind = fkExtended;
  /// Member names of an enumeration or a set, by ordinal.
  std::vector<String> names;
  /// The default of an ordinal property; a property without one (`NoDefault`) is always
  /// written. Floats default to 0, strings, events and byte blocks to empty, references to nil.
  bool has_default = true;
  int64_t default_ordinal = 0;
  /// The default of a String property (empty unless given).
  String default_string;
  /// Whether the property is written at all; `stored_if`, when set, decides per object.
  bool stored = true;
  std::function<bool(const TPersistent&)> stored_if;

  std::function<int64_t(const TPersistent&)> get_ordinal;
  std::function<void(TPersistent&, int64_t)> set_ordinal;
  std::function<long double(const TPersistent&)> get_float;
  std::function<void(TPersistent&, long double)> set_float;
  std::function<String(const TPersistent&)> get_string;
  std::function<void(TPersistent&, const String&)> set_string;
  std::function<TBytes(const TPersistent&)> get_bytes;
  std::function<void(TPersistent&, const TBytes&)> set_bytes;
  std::function<TObject*(const TPersistent&)> get_object;
  std::function<TComponent*(const TPersistent&)> get_component;
  std::function<void(TPersistent&, TComponent*)> set_component;

  /// Chained modifiers for use in DescribeProperties.
  TPropInfo& NoDefault() {
    has_default = false;
    return *this;
  }
  TPropInfo& Stored(bool value) {
    stored = value;
    return *this;
  }
  template <class T, class F>
  TPropInfo& StoredIf(F f) {
    stored_if = [f](const TPersistent& p) { return std::invoke(f, static_cast<const T&>(p)); };
    return *this;
  }

  /// True when the property takes part in writing for `instance` (stored and stored_if).
  bool IsStored(const TPersistent& instance) const;
  /// True when the value of `instance` equals the property's default (see has_default).
  bool IsDefault(const TPersistent& instance) const;
  /// Whether a value can be assigned (nested objects are filled in place instead).
  bool Writable() const;
};

class TClassInfo;

/// Raises EPropertyConvertError for a component of the wrong class given to a reference.
[[noreturn]] void RaiseInvalidReference(const String& prop_name, TComponent* value);

/// Collects the properties of class T inside T::DescribeProperties. Getters are member
/// functions or callables taking `const T&`; setters take `T&` and the value.
template <class T>
class TClassBuilder {
 public:
  explicit TClassBuilder(std::vector<TPropInfo>& props) : props_(props) {}

  template <class G, class S>
  TPropInfo& Integer(const vex::String& name, G get, S set, int32_t def = 0) {
    return Ordinal(name, pkInteger, get, set, def);
  }
  template <class G, class S>
  TPropInfo& Int64(const vex::String& name, G get, S set, int64_t def = 0) {
    return Ordinal(name, pkInt64, get, set, def);
  }
  template <class G, class S>
  TPropInfo& Boolean(const vex::String& name, G get, S set, bool def = false) {
    TPropInfo& p = Ordinal(name, pkBoolean, get, set, def ? 1 : 0);
    p.names = {u"False", u"True"};
    return p;
  }
  /// An enumeration whose members are named `names` in ordinal order.
  template <class G, class S, class E>
  TPropInfo& Enum(const vex::String& name, G get, S set, std::vector<vex::String> names, E def) {
    TPropInfo& p = Ordinal(name, pkEnumeration, get, set, static_cast<int64_t>(def));
    p.names = std::move(names);
    return p;
  }
  /// A set held as a Set<E>; `names` name the members by ordinal.
  template <class G, class S, class V = std::remove_cvref_t<std::invoke_result_t<G, const T&>>>
  TPropInfo& SetOf(const vex::String& name, G get, S set, std::vector<vex::String> names,
                   V def = V{}) {
    TPropInfo& p = Add(name, pkSet);
    p.names = std::move(names);
    p.default_ordinal = static_cast<int64_t>(def.Bits());
    p.get_ordinal = [get](const TPersistent& o) {
      return static_cast<int64_t>(std::invoke(get, Self(o)).Bits());
    };
    p.set_ordinal = [set](TPersistent& o, int64_t v) {
      std::invoke(set, Self(o), V::FromBits(static_cast<uint64_t>(v)));
    };
    return p;
  }
  template <class G, class S>
  TPropInfo& Float(const vex::String& name, G get, S set, TFloatKind flavour = fkExtended) {
    using V = std::remove_cvref_t<std::invoke_result_t<G, const T&>>;
    TPropInfo& p = Add(name, pkFloat);
    p.float_kind = flavour;
    p.get_float = [get](const TPersistent& o) {
      return static_cast<long double>(std::invoke(get, Self(o)));
    };
    p.set_float = [set](TPersistent& o, long double v) {
      std::invoke(set, Self(o), static_cast<V>(v));
    };
    return p;
  }
  /// A text property; a non-empty `def` makes it the default instead of the empty string.
  template <class G, class S>
  TPropInfo& String(const vex::String& name, G get, S set, const vex::String& def = {}) {
    TPropInfo& p = TextLike(name, pkString, get, set);
    p.default_string = def;
    return p;
  }
  /// An event: `get` and `set` exchange the handler's name.
  template <class G, class S>
  TPropInfo& Event(const vex::String& name, G get, S set) {
    return TextLike(name, pkEvent, get, set);
  }
  template <class G, class S>
  TPropInfo& Binary(const vex::String& name, G get, S set) {
    TPropInfo& p = Add(name, pkBinary);
    p.get_bytes = [get](const TPersistent& o) { return TBytes(std::invoke(get, Self(o))); };
    p.set_bytes = [set](TPersistent& o, const TBytes& v) { std::invoke(set, Self(o), v); };
    return p;
  }
  /// A string list owned by the object; `get` returns it (pointer or reference).
  template <class G>
  TPropInfo& Strings(const vex::String& name, G get) {
    return Object(name, pkStrings, get);
  }
  /// A nested persistent owned by the object (a font, a picture); `get` returns it.
  template <class G>
  TPropInfo& Persistent(const vex::String& name, G get) {
    return Object(name, pkPersistent, get);
  }
  /// A collection owned by the object; `get` returns it.
  template <class G>
  TPropInfo& Collection(const vex::String& name, G get) {
    return Object(name, pkCollection, get);
  }
  /// A reference to a component of class C (deduced from the getter's C*). Assigning a
  /// component of another class raises EPropertyConvertError.
  template <class G, class S>
  TPropInfo& Component(const vex::String& name, G get, S set) {
    using C = std::remove_pointer_t<std::remove_cvref_t<std::invoke_result_t<G, const T&>>>;
    TPropInfo& p = Add(name, pkComponent);
    p.get_component = [get](const TPersistent& o) -> TComponent* {
      return const_cast<std::remove_cv_t<C>*>(std::invoke(get, Self(o)));
    };
    p.set_component = [set, name](TPersistent& o, TComponent* value) {
      auto* typed = dynamic_cast<std::remove_cv_t<C>*>(value);
      if (value != nullptr && typed == nullptr) RaiseInvalidReference(name, value);
      std::invoke(set, Self(o), typed);
    };
    return p;
  }

 private:
  static const T& Self(const TPersistent& o) { return static_cast<const T&>(o); }
  static T& Self(TPersistent& o) { return static_cast<T&>(o); }

  TPropInfo& Add(const vex::String& name, TPropKind kind) {
    TPropInfo& p = props_.emplace_back();
    p.name = name;
    p.kind = kind;
    return p;
  }
  template <class G, class S>
  TPropInfo& Ordinal(const vex::String& name, TPropKind kind, G get, S set, int64_t def) {
    using V = std::remove_cvref_t<std::invoke_result_t<G, const T&>>;
    TPropInfo& p = Add(name, kind);
    p.default_ordinal = def;
    p.get_ordinal = [get](const TPersistent& o) {
      return static_cast<int64_t>(std::invoke(get, Self(o)));
    };
    p.set_ordinal = [set](TPersistent& o, int64_t v) {
      std::invoke(set, Self(o), static_cast<V>(v));
    };
    return p;
  }
  template <class G, class S>
  TPropInfo& TextLike(const vex::String& name, TPropKind kind, G get, S set) {
    TPropInfo& p = Add(name, kind);
    p.get_string = [get](const TPersistent& o) { return vex::String(std::invoke(get, Self(o))); };
    p.set_string = [set](TPersistent& o, const vex::String& v) { std::invoke(set, Self(o), v); };
    return p;
  }
  template <class G>
  TPropInfo& Object(const vex::String& name, TPropKind kind, G get) {
    TPropInfo& p = Add(name, kind);
    p.get_object = [get](const TPersistent& o) -> TObject* {
      // Nested objects are filled in place by the reader, so the accessor hands out a mutable
      // object even from a const instance.
      T& self = const_cast<T&>(Self(o));
      decltype(auto) value = std::invoke(get, self);
      if constexpr (std::is_pointer_v<std::remove_cvref_t<decltype(value)>>) {
        return const_cast<std::remove_cvref_t<std::remove_pointer_t<decltype(value)>>*>(value);
      } else {
        return const_cast<std::remove_cvref_t<decltype(value)>*>(&value);
      }
    };
    return p;
  }

  std::vector<TPropInfo>& props_;
};

/// How the class registry and the reader create instances of a class; a null member means
/// the class cannot be created that way (abstract, or not a component, collection item or
/// default-constructible persistent).
struct TClassFactories {
  TComponent* (*component)(TComponent* owner) = nullptr;
  TCollectionItem* (*item)(TCollection* collection) = nullptr;
  TPersistent* (*persistent)() = nullptr;
};

/// The description of one persistent class: its name, its parent, how to create it, and its
/// published properties. One static instance per class, made by VEX_CLASS on first use.
class TClassInfo {
 public:
  TClassInfo(vex::String name, const TClassInfo* parent, std::vector<TPropInfo> own_props,
             TClassFactories factories = {});
  TClassInfo(const TClassInfo&) = delete;
  TClassInfo& operator=(const TClassInfo&) = delete;

  const vex::String& Name() const { return name_; }
  const TClassInfo* Parent() const { return parent_; }
  /// True when this class is `other` or derives from it.
  bool InheritsFrom(const TClassInfo& other) const;
  /// Every published property, the parent classes' first, in declaration order. A class that
  /// describes a property of the same name again replaces the parent's at its place.
  const std::vector<const TPropInfo*>& Properties() const { return all_; }
  /// The property named `name` (compared case-insensitively, as the reader does), or null.
  const TPropInfo* FindProperty(const vex::String& name) const;

  const TClassFactories& Factories() const { return factories_; }

  /// Builds the description of class C derived from P (used by VEX_CLASS; defined in
  /// component.h, where the classes it creates are complete).
  template <class C, class P>
  static TClassInfo Make(const vex::String& name);

 private:
  vex::String name_;
  const TClassInfo* parent_;
  std::vector<TPropInfo> own_;
  std::vector<const TPropInfo*> all_;
  TClassFactories factories_;
};

/// Declares the class description of `Class`, derived from `Parent`, inside the class body
/// (leaves the access at public). Properties come from an optional
/// `static void DescribeProperties(TClassBuilder<Class>&)` of the class.
#define VEX_CLASS(Class, Parent)                                                              \
 public:                                                                                      \
  static const ::vex::TClassInfo& StaticClassInfo() {                                         \
    static const ::vex::TClassInfo info = ::vex::TClassInfo::Make<Class, Parent>(u"" #Class); \
    return info;                                                                              \
  }                                                                                           \
  const ::vex::TClassInfo& ClassInfo() const override { return StaticClassInfo(); }

// --- Class registry --------------------------------------------------------------------------

/// Registers a class (and its parent classes) for the component reader. Registering the same
/// class again is harmless; another class under a registered name raises EFilerError
/// "A class named <name> already exists". Safe to call from any thread.
void RegisterClass(const TClassInfo& info);
void RegisterClasses(std::initializer_list<const TClassInfo*> infos);
template <class C>
void RegisterClass() {
  RegisterClass(C::StaticClassInfo());
}
/// Removes a class from the registry (its parents stay).
void UnRegisterClass(const TClassInfo& info);
/// The registered class named `name` (case-insensitive); raises EClassNotFound
/// "Class <name> not found" when there is none.
const TClassInfo& FindClass(const vex::String& name);
/// As FindClass, but null when unknown.
const TClassInfo* GetClass(const vex::String& name);

// --- Property access by name -----------------------------------------------------------------

/// The published properties of the object's class in declaration order, inherited ones first.
const std::vector<const TPropInfo*>& GetPropList(const TPersistent& instance);
/// The property reached by `path` ("Font.Name" walks into the nested persistent Font); null
/// when there is none. `target` receives the object that owns the final property.
const TPropInfo* FindPropInfo(const TPersistent& instance, const vex::String& path,
                              TPersistent** target = nullptr);
/// True when `path` names a published property.
bool IsPublishedProp(const TPersistent& instance, const vex::String& path);
/// The kind of the property at `path`; raises EPropertyError when there is none.
TPropKind PropKind(const TPersistent& instance, const vex::String& path);

/// The value as a Variant: integers as integers, Boolean as Boolean, enumerations by name,
/// sets as their member names joined by "," (no brackets), floats as doubles (Date as a date),
/// strings, string lists as their Text, byte blocks as upper-case hex, events as the handler
/// name, references as the component's name ("" for nil). Nested persistents and collections
/// raise EPropertyConvertError. An unknown path raises EPropertyError.
Variant GetPropValue(const TPersistent& instance, const vex::String& path);
/// Assigns a Variant, converted as GetPropValue gives it: enumerations take a name (any case)
/// or an ordinal, sets names with or without brackets, references a component name looked up
/// in the instance's owner ("" clears). Values that do not fit raise EPropertyConvertError.
void SetPropValue(TPersistent& instance, const vex::String& path, const Variant& value);
/// The value as text: as GetPropValue, with floats through FloatToStr and Booleans as
/// "True"/"False".
vex::String GetPropText(const TPersistent& instance, const vex::String& path);
/// Assigns from text, parsed by the property's kind (integers as integer text, floats as float
/// text, Booleans as "True"/"False"/numbers, the rest as SetPropValue takes a string).
void SetPropText(TPersistent& instance, const vex::String& path, const vex::String& text);

/// The member name of ordinal `value` of an enumeration property, or its decimal text when
/// out of range; and back (case-insensitive), -1 when `name` is not a member.
vex::String EnumName(const TPropInfo& prop, int64_t value);
int64_t EnumValue(const TPropInfo& prop, const vex::String& name);
/// A set's members joined by ","; `brackets` adds "[" "]".
vex::String SetToString(const TPropInfo& prop, int64_t bits, bool brackets = false);
/// Parses member names separated by "," (brackets and blanks optional); an unknown name raises
/// EPropertyConvertError.
int64_t StringToSet(const TPropInfo& prop, const vex::String& text);

}  // namespace vex
