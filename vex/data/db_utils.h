// TDBUtils: keeping configuration and data in dataset tables: locate a record by key fields
// (creating it when missing), copy values between records and variables, move blob contents to
// and from streams, keep string settings in a "Section", "Key", "Value" table, dump a table to
// a text file and load it back, and walk every record with a callback.
//
//   TDBUtils::WriteDataAsStringDef(&settings, u"Main\\Width", u"640");
//   TDBUtils::ReadDataToStringDef(&settings, u"Main\\Width");          // -> u"640"
//   TDBUtils::SaveDataSetToFile(u"t.txt", &table, work);              // [Fields] ... [Data] ...
//
// Results: -1 when an operation does not apply, -2 when a record is not found, 1 when found.
// Every walk restores the record position and re-enables controls, also when a callback raises.
#pragma once
#include <cstdint>
#include <vector>

#include "vex/core/base_types.h"
#include "vex/platform/dataset.h"
#include "vex/platform/streams.h"
#include "vex/platform/string_list.h"

namespace vex {

using TVariantDynArray = std::vector<Variant>;

class TDBUtils {
 public:
  // --- Locating records ----------------------------------------------------------------------

  /// Keys := Null; splits KeyValues at "|" (or else "\"), KeyFields at ";"; when the counts
  /// agree Keys becomes an array of the value strings and, with AppendIfMissing, a record not
  /// found is appended with those key values, posted and the dataset refreshed.
  static void PrepareDataSet(TDataSet* DataSet, const String& KeyFields, const String& KeyValues,
                             Variant& Keys, bool AppendIfMissing = false);
  /// Locate with keys built by PrepareDataSet; false when they could not be built.
  static bool PrepareAndLocateInDataSet(TDataSet* DataSet, const String& KeyFields,
                                        const String& KeyValues);
  /// Opens the dataset; empty KeyFields count as found without moving.
  static bool PrepareAndLocateInDataSet(TDataSet* DataSet, const String& KeyFields,
                                        const TVariantDynArray& KeyValues);
  /// The field of the record found by the keys (or of the current record when either key
  /// string is empty); nullptr when the record is not found or the field does not exist.
  static TField* LocateRecordAndFindField(TDataSet* DataSet, const String& KeyFields,
                                          const String& KeyValues, const String& FieldName);
  static TField* LocateRecordAndFindField(TDataSet* DataSet, const String& KeyFields,
                                          const TVariantDynArray& KeyValues,
                                          const String& FieldName);
  /// 0: not a dataset; -1: key field count is 0 or differs from the values; -2: not found;
  /// 1: found. Names are counted only while the position is strictly below the length of
  /// KeyFields, so the last name counts only when a ";" follows it.
  static int32_t BatchLocateRecord(TObject* Obj, const String& KeyFields,
                                   const TVariantDynArray& Values);
  /// Appends the existing field names to KeyFields (";" after each but the last index) and
  /// builds Keys from the values when the count of found names equals their number.
  static int32_t BatchCreateLocateVars(TObject* Obj, const TStringDynArray& FieldNames,
                                       const TStringDynArray& Values, String& KeyFields,
                                       Variant& Keys);
  static int32_t BatchLocateRecordStr(TObject* Obj, const TStringDynArray& FieldNames,
                                      const TStringDynArray& Values);
  /// "Name=Value;Name=Value" located with BatchLocateRecordStr; 0 when the text has no pair.
  static int32_t SplitStrAndLocateRecord(TObject* Obj, const String& S);

  // --- Writing and reading records -----------------------------------------------------------

  static bool AssignValuesInDataSet(TDataSet* DataSet, const String& KeyFields,
                                    const TVariantDynArray& Values, bool CompareOnly);
  static bool SaveObjectToDataSet(TDataSet* DataSet, const String& KeyFields,
                                  const TVariantDynArray& Values, const TDataSetProc& Proc);
  static bool SaveObjectToDataSetEx(TDataSet* DataSet, const String& KeyFields,
                                    const TVariantDynArray& Values, const TDataSetProc& Proc,
                                    bool EditOnly, bool Compare);
  static bool LoadObjectFromDataSet(TDataSet* DataSet, const String& KeyFields,
                                    const TVariantDynArray& Values, const TDataSetProc& Proc);
  static bool LoadSaveObjectInDataSet(TDataSet* DataSet, const String& KeyFields,
                                      const TVariantDynArray& Values, const TDataSetProc& Proc,
                                      bool Load);
  static bool LoadSaveStringInDataSet(TDataSet* DataSet, const String& KeyFields,
                                      const String& ValueField, const TVariantDynArray& Values,
                                      String& Value, bool Load, const TDataSetProc& Proc = nullptr);
  /// The list's text stored in ValueField of the keyed record (created when missing).
  static bool SaveListToDataSet(TDataSet* DataSet, const String& KeyFields,
                                const TVariantDynArray& Values, TStrings& List,
                                const String& ValueField);
  /// The list's text read from ValueField of the keyed record; false (list untouched) when
  /// the record is not found.
  static bool LoadListFromDataSet(TDataSet* DataSet, const String& KeyFields,
                                  const TVariantDynArray& Values, TStrings& List,
                                  const String& ValueField);
  /// Adds FieldName's text of every record whose key fields equal the values (compared as
  /// variants) to List, after clearing it when ClearList; returns the number added, -1 when a
  /// field is missing or the counts differ.
  static int32_t FindRecordsInDataSet(TDataSet* DataSet, const String& KeyFields,
                                      const TVariantDynArray& Values, TStrings& List,
                                      const String& FieldName, bool ClearList);
  static int32_t InitTableData(TDataSet* DataSet, const String& KeyFields, const String& KeyValues,
                               const String& BlobField, int32_t Size, uint8_t Fill);

  // --- Blob contents -------------------------------------------------------------------------

  static int32_t GetBlobDataSize(TField* Field);
  static int32_t ReadBlobData(TField* Field, void* Buffer, int32_t Offset, int32_t Count);
  static int32_t ReadBlobData(TField* Field, TStream* Stream);
  static int32_t ReadBlobData(TDataSet* DataSet, const String& FieldName, TStream* Stream);
  static int32_t WriteBlobData(TField* Field, TStream* Stream, bool AutoPost);
  static int32_t WriteBlobData(TDataSet* DataSet, const String& FieldName, TStream* Stream,
                               bool AutoPost);
  static int32_t WriteBlobData(TField* Field, const TBytes& Bytes, bool AutoPost);
  /// Replaces the blob by Count bytes of Buffer from Position (0-based); -1 for a null buffer
  /// or field, a non-blob field, or a negative position or count. Returns the bytes written.
  static int32_t WriteBlobData(TField* Field, const void* Buffer, int32_t Position, int32_t Count,
                               bool AutoPost);
  static int32_t WriteMemBlobData(TField* Field, TMemoryStream* Stream, bool AutoPost);
  static int32_t ReadWriteBlobData(TField* Field, TStream* Stream, bool Read, bool AutoPost);
  /// The list's text (UTF-8) into or out of a blob field; -1 as ReadWriteBlobData.
  static int32_t WriteListText(TField* Field, TStrings& List, bool AutoPost);
  static int32_t ReadListText(TField* Field, TStrings& List);
  static int32_t WriteListText(TDataSet* DataSet, const String& FieldName, TStrings& List,
                               bool AutoPost);
  static int32_t ReadListText(TDataSet* DataSet, const String& FieldName, TStrings& List);

  // --- Key/value settings table --------------------------------------------------------------

  static bool WriteDataAsString(TDataSet* DataSet, const String& ValueField, const String& Value,
                                const String& KeyFields, const String& KeyValues);
  static bool WriteDataAsStringDef(TDataSet* DataSet, const String& Path, const String& Value);
  static String ReadDataToString(TField* Field, const String& KeyFields, const String& KeyValues,
                                 const String& Default);
  static String ReadDataToString(TDataSet* DataSet, const String& FieldName,
                                 const String& KeyFields, const String& KeyValues,
                                 const String& Default);
  static String ReadDataToStringDef(TDataSet* DataSet, const String& Path);
  static String ReadDataToStringDef(TDataSet* DataSet, const String& Path, const String& Default);
  /// FieldTriple "Key1;Key2;Blob", Path "Section\Key"; -1 unless both split in 3 and 2.
  static int32_t ReadWriteDataToStreamDef(TDataSet* DataSet, TStream* Stream, bool Read,
                                          const String& FieldTriple, const String& Path);

  // --- Whole-table text form -----------------------------------------------------------------

  /// The named fields of the current record as text: "<NULL>", "<BLOB>" or the field's text
  /// (with names: name=token), joined by Separator; nothing is escaped.
  static String GetListFieldsStrVal(TDataSet* DataSet, const TStrings* FieldNames,
                                    const String& Separator, const TRefObjBoolFunc& Filter,
                                    bool WithNames);
  /// The inverse: sets the named fields from the tokens of Text; returns how many were set.
  static int32_t SetListFieldsStrVal(TDataSet* DataSet, const TStrings* FieldNames,
                                     const String& Text, Char Separator);
  static void SaveStringItemsAsIniSection(const TStrings& Source, TStrings& Target,
                                          const String& SectionName, bool NamesFirst);
  /// Unused and Filter are accepted and have no effect.
  static void SaveDataSetInStrings(TDataSet* DataSet, TStrings& List, bool Numbered, Char Separator,
                                   bool Unused, bool WithHeader,
                                   const TRefObjBoolFunc& Filter = nullptr);
  /// The file's lines are written as the records are walked; WorkList ends holding them all,
  /// as SaveDataSetInStrings leaves it.
  static void SaveDataSetToFile(const String& FileName, TDataSet* DataSet, TStrings& WorkList);
  /// As above without a work list: nothing but the current record is held, so a table of any
  /// size is written in constant memory.
  static void SaveDataSetToFile(const String& FileName, TDataSet* DataSet);
  /// Appends the records of a file written by SaveDataSetToFile; existing records are kept.
  /// The file is read line by line (each record is posted as its line is read); WorkList ends
  /// holding the stored lines of the "Data" section, also when a record fails.
  static void LoadDataSetFromFile(const String& FileName, TDataSet* DataSet, TStrings& WorkList);
  /// As above without a work list.
  static void LoadDataSetFromFile(const String& FileName, TDataSet* DataSet);
  static int32_t SaveFieldValuesToList(TDataSet* DataSet, TStrings& List, const String& FieldName);

  // --- Record walks and aggregates -----------------------------------------------------------

  /// Records plus records accepted (counted twice on purpose); -1 for a null field or a blob
  /// when blobs are not allowed.
  static int32_t ProcessFieldValues(TField* Field, const TFieldEnableFunc& Func, bool AllowBlob);
  /// The number of records Func accepts (all of them when Func is null).
  static int32_t ProcessDataSetValues(TDataSet* DataSet, const TDataSetEnableFunc& Func,
                                      bool KeepPosition);
  /// The number of records for which Func(Field, KeyField) is true; -1 when Field is null or
  /// the fields belong to different datasets.
  static int32_t ProcessKeyFieldValues(TField* Field, TField* KeyField,
                                       const TKeyFieldEnableFunc& Func);
  static int32_t ProcessDataSetValuesWithParam(TDataSet* DataSet,
                                               const TDataSetParamEnableFunc& Func, void* Param,
                                               bool KeepPosition);
  /// Adds Func's text of every record to List; returns the number of records.
  static int32_t CollectDataSetValues(TDataSet* DataSet, const TDataSetStringFunc& Func,
                                      TStrings& List);
  /// Appends every record of Source that Func accepts (all when null) to Target, copying the
  /// fields that Target has by name; returns the number copied.
  static int32_t CopyDataSetValues(TDataSet* Source, TDataSet* Target,
                                   const TDataSetEnableFunc& Func = nullptr);
  /// Replaces List by FieldName's text of every record (first field when empty); -1 when the
  /// field does not exist, else the record count.
  static int32_t GetListItemsFast(TDataSet* DataSet, TStrings& List, const String& FieldName);
  /// As GetListItemsFast with lines NameField=ValueField.
  static int32_t GetListItemsFast2(TDataSet* DataSet, TStrings& List, const String& NameField,
                                   const String& ValueField);
  static int32_t GetFloatStatus(TFieldType FieldType);
  static bool GetMaxValueFromDataSet(TDataSet* DataSet, const String& FieldName, double& Max);
};

}  // namespace vex
