// TDataSet: the cursor, edit states, bookmarks, Locate and blob streams over a list of records
// whose values are held or fetched from the descendant.
#include "vex/platform/dataset.h"

#include <cstring>

#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

// A memory stream that hands its bytes to a blob field when it is freed.
class TBlobWriteStream : public TMemoryStream {
 public:
  explicit TBlobWriteStream(TField* field) : field_(field) {}
  ~TBlobWriteStream() override {
    // A record posted or cancelled while the stream was open keeps what it had.
    TDataSetState state = field_->DataSet()->State();
    if (state != dsEdit && state != dsInsert) return;
    field_->SetAsBytes(TBytes(Memory(), Memory() + Size()));
  }

 private:
  TField* field_;
};

TStringDynArray SplitFieldNames(const String& names) {
  TStringDynArray result;
  size_t start = 0;
  while (start <= names.size()) {
    size_t end = names.find(u';', start);
    if (end == String::npos) end = names.size();
    String name = Trim(names.substr(start, end - start));
    if (!name.empty()) result.push_back(name);
    start = end + 1;
  }
  return result;
}

}  // namespace

void DatabaseError(const String& message) { throw EDatabaseError(message); }

TDataSet::TDataSet() = default;
TDataSet::~TDataSet() = default;

void TDataSet::Open() {
  if (Active()) return;
  fields_.clear();
  field_list_.Clear();
  ClearRecords();
  InternalOpen();
  state_ = dsBrowse;
  SetCursor(records_.empty() ? -1 : 0);
}

void TDataSet::Close() {
  if (!Active()) return;
  state_ = dsInactive;
  InternalClose();
  field_list_.Clear();
  fields_.clear();
  ClearRecords();
  current_ = -1;
  eof_ = bof_ = true;
}

void TDataSet::CheckActive() const {
  if (!Active()) DatabaseError(u"Cannot perform this operation on a closed dataset");
}

void TDataSet::CheckBrowseMode() {
  CheckActive();
  if (state_ == dsEdit || state_ == dsInsert) Post();
}

void TDataSet::SetCursor(int32_t index) {
  current_ = index;
  bof_ = true;
  eof_ = index < 0;
}

void TDataSet::First() {
  CheckBrowseMode();
  SetCursor(records_.empty() ? -1 : 0);
}

void TDataSet::Last() {
  CheckBrowseMode();
  current_ = static_cast<int32_t>(records_.size()) - 1;
  eof_ = true;
  bof_ = current_ < 0;
}

void TDataSet::Next() {
  CheckBrowseMode();
  if (eof_) return;
  if (current_ + 1 < static_cast<int32_t>(records_.size())) {
    ++current_;
    bof_ = false;
  } else {
    eof_ = true;
  }
}

void TDataSet::Prior() {
  CheckBrowseMode();
  if (bof_) return;
  if (current_ > 0) {
    --current_;
    eof_ = false;
  } else {
    bof_ = true;
  }
}

int32_t TDataSet::MoveBy(int32_t distance) {
  int32_t moved = 0;
  for (; distance > 0 && !eof_; --distance) {
    int32_t before = current_;
    Next();
    if (current_ != before) ++moved;
  }
  for (; distance < 0 && !bof_; ++distance) {
    int32_t before = current_;
    Prior();
    if (current_ != before) --moved;
  }
  return moved;
}

int32_t TDataSet::RecordCount() const {
  CheckActive();
  return static_cast<int32_t>(records_.size());
}

bool TDataSet::IsEmpty() const { return !Active() || (records_.empty() && state_ != dsInsert); }

int32_t TDataSet::RecNo() const {
  if (!Active() || state_ == dsInsert || current_ < 0) return 0;
  return current_ + 1;
}

int32_t TDataSet::IndexOfId(int64_t id) const {
  for (size_t i = 0; i < records_.size(); ++i) {
    if (records_[i].id == id) return static_cast<int32_t>(i);
  }
  return -1;
}

TBookmark TDataSet::GetBookmark() const {
  if (!Active() || current_ < 0 || state_ == dsInsert) return {};
  TBookmark bookmark(sizeof(int64_t));
  std::memcpy(bookmark.data(), &records_[current_].id, sizeof(int64_t));
  return bookmark;
}

bool TDataSet::BookmarkValid(const TBookmark& bookmark) const {
  if (!Active() || bookmark.size() != sizeof(int64_t)) return false;
  int64_t id = 0;
  std::memcpy(&id, bookmark.data(), sizeof(int64_t));
  return IndexOfId(id) >= 0;
}

void TDataSet::GotoBookmark(const TBookmark& bookmark) {
  CheckBrowseMode();
  if (!BookmarkValid(bookmark)) DatabaseError(u"Record not found");
  int64_t id = 0;
  std::memcpy(&id, bookmark.data(), sizeof(int64_t));
  current_ = IndexOfId(id);
  eof_ = bof_ = false;
}

void TDataSet::RestorePosition(const TBookmark& bookmark) noexcept {
  if (state_ != dsBrowse || !BookmarkValid(bookmark)) return;
  int64_t id = 0;
  std::memcpy(&id, bookmark.data(), sizeof(int64_t));
  current_ = IndexOfId(id);
  eof_ = bof_ = false;
}

bool TDataSet::RecordMatches(const Record& record, const std::vector<TField*>& fields,
                             const std::vector<Variant>& keys, TLocateOptions options) const {
  for (size_t i = 0; i < fields.size(); ++i) {
    const Variant& value = RecordValues(record)[fields[i]->Index()];
    const Variant& key = keys[i];
    if (key.IsNull() || value.IsNull()) {
      if (key.IsNull() != value.IsNull()) return false;
      continue;
    }
    if (key.VarType() == varUString && value.VarType() == varUString && !options.Empty()) {
      String a = value.AsString(), b = key.AsString();
      if (options.Contains(loPartialKey) && a.size() > b.size()) a.resize(b.size());
      if (options.Contains(loCaseInsensitive) ? !AnsiSameText(a, b) : a != b) return false;
    } else if (!(value == key)) {
      return false;
    }
  }
  return true;
}

bool TDataSet::Locate(const String& key_fields, const Variant& key_values, TLocateOptions options) {
  CheckBrowseMode();
  std::vector<TField*> fields;
  for (const String& name : SplitFieldNames(key_fields)) fields.push_back(&FieldByName(name));
  if (fields.empty()) return false;
  std::vector<Variant> raw;
  if (key_values.IsArray()) {
    for (size_t i = 0; i < key_values.ArrayLength(); ++i) raw.push_back(key_values[i]);
  } else {
    raw.push_back(key_values);
  }
  if (raw.size() != fields.size()) return false;
  std::vector<Variant> keys;
  for (size_t i = 0; i < fields.size(); ++i) {
    try {
      keys.push_back(TField::ConvertValue(fields[i]->DataType(), raw[i]));
    } catch (const Exception&) {
      return false;  // a key that cannot be a value of its field matches nothing
    }
  }
  int32_t found = InternalLocate(fields, keys, options);
  if (found == -2) {
    found = -1;
    for (size_t i = 0; i < records_.size() && found < 0; ++i) {
      if (RecordMatches(records_[i], fields, keys, options)) found = static_cast<int32_t>(i);
    }
  }
  if (found < 0) return false;
  current_ = found;
  eof_ = bof_ = false;
  return true;
}

void TDataSet::StartEdit(TDataSetState state, bool append) {
  saved_current_ = current_;
  append_ = append;
  state_ = state;
}

void TDataSet::Append() {
  CheckBrowseMode();
  buffer_ = Record{};
  buffer_.values.assign(fields_.size(), Variant::Null());
  StartEdit(dsInsert, true);
}

void TDataSet::Insert() {
  CheckBrowseMode();
  buffer_ = Record{};
  buffer_.values.assign(fields_.size(), Variant::Null());
  StartEdit(dsInsert, current_ < 0);
}

void TDataSet::Edit() {
  CheckActive();
  if (state_ == dsEdit || state_ == dsInsert) return;
  if (records_.empty()) {
    Insert();
    return;
  }
  if (current_ < 0) current_ = 0;
  const Record& record = records_[current_];
  buffer_ = Record{record.id, record.key, RecordValues(record)};
  StartEdit(dsEdit, false);
}

void TDataSet::Post() {
  CheckActive();
  if (state_ == dsBrowse) return;
  InternalPost(buffer_, state_ == dsInsert);
  if (state_ == dsInsert) {
    buffer_.id = next_id_++;
    int32_t at = append_ ? static_cast<int32_t>(records_.size()) : saved_current_;
    records_.insert(records_.begin() + at, std::move(buffer_));
    current_ = at;
  } else {
    records_[current_] = std::move(buffer_);
  }
  ForgetFetchedValues();
  buffer_ = Record{};
  state_ = dsBrowse;
  eof_ = bof_ = false;
  if (AfterPost) AfterPost(this);
}

void TDataSet::Cancel() {
  if (state_ != dsEdit && state_ != dsInsert) return;
  buffer_ = Record{};
  state_ = dsBrowse;
  current_ = saved_current_;
  bof_ = current_ <= 0;
  eof_ = current_ < 0;
}

void TDataSet::Delete() {
  CheckActive();
  if (state_ == dsInsert) {
    Cancel();
    return;
  }
  if (state_ == dsEdit) Cancel();
  if (records_.empty() || current_ < 0)
    DatabaseError(u"Cannot perform this operation on an empty dataset");
  InternalDelete(records_[current_]);
  records_.erase(records_.begin() + current_);
  if (current_ >= static_cast<int32_t>(records_.size()))
    current_ = static_cast<int32_t>(records_.size()) - 1;
  eof_ = records_.empty();
  bof_ = current_ <= 0;
}

void TDataSet::Refresh() {
  CheckBrowseMode();
  TBookmark bookmark = GetBookmark();
  int64_t key = current_ >= 0 ? records_[current_].key : 0;
  InternalRefresh();
  // Records reloaded by the descendant get fresh identities; find the old one by its key.
  int32_t index = -1;
  for (size_t i = 0; i < records_.size() && index < 0; ++i) {
    if (records_[i].key == key) index = static_cast<int32_t>(i);
  }
  if (BookmarkValid(bookmark)) {
    RestorePosition(bookmark);
  } else {
    SetCursor(index >= 0 ? index : (records_.empty() ? -1 : 0));
    if (index >= 0) bof_ = false;
  }
}

TField& TDataSet::AddField(const String& name, TFieldType type) {
  fields_.push_back(std::make_unique<TField>(this, name, type, FieldCount()));
  field_list_.AddObject(name, fields_.back().get());
  return *fields_.back();
}

void TDataSet::AddRecord(int64_t key, std::vector<Variant> values) {
  // Empty values are left to FetchValues.
  if (!values.empty()) values.resize(fields_.size(), Variant::Null());
  records_.push_back(Record{next_id_++, key, std::move(values)});
}

TField* TDataSet::FindField(const String& field_name) const {
  // Exact spelling first: it is the usual case and far cheaper than the case-insensitive test.
  for (const auto& field : fields_) {
    if (field->FieldName() == field_name) return field.get();
  }
  for (const auto& field : fields_) {
    if (AnsiSameText(field->FieldName(), field_name)) return field.get();
  }
  return nullptr;
}

TField& TDataSet::FieldByName(const String& field_name) const {
  TField* field = FindField(field_name);
  if (field == nullptr) DatabaseError(u"Field '" + field_name + u"' not found");
  return *field;
}

TField* TDataSet::Fields(int32_t index) const {
  if (index < 0 || index >= FieldCount()) {
    RaiseListIndexError(index);
  }
  return fields_[index].get();
}

Variant TDataSet::FieldValues(const String& field_name) const {
  TStringDynArray names = SplitFieldNames(field_name);
  if (names.size() == 1) return FieldByName(names[0]).AsVariant();
  std::vector<Variant> values;
  for (const String& name : names) values.push_back(FieldByName(name).AsVariant());
  return Variant(std::move(values));
}

void TDataSet::SetFieldValues(const String& field_name, const Variant& value) {
  FieldByName(field_name).SetAsVariant(value);
}

std::unique_ptr<TStream> TDataSet::CreateBlobStream(TField* field, TBlobStreamMode mode) {
  if (field == nullptr || !field->IsBlob()) DatabaseError(u"Field is not a blob field");
  if (mode == bmRead) {
    auto stream = std::make_unique<TMemoryStream>();
    TBytes bytes = field->AsBytes();
    if (!bytes.empty()) stream->WriteBuffer(bytes.data(), static_cast<int64_t>(bytes.size()));
    stream->SetPosition(0);
    return stream;
  }
  if (state_ != dsEdit && state_ != dsInsert) DatabaseError(u"Dataset not in edit or insert mode");
  auto stream = std::make_unique<TBlobWriteStream>(field);
  if (mode == bmReadWrite) {
    TBytes bytes = field->AsBytes();
    if (!bytes.empty()) stream->WriteBuffer(bytes.data(), static_cast<int64_t>(bytes.size()));
    stream->SetPosition(0);
  }
  return stream;
}

const Variant& TDataSet::GetFieldData(int32_t index) const {
  static const Variant kNull = Variant::Null();
  if (state_ == dsEdit || state_ == dsInsert) return buffer_.values[index];
  const Record* record = BrowsedRecord();
  return record == nullptr ? kNull : RecordValues(*record)[index];
}

const TDataSet::Record* TDataSet::BrowsedRecord() const {
  if (state_ != dsBrowse || current_ < 0 || current_ >= static_cast<int32_t>(records_.size())) {
    return nullptr;
  }
  return &records_[current_];
}

void TDataSet::FetchValues(const Record& /*record*/, std::vector<Variant>& values) const {
  values.assign(fields_.size(), Variant::Null());
}

const std::vector<Variant>& TDataSet::RecordValues(const Record& record) const {
  if (!record.values.empty() || fields_.empty()) return record.values;
  if (fetched_id_ != record.id) {
    fetched_id_ = 0;  // a fetch that raises leaves nothing half-filled behind
    FetchValues(record, fetched_);
    fetched_.resize(fields_.size(), Variant::Null());
    fetched_id_ = record.id;
  }
  return fetched_;
}

bool TDataSet::AppendFieldUtf8(int32_t index, std::string& utf8) const {
  const TField& field = *fields_[static_cast<size_t>(index)];
  if (field.IsNull()) return false;
  utf8 += ToUtf8(field.AsString(), TInvalidText::Replace);
  return true;
}

void TDataSet::SetFieldData(int32_t index, Variant value) {
  if (state_ != dsEdit && state_ != dsInsert) DatabaseError(u"Dataset not in edit or insert mode");
  buffer_.values[index] = std::move(value);
}

}  // namespace vex
