// TRttiUtils: typed-variable I/O. Any described variable (a simple value, a record, a static or
// dynamic array, nested to any depth) is walked through its type description; every simple
// value is handed to a callback with its path ("Rec.Items[2].Name"), its type name and its
// value. The list operations are such callbacks: a dump into a string list, and a store into
// (or restore from) name=value lines or a TQueryList.
//
//   struct TRec { int32_t A; String S; };
//   VEX_DESCRIBE_RECORD(TRec, A, S)
//   TRttiUtils::WriteVariableToList(TypeInfo<TRec>(), &rec, u"R", list);  // "R.A = 1", "R.S = x"
#pragma once

#include <cstdint>
#include <vector>

#include "vex/core/base_types.h"
#include "vex/platform/type_info.h"
#include "vex/platform/types.h"

namespace vex {

class TStrings;
class TQueryList;

class TRttiUtils {
 public:
  // --- enumerations and kinds ---------------------------------------------------------------

  /// The name of the member of the enumeration AType with ordinal AIndex. An ordinal that is no
  /// member gives its decimal text (so that it reads back through TypeNameToIndex), or raises
  /// EConvertError "Invalid enumeration value in: <ordinal>" when ARaiseError is set.
  static String IndexToTypeName(PTypeInfo AType, int32_t AIndex, bool ARaiseError = false);
  /// The ordinal of the member named AName (ignoring ASCII case) or, failing that, the value of
  /// AName as integer text when that is a member's ordinal (any value for an enumeration
  /// described without members); ADefault otherwise.
  static int32_t TypeNameToIndex(PTypeInfo AType, const String& AName, int32_t ADefault);
  /// The published property APropName of AObject as text (GetPropValue's value through
  /// VarToStr: Booleans "True"/"False", floats as FloatToStr; empty for a nested object), read
  /// through TryGetObjPropValue, so dotted names walk into nested persistents. *AFound tells
  /// whether the property exists. The name "Hash" (exactly so) gives the object's address,
  /// TConvertUtils::PtrToStr(AObject), found, without reading any property.
  static String GetPropStr(TObject* AObject, const String& APropName, bool* AFound = nullptr);
  /// tkInteger, tkEnumeration, tkFloat, tkString, tkLString, tkWString, tkInt64, tkUString.
  static bool IsSimpleKind(TTypeKind AKind);
  /// tkString, tkLString, tkWString, tkUString.
  static bool IsStringKind(TTypeKind AKind);

  // --- the walk -----------------------------------------------------------------------------
  // Names: record fields are joined to their parent's name with "." when ALevel is negative;
  // with ALevel >= 0 a field keeps its own name, the fields of a named record go one level
  // deeper, and every name handed to a callback starts with ALevel tab characters. Array
  // elements append "[i]" (0-based) to the array's name. A dynamic array is walked over the
  // elements it has; characters, sets, variants and unknown types are passed over.
  //
  // AWithStructures: when set, each record, static array and dynamic array that has a name is
  // also handed to the callback, before its parts, with an Empty value (a typed callback gets
  // its address, and may resize a dynamic array there: the walk reads the length afterwards).

  /// Walks AFields of the record at AInstance under the name prefix APrefix.
  static void WriteFields(const void* AInstance, const String& APrefix,
                          const std::vector<TRttiField>& AFields,
                          const TVariableWriteProcTypeNameRef& AProc, int32_t ALevel = -1,
                          bool AWithStructures = false);
  /// Hands every simple value of the variable at AInstance, of type AType, to AProc.
  static void WriteVariableByType(PTypeInfo AType, const void* AInstance, const String& AName,
                                  const TVariableWriteProcTypeNameRef& AProc, int32_t ALevel = -1,
                                  bool AWithStructures = false);
  /// The same walk; AProc may replace each value, which is stored back converted to the value's
  /// type (EVariantError when it cannot be). A value left Empty is not stored.
  static void ReadWriteVariableByType(PTypeInfo AType, void* AInstance, const String& AName,
                                      const TVariantReadWriteProcRef& AProc, int32_t ALevel = -1,
                                      bool AWithStructures = false);
  /// ReadWriteVariableByType with a callback that also gets the type name.
  static void ReadWriteVariableByType(PTypeInfo AType, void* AInstance, const String& AName,
                                      const TVariableReadProcTypeNameRef& AProc,
                                      int32_t ALevel = -1, bool AWithStructures = false);

  // --- entry points -------------------------------------------------------------------------
  // ATypeInfo is the description of the variable's type, TypeInfo<T>(); a null ATypeInfo or
  // AInstance does nothing.

  static void WriteVariable(PTypeInfo ATypeInfo, const void* AInstance, const String& AName,
                            const TVariableWriteProcTypeNameRef& AProc, int32_t ALevel = -1,
                            bool AWithStructures = false);
  static void ReadVariable(PTypeInfo ATypeInfo, void* AInstance, const String& AName,
                           const TVariableReadProcTypeNameRef& AProc, int32_t ALevel = -1,
                           bool AWithStructures = false);
  /// The walk with a callback that gets each value's name, type and address.
  static void ProcessVariable(PTypeInfo ATypeInfo, void* AInstance, const String& AName,
                              const TVariableTypeProcRef& AProc, int32_t ALevel = -1,
                              bool AWithStructures = false);

  // --- lists ----------------------------------------------------------------------------------

  /// Adds one line per simple value to AList, inside one BeginUpdate/EndUpdate: the name (a
  /// full dotted path, or with AIndented its own name after one tab per level), then
  /// ": " + type name when AWithTypeNames, then " = " + the value's text: integers in decimal,
  /// enumerations by name, floats as FloatToStr, strings as they are (unquoted). With AIndented
  /// each named record and array also gets a line of its own (no " = ") above its parts.
  /// Each line's integer tag is the value's TTypeKind ordinal.
  ///
  /// AValueAsTag: integers, Int64 values and enumerations (Boolean too) carry their value as
  /// the line's integer tag instead, and their line ends after the name (and type name); floats
  /// and strings are written as usual, with the kind as tag.
  static void WriteVariableToList(PTypeInfo ATypeInfo, const void* AInstance, const String& AName,
                                  TStrings& AList, bool AWithTypeNames = false,
                                  bool AIndented = false, bool AValueAsTag = false);

  /// Stores every simple value of the variable as name=value under its path in AList (ARead
  /// off), or reads them back into the variable (ARead on). The value text is that of
  /// WriteVariableToList with strings in single quotes; on reading the quotes come off, names
  /// and numbers are converted (EConvertError propagates, leaving the values read before it
  /// set), and a missing entry leaves the value exactly as it was. AIndented takes names as
  /// WriteVariableToList does (tabs, own field names), so only flat paths are unambiguous.
  ///
  /// AWithLengths: the length of each named dynamic array is stored too, under the array's
  /// name ("R.Items=3"), and on reading the array is resized to it before its elements are
  /// read, so a variable can be restored into an empty one. Without it the arrays keep their
  /// length and only their present elements are stored and read. A length that is not integer
  /// text raises EConvertError; one below 0 or above the number of entries in the list raises
  /// EConvertError "Invalid array length in: <text>".
  static void ProcessVariableWithList(PTypeInfo ATypeInfo, void* AInstance, const String& AName,
                                      TStrings& AList, bool AWithLengths = false,
                                      bool AIndented = false, bool ARead = false);
  /// The same over a TQueryList: paths are split at "." into keys (SetValueByPath), so
  /// "R.Items[0].X" is item "R" → item "Items[0]" → line "X=...".
  static void ProcessVariableWithList(PTypeInfo ATypeInfo, void* AInstance, const String& AName,
                                      TQueryList& AList, bool AWithLengths = false,
                                      bool AIndented = false, bool ARead = false);
};

}  // namespace vex
