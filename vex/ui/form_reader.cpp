#include "vex/ui/form_reader.h"

#include <map>

#include "vex/platform/component_io.h"
#include "vex/platform/object_text.h"
#include "vex/platform/streams.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"
#include "vex/ui/controls.h"

namespace vex {

namespace {

// The lines of a text description, for finding where a problem stands.
class TextLines {
 public:
  explicit TextLines(const TBytes& data) {
    const String text =
        FromUtf8(std::string_view(reinterpret_cast<const char*>(data.data()), data.size()),
                 TInvalidText::Replace);
    size_t start = 0;
    while (start <= text.size()) {
      size_t end = text.find(u'\n', start);
      if (end == String::npos) end = text.size();
      String line = text.substr(start, end - start);
      if (!line.empty() && line.back() == u'\r') line.pop_back();
      lines_.push_back(std::move(line));
      start = end + 1;
    }
  }

  /// The line opening the `occurrence`-th (0-based) object of class `class_name`, 0 when
  /// there is none.
  int32_t ObjectOfClass(const String& class_name, int32_t occurrence) const {
    for (size_t i = 0; i < lines_.size(); ++i) {
      const String t = Trim(lines_[i]);
      if (IsObjectLine(t) && EndsWithClass(t, class_name) && occurrence-- == 0) {
        return static_cast<int32_t>(i + 1);
      }
    }
    return 0;
  }

  /// The line of property `path` of the object named `name`, or the object's line when the
  /// property line is not found; 0 when neither is.
  int32_t Property(const String& name, const String& path) const {
    for (size_t i = 0; i < lines_.size(); ++i) {
      const String t = Trim(lines_[i]);
      if (!IsObjectLine(t) || !NamesObject(t, name)) continue;
      const String prefix = path + u" =";
      for (size_t j = i + 1; j < lines_.size(); ++j) {
        const String p = Trim(lines_[j]);
        if (IsObjectLine(p) || p == u"end") break;
        if (AnsiSameText(p.substr(0, prefix.size()), prefix)) return static_cast<int32_t>(j + 1);
      }
      return static_cast<int32_t>(i + 1);
    }
    return 0;
  }

 private:
  static bool IsObjectLine(const String& t) {
    return t.starts_with(u"object ") || t.starts_with(u"inherited ") || t.starts_with(u"inline ");
  }
  static bool NamesObject(const String& t, const String& name) {
    const size_t space = t.find(u' ');
    const size_t colon = t.find(u':');
    if (colon == String::npos) return false;
    return AnsiSameText(Trim(t.substr(space + 1, colon - space - 1)), name);
  }
  static bool EndsWithClass(const String& t, const String& class_name) {
    const size_t colon = t.find(u':');
    String rest = colon == String::npos ? t.substr(t.find(u' ') + 1) : t.substr(colon + 1);
    if (const size_t bracket = rest.find(u'['); bracket != String::npos) rest.resize(bracket);
    return AnsiSameText(Trim(rest), class_name);
  }

  std::vector<String> lines_;
};

// Splits the reader's "Error reading <component>.<property>: <reason>" into its parts.
TFormProblem ProblemOf(const String& message) {
  TFormProblem problem;
  problem.Message = message;
  const String lead = u"Error reading ";
  if (!message.starts_with(lead)) return problem;
  const size_t colon = message.find(u": ", lead.size());
  const String where = message.substr(lead.size(), colon - lead.size());
  const size_t dot = where.find(u'.');
  problem.Component = where.substr(0, dot);
  if (dot != String::npos) problem.Property = where.substr(dot + 1);
  return problem;
}

}  // namespace

std::unique_ptr<TComponent> ReadFormDescription(const TBytes& data,
                                                std::vector<TFormProblem>& problems) {
  RegisterStandardControls();
  TBytesStream source(data);
  TMemoryStream binary;
  const bool is_text = !IsBinaryObjectStream(source);
  std::unique_ptr<TextLines> lines;
  TStream* input = &source;
  if (is_text) {
    lines = std::make_unique<TextLines>(data);
    ObjectTextToBinary(source, binary);
    binary.SetPosition(0);
    input = &binary;
  }

  TReader reader(*input);
  std::map<String, int32_t> seen;  // stand-ins made so far, by class
  reader.OnUnknownClass = [&](TReader&, const String& class_name, TComponent* owner) {
    auto* stand_in = new TUnknownControl(owner);
    stand_in->SetSourceClassName(class_name);
    const int32_t line = lines ? lines->ObjectOfClass(class_name, seen[class_name]++) : 0;
    problems.push_back({line, class_name, u"", u"Class " + class_name + u" not found"});
    return stand_in;
  };
  reader.OnError = [&](TReader&, const String& message, bool& handled) {
    TFormProblem problem = ProblemOf(message);
    if (lines) problem.Line = lines->Property(problem.Component, problem.Property);
    problems.push_back(std::move(problem));
    handled = true;
  };
  return std::unique_ptr<TComponent>(reader.ReadRootComponent(nullptr));
}

}  // namespace vex
