// Fuzzes the dataset text file loader: section file parsing, then every data line split into
// typed fields of an in-memory table. Bad values may raise EConvertError; nothing may crash. The
// loader reads the file line by line, so it is checked against the whole-file section reader.
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>

#include "fuzz_support.h"
#include "vex/data/db_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/ini_file.h"
#include "vex/platform/mem_dataset.h"
#include "vex/platform/unicode.h"

namespace {

std::unique_ptr<vex::TMemDataSet> Table() {
  return std::make_unique<vex::TMemDataSet>(
      std::vector<vex::TFieldDef>{{u"Id", vex::ftInteger},
                                  {u"Name", vex::ftWideString},
                                  {u"Price", vex::ftFloat},
                                  {u"When", vex::ftDateTime},
                                  {u"Flag", vex::ftBoolean},
                                  {u"Big", vex::ftLargeint},
                                  {u"Data", vex::ftBlob}});
}

// The loader as the whole-file section reader defines it; false when a record raised.
bool ReferenceLoad(const vex::String& file, vex::TDataSet& ds, vex::TStrings& data) {
  vex::TStringList names;
  vex::TMemIniFile ini(file);
  ini.ReadSection(u"Fields", names);
  ini.ReadSectionValues(u"Data", data);
  ds.Open();
  try {
    for (int32_t i = 0; i < data.Count(); ++i) {
      size_t equals = data[i].find(u'=');
      ds.Append();
      vex::TDBUtils::SetListFieldsStrVal(
          &ds, &names, equals == vex::String::npos ? vex::String() : data[i].substr(equals + 1),
          u'|');
      ds.Post();
    }
  } catch (const vex::EConvertError&) {
    ds.Cancel();
    return false;
  }
  return true;
}

vex::String Records(vex::TDataSet& ds) {
  vex::TStringList lines;
  vex::TDBUtils::SaveDataSetInStrings(&ds, lines, true, u'|', false, true);
  return lines.Text();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path = "/tmp/dataset_text_fuzz_" + std::to_string(getpid()) + ".txt";
  if (FILE* f = std::fopen(path.c_str(), "wb")) {
    std::fwrite(data, 1, size, f);
    std::fclose(f);
  } else {
    return 0;
  }
  auto ds = Table();
  vex::TStringList work;
  bool loaded = true;
  try {
    vex::TDBUtils::LoadDataSetFromFile(vex::FromUtf8(path), ds.get(), work);
  } catch (const vex::EConvertError&) {
    ds->Cancel();
    loaded = false;
  }
  vex_fuzz::Check(ds->RecordCount() <= work.Count());
  auto reference = Table();
  vex::TStringList reference_work;
  vex_fuzz::Check(ReferenceLoad(vex::FromUtf8(path), *reference, reference_work) == loaded);
  vex_fuzz::Check(Records(*ds) == Records(*reference));
  vex_fuzz::Check(work.Text() == reference_work.Text());
  // Every stored record can be written out again.
  vex::TDBUtils::SaveDataSetInStrings(ds.get(), work, true, u'|', false, true);
  vex_fuzz::Check(ds->RecordCount() == 0 ||
                  work.Count() == ds->FieldCount() + 3 + ds->RecordCount());
  return 0;
}
