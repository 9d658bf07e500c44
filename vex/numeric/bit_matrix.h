// uBitMatrix: TBitMatrix, a read-only table of yes/no cells with named rows ("titles") and named
// columns ("headers"), loaded from a keyed, tab-indented document (see TQueryGroupList):
//
//   Options
//   	Headers=Cols
//   	Titles=Rows
//   	Chars=.X
//   Cols
//   	A
//   	B
//   	C
//   Rows
//   	R1
//   	R2
//   BitLines
//   	X.X
//   	.XX
//
//   TBitMatrix m;
//   m.LoadFromStr(text);           // 1
//   m.BitValue(u"R1", u"C");       // true
//   m.BitValue(u"R2", u"A");       // false
//
// "Chars" names the marker of a clear cell and then of a set cell. A row is one 32-bit word, so
// a matrix has at most 32 columns; wider documents fail to load.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "vex/companion/query_list.h"
#include "vex/platform/object.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"

namespace vex {

class TBitMatrix : public TObject {
 public:
  /// An empty matrix: no document, no lists, no rows, DefValue false.
  TBitMatrix();
  /// Frees the document and with it the title and header lists.
  ~TBitMatrix() override;
  TBitMatrix(const TBitMatrix&) = delete;
  TBitMatrix& operator=(const TBitMatrix&) = delete;

  String ClassName() const override { return u"TBitMatrix"; }

  /// Imports QListStr as tab-indented text into the document (created on first use, reused
  /// afterwards) and returns LoadValues(): 1 on success, 0 on failure. Malformed text never
  /// raises.
  int32_t LoadFromStr(const String& QListStr);
  /// Validates the document and fills the rows; 1 only when every step succeeds, 0 at the first
  /// that fails. Headers and Titles are replaced as soon as they are read, so a load that fails
  /// later leaves the new lists with the rows of the previous load (or, when a cell holds a
  /// character other than the two markers, with the rows just filled).
  int32_t LoadValues();

  /// DefValue when Row or Col is negative or beyond the loaded table; otherwise the cell.
  bool BitValue(int32_t Row, int32_t Col) const;
  /// The cell at the title and header of these names; DefValue when either is unknown.
  bool BitValue(const String& Title, const String& Header) const;
  /// Position of S in Headers (by the list's own comparison), or -1.
  int32_t IndexOfHeader(const String& S) const;
  /// Position of S in Titles, or -1.
  int32_t IndexOfTitle(const String& S) const;
  /// The items of the document's section Name, owned by the document; nullptr when there is no
  /// document or no such section. Lets callers read further sections of the same text.
  TStrings* GetListItems(const String& Name);

  /// Row names in row order; owned by the document, nullptr before the first load that got
  /// that far.
  TStrings* Titles() const { return FTitles; }
  /// Column names in column order; owned by the document, nullptr like Titles.
  TStrings* Headers() const { return FHeaders; }
  /// The answer for a cell outside the table.
  bool DefValue() const { return FDefValue; }
  void SetDefValue(bool Value) { FDefValue = Value; }

  /// The most columns a matrix can hold: one bit of a 32-bit row word each.
  static constexpr int32_t MaxColumns = 32;

 private:
  bool FillRows(const TStrings& lines, int32_t columns, const String& chars);

  std::unique_ptr<TQueryGroupList> FDocument;
  TStrings* FTitles = nullptr;
  TStrings* FHeaders = nullptr;
  std::vector<uint32_t> FBits;  // bit j of a row is the cell of column j
  int32_t FColumns = 0;         // columns of the rows in FBits
  bool FDefValue = false;
};

}  // namespace vex
