// vexc form show / describe: a form description (text or binary) read into a control tree;
// describe prints the tree, show builds real Qt widgets for it.
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <string>

#include "cli.h"
#include "vex/platform/string_list.h"
#include "vex/platform/unicode.h"
#include "vex/ui/controls.h"
#include "vex/ui/form_reader.h"
#include "vex/ui/vcl_utils.h"

#ifdef VEXC_WITH_QT
#include <QtGlobal>

#include "vex/qt/widget_controls.h"
#include "window_app.h"
#endif

namespace vexc {
namespace {

// Reads the form, reporting every part that could not be loaded as file:line on standard error.
std::unique_ptr<vex::TControl> LoadForm(const std::string& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw InputError(file, "cannot open the file");
  const vex::TBytes bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::vector<vex::TFormProblem> problems;
  std::unique_ptr<vex::TComponent> root;
  try {
    root = vex::ReadFormDescription(bytes, problems);
  } catch (const vex::Exception& e) {
    throw InputError(file, vex::ToUtf8(e.Message()));
  }
  for (const auto& p : problems) {
    std::cerr << file;
    if (p.Line > 0) std::cerr << ":" << p.Line;
    std::cerr << ": " << vex::ToUtf8(p.Component);
    if (!p.Property.empty()) std::cerr << "." << vex::ToUtf8(p.Property);
    std::cerr << ": " << vex::ToUtf8(p.Message) << "\n";
  }
  auto* control = dynamic_cast<vex::TControl*>(root.get());
  if (control == nullptr) throw InputError(file, "the description holds no control");
  root.release();
  return std::unique_ptr<vex::TControl>(control);
}

int Describe(const std::string& file) {
  const auto form = LoadForm(file);
  vex::TStringList lines;
  vex::TVclUtils::EnumNestedControlsWithFunc(form.get(), [&](vex::TControl* c) {
    int32_t level = 0;
    for (const vex::TControl* p = c->Parent(); p != nullptr; p = p->Parent()) ++level;
    // Items and Align are listed only for controls that use them: the kinds always write
    // their heading or value.
    vex::TControlPropArray kinds = {vex::cptCaption, vex::cptText, vex::cptPlace, vex::cptStyle,
                                    vex::cptMultiLine};
    if (c->ItemsList() != nullptr) kinds.insert(kinds.begin() + 2, vex::cptItems);
    if (c->Align() != vex::alNone) kinds.insert(kinds.end() - 2, vex::cptAlign);
    vex::TVclUtils::GetControlPropList(c, kinds, lines, level, u'=', true, true);
    return false;
  });
  for (int32_t i = 0; i < lines.Count(); ++i) WriteLine(lines[i]);
  return kExitOk;
}

#ifdef VEXC_WITH_QT
int Show(const std::string& file, const std::string& screenshot) {
  const auto form = LoadForm(file);
  if (screenshot.empty() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") &&
      qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
    throw InputError(file, "no display to show the form on; use --screenshot PNG");
  }
  WindowApp app(screenshot);
  const auto window = vex::qt::BuildFormWidgets(*form);
  return app.ShowWindow(*window);
}
#endif

}  // namespace

void RegisterFormWindowCommands(CLI::App& app, Action& action) {
  CLI::App* form = nullptr;
  try {
    form = app.get_subcommand("form");
  } catch (const CLI::OptionNotFound&) {
    form = app.add_subcommand("form", "form descriptions: the text form and component streams");
    form->require_subcommand(1);
  }
  auto file = std::make_shared<std::string>();
  auto* describe = form->add_subcommand(
      "describe",
      "read a form description (text or binary) and list its controls with their "
      "caption, text, items, place and style; problems go to standard error");
  describe->add_option("file", *file, "the form description")->required();
  describe->footer(
      "Example:\n"
      "  $ vexc form describe forms/order.dfm | sed -n 1,3p\n"
      "  frmOrder:TForm\n"
      "  \tCaption=Channel order\n"
      "  \tPlace=x: 200; y: 120; w: 480; h: 300");
  describe->callback([&action, file] { action = [file] { return Describe(*file); }; });

#ifdef VEXC_WITH_QT
  auto screenshot = std::make_shared<std::string>();
  auto* show = form->add_subcommand(
      "show",
      "read a form description and show it as a real window; with --screenshot, "
      "render it offscreen into a PNG file and exit");
  show->add_option("file", *file, "the form description")->required();
  show->add_option("--screenshot", *screenshot, "write the window as a PNG file and exit");
  show->footer(
      "Example:\n"
      "  $ vexc form show forms/order.dfm --screenshot order.png && ls order.png\n"
      "  order.png");
  show->callback([&action, file, screenshot] {
    action = [file, screenshot] { return Show(*file, *screenshot); };
  });
#endif
}

}  // namespace vexc
