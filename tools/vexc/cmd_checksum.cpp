// vexc crc32 / crc16 / linkid: checksums of files or standard input, streamed in blocks so that
// inputs of any size run in constant memory, and fresh link identifiers.
#include <cctype>
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "cli.h"
#include "vex/numeric/crc_utils.h"
#include "vex/platform/random.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"
#include "vex/text/crc_engine.h"
#include "vex/text/mem_utils.h"

namespace vexc {
namespace {

enum class Kind { Crc32, Crc16 };

constexpr size_t kBlock = size_t{1} << 20;

// Both registers are continued block by block: CRC-32 with the library's engine (zlib's running
// CRC, folded by carry-less multiplication where the CPU has it), CRC-16/MODBUS with
// TMemUtils::CRC16_Update.
uint32_t ChecksumOf(Input& input, Kind kind) {
  std::vector<char> block(kBlock);
  uint32_t crc32 = 0;
  uint16_t crc16 = 0xFFFF;
  Progress progress(input.Name(), input.Size());
  while (true) {
    input.Stream().read(block.data(), static_cast<std::streamsize>(block.size()));
    auto got = static_cast<size_t>(input.Stream().gcount());
    if (got == 0) break;
    const auto* bytes = reinterpret_cast<const uint8_t*>(block.data());
    if (kind == Kind::Crc32) {
      crc32 = vex::UpdateCrc32(crc32, bytes, got);
    } else {
      crc16 = vex::TMemUtils::CRC16_Update(crc16, bytes, got);
    }
    progress.Advance(static_cast<int64_t>(got));
  }
  if (input.Stream().bad()) throw InputError(input.Name(), "read error");
  return kind == Kind::Crc32 ? crc32 : crc16;
}

std::string HexText(uint32_t value, Kind kind) {
  return vex::ToUtf8(vex::IntToHex(value, kind == Kind::Crc32 ? 8 : 4));
}

int PrintChecksums(const std::vector<std::string>& files, Kind kind) {
  for (const auto& name : InputNamesOrStdin(files)) {
    Input input(name);
    WriteLine(HexText(ChecksumOf(input, kind), kind) + "  " + (name == "-" ? "-" : name));
  }
  return kExitOk;
}

// Check lines are "<hex>  <file>", as the command writes them; hex digits in either case.
int CheckChecksums(const std::vector<std::string>& lists, Kind kind) {
  const size_t digits = kind == Kind::Crc32 ? 8 : 4;
  int failed = 0;
  for (const auto& list_name : InputNamesOrStdin(lists)) {
    Input list(list_name);
    vex::String line;
    while (list.ReadLine(line)) {
      std::string text = vex::ToUtf8(line);
      if (text.empty()) continue;
      bool hex_ok = text.size() > digits + 2 && text.compare(digits, 2, "  ") == 0;
      for (size_t i = 0; hex_ok && i < digits; ++i) hex_ok = std::isxdigit(uint8_t(text[i]));
      if (!hex_ok) {
        throw InputError(list.Name(), list.LineNumber(),
                         "expected '<" + std::to_string(digits) + " hex digits>  <file>'");
      }
      const uint32_t expected =
          static_cast<uint32_t>(std::stoul(text.substr(0, digits), nullptr, 16));
      const std::string file = text.substr(digits + 2);
      std::string verdict;
      try {
        Input input(file);
        verdict = ChecksumOf(input, kind) == expected ? "OK" : "FAILED";
      } catch (const InputError&) {
        verdict = "FAILED open or read";
      }
      if (verdict != "OK") ++failed;
      WriteLine(file + ": " + verdict);
    }
  }
  if (failed > 0) {
    std::cerr << "vexc: " << failed << " checksum" << (failed == 1 ? "" : "s")
              << " did not match\n";
    return kExitCheckFailed;
  }
  return kExitOk;
}

void RegisterCrc(CLI::App& app, Action& action, const char* name, Kind kind) {
  struct Options {
    std::vector<std::string> files;
    bool check = false;
  };
  auto options = std::make_shared<Options>();
  const bool is32 = kind == Kind::Crc32;
  auto* cmd =
      app.add_subcommand(name, is32 ? "CRC-32 (zlib, ISO-HDLC) of each file, one line per file"
                                    : "CRC-16/MODBUS of each file, one line per file");
  cmd->add_option("files", options->files, "files to read; none or '-' reads standard input");
  cmd->add_flag("-c,--check", options->check,
                "read '<checksum>  <file>' lines from the files and verify each; exit 1 when "
                "any differs");
  cmd->footer(is32 ? "Example:\n  $ vexc crc32 captions.txt names.txt > sums.txt\n"
                     "  $ vexc crc32 --check sums.txt\n  captions.txt: OK\n  names.txt: OK"
                   : "Example:\n  $ printf 123456789 | vexc crc16\n  4B37  -");
  cmd->callback([&action, options, kind] {
    action = [options, kind] {
      return options->check ? CheckChecksums(options->files, kind)
                            : PrintChecksums(options->files, kind);
    };
  });
}

void RegisterLinkId(CLI::App& app, Action& action) {
  struct Options {
    int count = 1;
    bool dollar = false;
  };
  auto options = std::make_shared<Options>();
  auto* cmd = app.add_subcommand("linkid", "new link identifiers: eight hexadecimal digits each");
  cmd->add_option("-n,--count", options->count, "how many identifiers to print")
      ->check(CLI::Range(1, 1000000));
  cmd->add_flag("--dollar", options->dollar, "prefix each identifier with '$'");
  cmd->footer("Example:\n  $ vexc linkid -n 3 --dollar | grep -c '^\\$[0-9A-F]\\{8\\}$'\n  3");
  cmd->callback([&action, options] {
    action = [options] {
      vex::Randomize();
      for (int i = 0; i < options->count; ++i)
        WriteLine(vex::TCRCUtils::NewLinkIDStr(options->dollar));
      return kExitOk;
    };
  });
}

}  // namespace

void RegisterChecksumCommands(CLI::App& app, Action& action) {
  RegisterCrc(app, action, "crc32", Kind::Crc32);
  RegisterCrc(app, action, "crc16", Kind::Crc16);
  RegisterLinkId(app, action);
}

}  // namespace vexc
