// vexc form totext / tobinary / check: component streams and their description text. Each
// reads a form in either form, told apart by the "TPF0" signature of the binary one.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

#include "cli.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/object_text.h"
#include "vex/platform/streams.h"
#include "vex/platform/unicode.h"

namespace vexc {
namespace {

struct FormOptions {
  std::string file;
  std::string output;
  bool older = false;
  bool general_floats = false;
  bool raw_bytes = false;
  std::string code_page = "windows-1252";

  vex::TObjectTextOptions TextOptions() const {
    vex::TObjectTextOptions o;
    o.general_floats = older || general_floats;
    o.raw_code_page = older || raw_bytes;
    o.code_page = vex::FromUtf8(code_page, vex::TInvalidText::Replace);
    return o;
  }
};

std::string ReadAll(const std::string& name) {
  Input input(name);
  std::string bytes((std::istreambuf_iterator<char>(input.Stream())),
                    std::istreambuf_iterator<char>());
  if (input.Stream().bad()) throw InputError(input.Name(), "read error");
  return bytes;
}

std::string Bytes(const vex::TMemoryStream& m) {
  return std::string(reinterpret_cast<const char*>(m.Memory()), static_cast<size_t>(m.Size()));
}

std::string DisplayName(const std::string& file) { return file == "-" ? "<stdin>" : file; }

bool IsBinary(const std::string& bytes) { return bytes.starts_with("TPF0"); }

// Runs a conversion, turning the library's errors into errors naming the file (and the line
// of a text error, which the parser reports as "... on line N").
template <class F>
std::string Convert(const std::string& file, F convert) {
  try {
    return convert();
  } catch (const vex::EParserError& e) {
    std::string message = e.what();
    size_t at = message.rfind(" on line ");
    if (at == std::string::npos) throw InputError(file, message);
    throw InputError(file, std::stoll(message.substr(at + 9)), message.substr(0, at));
  } catch (const vex::Exception& e) {
    throw InputError(file, e.what());
  }
}

std::string ToBinary(const std::string& text, const FormOptions& o) {
  return Convert(DisplayName(o.file), [&] {
    vex::TStringStream in(text), out;
    vex::ObjectTextToBinary(in, out, o.TextOptions());
    return Bytes(out);
  });
}

std::string ToText(const std::string& binary, const FormOptions& o) {
  return Convert(DisplayName(o.file), [&] {
    vex::TStringStream in(binary), out;
    vex::ObjectBinaryToText(in, out, o.TextOptions());
    return Bytes(out);
  });
}

void Emit(const std::string& bytes, const FormOptions& o) {
  if (o.output.empty() || o.output == "-") {
    std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    std::cout.flush();
    return;
  }
  std::ofstream out(o.output, std::ios::binary);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) throw InputError(o.output, "cannot write");
}

int ToTextCommand(const FormOptions& o) {
  std::string in = ReadAll(o.file);
  Emit(ToText(IsBinary(in) ? in : ToBinary(in, o), o), o);
  return kExitOk;
}

int ToBinaryCommand(const FormOptions& o) {
  std::string in = ReadAll(o.file);
  Emit(ToBinary(IsBinary(in) ? ToText(in, o) : in, o), o);
  return kExitOk;
}

// Line ends as the converter writes them, so that a file saved with LF compares equal.
std::string WithCrLf(const std::string& text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (text[i] == '\n' || text[i] == '\r') {
      out += "\r\n";
    } else {
      out += text[i];
    }
  }
  return out;
}

std::string LineAt(const std::string& text, size_t start) {
  size_t end = text.find_first_of("\r\n", start);
  return text.substr(start, end == std::string::npos ? std::string::npos : end - start);
}

int CheckCommand(const FormOptions& o) {
  std::string in = ReadAll(o.file);
  std::string name = DisplayName(o.file);
  if (IsBinary(in)) {
    std::string back = ToBinary(ToText(in, o), o);
    if (back == in) {
      WriteLine(name + ": OK (binary)");
      return kExitOk;
    }
    size_t i = 0;
    while (i < in.size() && i < back.size() && in[i] == back[i]) ++i;
    WriteLine(name + ": differs at byte " + std::to_string(i));
    return kExitCheckFailed;
  }
  std::string original = WithCrLf(in);
  if (original.starts_with("\xEF\xBB\xBF")) original.erase(0, 3);
  std::string back = ToText(ToBinary(in, o), o);
  if (back == original) {
    WriteLine(name + ": OK (text)");
    return kExitOk;
  }
  size_t i = 0;
  while (i < original.size() && i < back.size() && original[i] == back[i]) ++i;
  size_t line_start = original.rfind('\n', i == 0 ? 0 : i - 1);
  line_start = (line_start == std::string::npos || i == 0) ? 0 : line_start + 1;
  if (line_start > i) line_start = 0;
  auto line =
      std::count(original.begin(), original.begin() + static_cast<ptrdiff_t>(line_start), '\n') + 1;
  WriteLine(name + ":" + std::to_string(line) + ": differs");
  WriteLine("  file:      " + LineAt(original, line_start));
  WriteLine("  rewritten: " + LineAt(back, line_start));
  return kExitCheckFailed;
}

CLI::App* AddFormCommand(CLI::App& form, const std::string& name, const std::string& what,
                         FormOptions& o) {
  auto* cmd = form.add_subcommand(name, what);
  cmd->add_option("FILE", o.file, "form file, text or binary (- for standard input)")->required();
  cmd->add_flag("--older", o.older,
                "write text as older designers did: --general-floats and --raw-bytes");
  cmd->add_flag("--general-floats", o.general_floats,
                "write floats in general format (15 digits, 1E-5) instead of 18 decimals");
  cmd->add_flag("--raw-bytes", o.raw_bytes,
                "write characters of the code page as raw bytes instead of #n codes");
  cmd->add_option("--code-page", o.code_page,
                  "code page of raw bytes in text that is not UTF-8 (default windows-1252)");
  return cmd;
}

}  // namespace

void RegisterFormCommands(CLI::App& app, Action& action) {
  auto* form = app.add_subcommand(
      "form", "Component forms: binary component streams and their description text.");
  form->require_subcommand(1);
  auto options = std::make_shared<FormOptions>();

  auto* totext = AddFormCommand(*form, "totext", "Write a form as description text.", *options);
  totext->add_option("-o,--output", options->output, "output file (default standard output)");
  totext->footer(
      "Example:\n"
      "  $ vexc form tobinary forms/login.dfm -o login.bin\n"
      "  $ vexc form totext login.bin | tr -d '\\r' | sed -n 1,2p\n"
      "  object LoginForm: TLoginForm\n"
      "    Left = 312");
  totext->callback([&action, options] { action = [options] { return ToTextCommand(*options); }; });

  auto* tobinary =
      AddFormCommand(*form, "tobinary", "Write a form as a binary component stream.", *options);
  tobinary->add_option("-o,--output", options->output, "output file (default standard output)");
  tobinary->footer(
      "Example:\n"
      "  $ vexc form tobinary forms/login.dfm -o login.bin && head -c 4 login.bin && echo\n"
      "  TPF0");
  tobinary->callback(
      [&action, options] { action = [options] { return ToBinaryCommand(*options); }; });

  auto* check = AddFormCommand(
      *form, "check",
      "Convert a form there and back; exit 1 and show the first differing line when the "
      "result differs (text is compared with CR LF line ends).",
      *options);
  check->footer(
      "Example:\n"
      "  $ vexc form check forms/login.dfm\n"
      "  forms/login.dfm: OK (text)");
  check->callback([&action, options] { action = [options] { return CheckCommand(*options); }; });
}

}  // namespace vexc
