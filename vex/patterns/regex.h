// TRegEx, the library's one regular-expression engine: Perl-compatible patterns over UTF-16
// text, backed by PCRE2's 16-bit library. Every pattern unit of the library matches through it.
//
//   TRegEx re(u"(\\w+)=(\\d+)");
//   String text = u"a=1, b=22";
//   TRegExMatch m = re.Match(text);        // m.Index() == 1, m.Value() == u"a=1"
//   m = re.NextMatch(m);                   // m.Index() == 6, m.Group(2) == u"22"
//   re.Replace(text, u"$2:$1");            // u"1:a, 22:b"
//   re.Split(text);                        // {u"", u", ", u""}
//
// Meaning of the pattern language, fixed for the whole library:
//  - Patterns and subjects are UTF-16 and matched by code point (PCRE2_UTF), but "\d", "\s",
//    "\w", "\b" and the POSIX classes are ASCII-only: "\d" is [0-9], "\w" is [A-Za-z0-9_],
//    "\s" is space, tab, CR, LF, FF and VT. Case-insensitive matching folds all of Unicode.
//  - A line break is CR, LF or CR LF (for "^"/"$" in multi-line mode, "$" and "." otherwise).
//  - Matching is bounded: a match that needs more than ten million backtracking steps, or
//    nests too deep, raises ERegExError instead of running on ("(a+)+$" against thirty "a"s
//    and a "b" fails within a fraction of a second).
//
// Errors: a pattern that does not compile raises ERegExError with PCRE2's message and the
// offset (0-based, in code units) where it went wrong; a subject that is not valid UTF-16 (a
// lone surrogate) raises ERegExError naming the offset of the bad unit. Nothing else fails.
//
// Positions are 1-based code-unit positions, as everywhere in the library: a match at the
// start of the text has Index() 1, and a match's end is Index() + Length().
//
// Threads and speed: a TRegEx is immutable after construction; copies share the compiled
// pattern and any number of threads may match with one object at once. Compiled patterns are
// kept in a bounded, thread-safe cache keyed by pattern text and options, and JIT-compiled
// when the platform allows, so building a TRegEx for a pattern seen before costs one lookup.
// Code with a fixed pattern on a hot path can keep the TRegEx in a function-local static.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "vex/platform/object.h"
#include "vex/platform/types.h"

namespace vex {

/// Compile and match options of a TRegEx.
enum TRegExOption : uint8_t {
  roIgnoreCase,  ///< letters match regardless of case (full Unicode folding)
  roMultiLine,   ///< "^" and "$" also match at line breaks inside the text
  roSingleLine,  ///< "." also matches line-break characters
  roExtended,    ///< blanks and "#" comments in the pattern are ignored
  roUngreedy,    ///< quantifiers are lazy unless followed by "?"
  roAnchored,    ///< a match must begin exactly at the start position
  roNotEmpty,    ///< an empty string is never a match
};
using TRegExOptions = Set<TRegExOption>;

namespace detail {
struct TRegExCode;  // the compiled pattern, shared between copies of a TRegEx
}  // namespace detail

/// One match of a TRegEx in a subject, or no match (Success() false, every field zero/empty).
///
/// A match refers to the subject it was found in, the way std::match_results does: the subject
/// string must stay alive and unchanged while the match is used. (The TRegEx calls that return
/// a match refuse temporary subjects at compile time.)
class TRegExMatch : public TObject {
 public:
  TRegExMatch() = default;

  bool Success() const { return !offsets_.empty(); }
  /// 1-based position of the first matched code unit; 0 when there is no match.
  int32_t Index() const { return GroupIndex(0); }
  /// Number of matched code units (0 for an empty match and for no match).
  int32_t Length() const { return GroupLength(0); }
  /// The matched text.
  String Value() const { return Group(0); }

  /// Number of capturing groups in the pattern (not counting the whole match); 0 without a
  /// match.
  int32_t GroupCount() const;
  /// True when group n (0 = the whole match) took part in the match. False for an unset
  /// group, for n outside 0..GroupCount() and without a match.
  bool GroupMatched(int32_t n) const;
  /// 1-based start of group n; 0 when the group is unset or does not exist.
  int32_t GroupIndex(int32_t n) const;
  /// Length of group n; 0 when the group is unset or does not exist.
  int32_t GroupLength(int32_t n) const;
  /// Text of group n; empty when the group is unset or does not exist.
  String Group(int32_t n) const;

 private:
  friend class TRegEx;
  const Char* subject_ = nullptr;
  size_t subject_length_ = 0;
  // 0-based [start, end) pairs for group 0..GroupCount(); -1 marks an unset group.
  std::vector<int32_t> offsets_;
};

/// A compiled regular expression. See the file comment for the pattern language and errors.
class TRegEx : public TObject {
 public:
  /// Compiles pattern (or takes it from the cache). Raises ERegExError when it does not
  /// compile.
  explicit TRegEx(const String& pattern, TRegExOptions options = {});

  const String& Pattern() const;
  TRegExOptions Options() const;
  /// Number of capturing groups in the pattern.
  int32_t GroupCount() const;
  /// Number of the named group name, or -1 when the pattern has no group of that name.
  int32_t GroupNumber(const String& name) const;

  /// True when the pattern matches subject at or after 1-based position start.
  bool IsMatch(const String& subject, int32_t start = 1) const;

  /// The first match at or after 1-based position start (start below 1 counts as 1; a start
  /// past Length(subject) + 1 finds nothing).
  TRegExMatch Match(const String& subject, int32_t start = 1) const;
  TRegExMatch Match(const String&& subject, int32_t start = 1) const = delete;

  /// The match after previous, in the same subject: the next non-overlapping match to the
  /// right of it. After an empty match the next match may start at the same position only if
  /// it is not empty, so a walk always advances. No match after a failed previous.
  TRegExMatch NextMatch(const TRegExMatch& previous) const;

  /// All non-overlapping matches, left to right (the NextMatch walk).
  std::vector<TRegExMatch> Matches(const String& subject) const;
  std::vector<TRegExMatch> Matches(const String&& subject) const = delete;

  /// Calls visit for each match of the NextMatch walk, in order, until it returns false. The
  /// match passed in is valid only during the call (it is reused for the next one). Returns
  /// the number of matches visited.
  int32_t ForEachMatch(const String& subject,
                       const std::function<bool(const TRegExMatch&)>& visit) const;

  /// Number of matches of the NextMatch walk.
  int32_t CountMatches(const String& subject) const;

  /// The pieces of subject between the matches: always one more than the matches, empty
  /// pieces kept (a match at the start gives an empty first piece).
  TStringDynArray Split(const String& subject) const;

  /// subject with every match replaced by replacement, in which these references are
  /// expanded:
  ///   $0..$99, ${n}   group n (two digits are read only when that group exists: with one
  ///                   group, "$10" is group 1 followed by "0")
  ///   ${name}         the named group
  ///   $&              the whole match
  ///   \0..\9          group 0..9
  ///   $$, \\          a literal "$", a literal "\"
  /// An unset group gives the empty string; a reference to a group that does not exist, and
  /// any other "$" or "\", is kept as written. When count is given it receives the number of
  /// replacements.
  String Replace(const String& subject, const String& replacement, int32_t* count = nullptr) const;

  /// subject with every match replaced by what evaluator returns for it.
  String Replace(const String& subject,
                 const std::function<String(const TRegExMatch&)>& evaluator,
                 int32_t* count = nullptr) const;

 private:
  template <class Append>
  String ReplaceWith(const String& subject, Append&& append, int32_t* count) const;

  std::shared_ptr<const detail::TRegExCode> code_;
};

/// Number of compiled patterns currently kept by the pattern cache (for tests and tuning).
size_t RegExCacheSize();
/// Drops every cached compiled pattern; TRegEx objects that hold one keep it.
void ClearRegExCache();

}  // namespace vex
