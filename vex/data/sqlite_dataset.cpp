// TSQLiteDataSet: the rowids of a table, its rows read in blocks as the cursor reaches them,
// writing posts and deletes, the update cache and quick Locate.
#include "vex/data/sqlite_dataset.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <string>

#include "vex/platform/datetime.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
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

// One column of a row read into a block: numbers in place, text and blobs as bytes of the
// block.
struct Cell {
  int type = SQLITE_NULL;
  int64_t integer = 0;
  double real = 0;
  size_t offset = 0;
  size_t size = 0;
};

// The value shown for a stored column: the declared type's kind where it converts, else the value
// as stored.
Variant CellValue(const Cell& cell, const std::string& bytes, TFieldType type) {
  switch (cell.type) {
    case SQLITE_NULL:
      return Variant::Null();
    case SQLITE_INTEGER: {
      int64_t v = cell.integer;
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
      double v = cell.real;
      if (type == ftFloat) return v;
      try {
        return TField::ConvertValue(type, Variant(v));
      } catch (const Exception&) {
        return v;
      }
    }
    case SQLITE_BLOB: {
      std::string_view data(bytes.data() + cell.offset, cell.size);
      if (!IsBinary(type)) return FromUtf8(data, TInvalidText::Replace);
      String chars(cell.size, u'\0');
      for (size_t i = 0; i < cell.size; ++i) chars[i] = static_cast<uint8_t>(data[i]);
      return chars;
    }
    default: {
      String s =
          FromUtf8(std::string_view(bytes.data() + cell.offset, cell.size), TInvalidText::Replace);
      if (type == ftWideString || type == ftString) return s;
      try {
        return TField::ConvertValue(type, Variant(s));
      } catch (const Exception&) {
        return s;
      }
    }
  }
}

bool IsAscii(std::string_view text) {
  for (char c : text) {
    if (static_cast<unsigned char>(c) >= 0x80) return false;
  }
  return true;
}

// Pending inserts are kept as one tag byte per value followed by its payload, so that a cache of
// a million records costs a few bytes per value instead of a vector of variants per record.
enum Tag : uint8_t { kNull, kFalse, kTrue, kInt32, kInt64, kDouble, kDate, kUtf8, kUtf16 };

template <class T>
void Put(std::string& out, T value) {
  out.append(reinterpret_cast<const char*>(&value), sizeof(T));
}

template <class T>
T Take(const char*& in) {
  T value;
  std::memcpy(&value, in, sizeof(T));
  in += sizeof(T);
  return value;
}

bool HasLoneSurrogate(const String& s) {
  for (size_t i = 0; i < s.size(); ++i) {
    Char c = s[i];
    if (c < 0xD800 || c > 0xDFFF) continue;
    if (c > 0xDBFF || i + 1 == s.size() || s[i + 1] < 0xDC00 || s[i + 1] > 0xDFFF) return true;
    ++i;
  }
  return false;
}

// False for a value that has no encoding (the record then keeps its variants).
bool EncodeValue(const Variant& value, std::string& out) {
  switch (value.VarType()) {
    case varEmpty:
    case varNull:
      out += static_cast<char>(kNull);
      return true;
    case varBoolean:
      out += static_cast<char>(value.AsBoolean() ? kTrue : kFalse);
      return true;
    case varInteger:
      out += static_cast<char>(kInt32);
      Put(out, value.AsInteger());
      return true;
    case varInt64:
      out += static_cast<char>(kInt64);
      Put(out, value.AsInt64());
      return true;
    case varDouble:
      out += static_cast<char>(kDouble);
      Put(out, value.AsDouble());
      return true;
    case varDate:
      out += static_cast<char>(kDate);
      Put(out, value.AsDateTime());
      return true;
    case varUString: {
      const String& s = *value.TextPtr();
      if (s.size() > UINT32_MAX / 4) return false;
      const bool utf16 = HasLoneSurrogate(s);
      out += static_cast<char>(utf16 ? kUtf16 : kUtf8);
      const size_t size_at = out.size();
      Put(out, uint32_t{0});
      if (utf16) {
        out.append(reinterpret_cast<const char*>(s.data()), s.size() * sizeof(Char));
      } else {
        AppendUtf8(out, s, TInvalidText::Replace);
      }
      auto units = static_cast<uint32_t>((out.size() - size_at - sizeof(uint32_t)) /
                                         (utf16 ? sizeof(Char) : 1));
      std::memcpy(out.data() + size_at, &units, sizeof units);
      return true;
    }
    default:
      return false;
  }
}

void SkipValue(const char*& in) {
  switch (static_cast<Tag>(*in++)) {
    case kInt32:
      in += sizeof(int32_t);
      break;
    case kInt64:
    case kDouble:
    case kDate:
      in += sizeof(int64_t);
      break;
    case kUtf8:
      in += Take<uint32_t>(in);
      break;
    case kUtf16:
      in += Take<uint32_t>(in) * sizeof(Char);
      break;
    default:
      break;
  }
}

// Decodes the value at `in` and moves past it. Text is left in `text` (UTF-8) for kUtf8.
Variant DecodeValue(const char*& in, std::string_view* text = nullptr) {
  auto tag = static_cast<Tag>(*in++);
  switch (tag) {
    case kNull:
      return Variant::Null();
    case kFalse:
    case kTrue:
      return tag == kTrue;
    case kInt32:
      return Take<int32_t>(in);
    case kInt64:
      return Take<int64_t>(in);
    case kDouble:
      return Take<double>(in);
    case kDate:
      return Variant::FromDate(Take<double>(in));
    case kUtf8: {
      auto size = static_cast<size_t>(Take<uint32_t>(in));
      std::string_view utf8(in, size);
      in += size;
      if (text != nullptr) {
        *text = utf8;
        return Variant();
      }
      return FromUtf8(utf8, TInvalidText::Replace);
    }
    default: {
      auto size = static_cast<size_t>(Take<uint32_t>(in));
      String s(size, u'\0');
      std::memcpy(s.data(), in, size * sizeof(Char));
      in += size * sizeof(Char);
      return s;
    }
  }
}

}  // namespace

// Rows read in one run of a stepping SELECT, the statement reset afterwards so that no read stays
// open between calls. `keys` ascend; cells are row by row, one per field.
struct TSQLiteDataSet::RowBlock {
  std::vector<int64_t> keys;
  std::vector<Cell> cells;
  std::string bytes;
  bool backward = false;
  size_t rows_wanted = 16;
  size_t last_row = 0;  // where the last look-up ended: a walk asks for it or the next one
};

// An INSERT and the fields it writes, in order.
struct TSQLiteDataSet::InsertStatement {
  std::unique_ptr<Statement> statement;
  std::vector<int32_t> columns;
};

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
  // A dataset is used by one thread at a time, so its connection needs no lock of its own.
  if (sqlite3_open_v2(ToUtf8(database_name_, TInvalidText::Replace).c_str(), &db_,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr) != SQLITE_OK) {
    String message =
        FromUtf8(db_ != nullptr ? sqlite3_errmsg(db_) : "out of memory", TInvalidText::Replace);
    sqlite3_close(db_);
    db_ = nullptr;
    DatabaseError(message);
  }
  block_ = std::make_unique<RowBlock>();
  try {
    LoadRecords();
  } catch (...) {
    InternalClose();
    throw;
  }
}

void TSQLiteDataSet::LoadRecords() {
  ForgetBlock();
  Statement select(db_, "SELECT rowid, * FROM " + Quoted(table_name_) + " WHERE 0");
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
  // Only the rowids: the values are read when the cursor reaches them.
  Statement keys(db_, "SELECT rowid FROM " + Quoted(table_name_) + " ORDER BY rowid");
  while (keys.Step()) AddRecord(sqlite3_column_int64(keys.Get(), 0), {});
}

void TSQLiteDataSet::ForgetBlock() {
  if (block_) block_->keys.clear();
  ForgetFetchedValues();
}

void TSQLiteDataSet::FetchBlock(int64_t rowid, bool backward) const {
  RowBlock& block = *block_;
  // Runs in the same direction grow, so a walk costs about one step per row; a jump starts small.
  bool onward = !block.keys.empty() && block.backward == backward &&
                (backward ? rowid < block.keys.front() : rowid > block.keys.back());
  block.rows_wanted = onward ? std::min<size_t>(block.rows_wanted * 2, 1024) : 16;
  block.backward = backward;
  block.keys.clear();
  block.cells.clear();
  block.bytes.clear();
  block.last_row = 0;
  std::unique_ptr<Statement>& select = backward ? backward_ : forward_;
  if (!select) {
    select =
        std::make_unique<Statement>(db_, "SELECT rowid, * FROM " + Quoted(table_name_) +
                                             (backward ? " WHERE rowid <= ? ORDER BY rowid DESC"
                                                       : " WHERE rowid >= ? ORDER BY rowid"));
  }
  sqlite3_stmt* stmt = select->Get();
  const int columns = FieldCount();
  if (sqlite3_bind_int64(stmt, 1, rowid) != SQLITE_OK) SqliteError(db_);
  try {
    while (block.keys.size() < block.rows_wanted && select->Step()) {
      block.keys.push_back(sqlite3_column_int64(stmt, 0));
      for (int i = 1; i <= columns; ++i) {
        Cell cell;
        cell.type = sqlite3_column_type(stmt, i);
        if (cell.type == SQLITE_INTEGER) {
          cell.integer = sqlite3_column_int64(stmt, i);
        } else if (cell.type == SQLITE_FLOAT) {
          cell.real = sqlite3_column_double(stmt, i);
        } else if (cell.type != SQLITE_NULL) {
          const void* data = cell.type == SQLITE_BLOB ? sqlite3_column_blob(stmt, i)
                                                      : sqlite3_column_text(stmt, i);
          cell.size = static_cast<size_t>(sqlite3_column_bytes(stmt, i));
          cell.offset = block.bytes.size();
          if (cell.size > 0) block.bytes.append(static_cast<const char*>(data), cell.size);
        }
        block.cells.push_back(cell);
      }
    }
  } catch (...) {
    block.keys.clear();
    throw;
  }
  select->Reset();
  if (backward) {
    std::reverse(block.keys.begin(), block.keys.end());
    for (size_t a = 0, b = block.keys.size(); a + 1 < b; ++a, --b) {
      std::swap_ranges(block.cells.begin() + static_cast<ptrdiff_t>(a * columns),
                       block.cells.begin() + static_cast<ptrdiff_t>((a + 1) * columns),
                       block.cells.begin() + static_cast<ptrdiff_t>((b - 1) * columns));
    }
  }
}

int32_t TSQLiteDataSet::BlockRow(int64_t rowid) const {
  RowBlock& block = *block_;
  auto find = [&block, rowid]() -> int32_t {
    const size_t size = block.keys.size();
    for (size_t row = block.last_row; row < size && row <= block.last_row + 1; ++row) {
      if (block.keys[row] == rowid) return static_cast<int32_t>(block.last_row = row);
    }
    if (size == 0 || rowid < block.keys.front() || rowid > block.keys.back()) return -2;
    auto it = std::lower_bound(block.keys.begin(), block.keys.end(), rowid);
    if (*it != rowid) return -1;
    block.last_row = static_cast<size_t>(it - block.keys.begin());
    return static_cast<int32_t>(block.last_row);
  };
  int32_t row = find();
  if (row != -2) return row;
  FetchBlock(rowid, !block.keys.empty() && rowid < block.keys.front());
  row = find();
  return row < 0 ? -1 : row;
}

void TSQLiteDataSet::FetchValues(const Record& record, std::vector<Variant>& values) const {
  const int32_t columns = FieldCount();
  values.assign(static_cast<size_t>(columns), Variant::Null());
  if (record.key < 0) {
    const char* in = PendingValues(record.key);
    for (int32_t i = 0; i < columns; ++i) values[i] = DecodeValue(in);
    return;
  }
  int32_t row = BlockRow(record.key);
  if (row < 0) return;  // the row has gone from the table since it was opened
  const Cell* cells = &block_->cells[static_cast<size_t>(row) * columns];
  for (int32_t i = 0; i < columns; ++i) {
    values[i] = CellValue(cells[i], block_->bytes, Fields(i)->DataType());
  }
}

bool TSQLiteDataSet::AppendFieldUtf8(int32_t index, std::string& utf8) const {
  // The stored text where it is what AsString would give; everything else the usual way.
  const Record* record = BrowsedRecord();
  if (record == nullptr || !record->values.empty() || record->key < 0) {
    return TDataSet::AppendFieldUtf8(index, utf8);
  }
  int32_t row = BlockRow(record->key);
  if (row < 0) return TDataSet::AppendFieldUtf8(index, utf8);
  const Cell& cell = block_->cells[static_cast<size_t>(row) * FieldCount() + index];
  TFieldType type = Fields(index)->DataType();
  switch (cell.type) {
    case SQLITE_NULL:
      return false;
    case SQLITE_INTEGER:
      if (type == ftInteger || type == ftAutoInc || type == ftLargeint) {
        char digits[24];
        auto end = std::to_chars(digits, digits + sizeof digits, cell.integer).ptr;
        utf8.append(digits, end);
        return true;
      }
      break;
    case SQLITE_FLOAT:
      if (type == ftFloat) {
        utf8 += ToUtf8(FloatToStr(cell.real));
        return true;
      }
      break;
    case SQLITE_TEXT: {
      std::string_view text(block_->bytes.data() + cell.offset, cell.size);
      if ((type == ftWideString || type == ftString) && IsAscii(text)) {
        utf8 += text;
        return true;
      }
      break;
    }
    default:
      break;
  }
  return TDataSet::AppendFieldUtf8(index, utf8);
}

void TSQLiteDataSet::InternalClose() {
  insert_.reset();
  insert_all_.reset();
  update_.reset();
  delete_.reset();
  locate_.reset();
  forward_.reset();
  backward_.reset();
  block_.reset();
  locate_fields_.clear();
  changed_rowids_.clear();
  deleted_rowids_.clear();
  pending_inserts_ = 0;
  ClearPending();
  auto_inc_index_ = -1;
  sqlite3_close(db_);
  db_ = nullptr;
}

TSQLiteDataSet::InsertStatement& TSQLiteDataSet::InsertFor(bool skip_auto) {
  // The automatic column is left to SQLite when it has no value.
  std::unique_ptr<InsertStatement>& insert = skip_auto ? insert_ : insert_all_;
  if (!insert) {
    insert = std::make_unique<InsertStatement>();
    for (int32_t i = 0; i < FieldCount(); ++i) {
      if (!(skip_auto && i == auto_inc_index_)) insert->columns.push_back(i);
    }
    std::string sql = "INSERT INTO " + Quoted(table_name_);
    std::string names, marks;
    for (size_t i = 0; i < insert->columns.size(); ++i) {
      names += (i > 0 ? ", " : "") + Quoted(Fields(insert->columns[i])->FieldName());
      marks += i > 0 ? ", ?" : "?";
    }
    sql += insert->columns.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + marks + ")";
    insert->statement = std::make_unique<Statement>(db_, sql);
  }
  return *insert;
}

int64_t TSQLiteDataSet::WriteInsert(const std::vector<Variant>& values) {
  ForgetBlock();
  InsertStatement& insert = InsertFor(auto_inc_index_ >= 0 && values[auto_inc_index_].IsNull());
  for (size_t i = 0; i < insert.columns.size(); ++i) {
    int32_t column = insert.columns[i];
    insert.statement->Bind(static_cast<int>(i) + 1, values[column],
                           IsBinary(Fields(column)->DataType()));
  }
  insert.statement->Step();
  insert.statement->Reset();
  return sqlite3_last_insert_rowid(db_);
}

int64_t TSQLiteDataSet::WriteInsertPending(int64_t key) {
  // Binds straight from the encoded record; only text needs no variant on the way.
  const char* start = PendingValues(key);
  const char* in = start;
  for (int32_t i = 0; i < auto_inc_index_; ++i) SkipValue(in);
  InsertStatement& insert = InsertFor(auto_inc_index_ >= 0 && static_cast<Tag>(*in) == kNull);
  Statement& statement = *insert.statement;
  in = start;
  size_t next = 0;
  for (int32_t i = 0; i < FieldCount(); ++i) {
    std::string_view text;
    Variant value = DecodeValue(in, &text);
    if (next >= insert.columns.size() || insert.columns[next] != i) continue;
    int parameter = static_cast<int>(++next);
    bool binary = IsBinary(Fields(i)->DataType());
    if (!value.IsEmpty() || binary) {
      if (value.IsEmpty()) value = FromUtf8(text, TInvalidText::Replace);
      statement.Bind(parameter, value, binary);
    } else if (sqlite3_bind_text(statement.Get(), parameter, text.data(),
                                 static_cast<int>(text.size()), SQLITE_STATIC) != SQLITE_OK) {
      SqliteError(db_);
    }
  }
  statement.Step();
  statement.Reset();
  return sqlite3_last_insert_rowid(db_);
}

void TSQLiteDataSet::SetInsertedKey(Record& record, int64_t rowid) const {
  record.key = rowid;
  // A record kept encoded reads its automatic number back from the table.
  if (auto_inc_index_ >= 0 && !record.values.empty() && record.values[auto_inc_index_].IsNull()) {
    record.values[auto_inc_index_] = static_cast<int32_t>(rowid);
  }
}

void TSQLiteDataSet::WriteUpdate(const Record& record) {
  ForgetBlock();
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
  ForgetBlock();
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
      SetInsertedKey(record, WriteInsert(record.values));
    } else {
      WriteUpdate(record);
    }
    return;
  }
  if (inserted) {
    record.key = next_pending_key_--;
    ++pending_inserts_;
    // Kept encoded; a value without an encoding keeps the record's variants instead.
    encoding_.clear();
    bool encoded = true;
    for (const Variant& value : record.values) encoded = encoded && EncodeValue(value, encoding_);
    if (!encoded) encoding_.clear();
    KeepPending(encoding_);
    if (encoded) std::vector<Variant>().swap(record.values);
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
  ForgetBlock();
  // The records learn their new keys only once the transaction has committed.
  std::vector<std::pair<size_t, int64_t>, LargeBlockAllocator<std::pair<size_t, int64_t>>> inserted;
  inserted.reserve(static_cast<size_t>(pending_inserts_));
  {
    Transaction transaction(db_);
    for (int64_t rowid : deleted_rowids_) WriteDelete(rowid);
    for (size_t i = 0; i < Records().size(); ++i) {
      const Record& record = Records()[i];
      if (record.key < 0) {
        inserted.emplace_back(
            i, record.values.empty() ? WriteInsertPending(record.key) : WriteInsert(record.values));
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
  ClearPending();
  ForgetBlock();
}

void TSQLiteDataSet::CancelUpdates() {
  if (!Active()) return;
  Cancel();
  changed_rowids_.clear();
  deleted_rowids_.clear();
  pending_inserts_ = 0;  // the records are dropped by the reload
  Refresh();
  ClearPending();
}

const char* TSQLiteDataSet::PendingValues(int64_t key) const {
  uint64_t offset = pending_offsets_[static_cast<size_t>(-key - 1)];
  return pending_chunks_[offset >> 32].data() + (offset & 0xFFFFFFFFU);
}

void TSQLiteDataSet::KeepPending(const std::string& encoded) {
  if (pending_chunks_.empty() ||
      pending_chunks_.back().capacity() - pending_chunks_.back().size() < encoded.size()) {
    // Each chunk twice the last, from 1 MB up to 32 MB: few chunks, little waste.
    size_t held = pending_chunks_.empty() ? 0 : pending_chunks_.back().capacity() * 2;
    size_t size = std::clamp<size_t>(held, size_t{1} << 20, size_t{32} << 20);
    pending_chunks_.emplace_back().reserve(std::max(size, encoded.size()));
  }
  Chunk& chunk = pending_chunks_.back();
  pending_offsets_.push_back((static_cast<uint64_t>(pending_chunks_.size() - 1) << 32) |
                             chunk.size());
  chunk += encoded;
}

void TSQLiteDataSet::ClearPending() {
  decltype(pending_chunks_)().swap(pending_chunks_);
  decltype(pending_offsets_)().swap(pending_offsets_);
  next_pending_key_ = -1;
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
