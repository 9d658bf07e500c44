// vexc detect / apply / group / bits: captions taken apart for translation and put together
// again, numbered names compressed into group notation, and bit-matrix questions.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli.h"
#include "vex/numeric/bit_matrix.h"
#include "vex/patterns/detect_utils.h"
#include "vex/patterns/reg_ex_utils.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"
#include "vex/text/parse_utils.h"

namespace vexc {
namespace {

// --- detect / apply: a tab-separated line per caption ---------------------------------------
//
// Columns: type, text, then the state that apply needs: quotes, kept value, number template,
// placeholder text, unquoted caption, number, inverse flag, numbered-title flag. Tabs, line
// breaks and backslashes inside a column are written as \t, \n, \r and \\.

const char* const kTypeNames[] = {"none", "end-number", "one-number", "two-numbers",
                                  "int-format", "masked"};
constexpr int kColumns = 10;

vex::String Escape(const vex::String& s) {
  vex::String out;
  out.reserve(s.size());
  for (char16_t c : s) {
    switch (c) {
      case u'\\': out += u"\\\\"; break;
      case u'\t': out += u"\\t"; break;
      case u'\n': out += u"\\n"; break;
      case u'\r': out += u"\\r"; break;
      default: out += c;
    }
  }
  return out;
}

bool Unescape(const vex::String& s, vex::String& out) {
  out.clear();
  for (size_t i = 0; i < s.size(); ++i) {
    if (s[i] != u'\\') {
      out += s[i];
      continue;
    }
    if (++i == s.size()) return false;
    switch (s[i]) {
      case u'\\': out += u'\\'; break;
      case u't': out += u'\t'; break;
      case u'n': out += u'\n'; break;
      case u'r': out += u'\r'; break;
      default: return false;
    }
  }
  return true;
}

std::vector<vex::String> SplitTabs(const vex::String& line) {
  std::vector<vex::String> fields(1);
  for (char16_t c : line) {
    if (c == u'\t') {
      fields.emplace_back();
    } else {
      fields.back() += c;
    }
  }
  return fields;
}

vex::String DetectLine(const vex::TDetectNumParams& p) {
  const vex::String cols[kColumns] = {
      vex::FromUtf8(kTypeNames[p.FormatType]), p.s, p.Quotes, p.MskVal, p.fmt, p.StrVal, p.dqs,
      vex::IntToStr(p.IntVal), p.Inverse ? u"1" : u"0", p.UseNumTitle ? u"1" : u"0"};
  vex::String line;
  for (int i = 0; i < kColumns; ++i) {
    if (i > 0) line += u'\t';
    line += i == 0 || i >= 7 ? cols[i] : Escape(cols[i]);
  }
  return line;
}

// Rebuilds the state of one detect line; false when the line is not one.
bool ParseDetectLine(const vex::String& line, vex::String& text, vex::TDetectNumParams& p) {
  const auto f = SplitTabs(line);
  if (f.size() != kColumns) return false;
  int type = -1;
  for (int i = 0; i < 6; ++i) {
    if (f[0] == vex::FromUtf8(kTypeNames[i])) type = i;
  }
  if (type < 0) return false;
  p = vex::TDetectNumParams{};
  p.FormatType = static_cast<vex::TDetectFormatType>(type);
  vex::String* targets[] = {&text, &p.Quotes, &p.MskVal, &p.fmt, &p.StrVal, &p.dqs};
  for (int i = 0; i < 6; ++i) {
    if (!Unescape(f[i + 1], *targets[i])) return false;
  }
  if (!vex::TryStrToInt(f[7], p.IntVal)) return false;
  if ((f[8] != u"0" && f[8] != u"1") || (f[9] != u"0" && f[9] != u"1")) return false;
  p.Inverse = f[8] == u"1";
  p.UseNumTitle = f[9] == u"1";
  return true;
}

vex::Char OneChar(const std::string& option, const std::string& value) {
  vex::String s = vex::FromUtf8(value, vex::TInvalidText::Replace);
  if (s.size() != 1) throw CLI::ValidationError(option, "must be one character");
  return s[0];
}

struct LangOptions {
  int lang_idx = -1;
  std::string pre_words = "\xD0\xBE\xD1\x82,\xD0\xB2\xD1\x96\xD0\xB4,from";
  std::string num_title_mark = ":";
  std::string one_number_char = "#";
  std::string mask_delim = "|";
  std::string int_format = "%d";
  std::string mask_pre_word;

  void Add(CLI::App* cmd) {
    cmd->add_option("--lang-idx", lang_idx,
                    "language index into --pre-words; negative: no pre-word rule, a numbered "
                    "title ends with --num-title-mark")
        ->capture_default_str();
    cmd->add_option("--pre-words", pre_words,
                    "comma-separated word introducing a numbered title's numbers, per language")
        ->capture_default_str();
    cmd->add_option("--num-title-mark", num_title_mark, "closing mark of a numbered title")
        ->capture_default_str();
    cmd->add_option("--one-number-char", one_number_char, "placeholder of a single number")
        ->capture_default_str();
    cmd->add_option("--mask-delim", mask_delim, "delimiter before a masked tail")
        ->capture_default_str();
    cmd->add_option("--int-format", int_format, "marker of an already formatted caption")
        ->capture_default_str();
    cmd->add_option("--mask-pre-word", mask_pre_word, "pre-word accepted in every language");
  }

  vex::TDetectLangParams Params() const {
    vex::TDetectLangParams p;
    p.LangIdx = lang_idx;
    p.PreWords = vex::TParseUtils::ExtractTokens(vex::FromUtf8(pre_words), u',');
    p.NumTitleMark = OneChar("--num-title-mark", num_title_mark);
    p.OneNumberChar = OneChar("--one-number-char", one_number_char);
    p.MaskDelim = OneChar("--mask-delim", mask_delim);
    p.IntFormat = vex::FromUtf8(int_format);
    p.MaskPreWord = vex::FromUtf8(mask_pre_word);
    return p;
  }
};

void RegisterDetect(CLI::App& app, Action& action) {
  auto files = std::make_shared<std::vector<std::string>>();
  auto lang = std::make_shared<LangOptions>();
  auto* cmd = app.add_subcommand(
      "detect",
      "take each caption apart for translation: prints a tab-separated line of the format type, "
      "the fixed words to translate, and the kept state; edit the second column and feed the "
      "lines to 'vexc apply'");
  cmd->add_option("files", *files, "caption files; none or '-' reads standard input");
  lang->Add(cmd);
  cmd->footer(
      "Example:\n  $ echo 'File_007.txt' | vexc detect | cut -f 1,2\n"
      "  one-number\tFile_#.txt\n"
      "  $ echo 'File_007.txt' | vexc detect | sed 's/File_/Datei_/' | vexc apply\n"
      "  Datei_007.txt");
  cmd->callback([&action, files, lang] {
    auto params = lang->Params();
    action = [files, params] {
      for (const auto& name : InputNamesOrStdin(*files)) {
        Input input(name);
        vex::String caption;
        while (input.ReadLine(caption)) {
          vex::TDetectNumParams p;
          try {
            vex::DetectNumberFormat(caption, params, p);
          } catch (const vex::EConvertError& e) {
            throw InputError(input.Name(), input.LineNumber(), e.what());
          }
          WriteLine(DetectLine(p));
        }
      }
      return kExitOk;
    };
  });
}

void RegisterApply(CLI::App& app, Action& action) {
  auto files = std::make_shared<std::vector<std::string>>();
  auto lang = std::make_shared<LangOptions>();
  auto* cmd = app.add_subcommand(
      "apply", "put captions together again from 'vexc detect' lines whose second column holds "
               "the translated words; prints one caption per line");
  cmd->add_option("files", *files, "detect output; none or '-' reads standard input");
  lang->Add(cmd);
  cmd->footer(
      "Example:\n  $ vexc detect captions.txt > parts.tsv\n"
      "  $ sed 's/\\tFile_/\\tDatei_/' parts.tsv | vexc apply | sed -n 1,2p\n"
      "  Datei_007.txt\n  Channel 12");
  cmd->callback([&action, files, lang] {
    auto params = lang->Params();
    action = [files, params] {
      for (const auto& name : InputNamesOrStdin(*files)) {
        Input input(name);
        vex::String line;
        while (input.ReadLine(line)) {
          vex::String text;
          vex::TDetectNumParams p;
          if (!ParseDetectLine(line, text, p)) {
            throw InputError(input.Name(), input.LineNumber(),
                             "not a line of 'vexc detect' output (10 tab-separated columns)");
          }
          vex::ApplyNumberFormat(text, params, p);
          WriteLine(p.s);
        }
      }
      return kExitOk;
    };
  });
}

// --- group ----------------------------------------------------------------------------------

void RegisterGroup(CLI::App& app, Action& action) {
  struct Options {
    std::vector<std::string> files;
    std::string hint;
    std::string sample;
    bool pack = false;
  };
  auto o = std::make_shared<Options>();
  auto* cmd =
      app.add_subcommand("group",
                         "compress a list of numbered names into lines of integer-group notation: "
                         "a series that starts at 1 and has no gap is written as its last number");
  cmd->add_option("files", o->files, "name lists; none or '-' reads standard input");
  cmd->add_option("--hint", o->hint,
                  "with --sample: the text before the number that every name of the series has");
  cmd->add_option("--sample", o->sample, "with --hint: one name of the series");
  cmd->add_flag("--pack", o->pack,
                "when nothing compresses, pack the list into one line of its common prefix and "
                "the tails in braces");
  cmd->footer(
      "Example:\n  $ printf 'Beam 1\\nBeam 2\\nBeam 3\\nGate 7\\n' | vexc group\n"
      "  Beam {3}\n  Gate 7\n"
      "  $ printf 'Ch1\\nCh2\\nCh4\\nCh5\\n' | vexc group\n  Ch{1-2,4-5}");
  cmd->callback([&action, o] {
    action = [o] {
      vex::TStringList list;
      for (const auto& name : InputNamesOrStdin(o->files)) {
        Input input(name);
        vex::String line;
        while (input.ReadLine(line)) list.Add(line);
      }
      if (o->pack) {
        vex::TRegExUtils::CompressListWithIntPatternSmart(list, nullptr, true);
      } else {
        vex::TRegExUtils::CompressListWithIntPattern(list, vex::FromUtf8(o->hint),
                                                     vex::FromUtf8(o->sample));
      }
      for (int32_t i = 0; i < list.Count(); ++i) WriteLine(list[i]);
      return kExitOk;
    };
  });
}

// --- bits -----------------------------------------------------------------------------------

void RegisterBits(CLI::App& app, Action& action) {
  struct Options {
    std::string file;
    std::string title;
    std::string header;
  };
  auto o = std::make_shared<Options>();
  auto* cmd = app.add_subcommand(
      "bits", "answer a bit-matrix question: is the cell of row TITLE and column HEADER set? "
              "Prints true or false; exit 0 when set, 1 when clear");
  cmd->add_option("file", o->file, "the matrix document (tab-indented keyed list)")->required();
  cmd->add_option("title", o->title, "row name")->required();
  cmd->add_option("header", o->header, "column name")->required();
  cmd->footer("Example:\n  $ vexc bits matrix.txt Pump Start && echo allowed\n  true\n  allowed");
  cmd->callback([&action, o] {
    action = [o] {
      Input input(o->file);
      vex::TBitMatrix matrix;
      if (matrix.LoadFromStr(input.ReadAllText()) != 1) {
        throw InputError(input.Name(),
                         "not a valid bit matrix (needs Options with Headers, Titles and two "
                         "Chars, and one BitLines item per title as long as the header list)");
      }
      const vex::String title = vex::FromUtf8(o->title), header = vex::FromUtf8(o->header);
      if (matrix.IndexOfTitle(title) < 0) throw InputError(input.Name(), "no row " + o->title);
      if (matrix.IndexOfHeader(header) < 0) {
        throw InputError(input.Name(), "no column " + o->header);
      }
      const bool set = matrix.BitValue(title, header);
      WriteLine(std::string(set ? "true" : "false"));
      return set ? kExitOk : kExitCheckFailed;
    };
  });
}

}  // namespace

void RegisterPatternCommands(CLI::App& app, Action& action) {
  RegisterDetect(app, action);
  RegisterApply(app, action);
  RegisterGroup(app, action);
  RegisterBits(app, action);
}

}  // namespace vexc
