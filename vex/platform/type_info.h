// Run-time type descriptions: what kind a C++ type is, its name, the fields of a record, the
// element type and count of an array, the names of an enumeration. The typed-variable walk of
// TRttiUtils reads and writes any described value through them.
//
//   struct TPoint { int32_t X; int32_t Y; };
//   VEX_DESCRIBE_RECORD(TPoint, X, Y)           // at namespace scope, next to the struct
//   TypeInfo<TPoint>()->Fields[1].Name          // u"Y"
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <vector>

#include "vex/platform/types.h"
#include "vex/platform/variant.h"

namespace vex {

/// The platform's type kinds, with their ordinals.
enum TTypeKind : uint8_t {
  tkUnknown,
  tkInteger,
  tkChar,
  tkEnumeration,
  tkFloat,
  tkString,
  tkSet,
  tkClass,
  tkMethod,
  tkWChar,
  tkLString,
  tkWString,
  tkVariant,
  tkArray,
  tkRecord,
  tkInterface,
  tkInt64,
  tkDynArray,
  tkUString
};

class TRttiType;
/// The type information handed to the typed-variable operations: the description itself.
using PTypeInfo = const TRttiType*;
/// Finds a description on first use; fields and elements keep this instead of the description,
/// so that a record may hold a dynamic array of itself.
using TTypeInfoFunc = PTypeInfo (*)();

/// One field of a record: its name, its type and its byte offset inside the record.
struct TRttiField {
  String Name;
  TTypeInfoFunc TypeFunc = nullptr;
  size_t Offset = 0;

  /// The field's type; nullptr for a field without a type.
  PTypeInfo FieldType() const { return TypeFunc ? TypeFunc() : nullptr; }
};

/// One member of an enumeration: its name and its ordinal (the member's value).
struct TRttiEnumMember {
  String Name;
  int64_t Ordinal = 0;
};

/// A type description. Descriptions are created once, on first use, and live as long as the
/// program; they are safe to read from any thread.
class TRttiType {
 public:
  TTypeKind Kind = tkUnknown;
  String Name;
  /// sizeof the type.
  size_t Size = 0;
  /// tkRecord: the described fields in declaration order.
  std::vector<TRttiField> Fields;
  /// tkArray: the total number of elements.
  size_t ElementCount = 0;
  /// tkEnumeration: the members in declaration order (Boolean: False, True).
  std::vector<TRttiEnumMember> Members;

  /// tkArray and tkDynArray: the element type; nullptr otherwise.
  PTypeInfo ElementType() const { return element_ ? element_() : nullptr; }

  /// The value at Instance as a Variant: integers as integers, enumerations as their ordinal
  /// (Boolean as a Boolean), floats as doubles, strings as strings. Empty for the other kinds.
  Variant GetValue(const void* Instance) const;
  /// Stores Value at Instance, converted to the type (EVariantError when it cannot be); an
  /// enumeration takes an ordinal or a Boolean, and a described enumeration other than Boolean
  /// refuses an ordinal that is none of its members with EConvertError "Invalid enumeration
  /// value in: <ordinal>". Does nothing for kinds GetValue leaves empty.
  void SetValue(void* Instance, const Variant& Value) const;
  /// The ordinal of an enumeration (or any integer) value held in a Variant; a Boolean is 0/1.
  static int64_t OrdinalOf(const Variant& Value);

  /// tkEnumeration: the name of the member with Ordinal, or nullptr when there is none.
  const String* EnumName(int64_t Ordinal) const;
  /// tkEnumeration: the member named Name, ignoring ASCII case, or nullptr.
  const TRttiEnumMember* FindMember(const String& Name) const;

  /// tkDynArray: the number of elements of the array at Instance (0 for other kinds).
  size_t DynArrayLength(const void* Instance) const;
  /// tkDynArray: the first element of the array at Instance; nullptr when it is empty.
  void* DynArrayData(void* Instance) const;
  /// tkDynArray: resizes the array at Instance (new elements are value-initialised).
  void SetDynArrayLength(void* Instance, size_t Length) const;

  // --- filled by the describing templates ---
  TTypeInfoFunc element_ = nullptr;
  Variant (*get_)(const void*) = nullptr;
  void (*set_)(void*, const Variant&) = nullptr;
  size_t (*length_)(const void*) = nullptr;
  void* (*data_)(void*) = nullptr;
  void (*resize_)(void*, size_t) = nullptr;
};

template <class T>
PTypeInfo TypeInfo();

namespace rtti_detail {

/// Descriptions of the built-in and standard types; anything not listed is tkUnknown.
template <class T, class = void>
struct Builtin {
  static PTypeInfo Get() {
    static const TRttiType type = [] {
      TRttiType t;
      t.Size = sizeof(T);
      return t;
    }();
    return &type;
  }
};

TRttiType MakeSimple(TTypeKind kind, const char16_t* name, size_t size, Variant (*get)(const void*),
                     void (*set)(void*, const Variant&));
String ArrayTypeName(size_t count, PTypeInfo element);
String DynArrayTypeName(PTypeInfo element);

template <class T>
Variant GetAs(const void* p) {
  if constexpr (std::is_enum_v<T>) {
    return static_cast<int32_t>(*static_cast<const T*>(p));
  } else {
    return Variant(*static_cast<const T*>(p));
  }
}

template <class T>
void SetAs(void* p, const Variant& v) {
  T& target = *static_cast<T*>(p);
  if constexpr (std::is_same_v<T, bool>) {
    target = TRttiType::OrdinalOf(v) != 0;
  } else if constexpr (std::is_enum_v<T>) {
    target = static_cast<T>(TRttiType::OrdinalOf(v));
  } else if constexpr (std::is_same_v<T, String>) {
    target = v.AsString();
  } else if constexpr (std::is_floating_point_v<T>) {
    target = static_cast<T>(v.AsDouble());
  } else if constexpr (sizeof(T) == 8) {
    target = static_cast<T>(v.AsInt64());
  } else {
    // Narrower integers keep the low bits, as an ordinal store does on the platform.
    target = static_cast<T>(v.AsInt64());
  }
}

template <class T>
PTypeInfo SimpleType(TTypeKind kind, const char16_t* name) {
  static const TRttiType type = MakeSimple(kind, name, sizeof(T), &GetAs<T>, &SetAs<T>);
  return &type;
}

#define VEX_RTTI_SIMPLE(CppType, Kind, PascalName)                               \
  template <>                                                                    \
  struct Builtin<CppType, void> {                                                \
    static PTypeInfo Get() { return SimpleType<CppType>(Kind, u"" PascalName); } \
  };
VEX_RTTI_SIMPLE(int8_t, tkInteger, "ShortInt")
VEX_RTTI_SIMPLE(int16_t, tkInteger, "SmallInt")
VEX_RTTI_SIMPLE(int32_t, tkInteger, "Integer")
VEX_RTTI_SIMPLE(uint8_t, tkInteger, "Byte")
VEX_RTTI_SIMPLE(uint16_t, tkInteger, "Word")
VEX_RTTI_SIMPLE(uint32_t, tkInteger, "Cardinal")
VEX_RTTI_SIMPLE(int64_t, tkInt64, "Int64")
VEX_RTTI_SIMPLE(uint64_t, tkInt64, "UInt64")
VEX_RTTI_SIMPLE(float, tkFloat, "Single")
VEX_RTTI_SIMPLE(double, tkFloat, "Double")
VEX_RTTI_SIMPLE(String, tkUString, "string")
#undef VEX_RTTI_SIMPLE

template <>
struct Builtin<bool, void> {
  static PTypeInfo Get();
};
template <>
struct Builtin<Char, void> {
  static PTypeInfo Get();
};
template <>
struct Builtin<Variant, void> {
  static PTypeInfo Get();
};

/// An enumeration that was not described: its ordinals without names.
template <class E>
struct Builtin<E, std::enable_if_t<std::is_enum_v<E>>> {
  static PTypeInfo Get() { return SimpleType<E>(tkEnumeration, u""); }
};

template <class E>
struct Builtin<Set<E>, void> {
  static PTypeInfo Get() {
    static const TRttiType type = [] {
      TRttiType t;
      t.Kind = tkSet;
      t.Size = sizeof(Set<E>);
      return t;
    }();
    return &type;
  }
};

template <class A, class E, size_t N>
PTypeInfo StaticArrayType() {
  static const TRttiType type = [] {
    TRttiType t;
    t.Kind = tkArray;
    t.Size = sizeof(A);
    t.ElementCount = N;
    t.element_ = &TypeInfo<E>;
    t.Name = ArrayTypeName(N, TypeInfo<E>());
    return t;
  }();
  return &type;
}

template <class E, size_t N>
struct Builtin<E[N], void> {
  static PTypeInfo Get() { return StaticArrayType<E[N], E, N>(); }
};

template <class E, size_t N>
struct Builtin<std::array<E, N>, void> {
  static PTypeInfo Get() { return StaticArrayType<std::array<E, N>, E, N>(); }
};

// std::vector<bool> stores bits, not elements: it stays tkUnknown.
template <class E, class Alloc>
requires(!std::is_same_v<E, bool>) struct Builtin<std::vector<E, Alloc>, void> {
  using V = std::vector<E, Alloc>;
  static PTypeInfo Get() {
    static const TRttiType type = [] {
      TRttiType t;
      t.Kind = tkDynArray;
      t.Size = sizeof(V);
      t.element_ = &TypeInfo<E>;
      t.Name = DynArrayTypeName(TypeInfo<E>());
      t.length_ = [](const void* p) { return static_cast<const V*>(p)->size(); };
      t.data_ = [](void* p) -> void* {
        V& v = *static_cast<V*>(p);
        return v.empty() ? nullptr : static_cast<void*>(v.data());
      };
      t.resize_ = [](void* p, size_t n) { static_cast<V*>(p)->resize(n); };
      return t;
    }();
    return &type;
  }
};

/// Found by argument-dependent lookup: the describing macros define an overload of
/// VexDescribeType for their type in the type's own namespace.
template <class T>
concept Described = requires(T* p) {
  { VexDescribeType(p) } -> std::same_as<PTypeInfo>;
};

template <class T>
TRttiField MakeField(const char16_t* name, size_t offset) {
  return TRttiField{name, &TypeInfo<T>, offset};
}

template <class E>
TRttiEnumMember MakeMember(const char16_t* name, E value) {
  return TRttiEnumMember{name, static_cast<int64_t>(value)};
}

}  // namespace rtti_detail

/// The description of T (cv-qualifiers ignored): a described record or enumeration, a built-in
/// type, a static or dynamic array of those, or a tkUnknown description for anything else.
template <class T>
PTypeInfo TypeInfo() {
  using U = std::remove_cv_t<T>;
  if constexpr (rtti_detail::Described<U>) {
    return VexDescribeType(static_cast<U*>(nullptr));
  } else {
    return rtti_detail::Builtin<U>::Get();
  }
}

}  // namespace vex

// clang-format off
// --- describing macros ----------------------------------------------------------------------
// VEX_FOR_EACH(m, ctx, a, b, ...) expands to m(ctx, a) m(ctx, b) ...; up to 256 arguments.
#define VEX_RTTI_PARENS ()
#define VEX_RTTI_EXPAND(...) \
  VEX_RTTI_EXPAND4(VEX_RTTI_EXPAND4(VEX_RTTI_EXPAND4(VEX_RTTI_EXPAND4(__VA_ARGS__))))
#define VEX_RTTI_EXPAND4(...) \
  VEX_RTTI_EXPAND3(VEX_RTTI_EXPAND3(VEX_RTTI_EXPAND3(VEX_RTTI_EXPAND3(__VA_ARGS__))))
#define VEX_RTTI_EXPAND3(...) \
  VEX_RTTI_EXPAND2(VEX_RTTI_EXPAND2(VEX_RTTI_EXPAND2(VEX_RTTI_EXPAND2(__VA_ARGS__))))
#define VEX_RTTI_EXPAND2(...) __VA_ARGS__
#define VEX_FOR_EACH(macro, ctx, ...) \
  __VA_OPT__(VEX_RTTI_EXPAND(VEX_RTTI_FOR_EACH_STEP(macro, ctx, __VA_ARGS__)))
#define VEX_RTTI_FOR_EACH_STEP(macro, ctx, first, ...) \
  macro(ctx, first) __VA_OPT__(VEX_RTTI_FOR_EACH_AGAIN VEX_RTTI_PARENS(macro, ctx, __VA_ARGS__))
#define VEX_RTTI_FOR_EACH_AGAIN() VEX_RTTI_FOR_EACH_STEP

#define VEX_RTTI_FIELD(Type, Member) \
  ::vex::rtti_detail::MakeField<decltype(Type::Member)>(u"" #Member, offsetof(Type, Member)),
#define VEX_RTTI_MEMBER(Type, Member) ::vex::rtti_detail::MakeMember(u"" #Member, Type::Member),

/// Describes the struct Type as a record with the listed fields (their types must be
/// describable themselves). Write it at namespace scope, in the struct's namespace, after the
/// struct: VEX_DESCRIBE_RECORD(TPoint, X, Y). The type name is the struct's name as written.
#define VEX_DESCRIBE_RECORD(Type, ...)                                       \
  [[maybe_unused]] inline ::vex::PTypeInfo VexDescribeType(Type*) {          \
    _Pragma("GCC diagnostic push")                                           \
    _Pragma("GCC diagnostic ignored \"-Winvalid-offsetof\"")                 \
    static const ::vex::TRttiType type = [] {                                \
      ::vex::TRttiType t;                                                    \
      t.Kind = ::vex::tkRecord;                                              \
      t.Name = u"" #Type;                                                    \
      t.Size = sizeof(Type);                                                 \
      t.Fields = {VEX_FOR_EACH(VEX_RTTI_FIELD, Type, __VA_ARGS__)};          \
      return t;                                                              \
    }();                                                                     \
    _Pragma("GCC diagnostic pop")                                            \
    return &type;                                                            \
  }

/// Describes the enumeration Type (scoped or not) with the listed members, whose names become
/// the value names: VEX_DESCRIBE_ENUM(TShape, shCircle, shSquare). Same placement as above.
#define VEX_DESCRIBE_ENUM(Type, ...)                                                       \
  [[maybe_unused]] inline ::vex::PTypeInfo VexDescribeType(Type*) {                        \
    static const ::vex::TRttiType type = [] {                                              \
      ::vex::TRttiType t = ::vex::rtti_detail::MakeSimple(                                 \
          ::vex::tkEnumeration, u"" #Type, sizeof(Type), &::vex::rtti_detail::GetAs<Type>, \
          &::vex::rtti_detail::SetAs<Type>);                                               \
      t.Members = {VEX_FOR_EACH(VEX_RTTI_MEMBER, Type, __VA_ARGS__)};                      \
      return t;                                                                            \
    }();                                                                                   \
    return &type;                                                                          \
  }
// clang-format on
