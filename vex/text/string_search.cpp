#include "vex/text/string_search.h"

#include <algorithm>

#include "vex/platform/sysutils.h"

namespace vex {

TStringSearch::TStringSearch(const String& Pattern, TStringSearchOptions Options)
    : FOptions(Options), FPattern(Pattern) {}

TStringMatch TStringSearch::Match(const String& Text) & {
  Source = Text.data();
  FLength = vex::Length(Text);
  return GetMatch(0);
}

TStringMatch TStringSearch::GetMatch(int32_t Start) const& {
  TStringMatch m;
  m.FOwner = this;
  if (Source == nullptr || Start < 0 || Start >= FLength) return m;
  const Char* p = SearchBuf(Source + Start, FLength - Start, 0, 0, FPattern, FOptions);
  if (p != nullptr) {
    m.Success = true;
    m.Index = static_cast<int32_t>(p - Source) + 1;
    m.Length = vex::Length(FPattern);
    m.Value.assign(p, static_cast<size_t>(m.Length));
  }
  return m;
}

TStringMatch TStringMatch::NextMatch() const {
  if (!Success || FOwner == nullptr) return TStringMatch{};
  // Index is 1-based, so this offset skips the character right after the match on purpose.
  return FOwner->GetMatch(Index + Length);
}

void DetectStringPlaces(const String& Text, const String& SearchStr, TStringSearchOptions Options,
                        TSearchInfoArray& Infos) {
  Infos.clear();
  TStringSearch search(SearchStr, Options);
  for (TStringMatch m = search.Match(Text); m.Success; m = m.NextMatch()) {
    Infos.push_back(TSearchInfo{m.Index, m.Length, std::move(m.Value)});
  }
}

bool DetectStringInfos(const String& Text, const String& SearchStr, TStringSearchOptions Options,
                       TSearchInfo& Info, bool FindLast) {
  Info = TSearchInfo{};
  TStringSearch search(SearchStr, Options);
  TStringMatch m = search.Match(Text);
  if (!m.Success) return false;
  if (FindLast) {
    for (TStringMatch next = m.NextMatch(); next.Success; next = next.NextMatch()) m = next;
  }
  Info = TSearchInfo{m.Index, m.Length, std::move(m.Value)};
  return true;
}

void DetectStringInfos(const String& Text, const TStringDynArray& SearchStrs, int32_t LastIndex,
                       TStringSearchOptions Options, TSearchInfoArrays& Infos) {
  const int32_t count = std::min(LastIndex + 1, static_cast<int32_t>(SearchStrs.size()));
  Infos.assign(static_cast<size_t>(std::max(count, 0)), TSearchInfoArray{});
  for (int32_t i = 0; i < count; ++i) {
    DetectStringPlaces(Text, SearchStrs[static_cast<size_t>(i)], Options,
                       Infos[static_cast<size_t>(i)]);
  }
}

String ReplaceStrByInfos(const String& Text, const String& NewText, const TSearchInfoArray& Infos,
                         int32_t Offset) {
  String result = Text;
  // Positions are used as given, without accounting for earlier replacements of other lengths.
  for (const TSearchInfo& info : Infos) {
    const int32_t start = info.Index + Offset;
    const String& by = NewText.empty() ? info.Value : NewText;
    result = Copy(result, 1, start - 1) + by + Copy(result, start + info.Length);
  }
  return result;
}

String ProcessStrWithProc(const String& Text, const String& SearchStr, TStringSearchOptions Options,
                          const TVarStringProc& Proc) {
  TSearchInfoArray infos;
  DetectStringPlaces(Text, SearchStr, Options, infos);
  int32_t shift = 0;
  for (TSearchInfo& info : infos) {
    info.Index += shift;
    if (Proc) Proc(info.Value);
    shift += Length(info.Value) - info.Length;
  }
  return ReplaceStrByInfos(Text, String(), infos, 0);
}

int32_t GetTextPos(const String& SubStr, const String& Text, int32_t Start) {
  // Start cuts the stretch at its end, not at its beginning; callers rely on that.
  const int32_t len = std::min(Length(Text) - Start + 1, Length(Text));
  const Char* p = SearchBuf(Text.data(), len, 0, 0, SubStr, {soDown});
  return p == nullptr ? 0 : static_cast<int32_t>(p - Text.data()) + 1;
}

int32_t GetTextPosEx(const String& SubStr, const String& Text, int32_t Start,
                     TStringSearchOptions Options) {
  const int32_t len = std::min(Length(Text) - Start, Length(Text));
  const Char* p = SearchBuf(Text.data(), len, Start, 0, SubStr, Options);
  // No +1 here, unlike GetTextPos: a match at offset 0 and no match both give 0.
  return p == nullptr ? 0 : static_cast<int32_t>(p - Text.data());
}

int32_t GetTextPositions(const String& SubStr, const String& Text, TIntegerDynArray& Positions,
                         int32_t /*Unused*/, TStringSearchOptions Options) {
  Positions.clear();
  const int32_t text_len = Length(Text);
  int32_t begin = 0;
  int32_t len = text_len;
  for (;;) {
    // The stretch never reaches past the text, whatever its bookkeeping length says.
    const int32_t avail = std::min(len, text_len - begin);
    const Char* p = SearchBuf(Text.data() + begin, avail, 0, 0, SubStr, Options);
    if (p == nullptr) break;
    const int32_t pos = static_cast<int32_t>(p - Text.data()) + 1;
    Positions.push_back(pos);
    // Shrinking by the absolute position, not by what was consumed, is the defined behaviour.
    len -= pos;
    begin = pos - 1 + Length(SubStr);
  }
  return static_cast<int32_t>(Positions.size());
}

int32_t StuffTextInPositions(String& Text, const String& NewText, int32_t ReplacedLength,
                             const TIntegerDynArray& Positions, const TIntBoolFunc& Accept) {
  const int32_t delta = Length(NewText) - ReplacedLength;
  int32_t shift = 0;
  int32_t count = 0;
  for (int32_t position : Positions) {
    const int32_t q = position + shift;
    if (Accept && !Accept(q)) continue;
    if (q < 1 || int64_t{q} + ReplacedLength - 1 > Length(Text)) break;
    Text = Copy(Text, 1, q - 1) + NewText + Copy(Text, q + ReplacedLength);
    shift += delta;
    ++count;
  }
  return count;
}

}  // namespace vex
