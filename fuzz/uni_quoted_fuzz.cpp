// Quoted code form: Uni2Str and LoadFromUni on arbitrary text either decode or raise the
// defined error, and Str2Uni of any text decodes back to it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/text/convert_utils.h"

#include "fuzz_support.h"

namespace {

using vex_fuzz::Check;

// First byte chooses the reading: even = one byte per character (reaches the form's ASCII
// grammar quickly), odd = UTF-16 little-endian units (reaches every unit, lone surrogates too).
vex::String ToText(const uint8_t* data, size_t size) {
  vex::String s;
  if (size == 0) return s;
  const bool wide = (data[0] & 1) != 0;
  ++data;
  --size;
  if (wide) {
    for (size_t i = 0; i + 1 < size; i += 2)
      s.push_back(static_cast<char16_t>(data[i] | (data[i + 1] << 8)));
  } else {
    for (size_t i = 0; i < size; ++i) s.push_back(data[i]);
  }
  return s;
}


void DecodeOrInvalid(const vex::String& s, bool as_line) {
  try {
    vex::TConvertUtils::Uni2Str(s, as_line);
  } catch (const vex::EConvertError& e) {
    Check(e.Message() == u"ConvertAsUnicode: Invalid String");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using vex::TConvertUtils;
  const vex::String text = ToText(data, size);

  DecodeOrInvalid(text, false);
  DecodeOrInvalid(text, true);

  const vex::String coded = TConvertUtils::Str2Uni(text);
  Check(TConvertUtils::Uni2Str(coded) == text);

  vex::TStringList source;
  source.SetText(text);
  vex::TStringList dest;
  try {
    TConvertUtils::LoadFromUni(source, dest);
  } catch (const vex::EConvertError& e) {
    Check(e.Message() == u"ConvertAsUnicode: Invalid String");
  }

  vex::TStringList lines;
  TConvertUtils::WriteStr2Uni(text, lines, u"  ");
  Check(TConvertUtils::Uni2Str(lines.Text()) == text);
  return 0;
}
