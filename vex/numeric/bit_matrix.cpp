#include "vex/numeric/bit_matrix.h"

#include "vex/numeric/bit_utils.h"

namespace vex {

namespace {

const String kOptions = u"Options";
const String kHeaders = u"Headers";
const String kTitles = u"Titles";
const String kChars = u"Chars";
const String kBitLines = u"BitLines";

}  // namespace

TBitMatrix::TBitMatrix() = default;
TBitMatrix::~TBitMatrix() = default;

int32_t TBitMatrix::LoadFromStr(const String& QListStr) {
  if (!FDocument) FDocument = std::make_unique<TQueryGroupList>();
  FDocument->ImportFromStrWithTabs(QListStr);
  return LoadValues();
}

int32_t TBitMatrix::LoadValues() {
  if (!FDocument || FDocument->FindItem(kOptions) == nullptr) return 0;

  const String headers_section = FDocument->GetValueByKey(kOptions, kHeaders);
  if (headers_section.empty()) return 0;
  TStrings* headers = FDocument->GetItemStrings(headers_section);
  if (headers == nullptr) return 0;
  FHeaders = headers;

  const String titles_section = FDocument->GetValueByKey(kOptions, kTitles);
  if (titles_section.empty()) return 0;
  TStrings* titles = FDocument->GetItemStrings(titles_section);
  if (titles == nullptr) return 0;
  FTitles = titles;

  // Headers, Titles and BitLines may all name one section: the document keeps one list per
  // section name, and they then share it.
  TStrings* lines = FDocument->GetItemStrings(kBitLines);
  if (lines == nullptr || lines->Count() != FTitles->Count()) return 0;

  const int32_t columns = FHeaders->Count();
  if (columns > MaxColumns) return 0;
  for (int32_t i = 0; i < lines->Count(); ++i) {
    if (static_cast<int32_t>(lines->Strings(i).size()) != columns) return 0;
  }

  const String chars = FDocument->GetValueByKey(kOptions, kChars);
  if (chars.size() != 2 || chars[0] == chars[1]) return 0;

  return FillRows(*lines, columns, chars) ? 1 : 0;
}

// Fills one row word per line from its marker characters; true when every cell held one of
// the two markers. A cell with any other character stays clear.
bool TBitMatrix::FillRows(const TStrings& lines, int32_t columns, const String& chars) {
  const int32_t rows = lines.Count();
  FBits.assign(static_cast<size_t>(rows), 0);
  FColumns = columns;
  int64_t recognised = 0;
  for (int32_t i = 0; i < rows; ++i) {
    const String& line = lines.Strings(i);
    uint32_t& row = FBits[static_cast<size_t>(i)];
    for (int32_t j = 0; j < columns; ++j) {
      const Char c = line[static_cast<size_t>(j)];
      if (c == chars[0]) {
        TBitUtils::SetBitFalse(&row, j);
        ++recognised;
      } else if (c == chars[1]) {
        TBitUtils::SetBitTrue(&row, j);
        ++recognised;
      }
    }
  }
  return recognised == static_cast<int64_t>(rows) * columns;
}

bool TBitMatrix::BitValue(int32_t Row, int32_t Col) const {
  if (Row < 0 || Col < 0) return FDefValue;
  // Beyond the table is a caller's mistake; it gets the default rather than a stray read.
  if (static_cast<size_t>(Row) >= FBits.size() || Col >= FColumns) return FDefValue;
  return TBitUtils::GetBit(&FBits[static_cast<size_t>(Row)], Col);
}

bool TBitMatrix::BitValue(const String& Title, const String& Header) const {
  return BitValue(IndexOfTitle(Title), IndexOfHeader(Header));
}

int32_t TBitMatrix::IndexOfHeader(const String& S) const {
  return FHeaders != nullptr ? FHeaders->IndexOf(S) : -1;
}

int32_t TBitMatrix::IndexOfTitle(const String& S) const {
  return FTitles != nullptr ? FTitles->IndexOf(S) : -1;
}

TStrings* TBitMatrix::GetListItems(const String& Name) {
  return FDocument ? FDocument->GetItemStrings(Name) : nullptr;
}

}  // namespace vex
