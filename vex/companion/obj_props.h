// Object-property helpers of the companion package: enumeration values by name and by ordinal,
// of described types and of enumeration properties, and published properties of components by
// a possibly dotted name. TRttiUtils reads and writes enumerations and properties through them.
//
//   GoodObjTypeName(TypeInfo<bool>(), 1)               // u"True"
//   GoodObjTypeIndex(TypeInfo<bool>(), u"false", -1)   // 0 (names ignore ASCII case)
//   TryGetObjPropValue(button, u"Font.Name", value)    // true, value == u"Tahoma"
#pragma once

#include <cstdint>

#include "vex/platform/object.h"
#include "vex/platform/type_info.h"
#include "vex/platform/types.h"
#include "vex/platform/variant.h"

namespace vex {

/// The name of the member of the enumeration ATypeInfo whose ordinal is AIndex; empty when
/// ATypeInfo is null, not an enumeration, or has no such member.
String GoodObjTypeName(PTypeInfo ATypeInfo, int32_t AIndex);
/// The ordinal of the member of the enumeration ATypeInfo named AName, ignoring ASCII case;
/// ADefault when there is none (or ATypeInfo is null or not an enumeration).
int32_t GoodObjTypeIndex(PTypeInfo ATypeInfo, const String& AName, int32_t ADefault);

// --- published properties of objects ---------------------------------------------------------
// AObject must be a TPersistent (a TComponent, a nested font, ...); any other object, or null,
// has no published properties. APropName may walk into nested persistents ("Font.Name");
// names compare without case, as the component reader compares them.

/// Whether APropName is a published property of AObject; when it is, AValue receives its value
/// as GetPropValue gives it (integers, Booleans, enumerations by name, sets as names joined by
/// ",", floats, strings, a string list as its text), except that a nested persistent or a
/// collection gives an Empty value. AValue is untouched when the property does not exist.
bool TryGetObjPropValue(TObject* AObject, const String& APropName, Variant& AValue);
/// The name of ordinal AIndex of the enumeration (or Boolean) property APropName of AObject;
/// empty when there is no such property or it is not an enumeration. An ordinal without a
/// member gives its decimal text.
String GoodObjTypeName(TObject* AObject, const String& APropName, int32_t AIndex);
/// The ordinal of the member named AName (any case) of the enumeration (or Boolean) property
/// APropName of AObject; ADefault when there is no such property, member or enumeration.
int32_t GoodObjTypeIndex(TObject* AObject, const String& APropName, const String& AName,
                         int32_t ADefault);

}  // namespace vex
