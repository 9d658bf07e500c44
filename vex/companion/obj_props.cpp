#include "vex/companion/obj_props.h"

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

}  // namespace vex
