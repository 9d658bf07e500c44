// TDBUtils: records as delimited text, and the dataset text file ("[Fields]" then "[Data]").
// The file is written record by record as the walk goes, and read line by line as it is loaded.
#include <algorithm>
#include <charconv>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vex/data/db_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/ini_file.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"
#include "vex/text/parse_utils.h"

namespace vex {
namespace {

const String kNullToken = u"<NULL>";
const String kBlobToken = u"<BLOB>";
// The same tokens as the file's UTF-8.
constexpr std::string_view kNullUtf8 = "<NULL>";
constexpr std::string_view kBlobUtf8 = "<BLOB>";

TField* FieldOfList(TDataSet* data_set, const TStrings& names, int32_t index) {
  // The dataset's own FieldList carries its fields; other lists are looked up by name.
  auto* field = dynamic_cast<TField*>(names.Objects(index));
  if (field != nullptr && field->DataSet() == data_set && field->FieldName() == names[index]) {
    return field;
  }
  return data_set->FindField(names[index]);
}

// FieldOfList for every name of the list.
std::vector<TField*> FieldsOfList(TDataSet* data_set, const TStrings& names) {
  std::vector<TField*> fields(static_cast<size_t>(names.Count()));
  for (int32_t i = 0; i < names.Count(); ++i) fields[i] = FieldOfList(data_set, names, i);
  return fields;
}

// SetListFieldsStrVal over fields already found (nullptr for a name without a field).
int32_t SetFieldTexts(const std::vector<TField*>& fields, const String& text, Char separator) {
  int32_t count = 0;
  int32_t position = 1;
  size_t index = 0;
  while (position <= Length(text) && index < fields.size()) {
    TField* field = fields[index];
    if (field == nullptr) {
      ++index;  // a missing field takes no token
      continue;
    }
    int32_t before = position;
    String token = TParseUtils::ExtractParamField(text, position, separator);
    if (position <= before) break;  // no progress: the text is used up
    // Deliberately the index stays on a blob field, which thus absorbs every later token.
    if (field->IsBlob() || token == kBlobToken) continue;
    if (token == kNullToken) {
      field->Clear();
    } else {
      field->SetAsString(std::move(token));
    }
    ++count;
    ++index;
  }
  return count;
}

// Disables the dataset's controls and holds the list's updates for the length of a walk.
class TextWalkGuard {
 public:
  TextWalkGuard(TDataSet& data_set, TStrings& list) : data_set_(data_set), list_(list) {
    list_.BeginUpdate();
    data_set_.DisableControls();
  }
  ~TextWalkGuard() {
    data_set_.EnableControls();
    list_.EndUpdate();
  }
  TextWalkGuard(const TextWalkGuard&) = delete;
  TextWalkGuard& operator=(const TextWalkGuard&) = delete;

 private:
  TDataSet& data_set_;
  TStrings& list_;
};

// The lines of SaveDataSetInStrings: the "Fields" section, then from First to Eof one line per
// record made by `record_line` (counter from 0), each handed to `add`.
template <class RecordLine, class AddLine>
void WalkDataSetText(TDataSet& data_set, TStrings& list, bool with_header, RecordLine&& record_line,
                     AddLine&& add) {
  TextWalkGuard guard(data_set, list);
  list.Clear();
  const TStrings& fields = data_set.FieldList();
  if (with_header) {
    TStringList header;
    TDBUtils::SaveStringItemsAsIniSection(fields, header, u"Fields", true);
    for (int32_t i = 0; i < header.Count(); ++i) add(header[i]);
  }
  data_set.First();
  if (!data_set.IsEmpty() && with_header) {
    add(String());
    add(u"[Data]");
  }
  for (int32_t counter = 0; !data_set.Eof(); ++counter) {
    record_line(counter);
    data_set.Next();
  }
}

bool IsAscii(std::string_view text) {
  for (char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

// Without the bytes up to a blank at both ends, as Trim does to the same text as a String.
std::string_view TrimAscii(std::string_view text) {
  while (!text.empty() && static_cast<unsigned char>(text.front()) <= ' ') text.remove_prefix(1);
  while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') text.remove_suffix(1);
  return text;
}

// Lines written to a stream as UTF-8 through a buffer, separated as TStrings::SaveToStream
// separates them.
class LineWriter {
 public:
  LineWriter(TStream& stream, const TStrings& layout)
      : stream_(stream),
        line_break_(ToUtf8(layout.LineBreak(), TInvalidText::Replace)),
        trailing_(layout.TrailingLineBreak()) {
    if (layout.WriteBOM()) buffer_ = "\xEF\xBB\xBF";
  }
  void Add(std::string_view line) {
    if (lines_++ > 0) buffer_ += line_break_;
    buffer_ += line;
    if (buffer_.size() >= kFlushSize) Flush();
  }
  void Finish() {
    if (trailing_ && lines_ > 0) buffer_ += line_break_;
    Flush();
  }

 private:
  static constexpr size_t kFlushSize = 1 << 20;
  void Flush() {
    stream_.WriteBuffer(buffer_.data(), static_cast<int64_t>(buffer_.size()));
    buffer_.clear();
  }
  TStream& stream_;
  std::string line_break_;
  bool trailing_;
  std::string buffer_;
  int64_t lines_ = 0;
};

// One record as a UTF-8 line of the text file: the line GetListFieldsStrVal makes, each field
// converted on its own (the "|" between fields keeps that equal to converting the whole line).
class RecordLineBuilder {
 public:
  explicit RecordLineBuilder(TDataSet& data_set) : data_set_(data_set) {
    const TStrings& names = data_set.FieldList();
    for (int32_t i = 0; i < names.Count(); ++i) {
      fields_.push_back(FieldOfList(&data_set, names, i));
    }
  }
  void Build(int32_t counter) {
    counter_ = counter;
    utf8_.clear();
    char digits[16];
    utf8_.append(digits, std::to_chars(digits, digits + sizeof digits, counter).ptr);
    utf8_ += '=';
    bool first = true;
    for (TField* field : fields_) {
      if (field == nullptr) continue;  // as GetListFieldsStrVal: no text, no separator
      if (!first) utf8_ += '|';
      first = false;
      if (field->IsBlob()) {
        utf8_ += field->IsNull() ? kNullUtf8 : kBlobUtf8;
      } else if (!field->AppendUtf8(utf8_)) {
        utf8_ += kNullUtf8;
      }
    }
  }
  const std::string& Utf8() const { return utf8_; }
  /// The line as GetListFieldsStrVal makes it (the work list's copy).
  String Wide() const {
    if (IsAscii(utf8_)) return String(utf8_.begin(), utf8_.end());
    // Not rebuilt from the UTF-8 text, which cannot carry a lone surrogate.
    return IntToStr(counter_) + u"=" +
           TDBUtils::GetListFieldsStrVal(&data_set_, &data_set_.FieldList(), u"|", nullptr, false);
  }

 private:
  TDataSet& data_set_;
  std::vector<TField*> fields_;
  std::string utf8_;
  int32_t counter_ = 0;
};

// The lines of a UTF-8 text file, read a block at a time and split at every CR and every LF: a
// CR LF pair gives an extra empty line, which the section file rules skip anyway.
class Utf8LineReader {
 public:
  explicit Utf8LineReader(TStream& stream) : stream_(stream) {}
  /// The first bytes, without consuming them.
  std::string_view Peek(size_t count) {
    Fill();
    return std::string_view(buffer_).substr(position_, count);
  }
  void Skip(size_t count) { position_ += count; }
  bool Next(std::string_view& line) {
    while (true) {
      size_t end = LineEnd();
      if (end != std::string::npos || eof_) {
        if (end == std::string::npos) {
          if (position_ >= buffer_.size()) return false;
          end = buffer_.size();
        }
        line = std::string_view(buffer_).substr(position_, end - position_);
        position_ = end + 1;
        return true;
      }
      Fill();
    }
  }

 private:
  static constexpr size_t kBlock = 1 << 20;
  // The first CR or LF from position_, or npos.
  size_t LineEnd() const {
    for (size_t i = position_; i < buffer_.size(); ++i) {
      if (buffer_[i] == '\n' || buffer_[i] == '\r') return i;
    }
    return std::string::npos;
  }
  void Fill() {
    if (eof_) return;
    buffer_.erase(0, position_);
    position_ = 0;
    // A small file gets a small buffer.
    int64_t left = stream_.Size() - stream_.Position();
    size_t block = left < static_cast<int64_t>(kBlock)
                       ? static_cast<size_t>(std::max<int64_t>(left, 0)) + 1
                       : kBlock;
    size_t size = buffer_.size();
    buffer_.resize(size + block);
    auto read =
        static_cast<size_t>(stream_.Read(buffer_.data() + size, static_cast<int64_t>(block)));
    buffer_.resize(size + read);
    eof_ = read == 0;
  }
  TStream& stream_;
  std::string buffer_;
  size_t position_ = 0;
  bool eof_ = false;
};

// What LoadDataSetFromFile does once the file's "Fields" names and "Data" values are known.
class RecordLoader {
 public:
  RecordLoader(TDataSet& data_set, TStrings& field_names)
      : data_set_(data_set), field_names_(field_names) {}
  void Open() {
    data_set_.Open();
    // Fields found once instead of at every record (the lookup is the same by name).
    fields_ = FieldsOfList(&data_set_, field_names_);
  }
  void Add(const String& values) {
    data_set_.Append();
    SetFieldTexts(fields_, values, u'|');
    data_set_.Post();
  }

 private:
  TDataSet& data_set_;
  TStrings& field_names_;
  std::vector<TField*> fields_;
};

// The file read whole as a section file, for the files the line reader leaves to it.
void LoadFromSectionFile(const String& file_name, TDataSet& data_set, TStrings& lines) {
  TStringList field_names;
  {
    TMemIniFile file(file_name);
    file.ReadSection(u"Fields", field_names);
    file.ReadSectionValues(u"Data", lines);
  }
  RecordLoader loader(data_set, field_names);
  loader.Open();
  for (int32_t i = 0; i < lines.Count(); ++i) {
    // The part of a stored line after its first "=" holds the values.
    size_t equals = lines[i].find(u'=');
    loader.Add(equals == String::npos ? String() : lines[i].substr(equals + 1));
  }
}

// Reads the file line by line with the section file's rules (trimmed lines, ";" comments and
// blank lines skipped, the first section of each name counts), loading each record as its line
// comes. False, with nothing loaded, for a file it leaves to LoadFromSectionFile: UTF-16, or
// records before the field names.
bool LoadFromLines(const String& file_name, TDataSet& data_set, TStrings* data_lines) {
  TFileStream file(file_name, fmOpenRead | fmShareDenyWrite);
  Utf8LineReader reader(file);
  std::string_view start = reader.Peek(3);
  if (start.substr(0, 2) == "\xFF\xFE" || start.substr(0, 2) == "\xFE\xFF") return false;
  if (start == "\xEF\xBB\xBF") reader.Skip(3);
  TStringList names;  // compares section names as the section file does
  names.Add(u"Fields");
  names.Add(u"Data");
  TStringList field_names;
  RecordLoader loader(data_set, field_names);
  enum { kNone, kFields, kData, kOther } section = kNone;
  bool fields_seen = false, data_seen = false;
  std::exception_ptr failure;
  std::string_view bytes;
  String line, values;
  while (reader.Next(bytes)) {
    // ASCII lines are trimmed and split as bytes, and only the parts needed become Strings.
    const bool ascii = IsAscii(bytes);
    if (ascii) {
      bytes = TrimAscii(bytes);
      if (bytes.empty() || bytes[0] == ';') continue;
      if (section == kData && data_lines == nullptr && bytes[0] != '[') {
        size_t equals = bytes.find('=');
        values.clear();
        if (equals != std::string_view::npos) {
          std::string_view part = TrimAscii(bytes.substr(equals + 1));
          values.assign(part.begin(), part.end());
        }
        loader.Add(values);
        continue;
      }
      line.assign(bytes.begin(), bytes.end());
    } else {
      line = Trim(FromUtf8(bytes, TInvalidText::Replace));
      if (line.empty() || line[0] == u';') continue;
    }
    if (line[0] == u'[' && line.back() == u']' && line.size() >= 2) {
      int32_t name = names.IndexOf(Trim(line.substr(1, line.size() - 2)));
      section = kOther;
      if (name == 0 && !fields_seen) {
        section = kFields;
        fields_seen = true;
      } else if (name == 1 && !data_seen) {
        if (!fields_seen) return false;
        section = kData;
        data_seen = true;
        loader.Open();
      }
      continue;
    }
    size_t equals = line.find(u'=');
    if (section == kFields) {
      field_names.Add(equals == String::npos ? String() : Trim(line.substr(0, equals)));
    } else if (section == kData) {
      values = equals == String::npos ? String() : Trim(line.substr(equals + 1));
      if (data_lines != nullptr) {
        data_lines->Add(equals == String::npos ? line
                                               : Trim(line.substr(0, equals)) + u"=" + values);
      }
      if (failure) continue;
      try {
        loader.Add(values);
      } catch (...) {
        // The work list still receives the whole section, as if it had been read first.
        if (data_lines == nullptr) throw;
        failure = std::current_exception();
      }
    }
  }
  if (failure) std::rethrow_exception(failure);
  if (!data_seen) loader.Open();
  return true;
}

// SaveDataSetToFile with every line written to the file as it is made, so the text is never held
// whole; `work_list`, when given, also receives every line, as SaveDataSetInStrings fills it.
void WriteDataSetFile(const String& file_name, TDataSet& data_set, TStrings* work_list) {
  TStringList defaults;
  TStrings& list = work_list != nullptr ? *work_list : defaults;
  std::unique_ptr<TFileStream> file;
  std::unique_ptr<LineWriter> writer;
  std::vector<String> header;
  // The file is replaced only once First has succeeded, at the first record or at the end.
  auto open = [&] {
    if (writer) return;
    file = std::make_unique<TFileStream>(file_name, fmCreate);
    writer = std::make_unique<LineWriter>(*file, list);
    for (const String& line : header) writer->Add(ToUtf8(line, TInvalidText::Replace));
  };
  auto add = [&](const String& line) {
    if (work_list != nullptr) work_list->Add(line);
    header.push_back(line);
  };
  RecordLineBuilder builder(data_set);
  WalkDataSetText(
      data_set, list, true,
      [&](int32_t counter) {
        open();
        builder.Build(counter);
        writer->Add(builder.Utf8());
        if (work_list != nullptr) work_list->Add(builder.Wide());
      },
      add);
  open();
  writer->Finish();
}

// LoadDataSetFromFile: read line by line where it can, else as a whole section file.
// `work_list`, when given, receives the stored lines of the "Data" section.
void ReadDataSetFile(const String& file_name, TDataSet& data_set, TStrings* work_list) {
  TStringList lines;
  TStrings& data_lines = work_list != nullptr ? *work_list : lines;
  data_lines.Clear();
  if (!std::filesystem::is_regular_file(ToUtf8(file_name, TInvalidText::Replace)) ||
      !LoadFromLines(file_name, data_set, work_list)) {
    LoadFromSectionFile(file_name, data_set, data_lines);
  }
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
  if (DataSet == nullptr || FieldNames == nullptr) return 0;
  return SetFieldTexts(FieldsOfList(DataSet, *FieldNames), Text, Separator);
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
  const String separator(1, Separator);
  auto add = [&List](const String& line) { List.Add(line); };
  WalkDataSetText(
      *DataSet, List, WithHeader,
      [&](int32_t counter) {
        String prefix = Numbered && WithHeader ? IntToStr(counter) + u"=" : String();
        List.Add(prefix +
                 GetListFieldsStrVal(DataSet, &DataSet->FieldList(), separator, nullptr, false));
      },
      add);
}

void TDBUtils::SaveDataSetToFile(const String& FileName, TDataSet* DataSet, TStrings& WorkList) {
  auto* list = dynamic_cast<TStringList*>(&WorkList);
  if (DataSet == nullptr || list == nullptr || list->Sorted()) {
    // A list that orders or filters its lines decides what is saved: build it, then save it.
    SaveDataSetInStrings(DataSet, WorkList, true, u'|', false, true, nullptr);
    WorkList.SaveToFile(FileName);
    return;
  }
  WriteDataSetFile(FileName, *DataSet, list);
}

void TDBUtils::SaveDataSetToFile(const String& FileName, TDataSet* DataSet) {
  if (DataSet != nullptr) WriteDataSetFile(FileName, *DataSet, nullptr);
}

void TDBUtils::LoadDataSetFromFile(const String& FileName, TDataSet* DataSet, TStrings& WorkList) {
  if (DataSet != nullptr) ReadDataSetFile(FileName, *DataSet, &WorkList);
}

void TDBUtils::LoadDataSetFromFile(const String& FileName, TDataSet* DataSet) {
  if (DataSet != nullptr) ReadDataSetFile(FileName, *DataSet, nullptr);
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
