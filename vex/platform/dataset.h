// Datasets: a table seen one record at a time through a cursor, with fields that read and write
// the current record. TDataSet keeps the list of records of an open table and runs the cursor,
// the edit states and the bookmarks; a descendant says where the records come from and where
// posted changes go (TMemDataSet keeps them, TSQLiteDataSet reads and writes a database file and
// may leave the values of a record to be fetched when they are read).
//
//   ds.Open();
//   if (ds.Locate(u"Section;Key", VarArrayOf({u"Main", u"Width"}), {})) {
//     ds.Edit(); ds.FieldByName(u"Value").SetAsString(u"640"); ds.Post();
//   }
#pragma once
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "vex/platform/memory.h"
#include "vex/platform/object.h"
#include "vex/platform/streams.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"
#include "vex/platform/variant.h"

namespace vex {

/// Field data types, named and ordered as the platform's data-access layer has them.
enum TFieldType : uint8_t {
  ftUnknown,
  ftString,
  ftSmallint,
  ftInteger,
  ftWord,
  ftBoolean,
  ftFloat,
  ftCurrency,
  ftBCD,
  ftDate,
  ftTime,
  ftDateTime,
  ftBytes,
  ftVarBytes,
  ftAutoInc,
  ftBlob,
  ftMemo,
  ftGraphic,
  ftFmtMemo,
  ftParadoxOle,
  ftDBaseOle,
  ftTypedBinary,
  ftCursor,
  ftFixedChar,
  ftWideString,
  ftLargeint,
  ftADT,
  ftArray,
  ftReference,
  ftDataSet,
  ftOraBlob,
  ftOraClob,
  ftVariant,
  ftInterface,
  ftIDispatch,
  ftGuid,
  ftTimeStamp,
  ftFMTBcd,
  ftFixedWideChar,
  ftWideMemo,
  ftOraTimeStamp,
  ftOraInterval,
  ftLongWord,
  ftShortint,
  ftByte,
  ftExtended,
  ftConnection,
  ftParams,
  ftStream,
  ftTimeStampOffset,
  ftObject,
  ftSingle
};

enum TDataSetState : uint8_t { dsInactive, dsBrowse, dsEdit, dsInsert };
enum TLocateOption : uint8_t { loCaseInsensitive, loPartialKey };
using TLocateOptions = Set<TLocateOption>;
enum TBlobStreamMode : uint8_t { bmRead, bmWrite, bmReadWrite };
/// A record's identity; an empty bookmark names no record.
using TBookmark = TBytes;

/// True for the types whose values live in blob streams (binary and memo types).
bool IsBlobFieldType(TFieldType type);
/// The platform's name of a field type ("ftInteger", ...).
String FieldTypeName(TFieldType type);

class TDataSet;

/// One column of a dataset, reading and writing the dataset's current record.
class TField : public TObject {
 public:
  TField(TDataSet* data_set, String field_name, TFieldType data_type, int32_t index);

  const String& FieldName() const { return field_name_; }
  TFieldType DataType() const { return data_type_; }
  TDataSet* DataSet() const { return data_set_; }
  /// Position of the field in the dataset's field order (from 0).
  int32_t Index() const { return index_; }

  bool IsNull() const;
  bool IsBlob() const { return IsBlobFieldType(data_type_); }

  /// The value as text: numbers by IntToStr/FloatToStr, Booleans "True"/"False", dates by
  /// DateTimeToStr, blob bytes decoded as UTF-8; "" for null.
  String AsString() const;
  /// Converts the text by the field's type; text that does not convert raises EConvertError.
  /// An empty text clears every field that is not a string field.
  void SetAsString(const String& value);
  void SetAsString(String&& value);
  /// Appends AsString as UTF-8 to `utf8` and returns true; for null appends nothing and returns
  /// false. Faster than AsString where the dataset can read the stored text directly.
  bool AppendUtf8(std::string& utf8) const;
  /// Null reads as 0 / false.
  int32_t AsInteger() const;
  void SetAsInteger(int32_t value);
  int64_t AsLargeInt() const;
  void SetAsLargeInt(int64_t value);
  double AsFloat() const;
  void SetAsFloat(double value);
  bool AsBoolean() const;
  void SetAsBoolean(bool value);
  /// The value with the variant kind of the field's type, or Null. Blobs give their bytes as a
  /// string of one character per byte.
  Variant AsVariant() const;
  /// Converts to the field's type; Null or Empty clears the field. A value that does not
  /// convert raises EConvertError (strings) or EVariantError.
  void SetAsVariant(const Variant& value);
  Variant Value() const { return AsVariant(); }
  void SetValue(const Variant& value) { SetAsVariant(value); }
  /// Sets the field to null.
  void Clear();

  /// The blob's bytes (empty for null); EDatabaseError for a field that is not a blob.
  TBytes AsBytes() const;
  void SetAsBytes(const TBytes& value);

  /// Converts a value to the stored kind of `type`: what SetAsVariant stores. Null stays Null.
  static Variant ConvertValue(TFieldType type, const Variant& value);

 private:
  TDataSet* data_set_;
  String field_name_;
  TFieldType data_type_;
  int32_t index_;
};

/// A table with a cursor. Inactive until Open; the fields exist while it is open.
class TDataSet : public TObject {
 public:
  TDataSet();
  ~TDataSet() override;
  TDataSet(const TDataSet&) = delete;
  TDataSet& operator=(const TDataSet&) = delete;

  // --- Opening ---------------------------------------------------------------------------
  /// Opens the table and moves to its first record; nothing happens when it is open.
  void Open();
  /// Drops a pending edit or insert and closes; the fields go away.
  void Close();
  bool Active() const { return state_ != dsInactive; }
  void SetActive(bool value) { value ? Open() : Close(); }
  TDataSetState State() const { return state_; }

  // --- Moving ----------------------------------------------------------------------------
  /// Each move first posts a pending edit or insert.
  void First();
  void Next();
  void Prior();
  void Last();
  /// Moves by `distance` records (Next or Prior repeated); returns the distance moved.
  int32_t MoveBy(int32_t distance);
  /// True after a move past the last record (or on an empty table).
  bool Eof() const { return eof_; }
  /// True at the first record after First, or after a move before it.
  bool Bof() const { return bof_; }
  int32_t RecordCount() const;
  bool IsEmpty() const;
  /// Position of the current record from 1; 0 when there is none (or while inserting).
  int32_t RecNo() const;

  TBookmark GetBookmark() const;
  /// Raises EDatabaseError "Record not found" when the bookmark names no record.
  void GotoBookmark(const TBookmark& bookmark);
  void FreeBookmark(TBookmark& bookmark) { bookmark.clear(); }
  bool BookmarkValid(const TBookmark& bookmark) const;
  /// Goes back to `bookmark` when it is valid and nothing is pending; never raises, so that
  /// guards can call it while an exception unwinds.
  void RestorePosition(const TBookmark& bookmark) noexcept;

  /// Counted: EnableControls must be called as often as DisableControls.
  void DisableControls() { ++controls_disabled_; }
  void EnableControls() {
    if (controls_disabled_ > 0) --controls_disabled_;
  }
  bool ControlsDisabled() const { return controls_disabled_ > 0; }

  /// Moves to the first record whose fields named in `key_fields` (separated by ";") equal
  /// `key_values`: a single value for one field, else an array of values in the same order (a
  /// one-element array also serves one field). A key value is converted to its field's type
  /// before comparing; one that does not convert matches nothing. Options widen string
  /// comparison to case-insensitive or prefix. The position is kept when nothing matches.
  /// An unknown field name raises EDatabaseError.
  bool Locate(const String& key_fields, const Variant& key_values, TLocateOptions options);

  // --- Changing --------------------------------------------------------------------------
  /// Starts a new record that Post adds at the end.
  void Append();
  /// Starts a new record that Post puts before the current one.
  void Insert();
  /// Starts changing the current record (on an empty table: Insert).
  void Edit();
  /// Stores the pending edit or insert; the stored record becomes current.
  void Post();
  /// Drops the pending edit or insert.
  void Cancel();
  /// Removes the current record; the next one (or else the new last one) becomes current.
  void Delete();
  /// Reloads the records from where they come from, keeping the current record when it still
  /// exists.
  void Refresh();

  // --- Fields ----------------------------------------------------------------------------
  /// The field of that name (compared case-insensitively) or nullptr.
  TField* FindField(const String& field_name) const;
  /// As FindField; raises EDatabaseError "Field 'X' not found" when there is none.
  TField& FieldByName(const String& field_name) const;
  TField* Fields(int32_t index) const;
  int32_t FieldCount() const { return static_cast<int32_t>(fields_.size()); }
  /// The field names in order, each with its field attached.
  const TStringList& FieldList() const { return field_list_; }
  /// Read: the field's AsVariant. Several fields separated by ";" give an array of values.
  Variant FieldValues(const String& field_name) const;
  void SetFieldValues(const String& field_name, const Variant& value);

  /// A stream over a blob field of the current record. Read mode starts with the content; write
  /// mode starts empty and stores what was written into the field when the stream is freed
  /// (the dataset must be in edit or insert state). EDatabaseError for a non-blob field.
  std::unique_ptr<TStream> CreateBlobStream(TField* field, TBlobStreamMode mode);

  /// Called after every successful Post (for progress display and the like).
  std::function<void(TDataSet* DataSet)> AfterPost;

  // --- For fields and descendants --------------------------------------------------------
  /// The stored value of a field of the current record (Null when there is none).
  const Variant& GetFieldData(int32_t index) const;
  /// Sets a value of the pending edit or insert; EDatabaseError "Dataset not in edit or insert
  /// mode" otherwise. `value` must already have the field's stored kind.
  void SetFieldData(int32_t index, Variant value);
  /// What TField::AppendUtf8 does for field `index` of the current record. A descendant that
  /// fetches records may override it to skip building variants; the text must stay the same.
  virtual bool AppendFieldUtf8(int32_t index, std::string& utf8) const;

 protected:
  /// One stored record. `key` belongs to the descendant (a SQLite rowid); `id` is the record's
  /// identity for bookmarks. A descendant may leave `values` empty: they are then fetched through
  /// FetchValues whenever they are read.
  struct Record {
    int64_t id = 0;
    int64_t key = 0;
    std::vector<Variant> values;
  };
  /// The records in table order; a table of a million records fills its block quickly.
  using RecordList = std::vector<Record, LargeBlockAllocator<Record>>;

  /// Defines the fields (AddField) and loads the records (AddRecord).
  virtual void InternalOpen() = 0;
  virtual void InternalClose() {}
  /// Stores a posted record before it enters the table; may change it (keys, automatic
  /// values). Raising leaves the dataset in its edit or insert state.
  virtual void InternalPost(Record& record, bool inserted) = 0;
  /// Removes a record from storage before it leaves the table.
  virtual void InternalDelete(Record& record) = 0;
  /// Reloads every record (AddRecord after ClearRecords); by default nothing changes.
  virtual void InternalRefresh() {}
  /// A descendant's quick search: the index of the first matching record, -1 for none, or -2
  /// to let the dataset compare record by record. Keys are already converted.
  virtual int32_t InternalLocate(const std::vector<TField*>& /*fields*/,
                                 const std::vector<Variant>& /*keys*/, TLocateOptions /*options*/) {
    return -2;
  }

  /// Fills `values` (one per field) for a record whose values are not held; by default nulls.
  virtual void FetchValues(const Record& record, std::vector<Variant>& values) const;
  /// The values of a record: held or fetched. A fetched result stays valid until the next call.
  const std::vector<Variant>& RecordValues(const Record& record) const;
  /// The current record while browsing (nullptr when there is none, or while editing).
  const Record* BrowsedRecord() const;
  /// Drops the last fetched values, for a descendant whose stored values changed.
  void ForgetFetchedValues() const { fetched_id_ = 0; }

  TField& AddField(const String& name, TFieldType type);
  void AddRecord(int64_t key, std::vector<Variant> values);
  void ReserveRecords(size_t count) { records_.reserve(count); }
  void ClearRecords() {
    records_.clear();
    ForgetFetchedValues();
  }
  RecordList& Records() { return records_; }
  const RecordList& Records() const { return records_; }

 private:
  void CheckActive() const;
  void CheckBrowseMode();
  void StartEdit(TDataSetState state, bool append);
  int32_t IndexOfId(int64_t id) const;
  bool RecordMatches(const Record& record, const std::vector<TField*>& fields,
                     const std::vector<Variant>& keys, TLocateOptions options) const;
  void SetCursor(int32_t index);

  TDataSetState state_ = dsInactive;
  std::vector<std::unique_ptr<TField>> fields_;
  TStringList field_list_;
  RecordList records_;
  int32_t current_ = -1;
  bool eof_ = true;
  bool bof_ = true;
  int64_t next_id_ = 1;
  int32_t controls_disabled_ = 0;
  // The pending edit or insert.
  Record buffer_;
  bool append_ = false;
  int32_t saved_current_ = -1;
  // The values of the last record read through FetchValues (id 0: none).
  mutable std::vector<Variant> fetched_;
  mutable int64_t fetched_id_ = 0;
};

/// Raises EDatabaseError with the message.
[[noreturn]] void DatabaseError(const String& message);

}  // namespace vex
