#include "vex/patterns/regex.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "vex/platform/exceptions.h"

namespace vex {

namespace detail {

// A compiled pattern. Immutable once built, so any number of threads may match with it.
struct TRegExCode {
  TRegExCode() = default;
  TRegExCode(const TRegExCode&) = delete;
  TRegExCode& operator=(const TRegExCode&) = delete;
  ~TRegExCode() { pcre2_code_free(code); }

  String pattern;
  TRegExOptions options;
  pcre2_code* code = nullptr;
  uint32_t match_options = 0;  // options passed to every pcre2_match call
  int32_t group_count = 0;
};

}  // namespace detail

namespace {

using detail::TRegExCode;

// Bounds of one pcre2_match call. Ten million steps take well under a second; the heap limit
// (in KiB) caps the backtracking memory of the interpreter; the JIT stack caps the JIT's.
constexpr uint32_t kMatchLimit = 10'000'000;
constexpr uint32_t kDepthLimit = 1'000'000;
constexpr uint32_t kHeapLimitKiB = 64 * 1024;
constexpr size_t kJitStackStart = 32 * 1024;
constexpr size_t kJitStackMax = 1024 * 1024;

// The pattern cache keeps at most this many patterns, each at most this long.
constexpr size_t kCacheCapacity = 512;
constexpr size_t kCacheMaxPatternLength = 2048;

// Patterns longer than this are cut in error messages.
constexpr size_t kMessagePatternLength = 80;

PCRE2_SPTR AsSptr(const Char* s) { return reinterpret_cast<PCRE2_SPTR>(s); }

String ErrorText(int code) {
  PCRE2_UCHAR buffer[256];
  int n = pcre2_get_error_message(code, buffer, sizeof buffer / sizeof buffer[0]);
  if (n < 0) return u"unknown error";
  return String(reinterpret_cast<const Char*>(buffer), static_cast<size_t>(n));
}

String Decimal(size_t value) {
  std::string digits = std::to_string(value);
  return String(digits.begin(), digits.end());
}

String QuotedPattern(const String& pattern) {
  if (pattern.size() <= kMessagePatternLength) return u"\"" + pattern + u"\"";
  return u"\"" + pattern.substr(0, kMessagePatternLength) + u"...\"";
}

// --- Compiling ------------------------------------------------------------------------------

uint32_t CompileOptions(TRegExOptions options) {
  // \C could split a surrogate pair and is of no use on UTF-16 text.
  uint32_t result = PCRE2_UTF | PCRE2_NEVER_BACKSLASH_C;
  if (options.Contains(roIgnoreCase)) result |= PCRE2_CASELESS;
  if (options.Contains(roMultiLine)) result |= PCRE2_MULTILINE;
  if (options.Contains(roSingleLine)) result |= PCRE2_DOTALL;
  if (options.Contains(roExtended)) result |= PCRE2_EXTENDED;
  if (options.Contains(roUngreedy)) result |= PCRE2_UNGREEDY;
  if (options.Contains(roAnchored)) result |= PCRE2_ANCHORED;
  return result;
}

pcre2_compile_context* CompileContext() {
  // Created once, read-only afterwards; pcre2_compile only reads it.
  static pcre2_compile_context* const context = [] {
    pcre2_compile_context* c = pcre2_compile_context_create(nullptr);
    pcre2_set_newline(c, PCRE2_NEWLINE_ANYCRLF);
    pcre2_set_bsr(c, PCRE2_BSR_ANYCRLF);
    return c;
  }();
  return context;
}

bool JitAvailable() {
  static const bool available = [] {
    uint32_t jit = 0;
    return pcre2_config(PCRE2_CONFIG_JIT, &jit) >= 0 && jit != 0;
  }();
  return available;
}

std::shared_ptr<const TRegExCode> Compile(const String& pattern, TRegExOptions options) {
  auto result = std::make_shared<TRegExCode>();
  result->pattern = pattern;
  result->options = options;
  int error = 0;
  PCRE2_SIZE error_offset = 0;
  result->code = pcre2_compile(AsSptr(pattern.data()), pattern.size(), CompileOptions(options),
                               &error, &error_offset, CompileContext());
  if (result->code == nullptr) {
    throw ERegExError(u"Error in regular expression " + QuotedPattern(pattern) + u" at offset " +
                      Decimal(error_offset) + u": " + ErrorText(error));
  }
  uint32_t captures = 0;
  pcre2_pattern_info(result->code, PCRE2_INFO_CAPTURECOUNT, &captures);
  result->group_count = static_cast<int32_t>(captures);
  if (options.Contains(roNotEmpty)) result->match_options |= PCRE2_NOTEMPTY;
  // A pattern the JIT cannot take (or a platform without it) simply runs interpreted.
  if (JitAvailable()) pcre2_jit_compile(result->code, PCRE2_JIT_COMPLETE);
  return result;
}

// --- The pattern cache ----------------------------------------------------------------------

// Least-recently-used cache of compiled patterns. The map's keys view the pattern text owned
// by the cached code, so a lookup allocates nothing.
class PatternCache {
 public:
  std::shared_ptr<const TRegExCode> Get(const String& pattern, TRegExOptions options) {
    if (pattern.size() > kCacheMaxPatternLength) return Compile(pattern, options);
    Key key{pattern, options.Bits()};
    {
      std::lock_guard<std::mutex> lock(mutex_);
      auto it = index_.find(key);
      if (it != index_.end()) {
        entries_.splice(entries_.begin(), entries_, it->second);
        return *it->second;
      }
    }
    // Compile outside the lock; another thread may insert the same pattern meanwhile.
    std::shared_ptr<const TRegExCode> code = Compile(pattern, options);
    std::lock_guard<std::mutex> lock(mutex_);
    auto it = index_.find(key);
    if (it != index_.end()) return *it->second;
    entries_.push_front(code);
    index_.emplace(Key{code->pattern, options.Bits()}, entries_.begin());
    if (entries_.size() > kCacheCapacity) {
      const TRegExCode& last = *entries_.back();
      index_.erase(Key{last.pattern, last.options.Bits()});
      entries_.pop_back();
    }
    return code;
  }

  size_t Size() {
    std::lock_guard<std::mutex> lock(mutex_);
    return entries_.size();
  }

  void Clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    index_.clear();
    entries_.clear();
  }

 private:
  struct Key {
    std::u16string_view pattern;
    uint64_t options;
    bool operator==(const Key&) const = default;
  };
  struct KeyHash {
    size_t operator()(const Key& k) const {
      return std::hash<std::u16string_view>()(k.pattern) ^ (k.options * 0x9E3779B97F4A7C15ull);
    }
  };
  using Entries = std::list<std::shared_ptr<const TRegExCode>>;

  std::mutex mutex_;
  Entries entries_;
  std::unordered_map<Key, Entries::iterator, KeyHash> index_;
};

PatternCache& Cache() {
  static PatternCache* const cache = new PatternCache();  // never destroyed: usable at exit
  return *cache;
}

// Bumped by ClearRegExCache so that the per-thread tables below forget their entries too.
std::atomic<uint64_t> cache_generation{0};

// A small per-thread table in front of the shared cache: a hit costs a hash and a compare, with
// no lock and no contention between threads.
class ThreadPatternCache {
 public:
  std::shared_ptr<const TRegExCode> Get(const String& pattern, TRegExOptions options) {
    if (pattern.size() > kCacheMaxPatternLength) return Compile(pattern, options);
    const size_t hash = std::hash<std::u16string_view>()(pattern) + options.Bits();
    Slot& slot = slots_[hash % slots_.size()];
    const uint64_t generation = cache_generation.load(std::memory_order_acquire);
    if (slot.code != nullptr && slot.generation == generation && slot.code->options == options &&
        slot.code->pattern == pattern) {
      return slot.code;
    }
    slot.code = Cache().Get(pattern, options);
    slot.generation = generation;
    return slot.code;
  }

 private:
  struct Slot {
    std::shared_ptr<const TRegExCode> code;
    uint64_t generation = 0;
  };
  std::array<Slot, 64> slots_;
};

ThreadPatternCache& ThreadCache() {
  thread_local ThreadPatternCache cache;
  return cache;
}

// --- Matching -------------------------------------------------------------------------------

// Per-thread match resources: match data big enough for the largest pattern seen so far, a
// match context carrying the limits, and the JIT stack.
class ThreadMatchState {
 public:
  ThreadMatchState() {
    context_ = pcre2_match_context_create(nullptr);
    pcre2_set_match_limit(context_, kMatchLimit);
    pcre2_set_depth_limit(context_, kDepthLimit);
    pcre2_set_heap_limit(context_, kHeapLimitKiB);
    if (JitAvailable()) {
      jit_stack_ = pcre2_jit_stack_create(kJitStackStart, kJitStackMax, nullptr);
      if (jit_stack_ != nullptr) pcre2_jit_stack_assign(context_, nullptr, jit_stack_);
    }
  }
  ThreadMatchState(const ThreadMatchState&) = delete;
  ThreadMatchState& operator=(const ThreadMatchState&) = delete;
  ~ThreadMatchState() {
    pcre2_match_data_free(data_);
    pcre2_jit_stack_free(jit_stack_);
    pcre2_match_context_free(context_);
  }

  pcre2_match_context* Context() const { return context_; }

  pcre2_match_data* DataFor(uint32_t pairs) {
    if (pairs > pairs_) {
      pcre2_match_data_free(data_);
      data_ = pcre2_match_data_create(pairs, nullptr);
      if (data_ == nullptr) throw ERegExError(u"Out of memory for regular expression matching");
      pairs_ = pairs;
    }
    return data_;
  }

 private:
  pcre2_match_context* context_ = nullptr;
  pcre2_jit_stack* jit_stack_ = nullptr;
  pcre2_match_data* data_ = nullptr;
  uint32_t pairs_ = 0;
};

ThreadMatchState& MatchState() {
  thread_local ThreadMatchState state;
  return state;
}

[[noreturn]] void RaiseMatchError(const TRegExCode& code, int rc, pcre2_match_data* data) {
  String message = u"Error matching regular expression " + QuotedPattern(code.pattern) + u": ";
  if (rc <= PCRE2_ERROR_UTF16_ERR1 && rc >= PCRE2_ERROR_UTF16_ERR3) {
    message += u"invalid UTF-16 in the text at offset " + Decimal(pcre2_get_startchar(data)) +
               u" (" + ErrorText(rc) + u")";
  } else {
    message += ErrorText(rc);
  }
  throw ERegExError(message);
}

// One pcre2_match call from 0-based start. On a match, copies the [start, end) pairs into
// out (when given; -1 for unset groups) and returns true. Errors raise ERegExError.
bool Exec(const TRegExCode& code, const Char* subject, size_t length, size_t start,
          uint32_t options, std::vector<int32_t>* out) {
  ThreadMatchState& state = MatchState();
  const uint32_t pairs = static_cast<uint32_t>(code.group_count) + 1;
  pcre2_match_data* data = state.DataFor(pairs);
  options |= code.match_options;
  int rc = pcre2_match(code.code, AsSptr(subject), length, start, options, data, state.Context());
  if (rc == PCRE2_ERROR_JIT_STACKLIMIT) {
    // The interpreter keeps its backtracking on the heap, under the heap and depth limits.
    rc = pcre2_match(code.code, AsSptr(subject), length, start, options | PCRE2_NO_JIT, data,
                     state.Context());
  }
  if (rc == PCRE2_ERROR_NOMATCH) return false;
  if (rc < 0) RaiseMatchError(code, rc, data);
  if (out != nullptr) {
    const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(data);
    out->resize(2 * pairs);
    for (uint32_t i = 0; i < 2 * pairs; ++i) {
      (*out)[i] = ovector[i] == PCRE2_UNSET ? -1 : static_cast<int32_t>(ovector[i]);
    }
    // \K can move the reported start past the end; such a match is reported as empty at its
    // end so that every consumer can rely on start <= end.
    if ((*out)[0] > (*out)[1]) (*out)[0] = (*out)[1];
  }
  return true;
}

// The NextMatch walk over a whole subject. visit(offsets) returns false to stop. The subject is
// validated by the first call; later calls, which only move forward, skip the check.
template <class Visit>
int32_t Walk(const TRegExCode& code, const String& subject, std::vector<int32_t>& offsets,
             Visit&& visit) {
  const size_t length = subject.size();
  size_t position = 0;
  uint32_t options = 0;
  int32_t count = 0;
  while (position <= length) {
    if (!Exec(code, subject.data(), length, position, options, &offsets)) break;
    ++count;
    if (!visit(offsets)) break;
    const size_t end = static_cast<size_t>(offsets[1]);
    options = PCRE2_NO_UTF_CHECK;
    // After an empty match the next one may start at the same place only if it is not empty.
    if (end <= position) {
      options |= PCRE2_NOTEMPTY_ATSTART;
    } else {
      position = end;
      if (offsets[0] == offsets[1]) options |= PCRE2_NOTEMPTY_ATSTART;
    }
  }
  return count;
}

// --- Replacement templates ------------------------------------------------------------------

// A replacement text cut into literal runs and group references.
struct ReplacementPiece {
  String literal;
  int32_t group = -1;  // -1: literal piece
};

class ReplacementTemplate {
 public:
  ReplacementTemplate(const String& text, const TRegEx& re) {
    const size_t n = text.size();
    size_t i = 0;
    while (i < n) {
      const Char c = text[i];
      size_t consumed = 0;
      int32_t group = -1;
      if (c == u'$' && i + 1 < n) {
        consumed = ParseDollar(text, i, re, group);
      } else if (c == u'\\' && i + 1 < n) {
        consumed = ParseBackslash(text, i, re.GroupCount(), group);
      }
      if (consumed == 0) {
        literal_ += c;
        ++i;
        continue;
      }
      if (group >= 0) {
        Flush();
        pieces_.push_back({String(), group});
      }
      i += consumed;
    }
    Flush();
  }

  void AppendTo(String& out, const TRegExMatch& m) const {
    for (const ReplacementPiece& piece : pieces_) {
      if (piece.group < 0) {
        out += piece.literal;
      } else if (m.GroupMatched(piece.group)) {
        out += m.Group(piece.group);
      }
    }
  }

 private:
  static bool IsDigit(Char c) { return c >= u'0' && c <= u'9'; }

  // Text at i starts with "$". Returns how many units the reference takes (0: not one) and sets
  // group; "$$" is consumed as a literal "$".
  size_t ParseDollar(const String& text, size_t i, const TRegEx& re, int32_t& group) {
    const Char next = text[i + 1];
    const int32_t groups = re.GroupCount();
    if (next == u'$') {
      literal_ += u'$';
      return 2;
    }
    if (next == u'&') {
      group = 0;
      return 2;
    }
    if (IsDigit(next)) {
      const int32_t one = next - u'0';
      if (i + 2 < text.size() && IsDigit(text[i + 2])) {
        const int32_t two = one * 10 + (text[i + 2] - u'0');
        if (two <= groups) {
          group = two;
          return 3;
        }
      }
      if (one <= groups) {
        group = one;
        return 2;
      }
      return 0;
    }
    if (next == u'{') {
      const size_t close = text.find(u'}', i + 2);
      if (close == String::npos || close == i + 2) return 0;
      const String name = text.substr(i + 2, close - i - 2);
      int32_t number = -1;
      if (std::all_of(name.begin(), name.end(), IsDigit)) {
        if (name.size() <= 3) number = std::stoi(std::string(name.begin(), name.end()));
        if (number > groups) number = -1;
      } else {
        number = re.GroupNumber(name);
      }
      if (number < 0) return 0;
      group = number;
      return close - i + 1;
    }
    return 0;
  }

  // Text at i starts with "\": "\0".."\9" and "\\".
  size_t ParseBackslash(const String& text, size_t i, int32_t groups, int32_t& group) {
    const Char next = text[i + 1];
    if (next == u'\\') {
      literal_ += u'\\';
      return 2;
    }
    if (IsDigit(next) && next - u'0' <= groups) {
      group = next - u'0';
      return 2;
    }
    return 0;
  }

  void Flush() {
    if (!literal_.empty()) pieces_.push_back({std::move(literal_), -1});
    literal_.clear();
  }

  std::vector<ReplacementPiece> pieces_;
  String literal_;
};

}  // namespace

// --- TRegExMatch ----------------------------------------------------------------------------

int32_t TRegExMatch::GroupCount() const {
  return offsets_.empty() ? 0 : static_cast<int32_t>(offsets_.size() / 2) - 1;
}

bool TRegExMatch::GroupMatched(int32_t n) const {
  return n >= 0 && n <= GroupCount() && !offsets_.empty() && offsets_[2 * n] >= 0;
}

int32_t TRegExMatch::GroupIndex(int32_t n) const {
  return GroupMatched(n) ? offsets_[2 * n] + 1 : 0;
}

int32_t TRegExMatch::GroupLength(int32_t n) const {
  return GroupMatched(n) ? offsets_[2 * n + 1] - offsets_[2 * n] : 0;
}

String TRegExMatch::Group(int32_t n) const {
  if (!GroupMatched(n)) return String();
  return String(subject_ + offsets_[2 * n], static_cast<size_t>(GroupLength(n)));
}

// --- TRegEx ---------------------------------------------------------------------------------

TRegEx::TRegEx(const String& pattern, TRegExOptions options)
    : code_(ThreadCache().Get(pattern, options)) {}

const String& TRegEx::Pattern() const { return code_->pattern; }

TRegExOptions TRegEx::Options() const { return code_->options; }

int32_t TRegEx::GroupCount() const { return code_->group_count; }

int32_t TRegEx::GroupNumber(const String& name) const {
  if (name.find(u'\0') != String::npos) return -1;  // PCRE2 reads the name up to a NUL
  const int rc = pcre2_substring_number_from_name(code_->code, AsSptr(name.c_str()));
  return rc < 0 ? -1 : rc;
}

bool TRegEx::IsMatch(const String& subject, int32_t start) const {
  const size_t from = start < 1 ? 0 : static_cast<size_t>(start) - 1;
  if (from > subject.size()) return false;
  return Exec(*code_, subject.data(), subject.size(), from, 0, nullptr);
}

TRegExMatch TRegEx::Match(const String& subject, int32_t start) const {
  TRegExMatch m;
  const size_t from = start < 1 ? 0 : static_cast<size_t>(start) - 1;
  if (from > subject.size()) return m;
  m.subject_ = subject.data();
  m.subject_length_ = subject.size();
  if (!Exec(*code_, subject.data(), subject.size(), from, 0, &m.offsets_)) m.offsets_.clear();
  return m;
}

TRegExMatch TRegEx::NextMatch(const TRegExMatch& previous) const {
  TRegExMatch m;
  if (!previous.Success()) return m;
  m.subject_ = previous.subject_;
  m.subject_length_ = previous.subject_length_;
  const size_t from = static_cast<size_t>(previous.offsets_[1]);
  const uint32_t options = previous.offsets_[0] == previous.offsets_[1] ? PCRE2_NOTEMPTY_ATSTART
                                                                        : 0;
  if (from > m.subject_length_ ||
      !Exec(*code_, m.subject_, m.subject_length_, from, options, &m.offsets_)) {
    m.offsets_.clear();
  }
  return m;
}

std::vector<TRegExMatch> TRegEx::Matches(const String& subject) const {
  std::vector<TRegExMatch> result;
  std::vector<int32_t> offsets;
  Walk(*code_, subject, offsets, [&](const std::vector<int32_t>& o) {
    TRegExMatch m;
    m.subject_ = subject.data();
    m.subject_length_ = subject.size();
    m.offsets_ = o;
    result.push_back(std::move(m));
    return true;
  });
  return result;
}

int32_t TRegEx::ForEachMatch(const String& subject,
                             const std::function<bool(const TRegExMatch&)>& visit) const {
  TRegExMatch m;
  m.subject_ = subject.data();
  m.subject_length_ = subject.size();
  return Walk(*code_, subject, m.offsets_, [&](const std::vector<int32_t>&) { return visit(m); });
}

int32_t TRegEx::CountMatches(const String& subject) const {
  std::vector<int32_t> offsets;
  return Walk(*code_, subject, offsets, [](const std::vector<int32_t>&) { return true; });
}

TStringDynArray TRegEx::Split(const String& subject) const {
  TStringDynArray parts;
  size_t cursor = 0;
  std::vector<int32_t> offsets;
  Walk(*code_, subject, offsets, [&](const std::vector<int32_t>& o) {
    const size_t start = static_cast<size_t>(o[0]);
    parts.push_back(subject.substr(cursor, start > cursor ? start - cursor : 0));
    cursor = std::max(cursor, static_cast<size_t>(o[1]));
    return true;
  });
  parts.push_back(subject.substr(cursor));
  return parts;
}

template <class Append>
String TRegEx::ReplaceWith(const String& subject, Append&& append, int32_t* count) const {
  String result;
  size_t cursor = 0;
  TRegExMatch m;
  m.subject_ = subject.data();
  m.subject_length_ = subject.size();
  const int32_t n = Walk(*code_, subject, m.offsets_, [&](const std::vector<int32_t>& o) {
    const size_t start = static_cast<size_t>(o[0]);
    if (start > cursor) result.append(subject, cursor, start - cursor);
    append(result, m);
    cursor = std::max(cursor, static_cast<size_t>(o[1]));
    return true;
  });
  if (count != nullptr) *count = n;
  if (n == 0) return subject;
  result.append(subject, cursor, String::npos);
  return result;
}

String TRegEx::Replace(const String& subject, const String& replacement, int32_t* count) const {
  std::optional<ReplacementTemplate> parsed;  // parsed at the first match only
  return ReplaceWith(
      subject,
      [&](String& out, const TRegExMatch& m) {
        if (!parsed) parsed.emplace(replacement, *this);
        parsed->AppendTo(out, m);
      },
      count);
}

String TRegEx::Replace(const String& subject,
                       const std::function<String(const TRegExMatch&)>& evaluator,
                       int32_t* count) const {
  return ReplaceWith(
      subject, [&](String& out, const TRegExMatch& m) { out += evaluator(m); }, count);
}

size_t RegExCacheSize() { return Cache().Size(); }

void ClearRegExCache() {
  cache_generation.fetch_add(1, std::memory_order_acq_rel);
  Cache().Clear();
}

}  // namespace vex
