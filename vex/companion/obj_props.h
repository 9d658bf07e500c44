// Object-property helpers of the companion package: enumeration values by name and by ordinal.
// The typed-variable text of TRttiUtils writes enumerations by name through them.
//
//   GoodObjTypeName(TypeInfo<bool>(), 1)               // u"True"
//   GoodObjTypeIndex(TypeInfo<bool>(), u"false", -1)   // 0 (names ignore ASCII case)
#pragma once

#include <cstdint>

#include "vex/platform/type_info.h"
#include "vex/platform/types.h"

namespace vex {

/// The name of the member of the enumeration ATypeInfo whose ordinal is AIndex; empty when
/// ATypeInfo is null, not an enumeration, or has no such member.
String GoodObjTypeName(PTypeInfo ATypeInfo, int32_t AIndex);
/// The ordinal of the member of the enumeration ATypeInfo named AName, ignoring ASCII case;
/// ADefault when there is none (or ATypeInfo is null or not an enumeration).
int32_t GoodObjTypeIndex(PTypeInfo ATypeInfo, const String& AName, int32_t ADefault);

}  // namespace vex
