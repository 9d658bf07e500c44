// Binary component stream -> object text, laid out the way designers save forms: 2 spaces a
// level, strings in quoted runs and #n codes wrapped at 64 characters, lists, collections and
// binary blocks opened on the property line and closed on their last line, CR LF.
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <strings.h>

#include "vex/platform/code_page.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/object_stream.h"
#include "vex/platform/object_text.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

constexpr size_t kStringPiece = 64;  // characters per line of a wrapped string
constexpr size_t kBinaryLine = 32;   // bytes per line of a binary block
constexpr char kHex[] = "0123456789ABCDEF";

// Decimal digits of a finite, non-zero value rounded to `precision` significant digits:
// `digits` without trailing zeros, the value being 0.d1d2d3... x 10^exponent.
struct Decimal {
  std::string digits;
  int exponent = 0;
};

Decimal ToDecimal(long double value, int precision) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*Le", precision - 1, std::fabs(value));
  Decimal d;
  const char* e = std::strchr(buffer, 'e');
  for (const char* p = buffer; p < e; ++p) {
    if (*p != '.') d.digits += *p;
  }
  d.exponent = std::atoi(e + 1) + 1;
  while (d.digits.size() > 1 && d.digits.back() == '0') d.digits.pop_back();
  return d;
}

// Scientific form of general format: 1.5E20, 1E-5 (no plus sign, no padding of the exponent).
std::string Scientific(const Decimal& d, bool negative) {
  std::string s = negative ? "-" : "";
  s += d.digits[0];
  if (d.digits.size() > 1) s += "." + d.digits.substr(1);
  return s + "E" + std::to_string(d.exponent - 1);
}

std::string NonFinite(long double value) {
  if (std::isnan(value)) return "NAN";
  return value < 0 ? "-INF" : "INF";
}

// General format with 15 significant digits, as FloatToStr: fixed notation for exponents
// from -4 to 14, whole values without a point.
std::string FormatGeneral(long double value) {
  if (!std::isfinite(value)) return NonFinite(value);
  if (value == 0) return "0";
  Decimal d = ToDecimal(value, 15);
  bool negative = value < 0;
  if (d.exponent > 15 || d.exponent < -3) return Scientific(d, negative);
  std::string s = negative ? "-" : "";
  if (d.exponent <= 0) {
    return s + "0." + std::string(static_cast<size_t>(-d.exponent), '0') + d.digits;
  }
  auto whole = static_cast<size_t>(d.exponent);
  if (d.digits.size() <= whole) return s + d.digits + std::string(whole - d.digits.size(), '0');
  return s + d.digits.substr(0, whole) + "." + d.digits.substr(whole);
}

// 18 fixed decimals of a value rounded to 16 significant digits (fewer when the 18th decimal
// cuts them); scientific form once the whole part has more than 16 digits.
std::string FormatFixed18(long double value) {
  if (!std::isfinite(value)) return NonFinite(value);
  char buffer[80];
  Decimal d;
  if (value != 0) d = ToDecimal(value, 16);
  if (value == 0 || d.exponent < -2) {
    // Small values: 18 decimals hold fewer than 16 significant digits.
    std::snprintf(buffer, sizeof buffer, "%.18Lf", value);
    return buffer;
  }
  if (d.exponent > 16) return Scientific(d, value < 0);
  std::string s = value < 0 ? "-" : "";
  d.digits.resize(16, '0');
  if (d.exponent <= 0) {
    s += "0." + std::string(static_cast<size_t>(-d.exponent), '0') + d.digits;
  } else {
    auto whole = static_cast<size_t>(d.exponent);
    s += d.digits.substr(0, whole) + "." + d.digits.substr(whole);
  }
  size_t decimals = s.size() - s.find('.') - 1;
  return s + std::string(18 - decimals, '0');
}

// Currency exactly: the units over 10000 without trailing zeros.
std::string FormatCurrency(int64_t units) {
  bool negative = units < 0;
  uint64_t magnitude = negative ? 0 - static_cast<uint64_t>(units) : static_cast<uint64_t>(units);
  std::string s = (negative ? "-" : "") + std::to_string(magnitude / 10000);
  std::string fraction = std::to_string(magnitude % 10000);
  fraction.insert(0, 4 - fraction.size(), '0');
  while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
  return fraction.empty() ? s : s + "." + fraction;
}

class BinaryToText {
 public:
  BinaryToText(TBinaryObjectReader& in, const TObjectTextOptions& options)
      : in_(in), options_(options) {}

  std::string Run() {
    in_.ReadSignature();
    Object(0);
    return std::move(out_);
  }

 private:
  void Indent(int level) { out_.append(static_cast<size_t>(level) * 2, ' '); }
  void NewLine(int level) {
    out_ += "\r\n";
    Indent(level);
  }

  void CheckDepth(int level) {
    if (level >= kMaxObjectStreamDepth) throw EReadError(u"Component stream nested too deeply");
  }

  // A name the text can hold, or the stream is refused: a name that does not read back as one
  // token would turn the text into something else.
  const std::string& Checked(const std::string& name) {
    if (!IsObjectTextName(name)) throw EReadError(u"Invalid name in component stream");
    return name;
  }

  void Object(int level) {
    CheckDepth(level);
    TObjectHeader h = in_.ReadObjectHeader();
    if ((h.flags & ~(ffInherited | ffChildPos | ffInline)) != 0 ||
        (h.flags & (ffInherited | ffInline)) == (ffInherited | ffInline)) {
      throw EReadError(u"Invalid stream format");
    }
    Indent(level);
    out_ += (h.flags & ffInherited) ? "inherited " : (h.flags & ffInline) ? "inline " : "object ";
    if (!h.object_name.empty()) out_ += Checked(h.object_name) + ": ";
    out_ += Checked(h.class_name);
    if (h.flags & ffChildPos) out_ += " [" + std::to_string(h.position) + "]";
    out_ += "\r\n";
    while (!in_.EndOfList()) Property(level + 1);
    in_.ReadListEnd();
    while (!in_.EndOfList()) Object(level + 1);
    in_.ReadListEnd();
    Indent(level);
    out_ += "end\r\n";
  }

  void Property(int level) {
    std::string name = in_.ReadPropertyName();
    if (!IsObjectTextName(name) || IsKeyword(name)) {
      throw EReadError(u"Invalid property name in component stream");
    }
    Indent(level);
    out_ += name;
    out_ += " = ";
    Value(level);
    out_ += "\r\n";
  }

  static bool IsKeyword(const std::string& name) {
    for (const char* word : {"object", "inherited", "inline", "end"}) {
      if (strcasecmp(name.c_str(), word) == 0) return true;
    }
    return false;
  }

  // Writes the value on the current line (which holds `level` indentation and maybe a name);
  // values that take several lines continue one level deeper.
  void Value(int level) {
    CheckDepth(level);
    TValueType type = in_.NextValue();
    switch (type) {
      case vaList:
        return List(level);
      case vaCollection:
        return Collection(level);
      case vaBinary:
        return Binary(level);
      case vaSet:
        return Set();
      case vaString:
      case vaLString:
      case vaWString:
      case vaUTF8String:
        return StringValue(in_.ReadString(), level);
      case vaIdent:
      case vaFalse:
      case vaTrue:
      case vaNil:
      case vaNull: {
        std::string ident = in_.ReadIdent();
        if (type == vaIdent) Checked(ident);
        out_ += ident;
        return;
      }
      default:
        return Number(type);
    }
  }

  void Number(TValueType type) {
    switch (type) {
      case vaExtended:
      case vaDouble: {
        // A Double is written like an Extended: the text has no mark for it.
        long double value = in_.ReadFloat();
        out_ += options_.general_floats ? FormatGeneral(value) : FormatFixed18(value);
        return;
      }
      case vaSingle:
        out_ += FormatGeneral(in_.ReadSingle()) + "s";
        return;
      case vaCurrency:
        out_ += FormatCurrency(in_.ReadCurrency()) + "c";
        return;
      case vaDate:
        out_ += FormatGeneral(in_.ReadDate()) + "d";
        return;
      default:
        out_ += std::to_string(in_.ReadInteger());
    }
  }

  void List(int level) {
    in_.ReadListBegin();
    out_ += '(';
    while (!in_.EndOfList()) {
      NewLine(level + 1);
      size_t item = out_.size();
      Value(level + 1);
      // An identifier spelled Null would read back as the Null that ends a list.
      if (out_.size() - item == 4 && strncasecmp(out_.data() + item, "Null", 4) == 0) {
        throw EReadError(u"Invalid identifier in a list");
      }
    }
    in_.ReadListEnd();
    out_ += ')';
  }

  void Collection(int level) {
    in_.ReadCollectionBegin();
    out_ += '<';
    while (!in_.EndOfList()) {
      NewLine(level + 1);
      out_ += "item";
      if (std::optional<int64_t> order = in_.ReadCollectionItemBegin()) {
        out_ += " [" + std::to_string(*order) + "]";
      }
      out_ += "\r\n";
      while (!in_.EndOfList()) Property(level + 2);
      in_.ReadListEnd();
      Indent(level + 1);
      out_ += "end";
    }
    in_.ReadListEnd();
    out_ += '>';
  }

  void Binary(int level) {
    TBytes bytes = in_.ReadBinary();
    out_ += '{';
    bool wrap = bytes.size() >= kBinaryLine;
    for (size_t i = 0; i < bytes.size(); ++i) {
      if (wrap && i % kBinaryLine == 0) NewLine(level + 1);
      out_ += kHex[bytes[i] >> 4];
      out_ += kHex[bytes[i] & 15];
    }
    out_ += '}';
  }

  void Set() {
    out_ += '[';
    std::vector<std::string> names = in_.ReadSet();
    for (size_t i = 0; i < names.size(); ++i) {
      if (i > 0) out_ += ", ";
      out_ += Checked(names[i]);
    }
    out_ += ']';
  }

  // Up to 64 characters stay on the line; longer strings go on the next lines in pieces of 64,
  // joined by ` +`.
  void StringValue(const String& s, int level) {
    if (s.size() <= kStringPiece) return Runs(s);
    for (size_t start = 0; start < s.size(); start += kStringPiece) {
      if (start > 0) out_ += " +";
      NewLine(level + 1);
      Runs(std::u16string_view(s).substr(start, kStringPiece));
    }
  }

  // Quoted runs of printable ASCII (and, with raw_code_page, of characters the code page
  // holds), #n codes for everything else; '' for the empty string.
  void Runs(std::u16string_view s) {
    if (s.empty()) {
      out_ += "''";
      return;
    }
    bool quoted = false;
    auto quote = [&](bool on) {
      if (quoted != on) out_ += '\'';
      quoted = on;
    };
    for (char16_t c : s) {
      if (c >= 0x20 && c <= 0x7E && c != '\'') {
        quote(true);
        out_ += static_cast<char>(c);
      } else if (std::string raw = RawByte(c); !raw.empty()) {
        quote(true);
        out_ += raw;
      } else {
        quote(false);
        out_ += '#';
        out_ += std::to_string(static_cast<unsigned>(c));
      }
    }
    quote(false);
  }

  // With raw_code_page, the code page's byte for a character above U+007F; otherwise nothing.
  std::string RawByte(char16_t c) {
    if (c < 0x80 || !options_.raw_code_page || (c >= 0xD800 && c <= 0xDFFF)) return {};
    try {
      std::string raw = StringToCodePage(std::u16string_view(&c, 1), options_.code_page);
      return static_cast<unsigned char>(raw[0]) >= 0x80 ? raw : std::string();
    } catch (const EConvertError&) {
      return {};
    }
  }

  TBinaryObjectReader& in_;
  const TObjectTextOptions& options_;
  std::string out_;
};

}  // namespace

void ObjectBinaryToText(TStream& binary, TStream& text) {
  ObjectBinaryToText(binary, text, TObjectTextOptions{});
}

void ObjectBinaryToText(TStream& binary, TStream& text, const TObjectTextOptions& options) {
  TBinaryObjectReader reader(binary);
  std::string out = BinaryToText(reader, options).Run();
  text.WriteBuffer(out.data(), static_cast<int64_t>(out.size()));
}

bool IsBinaryObjectStream(TStream& stream) {
  int64_t position = stream.Position();
  char signature[4] = {};
  int64_t n = stream.Read(signature, 4);
  stream.SetPosition(position);
  return n == 4 && std::memcmp(signature, "TPF0", 4) == 0;
}

}  // namespace vex
