// vexc quote / unquote / tokens: the quoted code form and delimited fields, line by line.
#include <memory>
#include <string>
#include <vector>

#include "cli.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/text/convert_utils.h"
#include "vex/text/parse_utils.h"

namespace vexc {
namespace {

void RegisterQuote(CLI::App& app, Action& action) {
  struct Options {
    std::vector<std::string> files;
    std::string prefix;
  };
  auto options = std::make_shared<Options>();
  auto* cmd = app.add_subcommand(
      "quote",
      "write each input line in the quoted code form, ready to paste into source "
      "code; long lines are cut into joined pieces ending in ' +'");
  cmd->add_option("files", options->files, "files to read; none or '-' reads standard input");
  cmd->add_option("-p,--prefix", options->prefix, "text put before every output line");
  cmd->footer("Example:\n  $ echo \"it's\" | vexc quote --prefix '  '\n    'it'#39's'");
  cmd->callback([&action, options] {
    action = [options] {
      const vex::String prefix = vex::FromUtf8(options->prefix);
      for (const auto& name : InputNamesOrStdin(options->files)) {
        Input input(name);
        vex::String line;
        vex::TStringList out;
        while (input.ReadLine(line)) {
          out.Clear();
          vex::TConvertUtils::WriteStr2Uni(line, out, prefix);
          for (int32_t i = 0; i < out.Count(); ++i) WriteLine(out[i]);
        }
      }
      return kExitOk;
    };
  });
}

void RegisterUnquote(CLI::App& app, Action& action) {
  auto files = std::make_shared<std::vector<std::string>>();
  auto* cmd = app.add_subcommand(
      "unquote", "decode lines in the quoted code form back to text, one line each (a prefix "
                 "of blanks and a closing ' +' are allowed on every line)");
  cmd->add_option("files", *files, "files to read; none or '-' reads standard input");
  cmd->footer("Example:\n  $ echo \"'it'#39's'\" | vexc unquote\n  it's");
  cmd->callback([&action, files] {
    action = [files] {
      for (const auto& name : InputNamesOrStdin(*files)) {
        Input input(name);
        vex::String line;
        while (input.ReadLine(line)) {
          try {
            // Line by line, exactly as LoadFromUni decodes a list, so errors can name the line.
            WriteLine(vex::TConvertUtils::Uni2Str(line, true));
          } catch (const vex::EConvertError& e) {
            throw InputError(input.Name(), input.LineNumber(), e.what());
          }
        }
      }
      return kExitOk;
    };
  });
}

void RegisterTokens(CLI::App& app, Action& action) {
  struct Options {
    std::vector<std::string> files;
    std::string delim = ";";
    bool trim = false;
  };
  auto options = std::make_shared<Options>();
  auto* cmd = app.add_subcommand("tokens",
                                 "cut every input line into its delimited fields, one per line (blanks around each "
                                 "field are removed; a trailing delimiter gives an empty last field)");
  cmd->add_option("files", options->files, "files to read; none or '-' reads standard input");
  cmd->add_option("-d,--delim", options->delim, "the delimiter, one character (default ';')");
  cmd->add_flag("-t,--trim", options->trim, "trim every field once more (ExtractTrimmedTokens)");
  cmd->footer("Example:\n  $ echo 'a; b ;;c' | vexc tokens --delim ';' --trim\n  a\n  b\n\n  c");
  cmd->callback([&action, options] {
    const vex::String delim = vex::FromUtf8(options->delim, vex::TInvalidText::Replace);
    if (delim.size() != 1) throw CLI::ValidationError("--delim", "must be one character");
    action = [options, d = delim[0]] {
      for (const auto& name : InputNamesOrStdin(options->files)) {
        Input input(name);
        vex::String line;
        while (input.ReadLine(line)) {
          const auto fields = options->trim ? vex::TParseUtils::ExtractTrimmedTokens(line, d)
                                            : vex::TParseUtils::ExtractTokens(line, d);
          for (const auto& field : fields) WriteLine(field);
        }
      }
      return kExitOk;
    };
  });
}

}  // namespace

void RegisterTextCommands(CLI::App& app, Action& action) {
  RegisterQuote(app, action);
  RegisterUnquote(app, action);
  RegisterTokens(app, action);
}

}  // namespace vexc
