// TDBUtils: locating, record values, blobs, settings and record walks.
#include "vex/data/db_utils.h"

#include <algorithm>
#include <limits>

#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"
#include "vex/text/parse_utils.h"

namespace vex {
namespace {

// Brackets a walk: controls off and (optionally) the position kept, both restored however the
// walk ends.
class WalkGuard {
 public:
  WalkGuard(TDataSet& data_set, bool keep_position) : data_set_(data_set) {
    data_set_.DisableControls();
    if (keep_position) bookmark_ = data_set_.GetBookmark();
  }
  ~WalkGuard() {
    data_set_.RestorePosition(bookmark_);
    data_set_.EnableControls();
  }
  WalkGuard(const WalkGuard&) = delete;
  WalkGuard& operator=(const WalkGuard&) = delete;

 private:
  TDataSet& data_set_;
  TBookmark bookmark_;
};

class UpdateGuard {
 public:
  explicit UpdateGuard(TStrings& list) : list_(list) { list_.BeginUpdate(); }
  ~UpdateGuard() { list_.EndUpdate(); }
  UpdateGuard(const UpdateGuard&) = delete;
  UpdateGuard& operator=(const UpdateGuard&) = delete;

 private:
  TStrings& list_;
};

// Walks every record from First; returns how many `accept` approved.
template <class Accept>
int32_t WalkRecords(TDataSet& data_set, bool keep_position, Accept&& accept) {
  WalkGuard guard(data_set, keep_position);
  int32_t count = 0;
  for (data_set.First(); !data_set.Eof(); data_set.Next()) {
    if (accept()) ++count;
  }
  return count;
}

// Every part between the delimiters, empty ones included.
TStringDynArray SplitAll(const String& s, Char delimiter) {
  TStringDynArray parts;
  size_t start = 0;
  while (true) {
    size_t end = s.find(delimiter, start);
    if (end == String::npos) {
      parts.push_back(s.substr(start));
      return parts;
    }
    parts.push_back(s.substr(start, end - start));
    start = end + 1;
  }
}

TStringDynArray SplitKeyValues(const String& values) {
  if (values.find(u'|') != String::npos) return SplitAll(values, u'|');
  if (values.find(u'\\') != String::npos) return SplitAll(values, u'\\');
  if (values.empty()) return {};
  return {values};
}

Variant StringArray(const TStringDynArray& values) {
  std::vector<Variant> items(values.begin(), values.end());
  return Variant(std::move(items));
}

String PathKeys(const String& path) { return StringReplace(path, u"\\", u"|", {rfReplaceAll}); }

}  // namespace

// --- Locating records -----------------------------------------------------------------------

void TDBUtils::PrepareDataSet(TDataSet* DataSet, const String& KeyFields, const String& KeyValues,
                              Variant& Keys, bool AppendIfMissing) {
  Keys = Variant::Null();
  TStringDynArray values = SplitKeyValues(KeyValues);
  TStringDynArray names = SplitAll(KeyFields, u';');
  if (DataSet == nullptr || values.size() != names.size()) return;
  Keys = StringArray(values);
  if (!AppendIfMissing || DataSet->Locate(KeyFields, Keys, {})) return;
  DataSet->Append();
  for (size_t i = 0; i < names.size(); ++i) DataSet->SetFieldValues(names[i], values[i]);
  DataSet->Post();
  DataSet->Refresh();
}

bool TDBUtils::PrepareAndLocateInDataSet(TDataSet* DataSet, const String& KeyFields,
                                         const String& KeyValues) {
  Variant keys;
  PrepareDataSet(DataSet, KeyFields, KeyValues, keys, false);
  if (keys.IsNull()) return false;
  return DataSet->Locate(KeyFields, keys, {});
}

bool TDBUtils::PrepareAndLocateInDataSet(TDataSet* DataSet, const String& KeyFields,
                                         const TVariantDynArray& KeyValues) {
  if (DataSet == nullptr) return false;
  DataSet->Open();
  if (KeyFields.empty()) return true;
  return DataSet->Locate(KeyFields, Variant(KeyValues), {});
}

TField* TDBUtils::LocateRecordAndFindField(TDataSet* DataSet, const String& KeyFields,
                                           const String& KeyValues, const String& FieldName) {
  if (DataSet == nullptr) return nullptr;
  if (!KeyFields.empty() && !KeyValues.empty() &&
      !PrepareAndLocateInDataSet(DataSet, KeyFields, KeyValues)) {
    return nullptr;
  }
  return DataSet->FindField(FieldName);
}

TField* TDBUtils::LocateRecordAndFindField(TDataSet* DataSet, const String& KeyFields,
                                           const TVariantDynArray& KeyValues,
                                           const String& FieldName) {
  if (!PrepareAndLocateInDataSet(DataSet, KeyFields, KeyValues)) return nullptr;
  return DataSet->FindField(FieldName);
}

int32_t TDBUtils::BatchLocateRecord(TObject* Obj, const String& KeyFields,
                                    const TVariantDynArray& Values) {
  auto* data_set = dynamic_cast<TDataSet*>(Obj);
  if (data_set == nullptr) return 0;
  data_set->Open();
  int32_t count = 0;
  const auto length = static_cast<int32_t>(KeyFields.size());
  int32_t position = 1;
  // Deliberately strictly below the length: a name counts only when a ";" follows it, so
  // callers end the list with ";".
  while (position < length) {
    int32_t end = position;
    while (end <= length && KeyFields[end - 1] != u';') ++end;
    String name = Trim(KeyFields.substr(position - 1, end - position));
    bool terminated = end <= length;
    position = terminated ? end + 1 : end;
    if (terminated && !name.empty() && data_set->FindField(name) != nullptr) ++count;
  }
  if (count == 0 || count != static_cast<int32_t>(Values.size())) return -1;
  return data_set->Locate(KeyFields, Variant(Values), {}) ? 1 : -2;
}

int32_t TDBUtils::BatchCreateLocateVars(TObject* Obj, const TStringDynArray& FieldNames,
                                        const TStringDynArray& Values, String& KeyFields,
                                        Variant& Keys) {
  Keys = Variant::Null();
  auto* data_set = dynamic_cast<TDataSet*>(Obj);
  if (data_set == nullptr) return 0;
  data_set->Open();
  int32_t count = 0;
  for (size_t i = 0; i < FieldNames.size(); ++i) {
    if (FieldNames[i].empty() || data_set->FindField(FieldNames[i]) == nullptr) continue;
    ++count;
    KeyFields += FieldNames[i];
    if (i + 1 < FieldNames.size()) KeyFields += u";";
  }
  if (count > 0 && count == static_cast<int32_t>(Values.size())) Keys = StringArray(Values);
  return count;
}

int32_t TDBUtils::BatchLocateRecordStr(TObject* Obj, const TStringDynArray& FieldNames,
                                       const TStringDynArray& Values) {
  String key_fields;
  Variant keys;
  if (BatchCreateLocateVars(Obj, FieldNames, Values, key_fields, keys) < 1) return -1;
  return static_cast<TDataSet*>(Obj)->Locate(key_fields, keys, {}) ? 1 : -2;
}

int32_t TDBUtils::SplitStrAndLocateRecord(TObject* Obj, const String& S) {
  TStringDynArray names, values;
  if (TParseUtils::SplitIntoNamesAndValues(S, names, values, u';') < 1) return 0;
  return BatchLocateRecordStr(Obj, names, values);
}

// --- Writing and reading records ------------------------------------------------------------

bool TDBUtils::AssignValuesInDataSet(TDataSet* DataSet, const String& KeyFields,
                                     const TVariantDynArray& Values, bool CompareOnly) {
  if (DataSet == nullptr) return false;
  DataSet->Open();
  TStringDynArray names = SplitAll(KeyFields, u';');
  if (names.size() != Values.size()) return false;
  for (size_t i = 0; i < names.size(); ++i) {
    TField* field = DataSet->FindField(names[i]);
    if (field == nullptr) return false;
    if (CompareOnly) {
      if (!(field->AsVariant() == Values[i])) return false;
    } else {
      field->SetAsVariant(Values[i]);
    }
  }
  return true;
}

bool TDBUtils::SaveObjectToDataSet(TDataSet* DataSet, const String& KeyFields,
                                   const TVariantDynArray& Values, const TDataSetProc& Proc) {
  if (DataSet == nullptr) return false;
  bool found = PrepareAndLocateInDataSet(DataSet, KeyFields, Values);
  return SaveObjectToDataSetEx(DataSet, KeyFields, Values, Proc, found, false);
}

bool TDBUtils::SaveObjectToDataSetEx(TDataSet* DataSet, const String& KeyFields,
                                     const TVariantDynArray& Values, const TDataSetProc& Proc,
                                     bool EditOnly, bool Compare) {
  if (DataSet == nullptr) return false;
  DataSet->Open();
  EditOnly ? DataSet->Edit() : DataSet->Append();
  bool ok = AssignValuesInDataSet(DataSet, KeyFields, Values, Compare);
  if (!ok) {
    DataSet->Cancel();
    return false;
  }
  if (Proc) Proc(DataSet);
  DataSet->Post();
  return true;
}

bool TDBUtils::LoadObjectFromDataSet(TDataSet* DataSet, const String& KeyFields,
                                     const TVariantDynArray& Values, const TDataSetProc& Proc) {
  bool found = PrepareAndLocateInDataSet(DataSet, KeyFields, Values);
  if (found && Proc) Proc(DataSet);
  return found;
}

bool TDBUtils::LoadSaveObjectInDataSet(TDataSet* DataSet, const String& KeyFields,
                                       const TVariantDynArray& Values, const TDataSetProc& Proc,
                                       bool Load) {
  return Load ? LoadObjectFromDataSet(DataSet, KeyFields, Values, Proc)
              : SaveObjectToDataSet(DataSet, KeyFields, Values, Proc);
}

bool TDBUtils::LoadSaveStringInDataSet(TDataSet* DataSet, const String& KeyFields,
                                       const String& ValueField, const TVariantDynArray& Values,
                                       String& Value, bool Load, const TDataSetProc& Proc) {
  auto record_proc = [&](TDataSet* data_set) {
    TField& field = data_set->FieldByName(ValueField);
    if (Load) {
      Value = field.AsString();
    } else {
      field.SetAsVariant(Variant(Value));
    }
    if (Proc) Proc(data_set);
  };
  return LoadSaveObjectInDataSet(DataSet, KeyFields, Values, record_proc, Load);
}

bool TDBUtils::SaveListToDataSet(TDataSet* DataSet, const String& KeyFields,
                                 const TVariantDynArray& Values, TStrings& List,
                                 const String& ValueField) {
  String text = List.Text();
  return LoadSaveStringInDataSet(DataSet, KeyFields, ValueField, Values, text, false);
}

bool TDBUtils::LoadListFromDataSet(TDataSet* DataSet, const String& KeyFields,
                                   const TVariantDynArray& Values, TStrings& List,
                                   const String& ValueField) {
  String text;
  if (!LoadSaveStringInDataSet(DataSet, KeyFields, ValueField, Values, text, true)) return false;
  List.SetText(text);
  return true;
}

int32_t TDBUtils::FindRecordsInDataSet(TDataSet* DataSet, const String& KeyFields,
                                       const TVariantDynArray& Values, TStrings& List,
                                       const String& FieldName, bool ClearList) {
  if (DataSet == nullptr) return -1;
  DataSet->Open();
  TStringDynArray names = SplitAll(KeyFields, u';');
  std::vector<TField*> keys;
  for (const String& name : names) keys.push_back(DataSet->FindField(name));
  TField* field = DataSet->FindField(FieldName);
  if (field == nullptr || names.size() != Values.size() ||
      std::find(keys.begin(), keys.end(), nullptr) != keys.end()) {
    return -1;
  }
  UpdateGuard update(List);
  if (ClearList) List.Clear();
  return WalkRecords(*DataSet, true, [&] {
    for (size_t i = 0; i < keys.size(); ++i) {
      if (!(keys[i]->AsVariant() == Values[i])) return false;
    }
    List.Add(field->AsString());
    return true;
  });
}

int32_t TDBUtils::InitTableData(TDataSet* DataSet, const String& KeyFields, const String& KeyValues,
                                const String& BlobField, int32_t Size, uint8_t Fill) {
  TField* field = LocateRecordAndFindField(DataSet, KeyFields, KeyValues, BlobField);
  if (field == nullptr) return -1;
  int32_t present = GetBlobDataSize(field);
  if (present < 1 && Size >= 1) return WriteBlobData(field, TBytes(Size, Fill), true);
  return present;
}

// --- Blob contents --------------------------------------------------------------------------

int32_t TDBUtils::GetBlobDataSize(TField* Field) {
  if (Field == nullptr || !Field->IsBlob() || Field->IsNull()) return -1;
  auto stream = Field->DataSet()->CreateBlobStream(Field, bmRead);
  return static_cast<int32_t>(stream->Size());
}

int32_t TDBUtils::ReadBlobData(TField* Field, void* Buffer, int32_t Offset, int32_t Count) {
  if (Buffer == nullptr || Field == nullptr || !Field->IsBlob()) return -1;
  auto stream = Field->DataSet()->CreateBlobStream(Field, bmRead);
  int64_t size = stream->Size();
  int64_t count = Count == -1 ? size - Offset : Count;
  if (count <= 0 || Offset < 0 || Offset + count > size) return -1;
  stream->SetPosition(Offset);
  stream->ReadBuffer(Buffer, count);
  return static_cast<int32_t>(count);
}

int32_t TDBUtils::ReadBlobData(TField* Field, TStream* Stream) {
  return ReadWriteBlobData(Field, Stream, true, true);
}

int32_t TDBUtils::ReadBlobData(TDataSet* DataSet, const String& FieldName, TStream* Stream) {
  return ReadWriteBlobData(DataSet != nullptr ? DataSet->FindField(FieldName) : nullptr, Stream,
                           true, true);
}

int32_t TDBUtils::WriteBlobData(TField* Field, TStream* Stream, bool AutoPost) {
  return ReadWriteBlobData(Field, Stream, false, AutoPost);
}

int32_t TDBUtils::WriteBlobData(TDataSet* DataSet, const String& FieldName, TStream* Stream,
                                bool AutoPost) {
  return ReadWriteBlobData(DataSet != nullptr ? DataSet->FindField(FieldName) : nullptr, Stream,
                           false, AutoPost);
}

int32_t TDBUtils::WriteBlobData(TField* Field, const TBytes& Bytes, bool AutoPost) {
  if (Bytes.empty()) return 0;
  return WriteBlobData(Field, Bytes.data(), 0, static_cast<int32_t>(Bytes.size()), AutoPost);
}

int32_t TDBUtils::WriteBlobData(TField* Field, const void* Buffer, int32_t Position, int32_t Count,
                                bool AutoPost) {
  if (Buffer == nullptr || Position < 0 || Count < 0) return -1;
  TMemoryStream source;
  source.WriteBuffer(static_cast<const uint8_t*>(Buffer) + Position, Count);
  return ReadWriteBlobData(Field, &source, false, AutoPost);
}

int32_t TDBUtils::WriteMemBlobData(TField* Field, TMemoryStream* Stream, bool AutoPost) {
  if (Stream == nullptr) return -1;
  return WriteBlobData(Field, Stream->Memory(), 0, static_cast<int32_t>(Stream->Size()), AutoPost);
}

int32_t TDBUtils::ReadWriteBlobData(TField* Field, TStream* Stream, bool Read, bool AutoPost) {
  if (Stream == nullptr || Field == nullptr || !Field->IsBlob()) return -1;
  TDataSet* data_set = Field->DataSet();
  int64_t copied = 0;
  if (Read) {
    auto blob = data_set->CreateBlobStream(Field, bmRead);
    if (blob->Size() > 0) copied = Stream->CopyFrom(*blob, blob->Size());
    return static_cast<int32_t>(copied);
  }
  if (AutoPost && (data_set->State() == dsEdit || data_set->State() == dsInsert)) {
    data_set->Post();
  }
  data_set->Edit();
  {
    auto blob = data_set->CreateBlobStream(Field, bmWrite);
    Stream->SetPosition(0);
    if (Stream->Size() > 0) copied = blob->CopyFrom(*Stream, Stream->Size());
  }
  if (AutoPost) data_set->Post();
  return static_cast<int32_t>(copied);
}

int32_t TDBUtils::WriteListText(TField* Field, TStrings& List, bool AutoPost) {
  TMemoryStream stream;
  List.SaveToStream(stream);
  return WriteBlobData(Field, &stream, AutoPost);
}

int32_t TDBUtils::ReadListText(TField* Field, TStrings& List) {
  TMemoryStream stream;
  int32_t count = ReadBlobData(Field, &stream);
  if (count < 0) return count;
  stream.SetPosition(0);
  List.LoadFromStream(stream);
  return count;
}

int32_t TDBUtils::WriteListText(TDataSet* DataSet, const String& FieldName, TStrings& List,
                                bool AutoPost) {
  return WriteListText(DataSet != nullptr ? DataSet->FindField(FieldName) : nullptr, List,
                       AutoPost);
}

int32_t TDBUtils::ReadListText(TDataSet* DataSet, const String& FieldName, TStrings& List) {
  return ReadListText(DataSet != nullptr ? DataSet->FindField(FieldName) : nullptr, List);
}

// --- Key/value settings table ---------------------------------------------------------------

bool TDBUtils::WriteDataAsString(TDataSet* DataSet, const String& ValueField, const String& Value,
                                 const String& KeyFields, const String& KeyValues) {
  TField* field = DataSet != nullptr ? DataSet->FindField(ValueField) : nullptr;
  if (field == nullptr) return false;
  bool positioned = !DataSet->IsEmpty();
  if (!KeyValues.empty()) {
    Variant keys;
    PrepareDataSet(DataSet, KeyFields, KeyValues, keys, true);
    positioned = !keys.IsNull() && DataSet->Locate(KeyFields, keys, {});
  }
  if (!positioned) return false;
  DataSet->Edit();
  field->SetAsString(Value);
  DataSet->Post();
  return true;
}

bool TDBUtils::WriteDataAsStringDef(TDataSet* DataSet, const String& Path, const String& Value) {
  if (DataSet == nullptr || !DataSet->Active()) return false;
  if (Path.empty()) return WriteDataAsString(DataSet, u"Value", Value, String(), String());
  return WriteDataAsString(DataSet, u"Value", Value, u"Section;Key", PathKeys(Path));
}

String TDBUtils::ReadDataToString(TField* Field, const String& KeyFields, const String& KeyValues,
                                  const String& Default) {
  if (Field == nullptr) return Default;
  if (!KeyFields.empty() && !PrepareAndLocateInDataSet(Field->DataSet(), KeyFields, KeyValues)) {
    return Default;
  }
  return Field->AsString();
}

String TDBUtils::ReadDataToString(TDataSet* DataSet, const String& FieldName,
                                  const String& KeyFields, const String& KeyValues,
                                  const String& Default) {
  TField* field = DataSet != nullptr ? DataSet->FindField(FieldName) : nullptr;
  if (field == nullptr) return Default;
  return ReadDataToString(field, KeyFields, KeyValues, Default);
}

String TDBUtils::ReadDataToStringDef(TDataSet* DataSet, const String& Path) {
  return ReadDataToStringDef(DataSet, Path, String());
}

String TDBUtils::ReadDataToStringDef(TDataSet* DataSet, const String& Path, const String& Default) {
  if (DataSet == nullptr || !DataSet->Active()) return Default;
  if (Path.empty()) return ReadDataToString(DataSet, u"Value", String(), String(), Default);
  return ReadDataToString(DataSet, u"Value", u"Section;Key", PathKeys(Path), Default);
}

int32_t TDBUtils::ReadWriteDataToStreamDef(TDataSet* DataSet, TStream* Stream, bool Read,
                                           const String& FieldTriple, const String& Path) {
  TStringDynArray names = SplitAll(FieldTriple, u';');
  TStringDynArray parts = SplitAll(PathKeys(Path), u'|');
  if (DataSet == nullptr || names.size() != 3 || parts.size() != 2) return -1;
  DataSet->Open();
  TField* field = LocateRecordAndFindField(DataSet, names[0] + u";" + names[1],
                                           parts[0] + u"|" + parts[1], names[2]);
  return ReadWriteBlobData(field, Stream, Read, true);
}

// --- Record walks and aggregates ------------------------------------------------------------

int32_t TDBUtils::ProcessFieldValues(TField* Field, const TFieldEnableFunc& Func, bool AllowBlob) {
  if (Field == nullptr || (Field->IsBlob() && !AllowBlob)) return -1;
  // Records plus accepted records, deliberately: every record counts once after Next whatever
  // Func says, and once more when Func accepts it.
  int32_t records = 0;
  int32_t accepted = WalkRecords(*Field->DataSet(), true, [&] {
    ++records;
    return Func && Func(Field);
  });
  return records + accepted;
}

int32_t TDBUtils::ProcessDataSetValues(TDataSet* DataSet, const TDataSetEnableFunc& Func,
                                       bool KeepPosition) {
  if (DataSet == nullptr) return 0;
  DataSet->Open();
  return WalkRecords(*DataSet, KeepPosition, [&] { return !Func || Func(DataSet); });
}

int32_t TDBUtils::ProcessKeyFieldValues(TField* Field, TField* KeyField,
                                        const TKeyFieldEnableFunc& Func) {
  if (Field == nullptr || (KeyField != nullptr && KeyField->DataSet() != Field->DataSet())) {
    return -1;
  }
  TDataSet* data_set = Field->DataSet();
  data_set->Open();
  return WalkRecords(*data_set, true, [&] { return !Func || Func(Field, KeyField); });
}

int32_t TDBUtils::ProcessDataSetValuesWithParam(TDataSet* DataSet,
                                                const TDataSetParamEnableFunc& Func, void* Param,
                                                bool KeepPosition) {
  if (DataSet == nullptr) return 0;
  DataSet->Open();
  return WalkRecords(*DataSet, KeepPosition, [&] { return !Func || Func(DataSet, Param); });
}

int32_t TDBUtils::CollectDataSetValues(TDataSet* DataSet, const TDataSetStringFunc& Func,
                                       TStrings& List) {
  if (DataSet == nullptr || !Func) return -1;
  DataSet->Open();
  UpdateGuard update(List);
  return WalkRecords(*DataSet, true, [&] {
    List.Add(Func(DataSet));
    return true;
  });
}

int32_t TDBUtils::CopyDataSetValues(TDataSet* Source, TDataSet* Target,
                                    const TDataSetEnableFunc& Func) {
  if (Source == nullptr || Target == nullptr || Source == Target) return -1;
  Source->Open();
  Target->Open();
  std::vector<std::pair<TField*, TField*>> pairs;
  for (int32_t i = 0; i < Target->FieldCount(); ++i) {
    TField* to = Target->Fields(i);
    TField* from = Source->FindField(to->FieldName());
    if (from != nullptr && to->DataType() != ftAutoInc) pairs.emplace_back(from, to);
  }
  WalkGuard target_guard(*Target, false);
  return WalkRecords(*Source, true, [&] {
    if (Func && !Func(Source)) return false;
    Target->Append();
    for (auto [from, to] : pairs) {
      if (from->IsBlob() && to->IsBlob()) {
        to->SetAsBytes(from->AsBytes());
      } else {
        to->SetAsVariant(from->AsVariant());
      }
    }
    Target->Post();
    return true;
  });
}

int32_t TDBUtils::GetListItemsFast(TDataSet* DataSet, TStrings& List, const String& FieldName) {
  return GetListItemsFast2(DataSet, List, FieldName, String());
}

int32_t TDBUtils::GetListItemsFast2(TDataSet* DataSet, TStrings& List, const String& NameField,
                                    const String& ValueField) {
  if (DataSet == nullptr) return -1;
  DataSet->Open();
  TField* name = NameField.empty() && DataSet->FieldCount() > 0 ? DataSet->Fields(0)
                                                                : DataSet->FindField(NameField);
  TField* value = ValueField.empty() ? nullptr : DataSet->FindField(ValueField);
  if (name == nullptr || (!ValueField.empty() && value == nullptr)) return -1;
  UpdateGuard update(List);
  List.Clear();
  return WalkRecords(*DataSet, true, [&] {
    List.Add(value == nullptr ? name->AsString()
                              : name->AsString() + List.NameValueSeparator() + value->AsString());
    return true;
  });
}

int32_t TDBUtils::GetFloatStatus(TFieldType FieldType) {
  switch (FieldType) {
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftLargeint:
    case ftLongWord:
    case ftShortint:
    case ftByte:
      return 0;
    case ftFloat:
    case ftCurrency:
    case ftExtended:
    case ftSingle:
      return 1;
    default:
      return -1;
  }
}

bool TDBUtils::GetMaxValueFromDataSet(TDataSet* DataSet, const String& FieldName, double& Max) {
  TField* field = DataSet != nullptr ? DataSet->FindField(FieldName) : nullptr;
  if (field == nullptr) return false;
  int32_t status = GetFloatStatus(field->DataType());
  if (status < 0) return false;
  // Deliberately two above the smallest 32-bit integer, as the original starting value.
  int32_t int_max = -2147483646;
  double float_max = std::numeric_limits<double>::lowest();
  ProcessDataSetValues(
      DataSet,
      [&](TDataSet*) {
        if (field->IsNull()) return true;
        if (status == 1) {
          float_max = std::max(float_max, field->AsFloat());
        } else {
          int_max = std::max(int_max, field->AsInteger());
        }
        return true;
      },
      true);
  Max = status == 1 ? float_max : static_cast<double>(int_max);
  return true;
}

}  // namespace vex
