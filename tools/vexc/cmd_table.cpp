// vexc table dump / load and vexc settings get / set over SQLite tables.
//
// dump writes the dataset text file ("[Fields]", "[Data]", "|"-joined values); load appends the
// records of such a file in cached-updates mode and applies them in one transaction, so a file
// that fails at any line leaves the table as it was.
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli.h"
#include "vex/data/db_utils.h"
#include "vex/data/sqlite_dataset.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/ini_file.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vexc {
namespace {

using vex::String;

String Wide(const std::string& utf8) { return vex::FromUtf8(utf8, vex::TInvalidText::Replace); }

int Dump(const std::string& db, const std::string& table, const std::string& file) {
  vex::TSQLiteDataSet ds(Wide(db), Wide(table));
  ds.Open();
  if (file.empty() || file == "-") {
    vex::TStringList work;
    vex::TDBUtils::SaveDataSetInStrings(&ds, work, true, u'|', false, true);
    std::cout << vex::ToUtf8(work.Text(), vex::TInvalidText::Replace);
  } else {
    vex::TDBUtils::SaveDataSetToFile(Wide(file), &ds);
  }
  return kExitOk;
}

// The 1-based file line of the record-th entry (from 0) of the "Data" section, counted as the
// section file reader counts entries: blank lines and ";" comments are skipped.
int64_t LineOfDataEntry(const std::string& file, int64_t record) {
  Input input(file);
  String line;
  bool in_data = false;
  int64_t seen = 0;
  while (input.ReadLine(line)) {
    String t = vex::Trim(line);
    if (t.empty() || t[0] == u';') continue;
    if (t.front() == u'[' && t.back() == u']') {
      in_data = vex::SameText(vex::Trim(t.substr(1, t.size() - 2)), u"Data");
      continue;
    }
    if (in_data && seen++ == record) return input.LineNumber();
  }
  return input.LineNumber();
}

vex::TFieldType ParseType(const std::string& name) {
  static const std::map<std::string, vex::TFieldType> kTypes = {
      {"autoinc", vex::ftAutoInc}, {"integer", vex::ftInteger},  {"largeint", vex::ftLargeint},
      {"float", vex::ftFloat},     {"text", vex::ftWideString},  {"blob", vex::ftBlob},
      {"memo", vex::ftWideMemo},   {"date", vex::ftDate},        {"datetime", vex::ftDateTime},
      {"boolean", vex::ftBoolean}, {"currency", vex::ftCurrency}};
  auto it = kTypes.find(vex::ToUtf8(vex::LowerCase(Wide(name))));
  if (it == kTypes.end()) throw InputError(name, "unknown column type");
  return it->second;
}

// A table made from the file's "Fields" section; columns are text unless typed NAME=TYPE.
void CreateFromFile(const std::string& db, const std::string& table, const std::string& file,
                    const std::vector<std::string>& types) {
  std::map<String, vex::TFieldType> typed;
  for (const std::string& t : types) {
    size_t eq = t.find('=');
    if (eq == std::string::npos) throw InputError(t, "expected NAME=TYPE");
    typed[vex::UpperCase(Wide(t.substr(0, eq)))] = ParseType(t.substr(eq + 1));
  }
  vex::TMemIniFile ini(Wide(file));
  vex::TStringList names;
  ini.ReadSection(u"Fields", names);
  if (names.Count() == 0) throw InputError(file, "no [Fields] section");
  std::vector<std::pair<String, vex::TFieldType>> columns;
  for (int32_t i = 0; i < names.Count(); ++i) {
    auto it = typed.find(vex::UpperCase(names[i]));
    columns.emplace_back(names[i], it == typed.end() ? vex::ftWideString : it->second);
  }
  vex::TSQLiteDataSet::CreateTable(Wide(db), Wide(table), columns);
}

int Load(const std::string& db, const std::string& table, const std::string& file, bool create,
         const std::vector<std::string>& types) {
  if (!std::filesystem::is_regular_file(file)) throw InputError(file, "cannot open file");
  if (create && !vex::TSQLiteDataSet::TableExists(Wide(db), Wide(table))) {
    CreateFromFile(db, table, file, types);
  }
  vex::TSQLiteDataSet ds(Wide(db), Wide(table));
  ds.SetCachedUpdates(true);
  ds.Open();
  const int32_t before = ds.RecordCount();
  const auto size = static_cast<int64_t>(std::filesystem::file_size(file));
  Progress progress(file, size);
  int64_t posted = 0;
  ds.AfterPost = [&](vex::TDataSet*) {
    // About one line per record; the bar only needs to move steadily.
    if (++posted % 4096 == 0) progress.Advance(4096 * 48);
  };
  try {
    vex::TDBUtils::LoadDataSetFromFile(Wide(file), &ds);
  } catch (const vex::Exception& e) {
    int64_t record = ds.RecordCount() - before;
    ds.Cancel();
    ds.CancelUpdates();
    throw InputError(file, LineOfDataEntry(file, record), e.what());
  }
  ds.ApplyUpdates();
  std::cerr << (ds.RecordCount() - before) << " records loaded into " << table << "\n";
  return kExitOk;
}

void RegisterTable(CLI::App& app, Action& action) {
  struct Options {
    std::string db, table, file;
    bool create = false;
    std::vector<std::string> types;
  };
  auto* cmd =
      app.add_subcommand("table", "dump a SQLite table to the dataset text file or load one");
  cmd->require_subcommand(1);
  auto dump = std::make_shared<Options>();
  auto* d = cmd->add_subcommand("dump", "write TABLE of DB as the dataset text file");
  d->add_option("db", dump->db, "SQLite database file")->required();
  d->add_option("table", dump->table, "table name")->required();
  d->add_option("file", dump->file, "output file; none or '-' writes standard output");
  d->footer(
      "Example:\n"
      "  $ vexc table load shop.db Items shop_items.txt --create 2>/dev/null\n"
      "  $ vexc table dump shop.db Items | tr -d '\\r' | sed -n 9,10p\n"
      "  [Data]\n"
      "  0=1|Hex bolt M6|250|0.12|2024-03-01|<NULL>");
  d->callback(
      [&action, dump] { action = [dump] { return Dump(dump->db, dump->table, dump->file); }; });

  auto load = std::make_shared<Options>();
  auto* l = cmd->add_subcommand(
      "load", "append the records of a dataset text file to TABLE in one transaction");
  l->add_option("db", load->db, "SQLite database file")->required();
  l->add_option("table", load->table, "table name")->required();
  l->add_option("file", load->file, "dataset text file")->required();
  l->add_flag("--create", load->create,
              "create the table (and the database) from the file's [Fields] when missing");
  l->add_option("--type", load->types,
                "NAME=TYPE for --create: autoinc, integer, largeint, float, currency, text, "
                "memo, blob, date, datetime, boolean (default text)");
  l->footer(
      "Example:\n"
      "  $ vexc table load shop.db Items shop_items.txt --create --type Id=autoinc --type "
      "Qty=integer\n"
      "  5 records loaded into Items");
  l->callback([&action, load] {
    action = [load] { return Load(load->db, load->table, load->file, load->create, load->types); };
  });
}

void RegisterSettings(CLI::App& app, Action& action) {
  struct Options {
    std::string db, path, value, table = "Settings", fallback;
  };
  auto* cmd =
      app.add_subcommand("settings", "read and write string settings in a Section/Key/Value table");
  cmd->require_subcommand(1);
  auto get = std::make_shared<Options>();
  auto* g = cmd->add_subcommand("get", "print the value at PATH (\"Section\\Key\")");
  g->add_option("db", get->db, "SQLite database file")->required();
  g->add_option("path", get->path, "Section\\Key")->required();
  g->add_option("--table", get->table, "settings table (default Settings)");
  g->add_option("--default", get->fallback, "printed when the setting is missing");
  g->footer(
      "Example:\n"
      "  $ vexc settings set app.db 'Main\\Width' 640\n"
      "  $ vexc settings get app.db 'Main\\Height' --default 480\n"
      "  480");
  g->callback([&action, get] {
    action = [get] {
      vex::TSQLiteDataSet ds(Wide(get->db), Wide(get->table));
      ds.Open();
      WriteLine(vex::TDBUtils::ReadDataToStringDef(&ds, Wide(get->path), Wide(get->fallback)));
      return kExitOk;
    };
  });
  auto set = std::make_shared<Options>();
  auto* s = cmd->add_subcommand("set", "store VALUE at PATH, creating the table when missing");
  s->add_option("db", set->db, "SQLite database file")->required();
  s->add_option("path", set->path, "Section\\Key")->required();
  s->add_option("value", set->value, "the value")->required();
  s->add_option("--table", set->table, "settings table (default Settings)");
  s->footer(
      "Example:\n"
      "  $ vexc settings set app.db 'Main\\Width' 640 && vexc settings get app.db 'Main\\Width'\n"
      "  640");
  s->callback([&action, set] {
    action = [set] {
      vex::TSQLiteDataSet::CreateTable(Wide(set->db), Wide(set->table),
                                       {{u"Section", vex::ftWideString},
                                        {u"Key", vex::ftWideString},
                                        {u"Value", vex::ftWideString}});
      vex::TSQLiteDataSet ds(Wide(set->db), Wide(set->table));
      ds.Open();
      if (!vex::TDBUtils::WriteDataAsStringDef(&ds, Wide(set->path), Wide(set->value))) {
        throw InputError(set->path, "not a Section\\Key path");
      }
      return kExitOk;
    };
  });
}

}  // namespace

void RegisterTableCommands(CLI::App& app, Action& action) {
  RegisterTable(app, action);
  RegisterSettings(app, action);
}

}  // namespace vexc
