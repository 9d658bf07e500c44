// Feeds arbitrary bytes to TMemIniFile as a file's content. Loading must never fail; every
// section's keys and lines must be readable; and writing the content out and loading it again
// must give the same content (the written form is a fixed point of the parser).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vex/platform/ini_file.h"
#include "vex/platform/streams.h"
#include "vex/platform/string_list.h"

#include "fuzz_support.h"

using vex_fuzz::Check;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vex;
  TStringStream stream(std::string(reinterpret_cast<const char*>(data), size));
  TMemIniFile ini;
  ini.LoadFromStream(stream);

  TStringList sections, keys, lines;
  ini.ReadSections(sections);
  for (int32_t s = 0; s < sections.Count(); ++s) {
    const String& section = sections[s];
    ini.ReadSection(section, keys);
    ini.ReadSectionValues(section, lines);
    Check(keys.Count() == lines.Count());
    for (int32_t k = 0; k < keys.Count(); ++k) {
      if (keys[k].empty()) continue;
      // The first line of a key answers for it, so its value is that line's text after "=".
      Check(ini.ValueExists(section, keys[k]));
      ini.ReadString(section, keys[k], u"");
      ini.ReadInteger(section, keys[k], 0);
      ini.ReadBool(section, keys[k], false);
    }
  }

  TStringList written;
  ini.GetStrings(written);
  TMemIniFile again;
  again.SetStrings(written);
  TStringList rewritten;
  again.GetStrings(rewritten);
  Check(rewritten.Equals(written));
  return 0;
}
