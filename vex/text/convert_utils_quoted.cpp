// TConvertUtils: the quoted code form ('text'#13#10...) and its line-wise list variants.
#include <string_view>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/text/convert_utils.h"
#include "vex/text/string_utils.h"

namespace vex {

namespace {

constexpr int32_t kLineChars = 64;

bool IsRunChar(Char c) { return c >= 32 && c <= 127 && c != u'\''; }

void AppendCode(String& out, Char c) {
  Char digits[5];
  int n = 0;
  unsigned v = c;
  do {
    digits[n++] = static_cast<Char>(u'0' + v % 10);
    v /= 10;
  } while (v != 0);
  out.push_back(u'#');
  while (n > 0) out.push_back(digits[--n]);
}

// Writes S in quoted code form into sink.Buffer(), calling sink.Emit() at every line end.
template <class Sink>
void EncodeQuoted(std::u16string_view s, Sink& sink) {
  String& buf = sink.Buffer();
  const int32_t len = static_cast<int32_t>(s.size());
  if (len == 0) {
    buf += u"''";
    sink.Emit();
    return;
  }
  if (len > kLineChars) sink.Emit();
  int32_t i = 0;  // 0-based here; the line start is 0-based too, so differences are unchanged
  int32_t line_start = 0;
  while (i < len) {
    const Char c = s[static_cast<size_t>(i)];
    bool wrap = false;
    if (c == u'\'') {
      // Apostrophes never end a line, so a line of them may exceed the 64-character limit.
      buf += u"#39";
      ++i;
    } else if (c < 32 || c > 127) {
      AppendCode(buf, c);
      ++i;
      wrap = i - line_start >= kLineChars;
    } else {
      int32_t j = i;
      while (j < len && IsRunChar(s[static_cast<size_t>(j)]) && j - line_start < kLineChars) ++j;
      // After a long row of apostrophes the limit is already reached and the run is empty ('').
      buf.push_back(u'\'');
      buf.append(s.data() + i, static_cast<size_t>(j - i));
      buf.push_back(u'\'');
      wrap = j - line_start >= kLineChars;
      i = j;
    }
    if (wrap && i < len) {
      buf += u" +";
      sink.Emit();
      line_start = i;
    }
  }
  if (!buf.empty()) sink.Emit();
}

class ListSink {
 public:
  ListSink(TStrings& lines, const String& prefix) : lines_(lines), prefix_(prefix) {}
  String& Buffer() { return buf_; }
  void Emit() {
    lines_.Add(prefix_ + buf_);
    buf_.clear();
  }

 private:
  TStrings& lines_;
  const String& prefix_;
  String buf_;
};

// Str2Uni: the lines are joined directly, so the buffer is the result and a line end is a no-op.
class JoinSink {
 public:
  explicit JoinSink(String& out) : out_(out) {}
  String& Buffer() { return out_; }
  void Emit() {}

 private:
  String& out_;
};

[[noreturn]] void Invalid() { throw EConvertError(u"ConvertAsUnicode: Invalid String"); }

class Decoder {
 public:
  Decoder(std::u16string_view s, bool as_line) : s_(s), as_line_(as_line) {}

  String Run() {
    SkipBlanks();
    if (AtEnd()) {
      if (as_line_) return out_;  // a line of blanks: the prefix line of a long text
      Invalid();
    }
    for (;;) {
      TokenSequence();
      SkipBlanks();
      if (AtEnd()) return out_;
      if (s_[pos_] != u'+') Invalid();
      ++pos_;
      SkipBlanks();
      if (AtEnd()) {
        if (as_line_) return out_;  // a line that ends with the joint
        Invalid();
      }
    }
  }

 private:
  bool AtEnd() const { return pos_ >= s_.size(); }
  void SkipBlanks() {
    while (!AtEnd() && s_[pos_] <= 32) ++pos_;
  }

  // One or more tokens written without anything between them.
  void TokenSequence() {
    if (AtEnd() || (s_[pos_] != u'\'' && s_[pos_] != u'#')) Invalid();
    bool after_run = false;
    while (!AtEnd()) {
      const Char c = s_[pos_];
      if (c == u'\'') {
        // Two runs side by side would read as an embedded apostrophe in the source language.
        if (after_run) Invalid();
        QuotedRun();
        after_run = true;
      } else if (c == u'#') {
        Code();
        after_run = false;
      } else {
        return;
      }
    }
  }

  void QuotedRun() {
    ++pos_;
    const size_t start = pos_;
    while (!AtEnd() && IsRunChar(s_[pos_])) ++pos_;
    if (AtEnd() || s_[pos_] != u'\'') Invalid();
    out_.append(s_.data() + start, pos_ - start);
    ++pos_;
  }

  void Code() {
    ++pos_;
    uint32_t v = 0;
    const size_t start = pos_;
    while (!AtEnd() && s_[pos_] >= u'0' && s_[pos_] <= u'9') {
      v = v * 10 + (s_[pos_] - u'0');
      if (v > 0xFFFF) Invalid();
      ++pos_;
    }
    if (pos_ == start) Invalid();
    out_.push_back(static_cast<Char>(v));
  }

  std::u16string_view s_;
  bool as_line_;
  size_t pos_ = 0;
  String out_;
};

}  // namespace

void TConvertUtils::WriteStr2Uni(const String& S, TStrings& Lines, const String& Prefix) {
  ListSink sink(Lines, Prefix);
  EncodeQuoted(S, sink);
}

String TConvertUtils::Str2Uni(const String& S) {
  String out;
  out.reserve(S.size() + S.size() / 2 + 2);
  JoinSink sink(out);
  EncodeQuoted(S, sink);
  return out;
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
