#include "vex/platform/search_buf.h"

#include <unicode/uchar.h>

#include <array>
#include <cstddef>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

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

// Up to four units that stand for one pattern unit: the unit itself, or every unit whose
// upper-case form it is. Unused slots repeat the first, so testing all four is always right.
struct UnitSet {
  std::array<Char, 4> units{};
  bool usable = false;
};

UnitSet SetFor(Char p, bool fold) {
  UnitSet s;
  if (IsSurrogate(p)) return s;  // pairs fold as a whole: no per-unit filter
  if (!fold) {
    s.units.fill(p);
    s.usable = true;
    return s;
  }
  const FoldTable& f = Fold();
  size_t n = 0;
  for (char32_t c = 0; c < 0x10000; ++c) {
    if (f[c] != p || IsSurrogate(static_cast<Char>(c))) continue;
    if (n == s.units.size()) return UnitSet{};
    s.units[n++] = static_cast<Char>(c);
  }
  if (n == 0) return s;
  for (size_t k = n; k < s.units.size(); ++k) s.units[k] = s.units[0];
  s.usable = true;
  return s;
}

// Everything about a search string that does not depend on the buffer.
struct Prepared {
  String source;
  TStringSearchOptions options;
  bool fold = false;
  bool whole_word = false;
  String pat;
  int32_t m = 0;
  std::array<int32_t, 256> skip{};
  // Filled on the first search through a long buffer (finding the sets scans the fold table).
  bool sets_ready = false;
  UnitSet first;
  UnitSet last;
};

// Repeated searches for the same string (a walk over all matches) reuse the preparation.
Prepared& Prepare(const String& s, TStringSearchOptions options) {
  thread_local Prepared p;
  thread_local bool valid = false;
  if (valid && p.options == options && p.source == s) return p;
  valid = false;
  p.source = s;
  p.options = options;
  p.fold = !options.Contains(soMatchCase);
  p.whole_word = options.Contains(soWholeWord);
  p.pat = PreparePattern(s, p.fold);
  p.m = static_cast<int32_t>(p.pat.size());
  p.skip.fill(p.m);
  for (int32_t j = 0; j + 1 < p.m; ++j) p.skip[p.pat[static_cast<size_t>(j)] & 0xFF] = p.m - 1 - j;
  p.sets_ready = false;
  p.first = UnitSet{};
  p.last = UnitSet{};
  valid = true;
  return p;
}

class Matcher {
 public:
  Matcher(const Char* buf, int32_t len, const Prepared& p) : buf_(buf), len_(len), p_(p) {}

  // First match starting in [from, len - m], or -1.
  int32_t Forward(int32_t from) const {
    return p_.fold ? ForwardImpl<true>(from) : ForwardImpl<false>(from);
  }

  // Last match starting in [0, last], or -1.
  int32_t Backward(int32_t last) const {
    for (int32_t i = last; i >= 0; --i) {
      if ((p_.fold ? EqualAt<true>(i) : EqualAt<false>(i)) && WordOk(i)) return i;
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
    const Char* pat = p_.pat.data();
    const int32_t m = p_.m;
    if constexpr (!kFold) {
      for (int32_t k = 0; k < m; ++k) {
        if (t[k] != pat[k]) return false;
      }
      return true;
    } else {
      const FoldTable& f = Fold();
      for (int32_t k = 0; k < m; ++k) {
        const Char c = t[k];
        if (IsHigh(c) && k + 1 < m && IsLow(t[k + 1])) {
          const char32_t u = FoldSupplementary(Combine(c, t[k + 1])) - 0x10000;
          if (pat[k] != static_cast<Char>(0xD800 + (u >> 10)) ||
              pat[k + 1] != static_cast<Char>(0xDC00 + (u & 0x3FF))) {
            return false;
          }
          ++k;
        } else if (f[c] != pat[k]) {
          return false;
        }
      }
      return true;
    }
  }

  template <bool kFold>
  int32_t ForwardImpl(int32_t from) const {
#if defined(__SSE2__)
    if (p_.first.usable && p_.last.usable) return ForwardFiltered<kFold>(from);
#endif
    return ForwardHorspool<kFold>(from);
  }

  // Horspool over the low byte of each (upper-cased) unit. A surrogate at the window's end
  // shifts by one only, because its upper-case form depends on its partner.
  template <bool kFold>
  int32_t ForwardHorspool(int32_t from) const {
    const int32_t m = p_.m;
    const int32_t last_start = len_ - m;
    const Char tail = p_.pat.back();
    for (int32_t i = from; i <= last_start;) {
      const Char c = buf_[i + m - 1];
      if (kFold && IsSurrogate(c)) {
        if (EqualAt<kFold>(i) && WordOk(i)) return i;
        ++i;
        continue;
      }
      const Char k = Key<kFold>(c);
      if (k == tail && EqualAt<kFold>(i) && WordOk(i)) return i;
      i += p_.skip[k & 0xFF];
    }
    return -1;
  }

#if defined(__SSE2__)
  struct Splat {
    __m128i v[4];
    explicit Splat(const UnitSet& s) {
      for (size_t k = 0; k < 4; ++k) v[k] = _mm_set1_epi16(static_cast<short>(s.units[k]));
    }
    __m128i AnyOf(__m128i x) const {
      return _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(x, v[0]), _mm_cmpeq_epi16(x, v[1])),
                          _mm_or_si128(_mm_cmpeq_epi16(x, v[2]), _mm_cmpeq_epi16(x, v[3])));
    }
  };

  // Eight start positions at a time: only those whose first and last units can match are
  // compared in full.
  template <bool kFold>
  int32_t ForwardFiltered(int32_t from) const {
    const int32_t m = p_.m;
    const int32_t last_start = len_ - m;
    const Splat first(p_.first);
    const Splat last(p_.last);
    int32_t i = from;
    for (; i + 7 <= last_start; i += 8) {
      const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(buf_ + i));
      const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(buf_ + i + m - 1));
      unsigned mask =
          static_cast<unsigned>(_mm_movemask_epi8(_mm_and_si128(first.AnyOf(a), last.AnyOf(b))));
      while (mask != 0) {
        const int bit = __builtin_ctz(mask);
        const int32_t j = i + bit / 2;
        if (EqualAt<kFold>(j) && WordOk(j)) return j;
        mask &= ~(3u << bit);
      }
    }
    for (; i <= last_start; ++i) {
      if (EqualAt<kFold>(i) && WordOk(i)) return i;
    }
    return -1;
  }
#endif

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
    if (!p_.whole_word) return true;
    if (i > 0 && IsLetterOrDigit(Before(i))) return false;
    if (i + p_.m < len_ && IsLetterOrDigit(At(i + p_.m))) return false;
    return true;
  }

  const Char* buf_;
  int32_t len_;
  const Prepared& p_;
};

}  // namespace

const Char* SearchBuf(const Char* Buf, int32_t BufLen, int32_t SelStart, int32_t SelLength,
                      const String& SearchString, TStringSearchOptions Options) {
  if (Buf == nullptr || BufLen <= 0 || SearchString.empty()) return nullptr;
  Prepared& prepared = Prepare(SearchString, Options);
  constexpr int32_t kLongBuffer = 1024;
  if (!prepared.sets_ready && BufLen >= kLongBuffer) {
    prepared.first = SetFor(prepared.pat.front(), prepared.fold);
    prepared.last = SetFor(prepared.pat.back(), prepared.fold);
    prepared.sets_ready = true;
  }
  const Matcher matcher(Buf, BufLen, prepared);
  const int64_t m = prepared.m;
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
