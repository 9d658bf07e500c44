#include "vex/platform/ini_file.h"

#include <sys/stat.h>

#include "vex/platform/streams.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

bool FileExists(const String& file_name) {
  struct stat info {};
  return ::stat(ToUtf8(file_name, TInvalidText::Replace).c_str(), &info) == 0 &&
         S_ISREG(info.st_mode);
}

}  // namespace

TMemIniFile::TMemIniFile() = default;

TMemIniFile::TMemIniFile(const String& file_name) : file_name_(file_name) { Load(); }

TMemIniFile::TMemIniFile(const std::string& file_name)
    : file_name_(FromUtf8(file_name, TInvalidText::Replace)) {
  Load();
}

TMemIniFile::~TMemIniFile() = default;

void TMemIniFile::Load() {
  if (file_name_.empty() || !FileExists(file_name_)) {
    Clear();
    return;
  }
  TStringList lines;
  lines.LoadFromFile(file_name_);
  SetStrings(lines);
}

void TMemIniFile::Rename(const String& file_name, bool reload) {
  file_name_ = file_name;
  if (reload) Load();
}

void TMemIniFile::Clear() {
  section_names_.Clear();
  sections_.clear();
}

void TMemIniFile::LoadFromStream(TStream& stream) {
  TStringList lines;
  lines.LoadFromStream(stream);
  SetStrings(lines);
}

void TMemIniFile::LoadFromString(const String& text) {
  TStringList lines;
  lines.SetText(text);
  SetStrings(lines);
}

void TMemIniFile::SetStrings(const TStrings& lines) {
  Clear();
  TStringList* current = nullptr;
  for (int32_t i = 0; i < lines.Count(); ++i) {
    String s = Trim(lines[i]);
    if (s.empty() || s[0] == u';') continue;
    if (s[0] == u'[' && s.back() == u']' && s.size() >= 2) {
      current = &AddSection(Trim(s.substr(1, s.size() - 2)));
      continue;
    }
    if (current == nullptr) continue;
    size_t eq = s.find(u'=');
    if (eq == String::npos) {
      current->Add(s);
    } else {
      current->Add(Trim(s.substr(0, eq)) + u'=' + Trim(s.substr(eq + 1)));
    }
  }
}

void TMemIniFile::GetStrings(TStrings& lines) const {
  lines.BeginUpdate();
  for (int32_t i = 0; i < section_names_.Count(); ++i) {
    lines.Add(u'[' + section_names_[i] + u']');
    lines.AddStrings(*sections_[static_cast<size_t>(i)]);
    lines.Add(String());
  }
  lines.EndUpdate();
}

void TMemIniFile::UpdateFile() const {
  TStringList lines;
  GetStrings(lines);
  lines.SaveToFile(file_name_);
}

TStringList& TMemIniFile::AddSection(const String& section) {
  auto list = std::make_unique<TStringList>();
  list->SetCaseSensitive(case_sensitive_);
  section_names_.Add(section);
  sections_.push_back(std::move(list));
  return *sections_.back();
}

const TStringList* TMemIniFile::FindSection(const String& section) const {
  int32_t index = section_names_.IndexOf(section);
  return index < 0 ? nullptr : sections_[static_cast<size_t>(index)].get();
}

TStringList* TMemIniFile::FindSection(const String& section) {
  int32_t index = section_names_.IndexOf(section);
  return index < 0 ? nullptr : sections_[static_cast<size_t>(index)].get();
}

void TMemIniFile::ReadSections(TStrings& strings) const {
  strings.BeginUpdate();
  strings.Clear();
  for (int32_t i = 0; i < section_names_.Count(); ++i) strings.Add(section_names_[i]);
  strings.EndUpdate();
}

void TMemIniFile::ReadSection(const String& section, TStrings& strings) const {
  strings.BeginUpdate();
  strings.Clear();
  if (const TStringList* lines = FindSection(section)) {
    for (int32_t i = 0; i < lines->Count(); ++i) strings.Add(lines->Names(i));
  }
  strings.EndUpdate();
}

void TMemIniFile::ReadSectionValues(const String& section, TStrings& strings) const {
  strings.BeginUpdate();
  strings.Clear();
  if (const TStringList* lines = FindSection(section)) {
    for (int32_t i = 0; i < lines->Count(); ++i) strings.Add((*lines)[i]);
  }
  strings.EndUpdate();
}

String TMemIniFile::ReadString(const String& section, const String& ident,
                               const String& default_value) const {
  const TStringList* lines = FindSection(section);
  if (lines == nullptr) return default_value;
  int32_t index = lines->IndexOfName(ident);
  return index < 0 ? default_value : lines->ValueFromIndex(index);
}

int32_t TMemIniFile::ReadInteger(const String& section, const String& ident,
                                 int32_t default_value) const {
  return StrToIntDef(ReadString(section, ident, String()), default_value);
}

bool TMemIniFile::ReadBool(const String& section, const String& ident, bool default_value) const {
  return ReadInteger(section, ident, default_value ? 1 : 0) != 0;
}

void TMemIniFile::WriteString(const String& section, const String& ident, const String& value) {
  TStringList* lines = FindSection(section);
  if (lines == nullptr) lines = &AddSection(section);
  String line = ident + u'=' + value;
  int32_t index = lines->IndexOfName(ident);
  if (index < 0) {
    lines->Add(line);
  } else {
    lines->SetStrings(index, line);
  }
}

void TMemIniFile::WriteInteger(const String& section, const String& ident, int32_t value) {
  WriteString(section, ident, IntToStr(value));
}

void TMemIniFile::WriteBool(const String& section, const String& ident, bool value) {
  WriteString(section, ident, value ? u"1" : u"0");
}

bool TMemIniFile::SectionExists(const String& section) const {
  const TStringList* lines = FindSection(section);
  return lines != nullptr && lines->Count() > 0;
}

bool TMemIniFile::ValueExists(const String& section, const String& ident) const {
  const TStringList* lines = FindSection(section);
  return lines != nullptr && lines->IndexOfName(ident) >= 0;
}

void TMemIniFile::EraseSection(const String& section) {
  int32_t index = section_names_.IndexOf(section);
  if (index < 0) return;
  section_names_.Delete(index);
  sections_.erase(sections_.begin() + index);
}

void TMemIniFile::DeleteKey(const String& section, const String& ident) {
  TStringList* lines = FindSection(section);
  if (lines == nullptr) return;
  int32_t index = lines->IndexOfName(ident);
  if (index >= 0) lines->Delete(index);
}

void TMemIniFile::SetCaseSensitive(bool value) {
  case_sensitive_ = value;
  section_names_.SetCaseSensitive(value);
  for (auto& lines : sections_) lines->SetCaseSensitive(value);
}

}  // namespace vex
