// TSQLiteDataSet: loading a table, writing posts and deletes, the update cache and quick Locate.
#include "vex/data/sqlite_dataset.h"

#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "vex/platform/datetime.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

[[noreturn]] void SqliteError(sqlite3* db) {
  DatabaseError(
      FromUtf8(db != nullptr ? sqlite3_errmsg(db) : "out of memory", TInvalidText::Replace));
}

std::string Quoted(const String& identifier) {
  std::string name = ToUtf8(identifier, TInvalidText::Replace);
  std::string quoted = "\"";
  for (char c : name) {
    quoted += c;
    if (c == '"') quoted += '"';
  }
  return quoted + "\"";
}

// An open connection that closes itself; used by the static helpers.
struct Connection {
  sqlite3* db = nullptr;
  Connection(const String& file, int flags) {
    if (sqlite3_open_v2(ToUtf8(file, TInvalidText::Replace).c_str(), &db, flags, nullptr) !=
        SQLITE_OK) {
      String message =
          FromUtf8(db != nullptr ? sqlite3_errmsg(db) : "out of memory", TInvalidText::Replace);
      sqlite3_close(db);
      DatabaseError(message);
    }
  }
  ~Connection() { sqlite3_close(db); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
};

enum class Bind { Text, Blob };

}  // namespace

// A prepared statement, reset after every run.
class TSQLiteDataSet::Statement {
 public:
  Statement(sqlite3* db, const std::string& sql) : db_(db) {
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt_, nullptr) != SQLITE_OK) SqliteError(db);
  }
  ~Statement() { sqlite3_finalize(stmt_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  sqlite3_stmt* Get() const { return stmt_; }

  void Bind(int index, const Variant& value, bool binary) {
    int rc = SQLITE_OK;
    switch (value.VarType()) {
      case varNull:
      case varEmpty:
        rc = sqlite3_bind_null(stmt_, index);
        break;
      case varBoolean:
        rc = sqlite3_bind_int64(stmt_, index, value.AsBoolean() ? 1 : 0);
        break;
      case varInteger:
      case varInt64:
        rc = sqlite3_bind_int64(stmt_, index, value.AsInt64());
        break;
      case varDouble:
        rc = sqlite3_bind_double(stmt_, index, value.AsDouble());
        break;
      case varDate: {
        std::string text = ToUtf8(FormatDateTime(u"yyyy-mm-dd hh:nn:ss.zzz", value.AsDateTime()));
        rc = sqlite3_bind_text(stmt_, index, text.data(), static_cast<int>(text.size()),
                               SQLITE_TRANSIENT);
        break;
      }
      default: {
        String s = value.AsString();
        if (binary) {
          std::string bytes(s.size(), '\0');
          for (size_t i = 0; i < s.size(); ++i) bytes[i] = static_cast<char>(s[i]);
          rc = sqlite3_bind_blob(stmt_, index, bytes.data(), static_cast<int>(bytes.size()),
                                 SQLITE_TRANSIENT);
        } else {
          std::string text = ToUtf8(s, TInvalidText::Replace);
          rc = sqlite3_bind_text(stmt_, index, text.data(), static_cast<int>(text.size()),
                                 SQLITE_TRANSIENT);
        }
      }
    }
    if (rc != SQLITE_OK) SqliteError(db_);
  }

  /// Runs to the end; true when a row came back (it stays readable until Reset).
  bool Step() {
    int rc = sqlite3_step(stmt_);
    if (rc == SQLITE_ROW) return true;
    if (rc != SQLITE_DONE) {
      String message = FromUtf8(sqlite3_errmsg(db_), TInvalidText::Replace);
      Reset();
      DatabaseError(message);
    }
    return false;
  }
  void Reset() {
    sqlite3_reset(stmt_);
    sqlite3_clear_bindings(stmt_);
  }

 private:
  sqlite3* db_;
  sqlite3_stmt* stmt_ = nullptr;
};

namespace {

// Rolls back unless committed; so a failure anywhere inside leaves the file as it was.
class Transaction {
 public:
  explicit Transaction(sqlite3* db) : db_(db) { Exec("BEGIN IMMEDIATE"); }
  ~Transaction() {
    if (!done_) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
  }
  void Commit() {
    Exec("COMMIT");
    done_ = true;
  }

 private:
  void Exec(const char* sql) {
    if (sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) SqliteError(db_);
  }
  sqlite3* db_;
  bool done_ = false;
};

bool IsBinary(TFieldType type) {
  return IsBlobFieldType(type) && type != ftMemo && type != ftWideMemo && type != ftFmtMemo &&
         type != ftOraClob;
}

Variant ColumnValue(sqlite3_stmt* stmt, int column, TFieldType type) {
  switch (sqlite3_column_type(stmt, column)) {
    case SQLITE_NULL:
      return Variant::Null();
    case SQLITE_INTEGER: {
      int64_t v = sqlite3_column_int64(stmt, column);
      if (type == ftInteger || type == ftAutoInc) {
        if (v >= INT32_MIN && v <= INT32_MAX) return static_cast<int32_t>(v);
        return v;
      }
      if (type == ftLargeint) return v;
      try {
        return TField::ConvertValue(type, Variant(v));
      } catch (const Exception&) {
        return v;  // a value the declared type cannot hold is shown as it is stored
      }
    }
    case SQLITE_FLOAT: {
      double v = sqlite3_column_double(stmt, column);
      if (type == ftFloat) return v;
      try {
        return TField::ConvertValue(type, Variant(v));
      } catch (const Exception&) {
        return v;
      }
    }
    case SQLITE_BLOB: {
      const auto* data = static_cast<const uint8_t*>(sqlite3_column_blob(stmt, column));
      int size = sqlite3_column_bytes(stmt, column);
      String bytes(static_cast<size_t>(size), u'\0');
      for (int i = 0; i < size; ++i) bytes[i] = data[i];
      if (IsBinary(type)) return bytes;
      std::string utf8(bytes.begin(), bytes.end());
      return FromUtf8(utf8, TInvalidText::Replace);
    }
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
      String s =
          FromUtf8(std::string_view(text, static_cast<size_t>(sqlite3_column_bytes(stmt, column))),
                   TInvalidText::Replace);
      if (type == ftWideString || type == ftString) return s;
      try {
        return TField::ConvertValue(type, Variant(s));
      } catch (const Exception&) {
        return s;
      }
    }
  }
}

}  // namespace

TSQLiteDataSet::TSQLiteDataSet(String database_name, String table_name)
    : database_name_(std::move(database_name)), table_name_(std::move(table_name)) {}

TSQLiteDataSet::~TSQLiteDataSet() { Close(); }

void TSQLiteDataSet::SetCachedUpdates(bool value) {
  if (!value && UpdatesPending()) DatabaseError(u"Cached updates are pending");
  cached_updates_ = value;
}

bool TSQLiteDataSet::UpdatesPending() const {
  return pending_inserts_ > 0 || !changed_rowids_.empty() || !deleted_rowids_.empty();
}

String TSQLiteDataSet::DeclaredType(TFieldType type) {
  switch (type) {
    case ftAutoInc:
      return u"INTEGER PRIMARY KEY AUTOINCREMENT";
    case ftSmallint:
      return u"SMALLINT";
    case ftInteger:
    case ftWord:
    case ftShortint:
    case ftByte:
      return u"INTEGER";
    case ftLargeint:
    case ftLongWord:
      return u"BIGINT";
    case ftBoolean:
      return u"BOOLEAN";
    case ftFloat:
    case ftExtended:
    case ftSingle:
    case ftBCD:
    case ftFMTBcd:
      return u"REAL";
    case ftCurrency:
      return u"CURRENCY";
    case ftDate:
      return u"DATE";
    case ftTime:
      return u"TIME";
    case ftDateTime:
    case ftTimeStamp:
      return u"DATETIME";
    case ftMemo:
    case ftWideMemo:
    case ftFmtMemo:
    case ftOraClob:
      return u"MEMO";
    default:
      return IsBlobFieldType(type) ? u"BLOB" : u"TEXT";
  }
}

TFieldType TSQLiteDataSet::FieldTypeOf(const String& declared_type) {
  String t = UpperCase(Trim(declared_type));
  auto has = [&t](const char16_t* word) { return t.find(word) != String::npos; };
  if (has(u"BIGINT") || has(u"INT64") || has(u"INT8") || has(u"LARGEINT")) return ftLargeint;
  if (has(u"SMALLINT")) return ftSmallint;
  if (has(u"INT")) return ftInteger;
  if (has(u"BOOL")) return ftBoolean;
  if (has(u"DATETIME") || has(u"TIMESTAMP")) return ftDateTime;
  if (has(u"DATE")) return ftDate;
  if (has(u"TIME")) return ftTime;
  if (has(u"MEMO") || has(u"CLOB")) return ftWideMemo;
  if (has(u"CHAR") || has(u"TEXT")) return ftWideString;
  if (t.empty() || has(u"BLOB")) return ftBlob;
  if (has(u"CURRENCY") || has(u"MONEY")) return ftCurrency;
  if (has(u"REAL") || has(u"FLOA") || has(u"DOUB") || has(u"NUMERIC") || has(u"DECIMAL")) {
    return ftFloat;
  }
  return ftWideString;
}

void TSQLiteDataSet::CreateTable(const String& database_name, const String& table_name,
                                 const std::vector<std::pair<String, TFieldType>>& columns) {
  Connection c(database_name, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  std::string sql = "CREATE TABLE IF NOT EXISTS " + Quoted(table_name) + " (";
  for (size_t i = 0; i < columns.size(); ++i) {
    if (i > 0) sql += ", ";
    sql += Quoted(columns[i].first) + " " + ToUtf8(DeclaredType(columns[i].second));
  }
  sql += ")";
  if (sqlite3_exec(c.db, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) SqliteError(c.db);
}

bool TSQLiteDataSet::TableExists(const String& database_name, const String& table_name) {
  if (!std::filesystem::exists(ToUtf8(database_name, TInvalidText::Replace))) return false;
  Connection c(database_name, SQLITE_OPEN_READONLY);
  Statement s(c.db, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?");
  s.Bind(1, table_name, false);
  return s.Step();
}

void TSQLiteDataSet::InternalOpen() {
  if (sqlite3_open_v2(ToUtf8(database_name_, TInvalidText::Replace).c_str(), &db_,
                      SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
    String message =
        FromUtf8(db_ != nullptr ? sqlite3_errmsg(db_) : "out of memory", TInvalidText::Replace);
    sqlite3_close(db_);
    db_ = nullptr;
    DatabaseError(message);
  }
  try {
    LoadRecords();
  } catch (...) {
    InternalClose();
    throw;
  }
}

void TSQLiteDataSet::LoadRecords() {
  Statement select(db_, "SELECT rowid, * FROM " + Quoted(table_name_) + " ORDER BY rowid");
  sqlite3_stmt* stmt = select.Get();
  int columns = sqlite3_column_count(stmt);
  if (FieldCount() == 0) {
    std::string table = ToUtf8(table_name_, TInvalidText::Replace);
    for (int i = 1; i < columns; ++i) {
      const char* name = sqlite3_column_name(stmt, i);
      const char* declared = sqlite3_column_decltype(stmt, i);
      TFieldType type =
          FieldTypeOf(FromUtf8(declared != nullptr ? declared : "", TInvalidText::Replace));
      int autoinc = 0;
      if (sqlite3_table_column_metadata(db_, nullptr, table.c_str(), name, nullptr, nullptr,
                                        nullptr, nullptr, &autoinc) == SQLITE_OK &&
          autoinc != 0) {
        type = ftAutoInc;
        auto_inc_index_ = i - 1;
      }
      AddField(FromUtf8(name, TInvalidText::Replace), type);
    }
  }
  std::vector<TFieldType> types;
  for (int32_t i = 0; i < FieldCount(); ++i) types.push_back(Fields(i)->DataType());
  while (select.Step()) {
    std::vector<Variant> values;
    values.reserve(types.size());
    for (size_t i = 0; i < types.size(); ++i) {
      values.push_back(ColumnValue(stmt, static_cast<int>(i) + 1, types[i]));
    }
    AddRecord(sqlite3_column_int64(stmt, 0), std::move(values));
  }
}

void TSQLiteDataSet::InternalClose() {
  insert_.reset();
  insert_all_.reset();
  update_.reset();
  delete_.reset();
  locate_.reset();
  locate_fields_.clear();
  changed_rowids_.clear();
  deleted_rowids_.clear();
  pending_inserts_ = 0;
  auto_inc_index_ = -1;
  sqlite3_close(db_);
  db_ = nullptr;
}

int64_t TSQLiteDataSet::WriteInsert(const Record& record) {
  // The automatic column is left to SQLite when it has no value.
  bool skip_auto = auto_inc_index_ >= 0 && record.values[auto_inc_index_].IsNull();
  std::vector<int32_t> columns;
  for (int32_t i = 0; i < FieldCount(); ++i) {
    if (!(skip_auto && i == auto_inc_index_)) columns.push_back(i);
  }
  std::unique_ptr<Statement>& stmt = skip_auto ? insert_ : insert_all_;
  if (!stmt) {
    std::string sql = "INSERT INTO " + Quoted(table_name_);
    std::string names, marks;
    for (size_t i = 0; i < columns.size(); ++i) {
      names += (i > 0 ? ", " : "") + Quoted(Fields(columns[i])->FieldName());
      marks += i > 0 ? ", ?" : "?";
    }
    sql += columns.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + marks + ")";
    stmt = std::make_unique<Statement>(db_, sql);
  }
  for (size_t i = 0; i < columns.size(); ++i) {
    stmt->Bind(static_cast<int>(i) + 1, record.values[columns[i]],
               IsBinary(Fields(columns[i])->DataType()));
  }
  stmt->Step();
  stmt->Reset();
  return sqlite3_last_insert_rowid(db_);
}

void TSQLiteDataSet::SetInsertedKey(Record& record, int64_t rowid) const {
  record.key = rowid;
  if (auto_inc_index_ >= 0 && record.values[auto_inc_index_].IsNull()) {
    record.values[auto_inc_index_] = static_cast<int32_t>(rowid);
  }
}

void TSQLiteDataSet::WriteUpdate(const Record& record) {
  if (!update_) {
    std::string sql = "UPDATE " + Quoted(table_name_) + " SET ";
    for (int32_t i = 0; i < FieldCount(); ++i) {
      sql += (i > 0 ? ", " : "") + Quoted(Fields(i)->FieldName()) + " = ?";
    }
    update_ = std::make_unique<Statement>(db_, sql + " WHERE rowid = ?");
  }
  for (int32_t i = 0; i < FieldCount(); ++i) {
    update_->Bind(i + 1, record.values[i], IsBinary(Fields(i)->DataType()));
  }
  update_->Bind(FieldCount() + 1, Variant(record.key), false);
  update_->Step();
  update_->Reset();
}

void TSQLiteDataSet::WriteDelete(int64_t rowid) {
  if (!delete_) {
    delete_ =
        std::make_unique<Statement>(db_, "DELETE FROM " + Quoted(table_name_) + " WHERE rowid = ?");
  }
  delete_->Bind(1, Variant(rowid), false);
  delete_->Step();
  delete_->Reset();
}

void TSQLiteDataSet::InternalPost(Record& record, bool inserted) {
  if (!cached_updates_) {
    if (inserted) {
      SetInsertedKey(record, WriteInsert(record));
    } else {
      WriteUpdate(record);
    }
    return;
  }
  if (inserted) {
    record.key = next_pending_key_--;
    ++pending_inserts_;
  } else if (record.key > 0) {
    changed_rowids_.insert(record.key);
  }
}

void TSQLiteDataSet::InternalDelete(Record& record) {
  if (!cached_updates_) {
    WriteDelete(record.key);
  } else if (record.key > 0) {
    changed_rowids_.erase(record.key);
    deleted_rowids_.push_back(record.key);
  } else {
    --pending_inserts_;
  }
}

void TSQLiteDataSet::ApplyUpdates() {
  if (!Active() || !UpdatesPending()) return;
  if (State() == dsEdit || State() == dsInsert) Post();
  // The records learn their new keys only once the transaction has committed.
  std::vector<std::pair<size_t, int64_t>> inserted;
  {
    Transaction transaction(db_);
    for (int64_t rowid : deleted_rowids_) WriteDelete(rowid);
    for (size_t i = 0; i < Records().size(); ++i) {
      const Record& record = Records()[i];
      if (record.key < 0) {
        inserted.emplace_back(i, WriteInsert(record));
      } else if (changed_rowids_.count(record.key) != 0) {
        WriteUpdate(record);
      }
    }
    transaction.Commit();
  }
  for (auto [index, rowid] : inserted) SetInsertedKey(Records()[index], rowid);
  pending_inserts_ = 0;
  changed_rowids_.clear();
  deleted_rowids_.clear();
}

void TSQLiteDataSet::CancelUpdates() {
  if (!Active()) return;
  Cancel();
  changed_rowids_.clear();
  deleted_rowids_.clear();
  pending_inserts_ = 0;  // the records are dropped by the reload
  Refresh();
}

void TSQLiteDataSet::InternalRefresh() {
  if (UpdatesPending()) DatabaseError(u"Cannot refresh while cached updates are pending");
  ClearRecords();
  LoadRecords();
}

int32_t TSQLiteDataSet::IndexOfKey(int64_t rowid) const {
  const auto& records = Records();
  auto it = std::lower_bound(records.begin(), records.end(), rowid,
                             [](const Record& r, int64_t key) { return r.key < key; });
  if (it != records.end() && it->key == rowid) return static_cast<int32_t>(it - records.begin());
  for (size_t i = 0; i < records.size(); ++i) {
    if (records[i].key == rowid) return static_cast<int32_t>(i);
  }
  return -1;
}

int32_t TSQLiteDataSet::InternalLocate(const std::vector<TField*>& fields,
                                       const std::vector<Variant>& keys, TLocateOptions options) {
  // Only the plain whole-value search of a table without pending changes goes to SQLite.
  if (!options.Empty() || UpdatesPending()) return -2;
  String signature;
  for (size_t i = 0; i < fields.size(); ++i) {
    TFieldType type = fields[i]->DataType();
    // Dates may be stored in other text forms than the one bound here.
    bool comparable = type != ftDate && type != ftTime && type != ftDateTime && type != ftTimeStamp;
    if (keys[i].IsNull() || IsBlobFieldType(type) || !comparable) return -2;
    signature += fields[i]->FieldName() + u";";
  }
  if (!locate_ || locate_fields_ != signature) {
    std::string sql = "SELECT rowid FROM " + Quoted(table_name_) + " WHERE ";
    for (size_t i = 0; i < fields.size(); ++i) {
      sql += (i > 0 ? " AND " : "") + Quoted(fields[i]->FieldName()) + " = ?";
    }
    locate_ = std::make_unique<Statement>(db_, sql + " ORDER BY rowid LIMIT 1");
    locate_fields_ = signature;
  }
  for (size_t i = 0; i < fields.size(); ++i) locate_->Bind(static_cast<int>(i) + 1, keys[i], false);
  int32_t found = -1;
  if (locate_->Step()) found = IndexOfKey(sqlite3_column_int64(locate_->Get(), 0));
  locate_->Reset();
  return found;
}

}  // namespace vex
