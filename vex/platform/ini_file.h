// TMemIniFile: a section file held in memory. Text is read once (from a file, stream, string
// or string list) into sections of lines; reads and writes work on memory, UpdateFile writes
// the whole file back. Section and key names compare case-insensitively unless CaseSensitive.
//
//   [Fields]            ReadSection(u"Fields", keys)       -> "Id", "Name"
//   Id = 0              ReadString(u"Fields", u"id", u"")  -> "0"
//   Name=1              ReadSectionValues(u"Data", lines)  -> "0=7|Bob"
//   [Data]
//   0=7|Bob
//
// Parsing rules: every line is trimmed; empty lines and lines starting with ";" are skipped;
// "[name]" opens a section (the name trimmed); lines before the first section are ignored; a
// line with "=" is stored as trimmed key, "=", trimmed value; a line without "=" is stored as it
// is and can be read back with ReadSectionValues.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vex/platform/object.h"
#include "vex/platform/string_list.h"
#include "vex/platform/types.h"

namespace vex {

class TStream;

class TMemIniFile : public TObject {
 public:
  /// An empty file without a name.
  TMemIniFile();
  /// Loads `file_name` (UTF-8, byte-order mark skipped) when it exists; a missing file gives
  /// an empty one that UpdateFile can create.
  explicit TMemIniFile(const String& file_name);
  explicit TMemIniFile(const std::string& file_name);
  ~TMemIniFile() override;
  TMemIniFile(const TMemIniFile&) = delete;
  TMemIniFile& operator=(const TMemIniFile&) = delete;

  const String& FileName() const { return file_name_; }
  /// Changes the file name; with `reload` the content is replaced by that file's (or emptied).
  void Rename(const String& file_name, bool reload);

  /// Replace the whole content.
  void LoadFromStream(TStream& stream);
  void LoadFromString(const String& text);
  void SetStrings(const TStrings& lines);
  void Clear();
  /// Appends the content to `lines`: per section "[name]", its lines, then an empty line.
  void GetStrings(TStrings& lines) const;
  /// Writes GetStrings to FileName() as UTF-8; failures raise EFCreateError.
  void UpdateFile() const;

  /// Replaces `strings` by the section names in file order (a repeated header is listed again).
  void ReadSections(TStrings& strings) const;
  /// Replaces `strings` by the key names of the section in file order ("" for a line without
  /// "="); empty when the section is absent.
  void ReadSection(const String& section, TStrings& strings) const;
  /// Replaces `strings` by the section's lines as stored (key=value or raw).
  void ReadSectionValues(const String& section, TStrings& strings) const;

  /// The value of the first key `ident` of the first section `section`; `default_value` when
  /// either is absent (a present key with an empty value gives "").
  String ReadString(const String& section, const String& ident, const String& default_value) const;
  /// The value as an integer (decimal, "$" or "0x" hex); `default_value` when absent or not an
  /// integer.
  int32_t ReadInteger(const String& section, const String& ident, int32_t default_value) const;
  /// ReadInteger(...) != 0 with the default as 0 or 1: "1" is true, "0" false, and text such
  /// as "true" gives the default (deliberately, as in the platform's section files).
  bool ReadBool(const String& section, const String& ident, bool default_value) const;

  /// Sets ident=value, replacing the first line of that key or adding one (and the section).
  void WriteString(const String& section, const String& ident, const String& value);
  void WriteInteger(const String& section, const String& ident, int32_t value);
  /// Writes "1" or "0".
  void WriteBool(const String& section, const String& ident, bool value);

  /// True when the section exists and holds at least one line (deliberately: an empty section
  /// counts as absent, as in the platform's section files).
  bool SectionExists(const String& section) const;
  bool ValueExists(const String& section, const String& ident) const;
  /// Removes the first section of that name with its lines.
  void EraseSection(const String& section);
  void DeleteKey(const String& section, const String& ident);

  bool CaseSensitive() const { return case_sensitive_; }
  void SetCaseSensitive(bool value);

 private:
  const TStringList* FindSection(const String& section) const;
  TStringList* FindSection(const String& section);
  TStringList& AddSection(const String& section);
  void Load();

  String file_name_;
  bool case_sensitive_ = false;
  TStringList section_names_;
  std::vector<std::unique_ptr<TStringList>> sections_;  // parallel to section_names_
};

}  // namespace vex
