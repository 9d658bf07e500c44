// Feeds arbitrary bytes to the text forms of TStringList. The first byte picks the delimiter,
// quote character and strictness; the rest is the text. Splitting must never fail, joining
// what was split and splitting again must give the same lines, and the buffered stream reader
// must see the same lines as LoadFromStream.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "vex/platform/streams.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/text_io.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;


vex::TStringDynArray NonEmptyLines(const vex::TStrings& list) {
  vex::TStringDynArray lines;
  for (int32_t i = 0; i < list.Count(); ++i) {
    if (!list[i].empty()) lines.push_back(list[i]);
  }
  return lines;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vex;
  if (size == 0) return 0;
  const uint8_t mode = data[0];
  const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
  const String text = FromUtf8(bytes, TInvalidText::Replace);

  TStringList list, again;
  list.SetDelimiter(u",; |\t"[mode % 5]);
  list.SetQuoteChar((mode & 0x08) ? u'\'' : u'"');
  list.SetStrictDelimiter((mode & 0x10) != 0);
  again.Assign(list);

  list.SetDelimitedText(text);
  again.SetDelimitedText(list.DelimitedText());
  if (!list.StrictDelimiter() && list.Delimiter() <= u' ') {
    // Empty lines are joined unquoted, and a blank delimiter next to a blank one is skipped as
    // padding, so only the non-empty lines survive the round trip (as in the platform).
    Check(NonEmptyLines(again) == NonEmptyLines(list));
  } else {
    Check(again.Equals(list));
  }

  list.SetCommaText(text);
  again.SetCommaText(list.CommaText());
  Check(again.Equals(list));

  list.SetText(text);
  again.SetText(list.Text());
  Check(again.Equals(list));

  // Sorting, Find and IndexOf must agree with the collation functions on any mix of lines.
  const bool case_sensitive = (mode & 0x20) != 0;
  auto collate = case_sensitive ? AnsiCompareStr : AnsiCompareText;
  TStringList sorted;
  sorted.Assign(again);  // copies CaseSensitive and Duplicates too, so set them afterwards
  sorted.SetCaseSensitive(case_sensitive);
  sorted.SetDuplicates(dupAccept);
  sorted.SetSorted(true);
  again.SetCaseSensitive(case_sensitive);
  for (int32_t i = 0; i < sorted.Count(); ++i) {
    if (i > 0) Check(collate(sorted[i - 1], sorted[i]) <= 0);
    int32_t found = sorted.IndexOf(sorted[i]);
    Check(found >= 0 && found <= i && collate(sorted[found], sorted[i]) == 0);
    Check(again.IndexOf(sorted[i]) >= 0);
  }

  // A leading UTF-16 byte-order mark makes LoadFromStream decode UTF-16; the reader is UTF-8 only.
  const bool utf16 = bytes.size() >= 2 && ((bytes[0] == '\xFF' && bytes[1] == '\xFE') ||
                                           (bytes[0] == '\xFE' && bytes[1] == '\xFF'));
  if (utf16) return 0;
  TStringStream stream(bytes);
  list.LoadFromStream(stream);
  stream.SetPosition(0);
  TStreamReader reader(stream, TInvalidText::Replace, 16 + mode % 32);
  String line;
  int32_t index = 0;
  while (reader.ReadLine(line)) {
    Check(index < list.Count() && list[index] == line);
    ++index;
  }
  Check(index == list.Count());
  return 0;
}
