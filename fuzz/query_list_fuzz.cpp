// Feeds arbitrary bytes, decoded as UTF-8 with replacement, to the tab-indented import of
// TQueryGroupList. The import must never fail, and its export must be a fixed point: importing
// the export (as text, or line by line from a string list, or after a deep copy) exports the
// same text again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "vex/companion/query_list.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

using vex_fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vex;
  const String text = FromUtf8(
      std::string_view(reinterpret_cast<const char*>(data), size), TInvalidText::Replace);

  TQueryGroupList list;
  list.ImportFromStrWithTabs(text);
  const String exported = list.ExportToStrWithTabs();

  TQueryList again;
  again.ImportFromStrWithTabs(exported);
  Check(again.ExportToStrWithTabs() == exported);

  TStringList lines;
  list.ExportToListWithTabs(lines);
  TQueryList from_lines;
  from_lines.ImportFromListWithTabs(lines);
  Check(from_lines.ExportToStrWithTabs() == exported);

  TQueryList copy;
  copy.Assign(list);
  Check(copy.ExportToStrWithTabs() == exported);

  // Lookups by the first key as a section, a name and a path must stay inside the tree.
  if (list.Count() > 0) {
    const String key = list.Keys(0);
    if (TStrings* strings = list.GetItemStrings(key)) {
      const TQueryList* section = list.GetItemList(key);
      Check(strings->Count() == (section == nullptr ? 0 : section->Count()));
    }
    list.GetValueByKey(key, key);
    list.GetValueByPath(key);
    // A name cannot hold "=" (the first "=" ends it), so only such keys read back.
    list.SetValueByPath(key + u"." + key, key);
    if (key.find(u'=') == String::npos) {
      Check(list.GetValueByPath(key + u"." + key, u"") == key);
    }
  }
  return 0;
}
