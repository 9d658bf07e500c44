// Dataset text file dump and load of a 1,000,000-row SQLite table through TDBUtils on
// TSQLiteDataSet, beside the sqlite3 shell doing the same job (".mode list", ".separator |",
// ".import") in the same run; and Locate on an indexed key beside a prepared SELECT. The
// TDBUtils calls run without a work list (streamed) and with one (every line kept in it).
//
// Each dump and load runs in a child process so that its peak memory (ru_maxrss) is measured
// the same way for both sides; counters "peak_MB" report it. Needs the sqlite3 shell.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <string>

#include "bench_ratios.h"
#include "vex/data/db_utils.h"
#include "vex/data/sqlite_dataset.h"
#include "vex/platform/unicode.h"

namespace {

constexpr int kRows = 1000000;
const std::string kDir = "/tmp/vex_dataset_bench_" + std::to_string(getpid());
const std::string kSource = kDir + "/source.db";

void Exec(sqlite3* db, const char* sql) {
  if (sqlite3_exec(db, sql, nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
}

const char* kColumns = "(Id INTEGER, Name TEXT, Price REAL, Added TEXT, Note TEXT)";

// The source table: integer, text, float, date text and a text that is null every 7th row.
void MakeSource() {
  static bool made = false;
  if (made) return;
  made = true;
  std::filesystem::create_directories(kDir);
  std::filesystem::remove(kSource);
  sqlite3* db = nullptr;
  sqlite3_open(kSource.c_str(), &db);
  Exec(db, (std::string("CREATE TABLE t ") + kColumns).c_str());
  Exec(db, "CREATE TABLE k (Code INTEGER, Name TEXT)");
  Exec(db, "BEGIN");
  sqlite3_stmt* ins = nullptr;
  sqlite3_prepare_v2(db, "INSERT INTO t VALUES (?, ?, ?, ?, ?)", -1, &ins, nullptr);
  sqlite3_stmt* key = nullptr;
  sqlite3_prepare_v2(db, "INSERT INTO k VALUES (?, ?)", -1, &key, nullptr);
  for (int i = 0; i < kRows; ++i) {
    std::string name = "item " + std::to_string(static_cast<int64_t>(i) * 7919 % 100003);
    char date[16];
    std::snprintf(date, sizeof date, "2024-%02d-%02d", i % 12 + 1, i % 28 + 1);
    sqlite3_bind_int64(ins, 1, i);
    sqlite3_bind_text(ins, 2, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_double(ins, 3, (i % 10000) / 100.0);
    sqlite3_bind_text(ins, 4, date, -1, SQLITE_TRANSIENT);
    if (i % 7 == 0) {
      sqlite3_bind_null(ins, 5);
    } else {
      sqlite3_bind_text(ins, 5, "note", -1, SQLITE_STATIC);
    }
    sqlite3_step(ins);
    sqlite3_reset(ins);
    sqlite3_bind_int64(key, 1, static_cast<int64_t>(i) * 3);
    sqlite3_bind_text(key, 2, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(key);
    sqlite3_reset(key);
  }
  sqlite3_finalize(ins);
  sqlite3_finalize(key);
  Exec(db, "COMMIT");
  Exec(db, "CREATE INDEX k_code ON k (Code)");
  sqlite3_close(db);
}

// An empty copy of the table in a fresh file, for loading into.
std::string FreshTarget(const std::string& name) {
  std::string file = kDir + "/" + name;
  std::filesystem::remove(file);
  sqlite3* db = nullptr;
  sqlite3_open(file.c_str(), &db);
  Exec(db, (std::string("CREATE TABLE t ") + kColumns).c_str());
  sqlite3_close(db);
  return file;
}

// Runs `work` in a child process; returns the child's peak resident memory in MiB.
double InChild(const std::function<int()>& work) {
  pid_t pid = fork();
  if (pid == 0) _exit(work());
  int status = 0;
  rusage usage{};
  wait4(pid, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) std::abort();
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

int Shell(const std::string& db, const std::string& commands) {
  std::string cmd = "sqlite3 '" + db + "' " + commands;
  return std::system(cmd.c_str()) == 0 ? 0 : 1;
}

const std::string kVexFile = kDir + "/vex_dump.txt";
const std::string kShellFile = kDir + "/shell_dump.txt";

void Dump(benchmark::State& state, bool work_list) {
  MakeSource();
  double peak = 0;
  for (auto _ : state) {
    peak = InChild([work_list] {
      vex::TSQLiteDataSet ds(vex::FromUtf8(kSource), u"t");
      ds.Open();
      if (work_list) {
        vex::TStringList work;
        vex::TDBUtils::SaveDataSetToFile(vex::FromUtf8(kVexFile), &ds, work);
      } else {
        vex::TDBUtils::SaveDataSetToFile(vex::FromUtf8(kVexFile), &ds);
      }
      return 0;
    });
  }
  state.counters["peak_MB"] = peak;
}

void BM_Dump_TDBUtils(benchmark::State& state) { Dump(state, false); }
void BM_Dump_TDBUtilsWorkList(benchmark::State& state) { Dump(state, true); }

void BM_Dump_Sqlite3Shell(benchmark::State& state) {
  MakeSource();
  double peak = 0;
  for (auto _ : state) {
    peak = InChild([] {
      return Shell(kSource,
                   "'.mode list' '.separator |' '.nullvalue <NULL>' 'SELECT * FROM t' > '" +
                       kShellFile + "'");
    });
  }
  state.counters["peak_MB"] = peak;
}

void Load(benchmark::State& state, bool work_list) {
  MakeSource();
  if (!std::filesystem::exists(kVexFile)) {
    InChild([] {
      vex::TSQLiteDataSet ds(vex::FromUtf8(kSource), u"t");
      ds.Open();
      vex::TDBUtils::SaveDataSetToFile(vex::FromUtf8(kVexFile), &ds);
      return 0;
    });
  }
  double peak = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::string target = FreshTarget("vex_load.db");
    state.ResumeTiming();
    peak = InChild([target, work_list] {
      vex::TSQLiteDataSet ds(vex::FromUtf8(target), u"t");
      ds.SetCachedUpdates(true);
      if (work_list) {
        vex::TStringList work;
        vex::TDBUtils::LoadDataSetFromFile(vex::FromUtf8(kVexFile), &ds, work);
      } else {
        vex::TDBUtils::LoadDataSetFromFile(vex::FromUtf8(kVexFile), &ds);
      }
      ds.ApplyUpdates();
      return ds.RecordCount() == kRows ? 0 : 1;
    });
  }
  state.counters["peak_MB"] = peak;
}

void BM_Load_TDBUtils(benchmark::State& state) { Load(state, false); }
void BM_Load_TDBUtilsWorkList(benchmark::State& state) { Load(state, true); }

void BM_Load_Sqlite3Shell(benchmark::State& state) {
  MakeSource();
  double peak = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::string target = FreshTarget("shell_load.db");
    state.ResumeTiming();
    peak = InChild([target] {
      return Shell(target, "'.mode list' '.separator |' '.import \"" + kShellFile + "\" t'");
    });
  }
  state.counters["peak_MB"] = peak;
}

// Locate on the indexed Code column of a 1M-row table, beside a prepared SELECT of the row.
vex::TSQLiteDataSet& KeyTable() {
  static vex::TSQLiteDataSet ds(vex::FromUtf8(kSource), u"k");
  if (!ds.Active()) ds.Open();
  return ds;
}

void BM_Locate_TSQLiteDataSet(benchmark::State& state) {
  MakeSource();
  vex::TSQLiteDataSet& ds = KeyTable();
  std::mt19937 random(7);
  int64_t found = 0;
  for (auto _ : state) {
    int64_t code = static_cast<int64_t>(random() % kRows) * 3;
    found += ds.Locate(u"Code", vex::Variant(code), {}) ? 1 : 0;
  }
  if (found != static_cast<int64_t>(state.iterations())) state.SkipWithError("key not found");
}

void BM_Locate_PreparedSelect(benchmark::State& state) {
  MakeSource();
  sqlite3* db = nullptr;
  sqlite3_open(kSource.c_str(), &db);
  sqlite3_stmt* stmt = nullptr;
  sqlite3_prepare_v2(db, "SELECT rowid, Code, Name FROM k WHERE Code = ? LIMIT 1", -1, &stmt,
                     nullptr);
  std::mt19937 random(7);
  int64_t found = 0;
  for (auto _ : state) {
    sqlite3_bind_int64(stmt, 1, static_cast<int64_t>(random() % kRows) * 3);
    if (sqlite3_step(stmt) == SQLITE_ROW) {
      benchmark::DoNotOptimize(sqlite3_column_text(stmt, 2));
      ++found;
    }
    sqlite3_reset(stmt);
  }
  sqlite3_finalize(stmt);
  sqlite3_close(db);
  if (found != static_cast<int64_t>(state.iterations())) state.SkipWithError("key not found");
}

BENCHMARK(BM_Dump_TDBUtils)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();
BENCHMARK(BM_Dump_TDBUtilsWorkList)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();
BENCHMARK(BM_Dump_Sqlite3Shell)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();
BENCHMARK(BM_Load_TDBUtils)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();
BENCHMARK(BM_Load_TDBUtilsWorkList)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();
BENCHMARK(BM_Load_Sqlite3Shell)->Unit(benchmark::kMillisecond)->Iterations(2)->UseRealTime();
BENCHMARK(BM_Locate_TSQLiteDataSet)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Locate_PreparedSelect)->Unit(benchmark::kMicrosecond);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_Dump_TDBUtils", "BM_Dump_Sqlite3Shell",
                                vex::bench::TimeAtMost(1.5)},
                               {"BM_Load_TDBUtils", "BM_Load_Sqlite3Shell",
                                vex::bench::TimeAtMost(1.5)},
                               {"BM_Dump_TDBUtilsWorkList", "BM_Dump_Sqlite3Shell", {}},
                               {"BM_Load_TDBUtilsWorkList", "BM_Load_Sqlite3Shell", {}},
                               {"BM_Locate_TSQLiteDataSet", "BM_Locate_PreparedSelect", {}});
