// uRegExpUtils: search-and-replace rules and the lists that load and apply them.
#include <string>

#include "vex/companion/query_list.h"
#include "vex/patterns/reg_exp_utils.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"

namespace vex {
namespace {

// Fields of a line split at every ",": no quoting, no trimming, empty fields kept.
TStringDynArray CommaFields(const String& line) {
  TStringDynArray fields;
  size_t start = 0;
  for (;;) {
    const size_t comma = line.find(u',', start);
    if (comma == String::npos) break;
    fields.push_back(line.substr(start, comma - start));
    start = comma + 1;
  }
  fields.push_back(line.substr(start));
  return fields;
}

}  // namespace

// --- TRegExTask -----------------------------------------------------------------------------

TRegExTask::TRegExTask(const String& sub_text, const String& replace)
    : SubText(sub_text), Replace(replace), SystemRep(sub_text.find(u'\\') == String::npos) {
  if (!SystemRep) re.emplace(sub_text);
}

bool TRegExTask::IsMatching(const String& s) const {
  if (SystemRep) return Pos(SubText, s) > 0;
  return re.has_value() && re->IsMatch(s);
}

String TRegExTask::ReplaceStr(const String& s, bool& is_match) const {
  String result = s;
  is_match = ApplyTo(result);
  return result;
}

bool TRegExTask::ApplyTo(String& text) const {
  if (!IsMatching(text)) return false;
  text = SystemRep ? StringReplace(text, SubText, Replace, {rfReplaceAll})
                   : re->Replace(text, Replace);
  return true;
}

// --- Loading rules --------------------------------------------------------------------------

void ImportRegExpArray(const TQueryList& source, TRegExTaskArray& tasks, const String& list_key,
                       const String& key) {
  tasks.clear();
  const TQueryList* list = list_key.empty() ? &source : source.GetItemList(list_key);
  if (list == nullptr) return;
  for (int32_t i = 0; i < list->Count(); ++i) {
    String entry_key;
    TQueryList* items = nullptr;
    if (!list->GetItemByIndex(i, entry_key, items) || items == nullptr) continue;
    if (!key.empty() && entry_key != key) continue;
    tasks.emplace_back(items->GetValue(u"SubText"), items->GetValue(u"Replace"));
  }
}

void FillRegExpArray(const TStrings& list, TRegExTaskArray& tasks, int32_t col,
                     int32_t end_index, int32_t start) {
  tasks.clear();
  if (end_index == -1) end_index = list.Count();
  for (int32_t i = start; i < end_index; ++i) {
    const String& line = list[i];
    if (Trim(line).empty()) continue;
    const TStringDynArray fields = CommaFields(line);
    // A negative column names no field, so no line yields a rule.
    if (col < 0 || fields.size() < static_cast<size_t>(col) + 1) continue;
    const size_t replace_field = static_cast<size_t>(col) + 1;
    tasks.emplace_back(fields[static_cast<size_t>(col)],
                       replace_field < fields.size() ? fields[replace_field] : String());
  }
}

// --- Applying rules -------------------------------------------------------------------------

int32_t GetMatchIndexByTaskArray(const String& s, const TRegExTaskArray& tasks) {
  for (size_t i = 0; i < tasks.size(); ++i) {
    if (tasks[i].IsMatching(s)) return static_cast<int32_t>(i);
  }
  return -1;
}

String ReplaceStrWithTaskArray(const String& s, const TRegExTaskArray& tasks, int32_t* count) {
  String result = s;
  int32_t matched = 0;
  if (!s.empty()) {
    for (const TRegExTask& task : tasks) {
      if (task.ApplyTo(result)) ++matched;
    }
  }
  if (count != nullptr) *count = matched;
  return result;
}

void ReplaceStringsWithTaskArray(TStrings& list, const TRegExTaskArray& tasks) {
  for (int32_t i = 0; i < list.Count(); ++i) {
    list.SetStrings(i, ReplaceStrWithTaskArray(list[i], tasks));
  }
}

}  // namespace vex
