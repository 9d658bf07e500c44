// TSQLiteDataSet: one table of a SQLite database file as a dataset. Field types come from the
// declared column types; values reach SQL only as bound parameters and names only as quoted
// identifiers. Open reads only the rowids; values are read in short runs of rows as the cursor
// reaches them. Posts write at once (autocommit) or wait in a cache for ApplyUpdates, which
// writes them all in one transaction.
//
//   TSQLiteDataSet ds(u"app.db", u"Settings");
//   ds.SetCachedUpdates(true);
//   ds.Open(); ... Append/Post ...; ds.ApplyUpdates();   // all or nothing
#pragma once
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "vex/platform/dataset.h"

struct sqlite3;

namespace vex {

class TSQLiteDataSet : public TDataSet {
 public:
  TSQLiteDataSet(String database_name, String table_name);
  ~TSQLiteDataSet() override;

  const String& DatabaseName() const { return database_name_; }
  const String& TableName() const { return table_name_; }

  /// Off (the default): every Post and Delete is one statement. On: they change the records in
  /// memory until ApplyUpdates or CancelUpdates. Switching off with pending changes raises.
  bool CachedUpdates() const { return cached_updates_; }
  void SetCachedUpdates(bool value);
  bool UpdatesPending() const;
  /// Writes every pending change in one transaction (deletes, then changes and inserts in
  /// record order). On failure nothing is written, the changes stay pending and
  /// EDatabaseError carries SQLite's message.
  void ApplyUpdates();
  /// Drops every pending change and reloads the table.
  void CancelUpdates();

  /// The declared column type used for a field type ("INTEGER", "REAL", "TEXT", "BLOB", ...).
  static String DeclaredType(TFieldType type);
  /// The field type of a declared column type: by the usual affinity words, with "BIGINT",
  /// "BOOL", "DATE", "TIME", "DATETIME", "CURRENCY" and "MEMO" told apart.
  static TFieldType FieldTypeOf(const String& declared_type);
  /// Creates a table (if it does not exist) in a database file (created if missing). An
  /// ftAutoInc column becomes "INTEGER PRIMARY KEY AUTOINCREMENT".
  static void CreateTable(const String& database_name, const String& table_name,
                          const std::vector<std::pair<String, TFieldType>>& columns);
  /// Whether the database file exists and has the table; EDatabaseError for a file that is
  /// not a database.
  static bool TableExists(const String& database_name, const String& table_name);

 protected:
  void InternalOpen() override;
  void InternalClose() override;
  void InternalPost(Record& record, bool inserted) override;
  void InternalDelete(Record& record) override;
  void InternalRefresh() override;
  int32_t InternalLocate(const std::vector<TField*>& fields, const std::vector<Variant>& keys,
                         TLocateOptions options) override;
  void FetchValues(const Record& record, std::vector<Variant>& values) const override;

 public:
  bool AppendFieldUtf8(int32_t index, std::string& utf8) const override;

 private:
  class Statement;
  struct RowBlock;
  struct InsertStatement;
  void LoadRecords();
  // The row of the block holding `rowid`, fetching a block when needed; -1 when the table no
  // longer has the row.
  int32_t BlockRow(int64_t rowid) const;
  void FetchBlock(int64_t rowid, bool backward) const;
  void ForgetBlock();
  InsertStatement& InsertFor(bool skip_auto);
  int64_t WriteInsert(const std::vector<Variant>& values);
  int64_t WriteInsertPending(int64_t key);
  void SetInsertedKey(Record& record, int64_t rowid) const;
  const char* PendingValues(int64_t key) const;
  void KeepPending(const std::string& encoded);
  void ClearPending();
  void WriteUpdate(const Record& record);
  void WriteDelete(int64_t rowid);
  int32_t IndexOfKey(int64_t rowid) const;

  String database_name_;
  String table_name_;
  sqlite3* db_ = nullptr;
  bool cached_updates_ = false;
  int32_t auto_inc_index_ = -1;
  // Cache: inserted records carry negative keys until they are written.
  int64_t next_pending_key_ = -1;
  int64_t pending_inserts_ = 0;
  std::set<int64_t> changed_rowids_;
  std::vector<int64_t> deleted_rowids_;
  std::unique_ptr<InsertStatement> insert_, insert_all_;
  std::unique_ptr<Statement> update_, delete_, locate_;
  String locate_fields_;
  // Pending inserts in cached mode, encoded one after another in chunks that never move and
  // grow with the cache; offsets (chunk << 32 | position) by -key - 1.
  using Chunk = std::basic_string<char, std::char_traits<char>, LargeBlockAllocator<char>>;
  std::vector<Chunk> pending_chunks_;
  std::vector<uint64_t, LargeBlockAllocator<uint64_t>> pending_offsets_;
  std::string encoding_;
  // The rows read last, and the statements that read them.
  std::unique_ptr<RowBlock> block_;
  mutable std::unique_ptr<Statement> forward_, backward_;
};

}  // namespace vex
