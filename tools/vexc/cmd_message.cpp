// vexc message: a message box composed from a language file of key=text lines, shown with Qt
// (or rendered offscreen into a PNG with --screenshot), or only composed and printed (--print,
// which needs no Qt).
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cli.h"
#include "vex/platform/unicode.h"
#include "vex/ui/dialog_utils.h"
#include "window_app.h"

namespace vexc {
namespace {

struct MessageOptions {
  std::string key;
  std::string lang_file;
  std::vector<std::string> args;
  std::string type = "info";
  std::string screenshot;
  bool print = false;
};

const std::map<std::string, vex::TCustomDialogType> kTypes = {{"info", vex::dlgInfo},
                                                              {"warning", vex::dlgWarning},
                                                              {"error", vex::dlgError},
                                                              {"query", vex::dlgQuery},
                                                              {"cancel", vex::dlgCancel}};

// key=text lines; the key ends at the first "="; blank lines and lines starting with ";" or "#"
// are skipped.
std::map<vex::String, vex::String> ReadLanguageFile(const std::string& name) {
  Input input(name);
  std::map<vex::String, vex::String> texts;
  vex::String line;
  while (input.ReadLine(line)) {
    if (line.empty() || line[0] == u';' || line[0] == u'#') continue;
    const size_t eq = line.find(u'=');
    if (eq == vex::String::npos || eq == 0) {
      throw InputError(input.Name(), input.LineNumber(), "expected 'Section\\Ident=text'");
    }
    texts[line.substr(0, eq)] = line.substr(eq + 1);
  }
  return texts;
}

vex::TStringDynArray Arguments(const std::vector<std::string>& args) {
  vex::TStringDynArray result;
  for (const auto& a : args) result.push_back(vex::FromUtf8(a));
  return result;
}

int RunMessage(const MessageOptions& options) {
  const auto texts = ReadLanguageFile(options.lang_file);
  const vex::TLangFunc lang = [&texts](const vex::String& key) {
    auto it = texts.find(key);
    return it == texts.end() ? vex::String() : it->second;
  };
  const vex::String key = vex::FromUtf8(options.key);
  const vex::TStringDynArray args = Arguments(options.args);
  if (options.print) {
    const auto composed = vex::TDialogUtils::ComposeInfoDlgWithParams(key, args, lang);
    WriteLine(composed[0]);
    WriteLine(composed[1]);
    return kExitOk;
  }
#ifdef VEXC_WITH_QT
  WindowApp app(options.screenshot);
  app.CaptureNextModal();
  const int32_t answer =
      vex::TDialogUtils::ShowCustomInfoDlgWithParams(key, args, lang, kTypes.at(options.type));
  app.CheckScreenshotWritten();
  if (app.Offscreen()) {
    WriteLine("screenshot: " + options.screenshot);
  } else {
    WriteLine(std::to_string(answer));
  }
  return kExitOk;
#else
  throw InputError(options.lang_file, "this vexc was built without Qt; use --print");
#endif
}

}  // namespace

void RegisterMessageCommands(CLI::App& app, Action& action) {
  auto options = std::make_shared<MessageOptions>();
  auto* cmd = app.add_subcommand(
      "message", "show the message box of a language key: caption|message text from a file");
  cmd->add_option("key", options->key, "language key, e.g. Errors\\NoFile")->required();
  cmd->add_option("--lang", options->lang_file, "language file of key=text lines")->required();
  cmd->add_option("--arg", options->args, "value for %1, %2, ... (repeat for each)");
  cmd->add_option("--type", options->type, "info, warning, error, query or cancel")
      ->check(CLI::IsMember({"info", "warning", "error", "query", "cancel"}));
  cmd->add_option("--screenshot", options->screenshot,
                  "render the box offscreen into this PNG file and close it");
  cmd->add_flag("--print", options->print, "print the caption and message instead of showing");
  cmd->footer(
      "Prints the answer (1 Yes/OK, 0 No, -1 Cancel or none).\n"
      "Example:\n"
      "  $ vexc message 'Errors\\NoFile' --lang messages.lang --arg data.txt --print | tr -d "
      "'\\r'\n"
      "  File not found\n"
      "  The file data.txt could not be opened.\n"
      "  Check its name and try again.");
  cmd->callback([&action, options] { action = [options] { return RunMessage(*options); }; });
}

}  // namespace vexc
