#include "vex/platform/type_info.h"

#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"

namespace vex {

Variant TRttiType::GetValue(const void* Instance) const {
  return get_ ? get_(Instance) : Variant();
}

void TRttiType::SetValue(void* Instance, const Variant& Value) const {
  if (set_ == nullptr) return;
  // A C++ enumeration may not hold just any number, so a described one takes its members only.
  if (Kind == tkEnumeration && !Members.empty() && this != TypeInfo<bool>()) {
    const int64_t ordinal = OrdinalOf(Value);
    if (EnumName(ordinal) == nullptr) {
      throw EConvertError(u"Invalid enumeration value in: " + IntToStr(ordinal));
    }
  }
  set_(Instance, Value);
}

int64_t TRttiType::OrdinalOf(const Variant& Value) {
  if (Value.VarType() == varBoolean) return Value.AsBoolean() ? 1 : 0;
  return Value.AsInt64();
}

const String* TRttiType::EnumName(int64_t Ordinal) const {
  for (const TRttiEnumMember& m : Members) {
    if (m.Ordinal == Ordinal) return &m.Name;
  }
  return nullptr;
}

const TRttiEnumMember* TRttiType::FindMember(const String& Name) const {
  for (const TRttiEnumMember& m : Members) {
    if (SameText(m.Name, Name)) return &m;
  }
  return nullptr;
}

size_t TRttiType::DynArrayLength(const void* Instance) const {
  return length_ ? length_(Instance) : 0;
}

void* TRttiType::DynArrayData(void* Instance) const { return data_ ? data_(Instance) : nullptr; }

void TRttiType::SetDynArrayLength(void* Instance, size_t Length) const {
  if (resize_) resize_(Instance, Length);
}

namespace rtti_detail {

TRttiType MakeSimple(TTypeKind kind, const char16_t* name, size_t size, Variant (*get)(const void*),
                     void (*set)(void*, const Variant&)) {
  TRttiType t;
  t.Kind = kind;
  t.Name = name;
  t.Size = size;
  t.get_ = get;
  t.set_ = set;
  return t;
}

String ArrayTypeName(size_t count, PTypeInfo element) {
  return u"array[0.." + IntToStr(static_cast<int64_t>(count) - 1) + u"] of " + element->Name;
}

String DynArrayTypeName(PTypeInfo element) { return u"TArray<" + element->Name + u">"; }

PTypeInfo Builtin<bool, void>::Get() {
  static const TRttiType type = [] {
    TRttiType t = MakeSimple(tkEnumeration, u"Boolean", sizeof(bool), &GetAs<bool>, &SetAs<bool>);
    t.Members = {{u"False", 0}, {u"True", 1}};
    return t;
  }();
  return &type;
}

// Kinds the walk passes over are described by kind and name only.
PTypeInfo Builtin<Char, void>::Get() {
  static const TRttiType type = MakeSimple(tkWChar, u"Char", sizeof(Char), nullptr, nullptr);
  return &type;
}

PTypeInfo Builtin<Variant, void>::Get() {
  static const TRttiType type =
      MakeSimple(tkVariant, u"Variant", sizeof(Variant), nullptr, nullptr);
  return &type;
}

}  // namespace rtti_detail
}  // namespace vex
