// TDBUtils: records as delimited text, and the dataset text file ("[Fields]" then "[Data]").
#include "vex/data/db_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/ini_file.h"
#include "vex/platform/sysutils.h"
#include "vex/text/parse_utils.h"

namespace vex {
namespace {

const String kNullToken = u"<NULL>";
const String kBlobToken = u"<BLOB>";

TField* FieldOfList(TDataSet* data_set, const TStrings& names, int32_t index) {
  // The dataset's own FieldList carries its fields; other lists are looked up by name.
  auto* field = dynamic_cast<TField*>(names.Objects(index));
  if (field != nullptr && field->DataSet() == data_set && field->FieldName() == names[index]) {
    return field;
  }
  return data_set->FindField(names[index]);
}

}  // namespace

String TDBUtils::GetListFieldsStrVal(TDataSet* DataSet, const TStrings* FieldNames,
                                     const String& Separator, const TRefObjBoolFunc& Filter,
                                     bool WithNames) {
  String result;
  if (DataSet == nullptr || FieldNames == nullptr) return result;
  for (int32_t i = 0; i < FieldNames->Count(); ++i) {
    TField* field = FieldOfList(DataSet, *FieldNames, i);
    if (field == nullptr || (Filter && !Filter(field))) continue;
    if (WithNames) result += field->FieldName() + u"=";
    if (field->IsNull()) {
      result += kNullToken;
    } else if (field->IsBlob()) {
      result += kBlobToken;
    } else {
      result += field->AsString();
    }
    result += Separator;
  }
  if (!result.empty()) result.resize(result.size() - Separator.size());
  return result;
}

int32_t TDBUtils::SetListFieldsStrVal(TDataSet* DataSet, const TStrings* FieldNames,
                                      const String& Text, Char Separator) {
  int32_t count = 0;
  if (DataSet == nullptr || FieldNames == nullptr) return count;
  int32_t position = 1;
  int32_t index = 0;
  while (position <= Length(Text) && index < FieldNames->Count()) {
    TField* field = FieldOfList(DataSet, *FieldNames, index);
    if (field == nullptr) {
      ++index;  // a missing field takes no token
      continue;
    }
    int32_t before = position;
    String token = TParseUtils::ExtractParamField(Text, position, Separator);
    if (position <= before) break;  // no progress: the text is used up
    // Deliberately the index stays on a blob field, which thus absorbs every later token.
    if (field->IsBlob() || token == kBlobToken) continue;
    if (token == kNullToken) {
      field->Clear();
    } else {
      field->SetAsString(token);
    }
    ++count;
    ++index;
  }
  return count;
}

void TDBUtils::SaveStringItemsAsIniSection(const TStrings& Source, TStrings& Target,
                                           const String& SectionName, bool NamesFirst) {
  if (!SectionName.empty()) Target.Add(u"[" + SectionName + u"]");
  for (int32_t i = 0; i < Source.Count(); ++i) {
    Target.Add(NamesFirst ? Source[i] + u"=" + IntToStr(i) : IntToStr(i) + u"=" + Source[i]);
  }
}

void TDBUtils::SaveDataSetInStrings(TDataSet* DataSet, TStrings& List, bool Numbered,
                                    Char Separator, bool /*Unused*/, bool WithHeader,
                                    const TRefObjBoolFunc& /*Filter*/) {
  // The filter and the fifth flag are part of the signature and deliberately have no effect.
  if (DataSet == nullptr) return;
  struct Brackets {
    TDataSet& data_set;
    TStrings& list;
    Brackets(TDataSet& d, TStrings& l) : data_set(d), list(l) {
      list.BeginUpdate();
      data_set.DisableControls();
    }
    ~Brackets() {
      data_set.EnableControls();
      list.EndUpdate();
    }
  } brackets(*DataSet, List);
  List.Clear();
  const TStrings& fields = DataSet->FieldList();
  if (WithHeader) SaveStringItemsAsIniSection(fields, List, u"Fields", true);
  DataSet->First();
  if (!DataSet->IsEmpty() && WithHeader) {
    List.Add(String());
    List.Add(u"[Data]");
  }
  const String separator(1, Separator);
  for (int32_t counter = 0; !DataSet->Eof(); ++counter) {
    String prefix = Numbered && WithHeader ? IntToStr(counter) + u"=" : String();
    List.Add(prefix + GetListFieldsStrVal(DataSet, &fields, separator, nullptr, false));
    DataSet->Next();
  }
}

void TDBUtils::SaveDataSetToFile(const String& FileName, TDataSet* DataSet, TStrings& WorkList) {
  SaveDataSetInStrings(DataSet, WorkList, true, u'|', false, true, nullptr);
  WorkList.SaveToFile(FileName);
}

void TDBUtils::LoadDataSetFromFile(const String& FileName, TDataSet* DataSet, TStrings& WorkList) {
  if (DataSet == nullptr) return;
  TStringList field_names;
  {
    TMemIniFile file(FileName);
    file.ReadSection(u"Fields", field_names);
    file.ReadSectionValues(u"Data", WorkList);
  }
  DataSet->Open();
  for (int32_t i = 0; i < WorkList.Count(); ++i) {
    const String& line = WorkList[i];
    size_t equals = line.find(u'=');
    DataSet->Append();
    SetListFieldsStrVal(DataSet, &field_names,
                        equals == String::npos ? String() : line.substr(equals + 1), u'|');
    DataSet->Post();
  }
}

int32_t TDBUtils::SaveFieldValuesToList(TDataSet* DataSet, TStrings& List,
                                        const String& FieldName) {
  if (DataSet == nullptr) return -1;
  DataSet->Open();
  List.BeginUpdate();
  List.Clear();
  List.EndUpdate();
  TField* field = FieldName.empty() ? (DataSet->FieldCount() > 0 ? DataSet->Fields(0) : nullptr)
                                    : DataSet->FindField(FieldName);
  if (field == nullptr) return -1;
  return ProcessFieldValues(
      field,
      [&List](TField* f) {
        List.Add(f->AsString());
        return true;
      },
      true);
}

}  // namespace vex
