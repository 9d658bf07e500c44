// Format with an arbitrary format string and arguments taken from the input: it returns text
// or raises EConvertError, nothing else. The float and date pictures never raise at all, and
// FloatToStr's text always parses back.
//
// Input layout: one byte with the argument count (low 3 bits), then per argument a kind byte
// and its payload, then the format string as Latin-1 units (so "%" and digits are common).
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "vex/platform/datetime.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"

namespace {

class Reader {
 public:
  Reader(const uint8_t* data, size_t size) : data_(data), size_(size) {}
  bool Has(size_t n) const { return size_ - pos_ >= n; }
  uint8_t Byte() { return Has(1) ? data_[pos_++] : 0; }
  template <class T>
  T Value() {
    T v{};
    if (Has(sizeof v)) {
      std::memcpy(&v, data_ + pos_, sizeof v);
      pos_ += sizeof v;
    }
    return v;
  }
  vex::String Rest() {
    vex::String s;
    for (; pos_ < size_; ++pos_) s.push_back(static_cast<char16_t>(data_[pos_]));
    return s;
  }
  vex::String Short() {
    const size_t n = Byte() % 16;
    vex::String s;
    for (size_t i = 0; i < n && Has(1); ++i) s.push_back(static_cast<char16_t>(Byte()));
    return s;
  }

 private:
  const uint8_t* data_;
  size_t size_;
  size_t pos_ = 0;
};

vex::TVarRec ReadArg(Reader& in) {
  switch (in.Byte() % 8) {
    case 0:
      return in.Value<int32_t>();
    case 1:
      return in.Value<int64_t>();
    case 2:
      return in.Value<uint64_t>();
    case 3:
      return in.Value<double>();
    case 4:
      return in.Short();
    case 5:
      return static_cast<char16_t>(in.Byte());
    case 6:
      return (in.Byte() & 1) != 0;
    default:
      return reinterpret_cast<const void*>(static_cast<uintptr_t>(in.Value<uint32_t>()));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Reader in(data, size);
  const size_t count = in.Byte() % 8;
  std::vector<vex::TVarRec> args;
  for (size_t i = 0; i < count; ++i) args.push_back(ReadArg(in));
  const double number =
      args.empty() || args[0].VType() != vex::vtExtended ? 1234.5 : args[0].AsDouble();
  const vex::String fmt = in.Rest();
  try {
    vex::Format(fmt, args);
  } catch (const vex::EConvertError&) {
  }
  vex::FormatFloat(fmt, number);
  vex::FormatDateTime(fmt, std::fmod(number, 3e6));
  const vex::String text = vex::FloatToStr(number);
  double back = 0;
  if (!vex::TryStrToFloat(text, back) && std::fabs(number) <= 1.79769313486231e308 &&
      !std::isinf(number)) {
    std::abort();
  }
  for (auto f : {vex::ffGeneral, vex::ffExponent, vex::ffFixed, vex::ffNumber, vex::ffCurrency}) {
    vex::FloatToStrF(number, f, static_cast<int32_t>(count * 3), static_cast<int32_t>(count));
  }
  return 0;
}
