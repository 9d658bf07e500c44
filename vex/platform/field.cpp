// TField: conversions between a field's stored value and text, numbers and variants.
//
// Stored kinds: string types hold a String, the small integer types an int32, ftLargeint and
// ftLongWord an int64, floating types a double, date types a date variant, memo types their
// text, and binary blob types a String of one character per byte.
#include <cmath>
#include <limits>

#include "vex/platform/dataset.h"
#include "vex/platform/datetime.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

enum class Kind { Text, Int32, Int64, Boolean, Float, Date, Memo, Binary, Any };

Kind KindOf(TFieldType type) {
  switch (type) {
    case ftString:
    case ftFixedChar:
    case ftWideString:
    case ftFixedWideChar:
    case ftGuid:
      return Kind::Text;
    case ftSmallint:
    case ftInteger:
    case ftWord:
    case ftAutoInc:
    case ftShortint:
    case ftByte:
      return Kind::Int32;
    case ftLargeint:
    case ftLongWord:
      return Kind::Int64;
    case ftBoolean:
      return Kind::Boolean;
    case ftFloat:
    case ftCurrency:
    case ftBCD:
    case ftFMTBcd:
    case ftExtended:
    case ftSingle:
      return Kind::Float;
    case ftDate:
    case ftTime:
    case ftDateTime:
    case ftTimeStamp:
      return Kind::Date;
    case ftMemo:
    case ftFmtMemo:
    case ftWideMemo:
    case ftOraClob:
      return Kind::Memo;
    case ftBlob:
    case ftGraphic:
    case ftParadoxOle:
    case ftDBaseOle:
    case ftTypedBinary:
    case ftOraBlob:
    case ftBytes:
    case ftVarBytes:
      return Kind::Binary;
    default:
      return Kind::Any;
  }
}

struct Range {
  int64_t low, high;
};

Range RangeOf(TFieldType type) {
  switch (type) {
    case ftSmallint:
      return {-32768, 32767};
    case ftWord:
      return {0, 65535};
    case ftShortint:
      return {-128, 127};
    case ftByte:
      return {0, 255};
    case ftLongWord:
      return {0, 4294967295LL};
    case ftLargeint:
      return {std::numeric_limits<int64_t>::min(), std::numeric_limits<int64_t>::max()};
    default:
      return {std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()};
  }
}

[[noreturn]] void BadText(const String& text, const char16_t* what) {
  throw EConvertError(u"'" + text + u"' is not a valid " + what);
}

int64_t CheckedInteger(TFieldType type, int64_t value) {
  Range r = RangeOf(type);
  if (value < r.low || value > r.high) {
    throw EConvertError(IntToStr(value) + u" is not a valid value for a field of type " +
                        FieldTypeName(type));
  }
  return value;
}

String BytesToStore(const uint8_t* data, size_t size) {
  String s(size, u'\0');
  for (size_t i = 0; i < size; ++i) s[i] = data[i];
  return s;
}

// Reads "y-m-d", or the day, month and year in the order of the short date format with the
// date separator, then an optional time "h:n[:s[.z]]".
bool ReadNumber(const String& s, size_t& pos, int32_t& value, size_t& digits) {
  value = 0;
  digits = 0;
  while (pos < s.size() && s[pos] >= u'0' && s[pos] <= u'9' && digits < 9) {
    value = value * 10 + (s[pos++] - u'0');
    ++digits;
  }
  return digits > 0;
}

bool ReadDateTime(const String& text, TDateTime& result) {
  const TFormatSettings& fs = FormatSettings();
  String s = Trim(text);
  size_t pos = 0;
  int32_t n[3] = {0, 0, 0};
  size_t first_digits = 0, digits = 0;
  double date = 0;
  bool has_date = false;
  if (s.find(u'-') != String::npos || s.find(fs.DateSeparator) != String::npos) {
    for (int i = 0; i < 3; ++i) {
      if (!ReadNumber(s, pos, n[i], digits)) return false;
      if (i == 0) first_digits = digits;
      if (i < 2) {
        if (pos >= s.size() || (s[pos] != u'-' && s[pos] != fs.DateSeparator)) return false;
        ++pos;
      }
    }
    int32_t y = n[0], m = n[1], d = n[2];
    if (first_digits < 4) {
      // Order of the short date format: the first of 'd', 'm', 'y' found comes first.
      String order;
      for (Char c : UpperCase(fs.ShortDateFormat)) {
        if ((c == u'D' || c == u'M' || c == u'Y') && order.find(c) == String::npos) order += c;
      }
      if (order.size() != 3) order = u"DMY";
      for (int i = 0; i < 3; ++i) {
        if (order[i] == u'D') d = n[i];
        if (order[i] == u'M') m = n[i];
        if (order[i] == u'Y') y = n[i];
      }
    }
    if (y < 1 || y > 9999 || m < 1 || m > 12 || d < 1 || d > 31) return false;
    if (!TryEncodeDate(static_cast<uint16_t>(y), static_cast<uint16_t>(m), static_cast<uint16_t>(d),
                       date)) {
      return false;
    }
    has_date = true;
    while (pos < s.size() && (s[pos] == u' ' || s[pos] == u'T')) ++pos;
  }
  double time = 0;
  if (pos < s.size()) {
    int32_t t[4] = {0, 0, 0, 0};
    for (int i = 0; i < 4 && pos < s.size(); ++i) {
      if (!ReadNumber(s, pos, t[i], digits)) return false;
      if (i == 3) {
        while (digits > 3) t[3] /= 10, --digits;
        while (digits < 3) t[3] *= 10, ++digits;
      }
      if (pos < s.size()) {
        Char sep = s[pos];
        bool ok = (i < 2 && (sep == u':' || sep == fs.TimeSeparator)) || (i == 2 && sep == u'.');
        if (!ok) return false;
        ++pos;
      }
    }
    if (pos < s.size() || t[0] > 23 || t[1] > 59 || t[2] > 59) return false;
    if (!TryEncodeTime(static_cast<uint16_t>(t[0]), static_cast<uint16_t>(t[1]),
                       static_cast<uint16_t>(t[2]), static_cast<uint16_t>(t[3]), time)) {
      return false;
    }
  } else if (!has_date) {
    return false;
  }
  result = date < 0 ? date - time : date + time;
  return true;
}

Variant FromText(TFieldType type, String text) {
  switch (KindOf(type)) {
    case Kind::Text:
    case Kind::Memo:
    case Kind::Any:
      return text;
    case Kind::Binary: {
      std::string bytes = ToUtf8(text, TInvalidText::Replace);
      return BytesToStore(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }
    default:
      break;
  }
  if (Trim(text).empty()) return Variant::Null();
  switch (KindOf(type)) {
    case Kind::Int32:
    case Kind::Int64: {
      int64_t v = 0;
      if (!TryStrToInt64(text, v)) BadText(text, u"integer value");
      v = CheckedInteger(type, v);
      return KindOf(type) == Kind::Int32 ? Variant(static_cast<int32_t>(v)) : Variant(v);
    }
    case Kind::Boolean: {
      bool b = false;
      if (!TryStrToBool(text, b)) BadText(text, u"boolean value");
      return b;
    }
    case Kind::Float: {
      double d = 0;
      if (!TryStrToFloat(text, d)) BadText(text, u"floating point value");
      return d;
    }
    default: {
      TDateTime d = 0;
      if (!ReadDateTime(text, d)) BadText(text, u"date and time");
      return Variant::FromDate(d);
    }
  }
}

}  // namespace

bool IsBlobFieldType(TFieldType type) {
  Kind k = KindOf(type);
  return (k == Kind::Memo || k == Kind::Binary) && type != ftBytes && type != ftVarBytes;
}

String FieldTypeName(TFieldType type) {
  static const char16_t* const kNames[] = {
      u"ftUnknown",      u"ftString",      u"ftSmallint", u"ftInteger",       u"ftWord",
      u"ftBoolean",      u"ftFloat",       u"ftCurrency", u"ftBCD",           u"ftDate",
      u"ftTime",         u"ftDateTime",    u"ftBytes",    u"ftVarBytes",      u"ftAutoInc",
      u"ftBlob",         u"ftMemo",        u"ftGraphic",  u"ftFmtMemo",       u"ftParadoxOle",
      u"ftDBaseOle",     u"ftTypedBinary", u"ftCursor",   u"ftFixedChar",     u"ftWideString",
      u"ftLargeint",     u"ftADT",         u"ftArray",    u"ftReference",     u"ftDataSet",
      u"ftOraBlob",      u"ftOraClob",     u"ftVariant",  u"ftInterface",     u"ftIDispatch",
      u"ftGuid",         u"ftTimeStamp",   u"ftFMTBcd",   u"ftFixedWideChar", u"ftWideMemo",
      u"ftOraTimeStamp", u"ftOraInterval", u"ftLongWord", u"ftShortint",      u"ftByte",
      u"ftExtended",     u"ftConnection",  u"ftParams",   u"ftStream",        u"ftTimeStampOffset",
      u"ftObject",       u"ftSingle"};
  return type <= ftSingle ? kNames[type] : String(u"ftUnknown");
}

TField::TField(TDataSet* data_set, String field_name, TFieldType data_type, int32_t index)
    : data_set_(data_set),
      field_name_(std::move(field_name)),
      data_type_(data_type),
      index_(index) {}

bool TField::IsNull() const { return data_set_->GetFieldData(index_).IsNull(); }

bool TField::AppendUtf8(std::string& utf8) const {
  return data_set_->AppendFieldUtf8(index_, utf8);
}

Variant TField::ConvertValue(TFieldType type, const Variant& value) {
  if (value.IsNull() || value.IsEmpty()) return Variant::Null();
  if (value.VarType() == varUString) return FromText(type, value.AsString());
  switch (KindOf(type)) {
    case Kind::Text:
    case Kind::Memo:
    case Kind::Binary:
      return FromText(type, value.AsString());
    case Kind::Int32:
      return static_cast<int32_t>(CheckedInteger(type, value.AsInt64()));
    case Kind::Int64:
      return CheckedInteger(type, value.AsInt64());
    case Kind::Boolean:
      return value.AsBoolean();
    case Kind::Float:
      return value.AsDouble();
    case Kind::Date:
      return Variant::FromDate(value.AsDateTime());
    default:
      return value;
  }
}

String TField::AsString() const {
  const Variant& v = data_set_->GetFieldData(index_);
  if (v.IsNull()) return String();
  switch (KindOf(data_type_)) {
    case Kind::Binary: {
      TBytes bytes = AsBytes();
      return FromUtf8(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()),
                      TInvalidText::Replace);
    }
    case Kind::Date:
      if (data_type_ == ftDate) return DateToStr(v.AsDateTime());
      if (data_type_ == ftTime) return TimeToStr(v.AsDateTime());
      return DateTimeToStr(v.AsDateTime());
    default:
      return v.AsString();
  }
}

void TField::SetAsString(const String& value) {
  data_set_->SetFieldData(index_, FromText(data_type_, value));
}
void TField::SetAsString(String&& value) {
  data_set_->SetFieldData(index_, FromText(data_type_, std::move(value)));
}

int32_t TField::AsInteger() const {
  const Variant& v = data_set_->GetFieldData(index_);
  return v.IsNull() ? 0 : v.AsInteger();
}
void TField::SetAsInteger(int32_t value) { SetAsVariant(value); }

int64_t TField::AsLargeInt() const {
  const Variant& v = data_set_->GetFieldData(index_);
  return v.IsNull() ? 0 : v.AsInt64();
}
void TField::SetAsLargeInt(int64_t value) { SetAsVariant(value); }

double TField::AsFloat() const {
  const Variant& v = data_set_->GetFieldData(index_);
  return v.IsNull() ? 0.0 : v.AsDouble();
}
void TField::SetAsFloat(double value) { SetAsVariant(value); }

bool TField::AsBoolean() const {
  const Variant& v = data_set_->GetFieldData(index_);
  return v.IsNull() ? false : v.AsBoolean();
}
void TField::SetAsBoolean(bool value) { SetAsVariant(value); }

Variant TField::AsVariant() const {
  const Variant& v = data_set_->GetFieldData(index_);
  if (!v.IsNull() && KindOf(data_type_) == Kind::Binary) return AsString();
  return v;
}

void TField::SetAsVariant(const Variant& value) {
  data_set_->SetFieldData(index_, ConvertValue(data_type_, value));
}

void TField::Clear() { data_set_->SetFieldData(index_, Variant::Null()); }

TBytes TField::AsBytes() const {
  if (!IsBlob() && KindOf(data_type_) != Kind::Binary) {
    DatabaseError(u"Field '" + field_name_ + u"' is not a blob field");
  }
  const Variant& v = data_set_->GetFieldData(index_);
  if (v.IsNull()) return {};
  String s = v.AsString();
  if (KindOf(data_type_) == Kind::Memo) {
    std::string utf8 = ToUtf8(s, TInvalidText::Replace);
    return TBytes(utf8.begin(), utf8.end());
  }
  TBytes bytes(s.size());
  for (size_t i = 0; i < s.size(); ++i) bytes[i] = static_cast<uint8_t>(s[i]);
  return bytes;
}

void TField::SetAsBytes(const TBytes& value) {
  if (!IsBlob() && KindOf(data_type_) != Kind::Binary) {
    DatabaseError(u"Field '" + field_name_ + u"' is not a blob field");
  }
  if (KindOf(data_type_) == Kind::Memo) {
    data_set_->SetFieldData(
        index_,
        FromUtf8(std::string_view(reinterpret_cast<const char*>(value.data()), value.size()),
                 TInvalidText::Replace));
  } else {
    data_set_->SetFieldData(index_, BytesToStore(value.data(), value.size()));
  }
}

}  // namespace vex
