// Reads arbitrary tab-indented TQueryList text into a described record with
// TRttiUtils::ProcessVariableWithList, with and without array lengths. Bad entries may only raise
// EConvertError. Whatever was read must then survive a store and a read into an empty record
// (floats as their 15-digit text).
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "vex/companion/query_list.h"
#include "vex/data/rtti_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

namespace fuzz_rtti {

using vex::String;

enum TMode { mdOff, mdSlow, mdFast };
VEX_DESCRIBE_ENUM(TMode, mdOff, mdSlow, mdFast)

struct TPoint {
  int32_t X;
  double Y;
  bool operator==(const TPoint&) const = default;
};
VEX_DESCRIBE_RECORD(TPoint, X, Y)

struct TRec {
  int32_t I;
  int64_t L;
  uint8_t B;
  bool F;
  TMode M;
  String S;
  double D;
  TPoint P[2];
  std::vector<TPoint> Pts;
  std::vector<String> Names;
  std::vector<std::vector<int32_t>> Grid;
  bool operator==(const TRec&) const = default;
};
VEX_DESCRIBE_RECORD(TRec, I, L, B, F, M, S, D, P, Pts, Names, Grid)

}  // namespace fuzz_rtti

using vex_fuzz::Check;

namespace {

using namespace vex;
using fuzz_rtti::TRec;

// Reads list into rec; false when a bad entry raised EConvertError (the only error allowed).
bool Read(TRec& rec, TQueryList& list, bool with_lengths) {
  try {
    TRttiUtils::ProcessVariableWithList(TypeInfo<TRec>(), &rec, u"R", list, with_lengths, false,
                                        true);
    return true;
  } catch (const EConvertError&) {
    return false;
  }
}

// Replaces each double by the value of its 15-digit text; false when that text does not read
// back (values within half a unit of the largest double).
bool NormaliseFloats(TRec& rec) {
  bool ok = true;
  TRttiUtils::ProcessVariable(TypeInfo<TRec>(), &rec, u"",
                              [&](const String&, const TRttiType* type, void* addr) {
                                if (type->Kind != tkFloat) return;
                                double& d = *static_cast<double*>(addr);
                                if (!TryStrToFloat(FloatToStr(d), d)) ok = false;
                              });
  return ok;
}

bool SameValue(TRec a, TRec b) {
  // NaN never equals itself: compare the text of the floats, the rest by value.
  std::vector<String> texts;
  auto collect = [&](const String&, const TRttiType* type, void* addr) {
    if (type->Kind == tkFloat) {
      texts.push_back(FloatToStr(*static_cast<double*>(addr)));
      *static_cast<double*>(addr) = 0;
    }
  };
  TRttiUtils::ProcessVariable(TypeInfo<TRec>(), &a, u"", collect);
  const std::vector<String> first = std::move(texts);
  texts.clear();
  TRttiUtils::ProcessVariable(TypeInfo<TRec>(), &b, u"", collect);
  return first == texts && a == b;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const String text =
      FromUtf8(std::string_view(reinterpret_cast<const char*>(data), size), TInvalidText::Replace);
  TQueryList list;
  list.ImportFromStrWithTabs(text);

  for (bool with_lengths : {false, true}) {
    TRec rec{};
    rec.Pts.resize(1);  // without lengths only present elements are read
    if (!Read(rec, list, with_lengths)) continue;
    if (!NormaliseFloats(rec)) continue;

    TQueryList stored;
    TRttiUtils::ProcessVariableWithList(TypeInfo<TRec>(), &rec, u"R", stored, true);
    TRec back{};
    Check(Read(back, stored, true));
    Check(SameValue(rec, back));
  }
  return 0;
}
