// Fuzzes the dataset text file loader: section file parsing, then every data line split into
// typed fields of an in-memory table. Bad values may raise EConvertError; nothing may crash.
#include <unistd.h>

#include <cstdio>
#include <string>

#include "fuzz_support.h"
#include "vex/data/db_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/mem_dataset.h"
#include "vex/platform/unicode.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const std::string path = "/tmp/dataset_text_fuzz_" + std::to_string(getpid()) + ".txt";
  if (FILE* f = std::fopen(path.c_str(), "wb")) {
    std::fwrite(data, 1, size, f);
    std::fclose(f);
  } else {
    return 0;
  }
  vex::TMemDataSet ds({{u"Id", vex::ftInteger},
                       {u"Name", vex::ftWideString},
                       {u"Price", vex::ftFloat},
                       {u"When", vex::ftDateTime},
                       {u"Flag", vex::ftBoolean},
                       {u"Big", vex::ftLargeint},
                       {u"Data", vex::ftBlob}});
  vex::TStringList work;
  try {
    vex::TDBUtils::LoadDataSetFromFile(vex::FromUtf8(path), &ds, work);
  } catch (const vex::EConvertError&) {
    ds.Cancel();
  }
  vex_fuzz::Check(ds.RecordCount() <= work.Count());
  // Every stored record can be written out again.
  vex::TDBUtils::SaveDataSetInStrings(&ds, work, true, u'|', false, true);
  vex_fuzz::Check(ds.RecordCount() == 0 || work.Count() == ds.FieldCount() + 3 + ds.RecordCount());
  return 0;
}
