#include "vex/companion/obj_props.h"

#include "vex/platform/component.h"
#include "vex/platform/properties.h"

namespace vex {

String GoodObjTypeName(PTypeInfo ATypeInfo, int32_t AIndex) {
  if (ATypeInfo == nullptr || ATypeInfo->Kind != tkEnumeration) return String();
  const String* name = ATypeInfo->EnumName(AIndex);
  return name ? *name : String();
}

int32_t GoodObjTypeIndex(PTypeInfo ATypeInfo, const String& AName, int32_t ADefault) {
  if (ATypeInfo == nullptr || ATypeInfo->Kind != tkEnumeration) return ADefault;
  const TRttiEnumMember* member = ATypeInfo->FindMember(AName);
  return member ? static_cast<int32_t>(member->Ordinal) : ADefault;
}

namespace {

// The published property at APropName of AObject and the persistent that owns it, or null.
const TPropInfo* FindObjProp(TObject* AObject, const String& APropName, TPersistent** AOwner) {
  auto* instance = dynamic_cast<TPersistent*>(AObject);
  if (instance == nullptr || APropName.empty()) return nullptr;
  return FindPropInfo(*instance, APropName, AOwner);
}

bool IsEnumLike(const TPropInfo& prop) {
  return prop.kind == pkEnumeration || prop.kind == pkBoolean;
}

}  // namespace

bool TryGetObjPropValue(TObject* AObject, const String& APropName, Variant& AValue) {
  const TPropInfo* prop = FindObjProp(AObject, APropName, nullptr);
  if (prop == nullptr) return false;
  if (prop->kind == pkPersistent || prop->kind == pkCollection) {
    AValue = Variant();
  } else {
    AValue = GetPropValue(*dynamic_cast<TPersistent*>(AObject), APropName);
  }
  return true;
}

String GoodObjTypeName(TObject* AObject, const String& APropName, int32_t AIndex) {
  const TPropInfo* prop = FindObjProp(AObject, APropName, nullptr);
  if (prop == nullptr || !IsEnumLike(*prop)) return String();
  return EnumName(*prop, AIndex);
}

int32_t GoodObjTypeIndex(TObject* AObject, const String& APropName, const String& AName,
                         int32_t ADefault) {
  const TPropInfo* prop = FindObjProp(AObject, APropName, nullptr);
  if (prop == nullptr || !IsEnumLike(*prop)) return ADefault;
  const int64_t ordinal = EnumValue(*prop, AName);
  return ordinal < 0 ? ADefault : static_cast<int32_t>(ordinal);
}

}  // namespace vex
