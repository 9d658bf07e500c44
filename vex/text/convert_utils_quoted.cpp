// TConvertUtils: the quoted code form ('text'#13#10...) and its line-wise list variants.
#include <algorithm>
#include <string_view>
#include <utility>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/text/convert_utils.h"
#include "vex/text/mem_utils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

constexpr int32_t kLineChars = 64;

bool IsRunChar(Char c) { return c >= 32 && c <= 127 && c != u'\''; }

int DigitCount(Char c) { return c < 10 ? 1 : c < 100 ? 2 : c < 1000 ? 3 : c < 10000 ? 4 : 5; }

// Writes "#" and the decimal code of c at p; returns the position after it.
Char* WriteCode(Char* p, Char c) {
  const int n = DigitCount(c);
  *p = u'#';
  unsigned v = c;
  for (int k = n; k > 0; --k, v /= 10) p[k] = static_cast<Char>(u'0' + v % 10);
  return p + n + 1;
}

// Walks S as the quoted code form is written and hands each piece to out: Run (a quoted run),
// Code (one "#" code), Joint (" +" at a line end) and Emit (end of a line).
template <class Out>
void EncodeQuoted(std::u16string_view s, Out& out) {
  const int32_t len = static_cast<int32_t>(s.size());
  if (len == 0) {
    out.Run(s.data(), 0);
    out.Emit();
    return;
  }
  if (len > kLineChars) out.Emit();
  const Char* text = s.data();
  int32_t i = 0;  // 0-based here; the line start is 0-based too, so differences are unchanged
  int32_t line_start = 0;
  while (i < len) {
    const Char c = text[i];
    bool wrap = false;
    if (c == u'\'') {
      // Apostrophes never end a line, so a line of them may exceed the 64-character limit.
      out.Code(c);
      ++i;
    } else if (c < 32 || c > 127) {
      out.Code(c);
      ++i;
      wrap = i - line_start >= kLineChars;
    } else {
      const int32_t limit = std::min(len, line_start + kLineChars);
      int32_t j = i;
      while (j < limit && IsRunChar(text[j])) ++j;
      // After a long row of apostrophes the limit is already reached and the run is empty ('').
      out.Run(text + i, j - i);
      wrap = j - line_start >= kLineChars;
      i = j;
    }
    if (wrap && i < len) {
      out.Joint();
      out.Emit();
      line_start = i;
    }
  }
  out.Emit();
}

// Lines into a string list, each led by the prefix.
class ListOut {
 public:
  ListOut(TStrings& lines, const String& prefix) : lines_(lines), prefix_(prefix) {}
  void Run(const Char* p, int32_t n) {
    buf_.push_back(u'\'');
    buf_.append(p, static_cast<size_t>(n));
    buf_.push_back(u'\'');
  }
  void Code(Char c) {
    Char digits[6];
    buf_.append(digits, static_cast<size_t>(WriteCode(digits, c) - digits));
  }
  void Joint() { buf_ += u" +"; }
  // The prefix line of a long text is emitted empty; the final call only when a line is open.
  void Emit() {
    if (buf_.empty() && !first_) return;
    first_ = false;
    lines_.Add(prefix_ + buf_);
    buf_.clear();
  }

 private:
  TStrings& lines_;
  const String& prefix_;
  String buf_;
  bool first_ = true;
};

// Str2Uni joins the lines directly into one string. Pieces are written into a small buffer that
// stays in the cache and is appended to the string when full, so the string is never filled
// with zeros ahead of the text.
class JoinOut {
 public:
  /// Reserves room for `expected` units; a result that outgrows it doubles.
  JoinOut(String& out, size_t expected) : out_(out) { Grow(expected); }
  /// Appends what is still buffered; call once at the end.
  void Flush() {
    const size_t needed = out_.size() + n_;
    if (needed > out_.capacity()) Grow(std::max(needed, 2 * out_.capacity()));
    out_.append(buf_, n_);
    n_ = 0;
  }
  void Run(const Char* p, int32_t n) {
    Char* w = Room(static_cast<size_t>(n) + 2);
    *w++ = u'\'';
    for (int32_t k = 0; k < n; ++k) *w++ = p[k];  // runs are short: no call to memmove
    *w++ = u'\'';
    n_ += static_cast<size_t>(n) + 2;
  }
  void Code(Char c) {
    Char* w = Room(6);
    n_ += static_cast<size_t>(WriteCode(w, c) - w);
  }
  void Joint() {
    Char* w = Room(2);
    w[0] = u' ';
    w[1] = u'+';
    n_ += 2;
  }
  void Emit() {}

 private:
  // A piece needs at most 66 units.
  Char* Room(size_t k) {
    if (n_ + k > kBufferUnits) Flush();
    return buf_ + n_;
  }

  // The result is written once, front to back, into fresh memory, where a large one would pay a
  // page fault per 4 KB (more than the encoding itself costs): huge pages are asked for before
  // anything is written, and a growing result moves into a new block advised the same way.
  void Grow(size_t units) {
    String bigger;
    bigger.reserve(units);
    TMemUtils::AdviseHugePages(bigger.data(), bigger.capacity() * sizeof(Char));
    bigger.append(out_);
    out_.swap(bigger);
  }

  static constexpr size_t kBufferUnits = 4096;
  String& out_;
  size_t n_ = 0;
  Char buf_[kBufferUnits];
};

[[noreturn]] void Invalid() { throw EConvertError(u"ConvertAsUnicode: Invalid String"); }

// Reads the form with raw pointers into a result sized for the worst case: every unit of the
// form gives at most one unit of text.
class Decoder {
 public:
  Decoder(std::u16string_view s, bool as_line)
      : p_(s.data()), end_(s.data() + s.size()), as_line_(as_line), out_(s.size(), u'\0') {
    w_ = out_.data();
  }

  String Run() {
    Decode();
    out_.resize(static_cast<size_t>(w_ - out_.data()));
    return std::move(out_);
  }

 private:
  void Decode() {
    SkipBlanks();
    if (p_ == end_) {
      if (as_line_) return;  // a line of blanks: the prefix line of a long text
      Invalid();
    }
    for (;;) {
      TokenSequence();
      SkipBlanks();
      if (p_ == end_) return;
      if (*p_ != u'+') Invalid();
      ++p_;
      SkipBlanks();
      if (p_ == end_) {
        if (as_line_) return;  // a line that ends with the joint
        Invalid();
      }
    }
  }

  void SkipBlanks() {
    while (p_ != end_ && *p_ <= 32) ++p_;
  }

  // One or more tokens written without anything between them.
  void TokenSequence() {
    if (p_ == end_ || (*p_ != u'\'' && *p_ != u'#')) Invalid();
    bool after_run = false;
    while (p_ != end_) {
      if (*p_ == u'\'') {
        // Two runs side by side would read as an embedded apostrophe in the source language.
        if (after_run) Invalid();
        QuotedRun();
        after_run = true;
      } else if (*p_ == u'#') {
        Code();
        after_run = false;
      } else {
        return;
      }
    }
  }

  void QuotedRun() {
    ++p_;
    while (p_ != end_ && IsRunChar(*p_)) *w_++ = *p_++;
    if (p_ == end_ || *p_ != u'\'') Invalid();
    ++p_;
  }

  void Code() {
    ++p_;
    const Char* start = p_;
    uint32_t v = 0;
    while (p_ != end_ && *p_ >= u'0' && *p_ <= u'9') {
      v = v * 10 + (*p_ - u'0');
      if (v > 0xFFFF) Invalid();
      ++p_;
    }
    if (p_ == start) Invalid();
    *w_++ = static_cast<Char>(v);
  }

  const Char* p_;
  const Char* end_;
  bool as_line_;
  String out_;
  Char* w_ = nullptr;
};

}  // namespace

void TConvertUtils::WriteStr2Uni(const String& S, TStrings& Lines, const String& Prefix) {
  ListOut out(Lines, Prefix);
  EncodeQuoted(S, out);
}

String TConvertUtils::Str2Uni(const String& S) {
  String result;
  // Most text codes to less than three units per unit; code-heavy text grows the result.
  JoinOut out(result, S.size() * 3 + 16);
  EncodeQuoted(S, out);
  out.Flush();
  return result;
}

String TConvertUtils::Uni2Str(const String& S, bool AsLine) { return Decoder(S, AsLine).Run(); }

String TConvertUtils::Str2UniDeqt(const String& S, bool Dequote, Char PrefixChar) {
  String r = Str2Uni(S);
  if (r.find(u'#') != String::npos) {
    if (PrefixChar != 0) r.insert(r.begin(), PrefixChar);
    return r;
  }
  if (Dequote) r = TStringUtils::DequoteStr(r);
  return r;
}

void TConvertUtils::SaveToUni(const TStrings& Source, TStrings& Dest, const String& Prefix) {
  const int32_t count = Source.Count();  // Source may be Dest: only the original lines
  for (int32_t i = 0; i < count; ++i) {
    const String line = Source[i];  // adding to Dest may move Source's lines when they are one
    WriteStr2Uni(line, Dest, Prefix);
  }
}

void TConvertUtils::LoadFromUni(const TStrings& Source, TStrings& Dest) {
  TStringDynArray decoded;
  decoded.reserve(static_cast<size_t>(Source.Count()));
  for (int32_t i = 0; i < Source.Count(); ++i) decoded.push_back(Uni2Str(Source[i], true));
  Dest.Clear();
  for (const String& line : decoded) Dest.Add(line);
}

String TConvertUtils::Uni2StrPref(const String& S, bool Decode) {
  if (Decode && !S.empty() && S[0] == u'\'' && S.find(u'#') != String::npos) return Uni2Str(S);
  return S;
}

}  // namespace vex
