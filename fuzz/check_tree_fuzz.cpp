// Feeds arbitrary bytes, decoded as UTF-8 with replacement, as tab-indented lines to
// ImportTreeFromList and exports the tree again. Neither may fail, and after one round the
// export is stable: a further round changes only the plain nodes, each of which gains one
// "[]0|" prefix (their prefix is deliberately not decoded on import). One exception, checked
// separately: two siblings that decode to the same key merge on export, and their children may
// then hold two ticked radios of one group, which the next import reduces to one.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/viewers/check_tv.h"

#include "fuzz_support.h"

using vex_fuzz::Check;

namespace {

vex::String Round(const vex::TStringList& lines, vex::TStringList& out) {
  vex::TCheckTree tree;
  vex::ImportTreeFromList(tree, lines);
  vex::ExportTreeToList(tree, out);
  // Every node is reachable both ways and keeps its place in the absolute order.
  for (int32_t i = 0; i < tree.Count(); ++i) Check(tree.Items(i)->AbsoluteIndex() == i);
  return out.Text();
}

// The lines of a further round as they must come out: plain keys prefixed once more.
vex::String PrefixPlainLines(const vex::TStringList& lines) {
  vex::String text;
  for (int32_t i = 0; i < lines.Count(); ++i) {
    const vex::String& line = lines[i];
    const size_t tabs = line.find_first_not_of(u'\t');
    vex::String key = line.substr(tabs);
    if (key.rfind(u"[]", 0) == 0) key = u"[]0|" + key;
    text += line.substr(0, tabs) + key + u"\r\n";
  }
  return text;
}

// actual equals the lines of expected, except that a ticked radio key ("1@") may have become
// an unticked one ("0@").
void CheckSameUpToUntickedRadios(const vex::TStringList& actual, const vex::String& expected) {
  vex::TStringList lines;
  lines.SetText(expected);
  Check(actual.Count() == lines.Count());
  for (int32_t i = 0; i < lines.Count(); ++i) {
    vex::String want = lines[i];
    const vex::String& got = actual[i];
    const size_t key = want.find_first_not_of(u'\t');
    if (got != want && want.compare(key, 2, u"1@") == 0) want[key] = u'0';
    Check(got == want);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vex;
  TStringList input;
  input.SetText(
      FromUtf8(std::string_view(reinterpret_cast<const char*>(data), size), TInvalidText::Replace));
  TStringList first;
  TStringList second;
  TStringList third;
  TStringList fourth;
  Round(input, first);
  Round(first, second);
  Round(second, third);
  Check(Round(third, fourth) == PrefixPlainLines(third));
  CheckSameUpToUntickedRadios(third, PrefixPlainLines(second));
  return 0;
}
