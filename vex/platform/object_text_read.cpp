// Object text -> binary component stream: a tokenizer over the UTF-8 text and a recursive
// converter that writes each piece through TBinaryObjectWriter as soon as it is parsed.
#include <locale.h>
#include <clocale>
#include <cstdlib>
#include <cstring>

#include "vex/platform/code_page.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/object_stream.h"
#include "vex/platform/object_text.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

bool IsNameStart(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

bool IsNameChar(char c) { return IsNameStart(c) || (c >= '0' && c <= '9') || c == '.'; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

int HexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

bool SameWord(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    char x = a[i], y = b[i];
    if (x >= 'a' && x <= 'z') x = static_cast<char>(x - 32);
    if (y >= 'a' && y <= 'z') y = static_cast<char>(y - 32);
    if (x != y) return false;
  }
  return true;
}

// The C library's correctly rounded parsers in the C locale, whatever the process locale is
// (a toolkit may have changed it). Each kind is parsed directly, not through a wider type.
locale_t CLocale() {
  static locale_t c_locale = newlocale(LC_ALL_MASK, "C", nullptr);
  return c_locale;
}
long double ParseLongDouble(const std::string& t) {
  return strtold_l(t.c_str(), nullptr, CLocale());
}
double ParseDouble(const std::string& t) { return strtod_l(t.c_str(), nullptr, CLocale()); }
float ParseFloat(const std::string& t) { return strtof_l(t.c_str(), nullptr, CLocale()); }

// [-]digits[.digits][E[+-]digits]
bool IsFloatText(std::string_view s) {
  size_t i = 0;
  auto digits = [&] {
    size_t start = i;
    while (i < s.size() && IsDigit(s[i])) ++i;
    return i > start;
  };
  if (i < s.size() && s[i] == '-') ++i;
  if (!digits()) return false;
  if (i < s.size() && s[i] == '.') {
    ++i;
    digits();
  }
  if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
    ++i;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
    if (!digits()) return false;
  }
  return i == s.size();
}

enum class TokenKind { End, Name, String, Number, Binary, Char };

struct Token {
  TokenKind kind = TokenKind::End;
  std::string_view text;  // the token's source text (for strings: undecoded)
  char ch = 0;            // the character of a Char token
  int line = 1;
};

// Splits the text into names, strings (adjacent quoted runs and #n codes, decoded into
// `string_`), numbers and single characters, counting lines.
class Tokenizer {
 public:
  explicit Tokenizer(std::string_view src) : src_(src) { Next(); }

  const Token& Current() const { return tok_; }
  const String& StringValue() const { return string_; }
  const TBytes& BinaryValue() const { return binary_; }

  [[noreturn]] void Error(const String& what) const {
    throw EParserError(what + u" on line " + IntToStr(tok_.line));
  }

  void Next() {
    SkipBlanks();
    tok_.line = line_;
    size_t start = pos_;
    if (pos_ >= src_.size()) {
      tok_.kind = TokenKind::End;
      tok_.text = {};
      return;
    }
    char c = src_[pos_];
    if (IsNameStart(c)) {
      while (pos_ < src_.size() && IsNameChar(src_[pos_])) ++pos_;
      tok_.kind = TokenKind::Name;
    } else if (c == '\'' || c == '#') {
      ScanString();
      tok_.kind = TokenKind::String;
    } else if (c == '{') {
      ScanBinary();
      tok_.kind = TokenKind::Binary;
    } else if (IsDigit(c) || c == '$' ||
               (c == '-' && pos_ + 1 < src_.size() && IsDigit(src_[pos_ + 1]))) {
      ScanNumber();
      tok_.kind = TokenKind::Number;
    } else {
      ++pos_;
      tok_.kind = TokenKind::Char;
      tok_.ch = c;
    }
    tok_.text = src_.substr(start, pos_ - start);
  }

 private:
  void SkipBlanks() {
    while (pos_ < src_.size()) {
      char c = src_[pos_];
      if (c == '\n') {
        ++line_;
      } else if (c != ' ' && c != '\t' && c != '\r') {
        break;
      }
      ++pos_;
    }
  }

  void ScanString() {
    string_.clear();
    while (pos_ < src_.size()) {
      if (src_[pos_] == '\'') {
        ScanQuoted();
      } else if (src_[pos_] == '#') {
        ScanCode();
      } else {
        break;
      }
    }
  }

  // A quoted run; `''` inside it is one apostrophe (the older designers' escape).
  void ScanQuoted() {
    ++pos_;
    for (;;) {
      size_t run = pos_;
      while (pos_ < src_.size() && src_[pos_] != '\'' && src_[pos_] != '\n' && src_[pos_] != '\r') {
        ++pos_;
      }
      if (pos_ >= src_.size() || src_[pos_] != '\'') {
        tok_.line = line_;
        Error(u"Unterminated string");
      }
      AppendUtf8(src_.substr(run, pos_ - run));
      ++pos_;
      if (pos_ < src_.size() && src_[pos_] == '\'') {
        string_ += u'\'';
        ++pos_;
        continue;
      }
      return;
    }
  }

  void AppendUtf8(std::string_view bytes) {
    bool ascii = true;
    for (char b : bytes) ascii = ascii && static_cast<unsigned char>(b) < 0x80;
    if (ascii) {
      string_.append(bytes.begin(), bytes.end());
    } else {
      string_ += FromUtf8(bytes, TInvalidText::Replace);
    }
  }

  // #n in decimal or #$n in hexadecimal: one UTF-16 unit.
  void ScanCode() {
    ++pos_;
    uint32_t value = 0;
    bool hex = pos_ < src_.size() && src_[pos_] == '$';
    if (hex) ++pos_;
    size_t digits = 0;
    while (pos_ < src_.size()) {
      int d = hex ? HexValue(src_[pos_]) : (IsDigit(src_[pos_]) ? src_[pos_] - '0' : -1);
      if (d < 0) break;
      value = value * (hex ? 16 : 10) + static_cast<uint32_t>(d);
      if (value > 0xFFFF) {
        tok_.line = line_;
        Error(u"Invalid character code");
      }
      ++pos_;
      ++digits;
    }
    if (digits == 0) {
      tok_.line = line_;
      Error(u"Invalid character code");
    }
    string_ += static_cast<char16_t>(value);
  }

  // Hex digits up to `}`, blanks and line breaks between them ignored.
  void ScanBinary() {
    ++pos_;
    binary_.clear();
    int high = -1;
    for (;;) {
      SkipBlanks();
      if (pos_ >= src_.size()) {
        tok_.line = line_;
        Error(u"'}' expected");
      }
      char c = src_[pos_++];
      if (c == '}') break;
      int d = HexValue(c);
      if (d < 0) {
        tok_.line = line_;
        Error(u"Invalid binary value");
      }
      if (high < 0) {
        high = d;
      } else {
        binary_.push_back(static_cast<uint8_t>(high << 4 | d));
        high = -1;
      }
    }
    if (high >= 0) {
      tok_.line = line_;
      Error(u"Odd number of hex digits");
    }
  }

  // -digits[.digits][E[+-]digits][suffix] or $hex; checked when converted.
  void ScanNumber() {
    if (src_[pos_] == '$') {
      ++pos_;
      while (pos_ < src_.size() && HexValue(src_[pos_]) >= 0) ++pos_;
      return;
    }
    if (src_[pos_] == '-') ++pos_;
    while (pos_ < src_.size() && IsDigit(src_[pos_])) ++pos_;
    if (pos_ < src_.size() && src_[pos_] == '.') {
      ++pos_;
      while (pos_ < src_.size() && IsDigit(src_[pos_])) ++pos_;
    }
    if (pos_ < src_.size() && (src_[pos_] == 'E' || src_[pos_] == 'e')) {
      size_t mark = pos_++;
      if (pos_ < src_.size() && (src_[pos_] == '+' || src_[pos_] == '-')) ++pos_;
      if (pos_ < src_.size() && IsDigit(src_[pos_])) {
        while (pos_ < src_.size() && IsDigit(src_[pos_])) ++pos_;
      } else {
        pos_ = mark;
      }
    }
    // A suffix letter is taken into the token; the converter decides whether it is valid.
    if (pos_ < src_.size() && IsNameStart(src_[pos_])) {
      while (pos_ < src_.size() && IsNameChar(src_[pos_])) ++pos_;
    }
  }

  std::string_view src_;
  size_t pos_ = 0;
  int line_ = 1;
  Token tok_;
  String string_;
  TBytes binary_;
};

// Parses one object and writes it as it goes.
class TextToBinary {
 public:
  TextToBinary(std::string_view text, TBinaryObjectWriter& out) : tok_(text), out_(out) {}

  void Run() {
    out_.WriteSignature();
    Object(0);
    if (tok_.Current().kind != TokenKind::End) tok_.Error(u"End of text expected");
  }

 private:
  const Token& Cur() const { return tok_.Current(); }
  bool IsChar(char c) const { return Cur().kind == TokenKind::Char && Cur().ch == c; }
  bool IsWord(std::string_view word) const {
    return Cur().kind == TokenKind::Name && SameWord(Cur().text, word);
  }
  bool AtObject() const { return IsWord("object") || IsWord("inherited") || IsWord("inline"); }

  void ExpectChar(char c) {
    if (!IsChar(c)) tok_.Error(u"'" + String(1, static_cast<char16_t>(c)) + u"' expected");
    tok_.Next();
  }

  std::string Name() {
    if (Cur().kind != TokenKind::Name) tok_.Error(u"Identifier expected");
    if (Cur().text.size() > 255) tok_.Error(u"Identifier too long");
    std::string name(Cur().text);
    tok_.Next();
    return name;
  }

  void CheckDepth(int depth) {
    if (depth >= kMaxObjectStreamDepth) tok_.Error(u"Objects nested too deeply");
  }

  void Object(int depth) {
    CheckDepth(depth);
    if (!AtObject()) tok_.Error(u"'object' expected");
    uint8_t flags = IsWord("inherited") ? ffInherited : IsWord("inline") ? ffInline : 0;
    tok_.Next();
    std::string object_name;
    std::string class_name = Name();
    if (IsChar(':')) {
      tok_.Next();
      object_name = std::move(class_name);
      class_name = Name();
    }
    int32_t position = 0;
    if (IsChar('[')) {
      tok_.Next();
      position = static_cast<int32_t>(Integer(INT32_MIN, INT32_MAX));
      ExpectChar(']');
      flags |= ffChildPos;
    }
    out_.WriteObjectHeader(class_name, object_name, flags, position);
    while (!IsWord("end") && !AtObject()) Property(depth);
    out_.WriteListEnd();
    while (!IsWord("end")) Object(depth + 1);
    out_.WriteListEnd();
    tok_.Next();
  }

  void Property(int depth) {
    if (AtObject() || IsWord("end")) tok_.Error(u"Property name expected");
    std::string name = Name();
    out_.WritePropertyName(name);
    ExpectChar('=');
    Value(depth + 1);
  }

  int64_t Integer(int64_t min, int64_t max) {
    if (Cur().kind != TokenKind::Number) tok_.Error(u"Integer expected");
    int64_t value = 0;
    if (!ParseInteger(Cur().text, value) || value < min || value > max) {
      tok_.Error(u"Invalid integer " + FromUtf8(Cur().text, TInvalidText::Replace));
    }
    tok_.Next();
    return value;
  }

  static bool ParseInteger(std::string_view s, int64_t& value) {
    bool negative = !s.empty() && s[0] == '-';
    bool hex = !s.empty() && s[0] == '$';
    if (negative || hex) s.remove_prefix(1);
    if (s.empty()) return false;
    uint64_t magnitude = 0;
    const uint64_t limit = negative ? uint64_t{1} << 63 : (hex ? UINT64_MAX : INT64_MAX);
    for (char c : s) {
      int d = hex ? HexValue(c) : (IsDigit(c) ? c - '0' : -1);
      if (d < 0) return false;
      unsigned base = hex ? 16 : 10;
      if (magnitude > (limit - static_cast<uint64_t>(d)) / base) return false;
      magnitude = magnitude * base + static_cast<uint64_t>(d);
    }
    // A hexadecimal number is a bit pattern: $FFFFFFFFFFFFFFFF is -1.
    value = negative ? static_cast<int64_t>(0 - magnitude) : static_cast<int64_t>(magnitude);
    return true;
  }

  void Value(int depth) {
    CheckDepth(depth);
    switch (Cur().kind) {
      case TokenKind::Number:
        return Number();
      case TokenKind::String:
        return Strings();
      case TokenKind::Name:
        return Identifier();
      case TokenKind::Binary:
        out_.WriteBinary(tok_.BinaryValue());
        tok_.Next();
        return;
      case TokenKind::Char:
        break;
      case TokenKind::End:
        tok_.Error(u"Property value expected");
    }
    switch (Cur().ch) {
      case '[':
        return Set();
      case '(':
        return List(depth);
      case '<':
        return Collection(depth);
      default:
        tok_.Error(u"Invalid property value");
    }
  }

  void Number() {
    std::string_view text = Cur().text;
    int64_t value = 0;
    if (ParseInteger(text, value)) {
      out_.WriteInteger(value);
      tok_.Next();
      return;
    }
    if (text.find_first_of(".eE") == std::string_view::npos && !IsNameStart(text.back())) {
      tok_.Error(u"Invalid integer " + FromUtf8(text, TInvalidText::Replace));
    }
    char suffix = 0;
    if (IsNameStart(text.back())) {
      suffix = static_cast<char>(text.back() | 0x20);
      text.remove_suffix(1);
    }
    if (!IsFloatText(text) || (suffix != 0 && suffix != 's' && suffix != 'c' && suffix != 'd')) {
      tok_.Error(u"Invalid number " + FromUtf8(Cur().text, TInvalidText::Replace));
    }
    std::string digits(text);
    switch (suffix) {
      case 's':
        out_.WriteSingle(ParseFloat(digits));
        break;
      case 'c':
        out_.WriteCurrency(CurrencyUnits(digits));
        break;
      case 'd':
        out_.WriteDate(ParseDouble(digits));
        break;
      default:
        out_.WriteExtended(ParseLongDouble(digits));
    }
    tok_.Next();
  }

  // The value times 10000, rounded half away from zero, computed from the decimal digits so
  // that every currency value comes back exactly.
  int64_t CurrencyUnits(const std::string& text) {
    bool negative = text[0] == '-';
    std::string mantissa;
    int exponent = 0;  // value = mantissa * 10^exponent
    size_t i = negative ? 1 : 0;
    for (; i < text.size() && text[i] != 'e' && text[i] != 'E'; ++i) {
      if (text[i] == '.') continue;
      mantissa += text[i];
    }
    size_t point = text.find('.');
    size_t e = text.find_first_of("eE");
    if (point != std::string::npos) {
      size_t end = e == std::string::npos ? text.size() : e;
      exponent -= static_cast<int>(end - point - 1);
    }
    if (e != std::string::npos) {
      long x = std::strtol(text.c_str() + e + 1, nullptr, 10);
      if (x > 100 || x < -100) tok_.Error(u"Currency value out of range");
      exponent += static_cast<int>(x);
    }
    exponent += 4;
    __int128 units = 0;
    bool round_up = false;
    for (size_t k = 0; k < mantissa.size(); ++k) {
      int position = static_cast<int>(mantissa.size() - 1 - k) + exponent;
      if (position < 0) {
        if (position == -1) round_up = mantissa[k] >= '5';
        continue;
      }
      units = units * 10 + (mantissa[k] - '0');
      if (units > (__int128{1} << 64)) tok_.Error(u"Currency value out of range");
    }
    for (int k = 0; k < exponent; ++k) {
      units *= 10;
      if (units > (__int128{1} << 64)) tok_.Error(u"Currency value out of range");
    }
    if (round_up) ++units;
    if (negative) units = -units;
    if (units > INT64_MAX || units < INT64_MIN) tok_.Error(u"Currency value out of range");
    return static_cast<int64_t>(units);
  }

  // One string or several joined by `+`.
  void Strings() {
    String value = tok_.StringValue();
    tok_.Next();
    while (IsChar('+')) {
      tok_.Next();
      if (Cur().kind != TokenKind::String) tok_.Error(u"String expected");
      value += tok_.StringValue();
      tok_.Next();
    }
    out_.WriteString(value);
  }

  void Identifier() {
    std::string_view name = Cur().text;
    if (SameWord(name, "True")) {
      out_.WriteBoolean(true);
    } else if (SameWord(name, "False")) {
      out_.WriteBoolean(false);
    } else if (SameWord(name, "nil")) {
      out_.WriteNil();
    } else if (SameWord(name, "Null")) {
      out_.WriteNull();
    } else {
      if (name.size() > 255) tok_.Error(u"Identifier too long");
      out_.WriteIdent(name);
    }
    tok_.Next();
  }

  void Set() {
    tok_.Next();
    out_.WriteValueType(vaSet);
    if (!IsChar(']')) {
      for (;;) {
        out_.WriteShortString(Name());
        if (IsChar(']')) break;
        ExpectChar(',');
      }
    }
    tok_.Next();
    out_.WriteListEnd();
  }

  void List(int depth) {
    tok_.Next();
    out_.WriteListBegin();
    while (!IsChar(')')) {
      // Null is the byte that ends a list, so it cannot stand inside one.
      if (IsWord("Null")) tok_.Error(u"Null is not allowed in a list");
      Value(depth + 1);
    }
    tok_.Next();
    out_.WriteListEnd();
  }

  void Collection(int depth) {
    tok_.Next();
    out_.WriteCollectionBegin();
    while (!IsChar('>')) {
      if (!IsWord("item")) tok_.Error(u"'item' expected");
      tok_.Next();
      if (IsChar('[')) {
        tok_.Next();
        out_.WriteCollectionItemBegin(Integer(INT64_MIN, INT64_MAX));
        ExpectChar(']');
      } else {
        out_.WriteCollectionItemBegin();
      }
      while (!IsWord("end")) Property(depth + 1);
      tok_.Next();
      out_.WriteListEnd();
    }
    tok_.Next();
    out_.WriteListEnd();
  }

  Tokenizer tok_;
  TBinaryObjectWriter& out_;
};

// The text as UTF-8: a byte-order mark dropped, text that is not UTF-8 decoded from the code
// page.
std::string ReadSourceText(TStream& text, const TObjectTextOptions& options) {
  int64_t size = text.Size() - text.Position();
  std::string bytes(static_cast<size_t>(size > 0 ? size : 0), '\0');
  text.ReadBuffer(bytes.data(), static_cast<int64_t>(bytes.size()));
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.erase(0, 3);
  if (IsValidUtf8(bytes)) return bytes;
  return ToUtf8(CodePageToString(bytes, options.code_page), TInvalidText::Replace);
}

}  // namespace

void ObjectTextToBinary(TStream& text, TStream& binary) {
  ObjectTextToBinary(text, binary, TObjectTextOptions{});
}

void ObjectTextToBinary(TStream& text, TStream& binary, const TObjectTextOptions& options) {
  std::string source = ReadSourceText(text, options);
  TBinaryObjectWriter writer(binary);
  TextToBinary(source, writer).Run();
}

bool IsObjectTextName(std::string_view name) {
  if (name.empty() || !IsNameStart(name[0])) return false;
  for (char c : name) {
    if (!IsNameChar(c)) return false;
  }
  return IsValidUtf8(name);
}

}  // namespace vex
