// Takes arbitrary captions apart with DetectNumberFormat and puts them together again with
// ApplyNumberFormat. The first byte picks the language settings and how the rest is read (UTF-8
// with replacement, or raw UTF-16 units that may hold lone surrogates). Detection may only fail
// for a digit run beyond 32 bits (EConvertError) or, for raw units, a lone surrogate
// (ERegExError); a caption without a variable part must come back unchanged, and putting any
// other text together must not fail.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "vex/patterns/detect_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;

using vex::Char;
using vex::String;


bool IsDigit(Char c) { return c >= u'0' && c <= u'9'; }

// True when the text holds a run of digits whose value does not fit a 32-bit signed integer.
bool HasOversizedRun(const String& text) {
  size_t i = 0;
  while (i < text.size()) {
    if (!IsDigit(text[i])) {
      ++i;
      continue;
    }
    uint64_t value = 0;
    bool big = false;
    for (; i < text.size() && IsDigit(text[i]); ++i) {
      value = value * 10 + static_cast<uint64_t>(text[i] - u'0');
      if (value > 2147483647u) big = true;
      if (big) value = 2147483648u;
    }
    if (big) return true;
  }
  return false;
}

bool HasLoneSurrogate(const String& text) {
  for (size_t i = 0; i < text.size(); ++i) {
    const Char c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF) {
      if (i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
        ++i;
        continue;
      }
      return true;
    }
    if (c >= 0xDC00 && c <= 0xDFFF) return true;
  }
  return false;
}

vex::TDetectLangParams LangParamsFor(uint8_t selector) {
  vex::TDetectLangParams lang;
  lang.LangIdx = static_cast<int32_t>(selector % 5) - 1;  // -1 .. 3 (3 has no pre-word)
  if (selector & 0x08) lang.MaskPreWord = u"from";
  if (selector & 0x10) lang.OneNumberChar = u'\0';
  if (selector & 0x20) lang.IntFormat.clear();
  return lang;
}

String Quoted(const String& text, const vex::TDetectNumParams& num) {
  if (num.Quotes.empty() || num.Quotes[0] == u'\'') return text;
  return String(1, num.Quotes[0]) + text + num.Quotes[1];
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vex;
  if (size == 0) return 0;
  const uint8_t selector = data[0];
  const std::string_view rest(reinterpret_cast<const char*>(data + 1), size - 1);
  String caption;
  if (selector & 0x40) {
    for (size_t i = 0; i + 1 < rest.size(); i += 2) {
      caption +=
          static_cast<Char>(static_cast<uint8_t>(rest[i]) | static_cast<uint8_t>(rest[i + 1]) << 8);
    }
  } else {
    caption = FromUtf8(rest, TInvalidText::Replace);
  }
  const TDetectLangParams lang = LangParamsFor(selector);

  TDetectNumParams num;
  try {
    DetectNumberFormat(caption, lang, num);
  } catch (const EConvertError&) {
    Check(HasOversizedRun(caption));
    return 0;
  } catch (const ERegExError&) {
    Check(HasLoneSurrogate(caption));
    return 0;
  }

  const TDetectNumParams detected = num;
  ApplyNumberFormat(num.s, lang, num);
  const bool whole = detected.FormatType == dftNone || detected.FormatType == dftIntFormat;
  if (whole && !detected.UseNumTitle) Check(num.s == Quoted(detected.dqs, detected));
  if (detected.FormatType == dftMasked) {
    Check(num.s == Quoted(detected.s + lang.MaskDelim + detected.MskVal, detected));
  }

  // Any translated text, including one full of format characters, goes back in.
  num = detected;
  ApplyNumberFormat(caption + u"%s%d%", lang, num);
  return 0;
}
