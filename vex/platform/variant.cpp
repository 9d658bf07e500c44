#include "vex/platform/variant.h"

#include <cmath>
#include <limits>
#include <utility>

#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"

namespace vex {

Variant Variant::Null() {
  Variant v;
  v.value_ = NullTag{};
  return v;
}

Variant Variant::FromDate(TDateTime value) {
  Variant v;
  v.value_ = DateTag{value};
  return v;
}

TVarType Variant::VarType() const {
  static constexpr TVarType kTypes[] = {varEmpty,   varNull,    varBoolean,
                                        varInteger, varInt64,   varDouble,
                                        varDate,    varUString, varArray | varVariant};
  return kTypes[value_.index()];
}

void Variant::RaiseCast(TVarType target) const {
  throw EVariantError(u"Could not convert variant of type (" + VarTypeAsText(VarType()) +
                      u") into type (" + VarTypeAsText(target) + u")");
}

namespace {

// Integer text first (so that "$1F" is read), then float text.
bool ParseNumberText(const String& s, double& value) {
  int64_t i = 0;
  if (TryStrToInt64(s, i)) {
    value = static_cast<double>(i);
    return true;
  }
  return TryStrToFloat(s, value);
}

// Rounds half to even into the range [lo, hi]; false when outside or not a number.
bool RoundInto(double d, double lo, double hi, int64_t& out) {
  const double r = std::nearbyint(d);
  if (!(r >= lo && r <= hi)) return false;
  out = static_cast<int64_t>(r);
  return true;
}

}  // namespace

// Numeric value of every kind that has one; false for Null, arrays and non-numeric strings.
bool Variant::TryNumber(double& value) const {
  switch (value_.index()) {
    case 0:
      value = 0;
      return true;
    case 2:
      value = std::get<bool>(value_) ? -1 : 0;
      return true;
    case 3:
      value = std::get<int32_t>(value_);
      return true;
    case 4:
      value = static_cast<double>(std::get<int64_t>(value_));
      return true;
    case 5:
      value = std::get<double>(value_);
      return true;
    case 6:
      value = std::get<DateTag>(value_).value;
      return true;
    case 7:
      return ParseNumberText(std::get<String>(value_), value);
    default:
      return false;
  }
}

String Variant::AsString() const {
  switch (value_.index()) {
    case 0:
      return String();
    case 2:
      return BoolToStr(std::get<bool>(value_), true);
    case 3:
      return IntToStr(std::get<int32_t>(value_));
    case 4:
      return IntToStr(std::get<int64_t>(value_));
    case 5:
      return FloatToStr(std::get<double>(value_));
    case 6:
      return DateTimeToStr(std::get<DateTag>(value_).value);
    case 7:
      return std::get<String>(value_);
    default:
      RaiseCast(varUString);
  }
}

namespace {
constexpr double kInt64Low = -9223372036854775808.0;
constexpr double kInt64High = 9223372036854774784.0;  // the largest double below 2^63
}  // namespace

int64_t Variant::AsInt64() const {
  if (const auto* i = std::get_if<int64_t>(&value_)) return *i;
  if (const auto* s = std::get_if<String>(&value_)) {
    int64_t exact = 0;
    if (TryStrToInt64(*s, exact)) return exact;  // 64-bit text stays exact
  }
  double d = 0;
  int64_t r = 0;
  if (!TryNumber(d) || !RoundInto(d, kInt64Low, kInt64High, r)) RaiseCast(varInt64);
  return r;
}

int32_t Variant::AsInteger() const {
  if (const auto* i = std::get_if<int32_t>(&value_)) return *i;
  double d = 0;
  int64_t r = 0;
  if (!TryNumber(d) || !RoundInto(d, INT32_MIN, INT32_MAX, r)) RaiseCast(varInteger);
  return static_cast<int32_t>(r);
}

double Variant::AsDouble() const {
  double d = 0;
  if (!TryNumber(d)) RaiseCast(varDouble);
  return d;
}

TDateTime Variant::AsDateTime() const {
  double d = 0;
  if (!TryNumber(d)) RaiseCast(varDate);
  return d;
}

bool Variant::AsBoolean() const {
  if (const auto* b = std::get_if<bool>(&value_)) return *b;
  if (const auto* s = std::get_if<String>(&value_)) {
    if (SameText(*s, u"True")) return true;
    if (SameText(*s, u"False")) return false;
  }
  double d = 0;
  if (!TryNumber(d)) RaiseCast(varBoolean);
  return d != 0;
}

size_t Variant::ArrayLength() const {
  const auto* items = std::get_if<std::vector<Variant>>(&value_);
  return items ? items->size() : 0;
}

const Variant& Variant::operator[](size_t index) const {
  const auto* items = std::get_if<std::vector<Variant>>(&value_);
  if (!items) throw EVariantError(u"Variant is not an array");
  if (index >= items->size()) throw EVariantError(u"Variant or safe array index out of bounds");
  return (*items)[index];
}

Variant& Variant::operator[](size_t index) {
  return const_cast<Variant&>(std::as_const(*this)[index]);
}

bool operator==(const Variant& a, const Variant& b) {
  const size_t ia = a.value_.index();
  const size_t ib = b.value_.index();
  const auto numeric = [](size_t i) { return i >= 2 && i <= 6; };
  if (numeric(ia) && numeric(ib)) {
    if (ia == 4 && ib == 4) return std::get<int64_t>(a.value_) == std::get<int64_t>(b.value_);
    double x = 0, y = 0;
    a.TryNumber(x);
    b.TryNumber(y);
    return x == y;
  }
  if (ia != ib) return false;
  switch (ia) {
    case 7:
      return std::get<String>(a.value_) == std::get<String>(b.value_);
    case 8:
      return std::get<std::vector<Variant>>(a.value_) == std::get<std::vector<Variant>>(b.value_);
    default:
      return true;  // Empty or Null
  }
}

Variant Null() { return Variant::Null(); }
Variant Unassigned() { return Variant(); }

Variant VarArrayOf(std::initializer_list<Variant> items) {
  return Variant(std::vector<Variant>(items));
}

TVarType VarType(const Variant& v) { return v.VarType(); }
bool VarIsNull(const Variant& v) { return v.IsNull(); }
bool VarIsEmpty(const Variant& v) { return v.IsEmpty(); }
bool VarIsArray(const Variant& v) { return v.IsArray(); }

String VarToStr(const Variant& v) { return v.IsNull() ? String() : v.AsString(); }

String VarTypeAsText(TVarType type) {
  String base;
  switch (type & varTypeMask) {
    case varEmpty:
      base = u"Empty";
      break;
    case varNull:
      base = u"Null";
      break;
    case varInteger:
      base = u"Integer";
      break;
    case varDouble:
      base = u"Double";
      break;
    case varDate:
      base = u"Date";
      break;
    case varBoolean:
      base = u"Boolean";
      break;
    case varVariant:
      base = u"Variant";
      break;
    case varInt64:
      base = u"Int64";
      break;
    case varUString:
      base = u"UnicodeString";
      break;
    default:
      base = u"Unknown";
      break;
  }
  return (type & varArray) ? u"Array " + base : base;
}

}  // namespace vex
