#include "vex/platform/search_buf.h"

#include <unicode/uchar.h>

#include <array>
#include <cstddef>

namespace vex {

namespace {

bool IsHigh(Char c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLow(Char c) { return c >= 0xDC00 && c <= 0xDFFF; }
bool IsSurrogate(Char c) { return c >= 0xD800 && c <= 0xDFFF; }

char32_t Combine(Char high, Char low) {
  return 0x10000 + ((static_cast<char32_t>(high) - 0xD800) << 10) + (low - 0xDC00);
}

// Simple upper-case mapping of every BMP unit, built once; surrogates map to themselves.
using FoldTable = std::array<Char, 0x10000>;

const FoldTable& Fold() {
  static const FoldTable table = [] {
    FoldTable t{};
    for (char32_t c = 0; c < 0x10000; ++c) {
      const char32_t u = IsSurrogate(static_cast<Char>(c)) ? c : u_toupper(static_cast<UChar32>(c));
      t[c] = static_cast<Char>(u <= 0xFFFF ? u : c);
    }
    return t;
  }();
  return table;
}

// Upper-case of a supplementary code point, kept when the mapping would leave the plane range.
char32_t FoldSupplementary(char32_t c) {
  const char32_t u = static_cast<char32_t>(u_toupper(static_cast<UChar32>(c)));
  return u > 0xFFFF ? u : c;
}

bool IsLetterOrDigit(char32_t c) {
  return (U_GET_GC_MASK(static_cast<UChar32>(c)) & (U_GC_L_MASK | U_GC_ND_MASK)) != 0;
}

// The search string prepared for comparison: as given, or upper-cased by code point.
String PreparePattern(const String& s, bool fold) {
  if (!fold) return s;
  const FoldTable& f = Fold();
  String r(s);
  for (size_t k = 0; k < r.size(); ++k) {
    if (IsHigh(r[k]) && k + 1 < r.size() && IsLow(r[k + 1])) {
      const char32_t c = FoldSupplementary(Combine(r[k], r[k + 1]));
      r[k] = static_cast<Char>(0xD800 + ((c - 0x10000) >> 10));
      r[k + 1] = static_cast<Char>(0xDC00 + ((c - 0x10000) & 0x3FF));
      ++k;
    } else {
      r[k] = f[r[k]];
    }
  }
  return r;
}

class Matcher {
 public:
  Matcher(const Char* buf, int32_t len, const String& pattern, TStringSearchOptions options)
      : buf_(buf),
        len_(len),
        fold_(!options.Contains(soMatchCase)),
        whole_word_(options.Contains(soWholeWord)),
        pat_(PreparePattern(pattern, fold_)),
        m_(static_cast<int32_t>(pat_.size())) {}

  int32_t PatternLength() const { return m_; }

  // First match starting in [from, len - m], or -1.
  int32_t Forward(int32_t from) const {
    return fold_ ? ForwardImpl<true>(from) : ForwardImpl<false>(from);
  }

  // Last match starting in [0, last], or -1.
  int32_t Backward(int32_t last) const {
    for (int32_t i = last; i >= 0; --i) {
      if ((fold_ ? EqualAt<true>(i) : EqualAt<false>(i)) && WordOk(i)) return i;
    }
    return -1;
  }

 private:
  template <bool kFold>
  Char Key(Char c) const {
    if constexpr (kFold) {
      return Fold()[c];
    } else {
      return c;
    }
  }

  template <bool kFold>
  bool EqualAt(int32_t i) const {
    const Char* t = buf_ + i;
    if constexpr (!kFold) {
      for (int32_t k = 0; k < m_; ++k) {
        if (t[k] != pat_[static_cast<size_t>(k)]) return false;
      }
      return true;
    } else {
      const FoldTable& f = Fold();
      for (int32_t k = 0; k < m_; ++k) {
        const Char c = t[k];
        if (IsHigh(c) && k + 1 < m_ && IsLow(t[k + 1])) {
          const char32_t u = FoldSupplementary(Combine(c, t[k + 1])) - 0x10000;
          if (pat_[static_cast<size_t>(k)] != static_cast<Char>(0xD800 + (u >> 10)) ||
              pat_[static_cast<size_t>(k) + 1] != static_cast<Char>(0xDC00 + (u & 0x3FF))) {
            return false;
          }
          ++k;
        } else if (f[c] != pat_[static_cast<size_t>(k)]) {
          return false;
        }
      }
      return true;
    }
  }

  // Horspool over the low byte of each (upper-cased) unit. A surrogate at the window's end
  // shifts by one only, because its upper-case form depends on its partner.
  template <bool kFold>
  int32_t ForwardImpl(int32_t from) const {
    const int32_t last_start = len_ - m_;
    if (m_ == 1) {
      const Char p = pat_[0];
      for (int32_t i = from; i <= last_start; ++i) {
        if (Key<kFold>(buf_[i]) == p && WordOk(i)) return i;
      }
      return -1;
    }
    std::array<int32_t, 256> skip;
    skip.fill(m_);
    for (int32_t j = 0; j + 1 < m_; ++j) skip[pat_[static_cast<size_t>(j)] & 0xFF] = m_ - 1 - j;
    const Char tail = pat_[static_cast<size_t>(m_) - 1];
    for (int32_t i = from; i <= last_start;) {
      const Char c = buf_[i + m_ - 1];
      if (kFold && IsSurrogate(c)) {
        if (EqualAt<kFold>(i) && WordOk(i)) return i;
        ++i;
        continue;
      }
      const Char k = Key<kFold>(c);
      if (k == tail && EqualAt<kFold>(i) && WordOk(i)) return i;
      i += skip[k & 0xFF];
    }
    return -1;
  }

  // Code point that ends just before offset i, or that starts at offset i.
  char32_t Before(int32_t i) const {
    const Char c = buf_[i - 1];
    if (IsLow(c) && i >= 2 && IsHigh(buf_[i - 2])) return Combine(buf_[i - 2], c);
    return c;
  }
  char32_t At(int32_t i) const {
    const Char c = buf_[i];
    if (IsHigh(c) && i + 1 < len_ && IsLow(buf_[i + 1])) return Combine(c, buf_[i + 1]);
    return c;
  }

  bool WordOk(int32_t i) const {
    if (!whole_word_) return true;
    if (i > 0 && IsLetterOrDigit(Before(i))) return false;
    if (i + m_ < len_ && IsLetterOrDigit(At(i + m_))) return false;
    return true;
  }

  const Char* buf_;
  int32_t len_;
  bool fold_;
  bool whole_word_;
  String pat_;
  int32_t m_;
};

}  // namespace

const Char* SearchBuf(const Char* Buf, int32_t BufLen, int32_t SelStart, int32_t SelLength,
                      const String& SearchString, TStringSearchOptions Options) {
  if (Buf == nullptr || BufLen <= 0 || SearchString.empty()) return nullptr;
  const Matcher matcher(Buf, BufLen, SearchString, Options);
  const int64_t m = matcher.PatternLength();
  int32_t found = -1;
  if (Options.Contains(soDown)) {
    const int64_t from = int64_t{SelStart} + SelLength;
    if (from < 0 || from + m > BufLen) return nullptr;
    found = matcher.Forward(static_cast<int32_t>(from));
  } else {
    // The match must end at or before SelStart and inside the buffer.
    int64_t last = int64_t{SelStart} - m;
    if (last < 0 || last > BufLen) return nullptr;
    if (last > BufLen - m) last = BufLen - m;
    found = matcher.Backward(static_cast<int32_t>(last));
  }
  return found < 0 ? nullptr : Buf + found;
}

}  // namespace vex
