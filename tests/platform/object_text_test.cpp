#include "vex/platform/object_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/object_stream.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

namespace fs = std::filesystem;

std::string Bytes(const TMemoryStream& m) {
  return std::string(reinterpret_cast<const char*>(m.Memory()), static_cast<size_t>(m.Size()));
}

std::string ToBinary(const std::string& text, const TObjectTextOptions& options = {}) {
  TStringStream in(text), out;
  ObjectTextToBinary(in, out, options);
  return Bytes(out);
}

std::string ToText(const std::string& binary, const TObjectTextOptions& options = {}) {
  TStringStream in(binary), out;
  ObjectBinaryToText(in, out, options);
  return Bytes(out);
}

// Text of a one-property form, as the designer writes it.
std::string Form(const std::string& property_lines) {
  return "object F: TF\r\n" + property_lines + "end\r\n";
}

std::string ReadFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream ss;
  ss << in.rdbuf();
  return ss.str();
}

// --- round trips over the sample forms ---------------------------------------------------------

TEST(ObjectText, SampleFormsRoundTripBothWays) {
  int forms = 0;
  for (const fs::path& dir :
       {fs::path(VEX_TEST_DATA_DIR) / "forms", fs::path(VEX_SOURCE_DIR) / "examples" / "forms"}) {
    for (const auto& entry : fs::directory_iterator(dir)) {
      if (entry.path().extension() != ".dfm") continue;
      SCOPED_TRACE(entry.path().filename().string());
      TObjectTextOptions options;
      if (entry.path().filename().string().find("older") != std::string::npos) {
        options = TObjectTextOptions::OlderDesigner();
      }
      std::string text = ReadFile(entry.path());
      std::string binary = ToBinary(text, options);
      EXPECT_EQ(ToText(binary, options), text);
      EXPECT_EQ(ToBinary(ToText(binary, options), options), binary);
      ++forms;
    }
  }
  EXPECT_GE(forms, 4);
}

// --- the binary the text gives -----------------------------------------------------------------

TEST(ObjectText, WritesTheExpectedBinary) {
  std::string text =
      "inherited A: TB [2]\r\n"
      "  N = 300\r\n"
      "  S = 'x'#233\r\n"
      "  E = [a]\r\n"
      "  C = <\r\n"
      "    item\r\n"
      "    end>\r\n"
      "  object TC\r\n"
      "  end\r\n"
      "end\r\n";
  std::string want = std::string(
                         "TPF0\xF3\x02\x02\x02TB\x01"
                         "A",
                         12) +
                     std::string("\x01N\x03\x2C\x01", 5) +
                     std::string("\x01S\x12\x02\x00\x00\x00x\x00\xE9\x00", 11) +
                     std::string(
                         "\x01"
                         "E\x0B\x01"
                         "a\x00",
                         6) +
                     std::string(
                         "\x01"
                         "C\x0E\x01\x00\x00",
                         6) +
                     std::string("\x00", 1) + std::string("\x02TC\x00\x00\x00", 6) +
                     std::string("\x00", 1);
  EXPECT_EQ(ToBinary(text), want);
  EXPECT_EQ(ToText(want), text);
}

// Whether `binary` holds the property `name` with a value starting with `value_bytes`.
bool HasValue(const std::string& binary, const std::string& name, const std::string& value_bytes) {
  return binary.find('\x01' + name + value_bytes) != std::string::npos;
}

TEST(ObjectText, MapsSpecialIdentifiersToTheirCodes) {
  std::string binary = ToBinary(Form("  A = true\r\n  B = FALSE\r\n  C = NIL\r\n  D = null\r\n"));
  EXPECT_TRUE(HasValue(binary, "A", "\x09"));
  EXPECT_TRUE(HasValue(binary, "B", "\x08"));
  EXPECT_TRUE(HasValue(binary, "C", "\x0D"));
  EXPECT_TRUE(HasValue(binary, "D", std::string(1, '\0')));
  EXPECT_EQ(ToText(binary), Form("  A = True\r\n  B = False\r\n  C = nil\r\n  D = Null\r\n"));
}

// --- float layout ------------------------------------------------------------------------------

TEST(ObjectText, WritesFloatsInBothDesignerFormats) {
  struct Case {
    const char* text;   // as read
    const char* fixed;  // 18 decimals, 16 digits
    const char* general;
  };
  const Case cases[] = {
      {"1.5", "1.500000000000000000", "1.5"},
      {"40273.54733704861", "40273.547337048610000000", "40273.5473370486"},
      {"-0.000310000000000005", "-0.000310000000000005", "-0.000310000000000005"},
      {"0.001", "0.001000000000000000", "0.001"},
      {"0.0001", "0.000100000000000000", "0.0001"},
      {"1E-5", "0.000010000000000000", "1E-5"},
      {"1E-20", "0.000000000000000000", "1E-20"},
      {"68.03154", "68.031540000000000000", "68.03154"},
      {"8.45671", "8.456710000000000000", "8.45671"},
      {"1234567890123456", "1234567890123456.000000000000000000", "1.23456789012346E15"},
      {"12345678901234567", "1.234567890123457E16", "1.23456789012346E16"},
      {"-2.5E300", "-2.5E300", "-2.5E300"},
      {"100", "100.000000000000000000", "100"},
      {"999999999999999.9", "999999999999999.900000000000000000", "1E15"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    // An integer-looking text would be an integer: force the float kind with an exponent.
    std::string text = std::string(c.text);
    if (text.find_first_of(".E") == std::string::npos) text += ".0";
    std::string bin = ToBinary(Form("  X = " + text + "\r\n"));
    EXPECT_EQ(ToText(bin), Form(std::string("  X = ") + c.fixed + "\r\n"));
    EXPECT_EQ(ToText(bin, TObjectTextOptions::OlderDesigner()),
              Form(std::string("  X = ") + c.general + "\r\n"));
  }
}

TEST(ObjectText, KeepsSuffixedFloatKinds) {
  std::string text = Form(
      "  S = 0.100000001490116s\r\n"
      "  C = -922337203685477.5808c\r\n"
      "  D = 0.999988425925926d\r\n"
      "  W = 12.5c\r\n");
  std::string binary = ToBinary(text);
  EXPECT_TRUE(HasValue(binary, "S", "\x0F\xCD\xCC\xCC\x3D"));
  EXPECT_TRUE(HasValue(binary, "C", std::string("\x10\0\0\0\0\0\0\0\x80", 9)));
  EXPECT_TRUE(HasValue(binary, "D", "\x11"));
  EXPECT_EQ(ToText(binary), text);
  // Currency is rounded to 4 decimals from the digits, never through a binary float.
  EXPECT_EQ(ToText(ToBinary(Form("  C = 0.00005c\r\n"))), Form("  C = 0.0001c\r\n"));
  EXPECT_EQ(ToText(ToBinary(Form("  C = 1.5E3c\r\n"))), Form("  C = 1500c\r\n"));
}

// --- strings -----------------------------------------------------------------------------------

TEST(ObjectText, WrapsStringsLongerThan64Characters) {
  std::string s64(64, 'a');
  EXPECT_EQ(ToText(ToBinary(Form("  T = '" + s64 + "'\r\n"))), Form("  T = '" + s64 + "'\r\n"));
  // Written joined, read back in the designer's pieces: 64, then the rest.
  std::string joined = Form("  T = '" + s64 + "' + 'bc'\r\n");
  EXPECT_EQ(ToText(ToBinary(joined)), Form("  T = \r\n    '" + s64 + "' +\r\n    'bc'\r\n"));
  // Codes count one character each; a piece may end right after one.
  std::string codes;
  for (int i = 0; i < 65; ++i) codes += "#1046";
  EXPECT_EQ(ToText(ToBinary(Form("  T = " + codes + "\r\n"))),
            Form("  T = \r\n    " + codes.substr(0, 64 * 5) + " +\r\n    #1046\r\n"));
  // A long list item is announced by a line of indentation; its pieces sit one level deeper.
  std::string list = Form("  L = (\r\n    'x'\r\n    \r\n      '" + s64 + "' +\r\n      'z')\r\n");
  EXPECT_EQ(ToText(ToBinary(list)), list);
}

TEST(ObjectText, QuotesPrintableAsciiAndCodesTheRest) {
  std::string binary = ToBinary(Form("  T = 'a'#39'b'#0#127#128#55357#56589'#'\r\n"));
  EXPECT_EQ(ToText(binary), Form("  T = 'a'#39'b'#0#127#128#55357#56589'#'\r\n"));
  // The older designers' doubled apostrophe and hex codes read as the same string.
  EXPECT_EQ(ToBinary(Form("  T = 'a''b'#$41\r\n")), ToBinary(Form("  T = 'a'#39'bA'\r\n")));
  // Raw bytes of a text that is not UTF-8 come from the code page; the older writer puts them
  // back raw and codes what the code page lacks.
  std::string raw = Form("  T = 'Angle (\xB0) \x80'#1046\r\n");
  EXPECT_EQ(ToText(ToBinary(raw)), Form("  T = 'Angle ('#176') '#8364#1046\r\n"));
  auto older = TObjectTextOptions::OlderDesigner();
  EXPECT_EQ(ToText(ToBinary(raw, older), older), raw);
  TObjectTextOptions cyrillic{false, true, u"windows-1251"};
  EXPECT_EQ(ToText(ToBinary(Form("  T = '\xC6'\r\n"), cyrillic)), Form("  T = #1046\r\n"));
}

// --- what the reader accepts besides the designer's layout ------------------------------------

TEST(ObjectText, ReadsOtherToolsLayouts) {
  std::string canonical = Form(
      "  object L: TLabel [0]\r\n    A = (\r\n      1\r\n      2)\r\n"
      "    B = {0102}\r\n    C = <\r\n      item\r\n        X = 1\r\n      end>\r\n"
      "    D = 3.200000000000000000\r\n    E = 'ab'\r\n  end\r\n");
  std::string other =
      "object F: TF\n"
      "object L: TLabel[0]\n"
      "\tA = (\n 1\n 2\n )\n"
      "B = {\n0102\n}\n"
      "  C = <    \n  item    \n X = 1\n end>\n"
      "  D =  3.20000000000000000000E+0000\n"
      "  E = 'a' +\n  'b'\n"
      "end\nend\n";
  EXPECT_EQ(ToText(ToBinary(other)), canonical);
}

// --- errors ------------------------------------------------------------------------------------

TEST(ObjectText, ReportsTextErrorsWithTheLine) {
  struct Case {
    const char* text;
    const char* message;
  };
  const Case cases[] = {
      {"", "'object' expected on line 1"},
      {"object A: TA\n  X = )\nend\n", "Invalid property value on line 2"},
      {"object A: TA\n  X 1\nend\n", "'=' expected on line 2"},
      {"object A: TA\n\n  X = 'abc\nend\n", "Unterminated string on line 3"},
      {"object A: TA\n  X = #70000\nend\n", "Invalid character code on line 2"},
      {"object A: TA\n  X = {0G}\nend\n", "Invalid binary value on line 2"},
      {"object A: TA\n  X = {012}\nend\n", "Odd number of hex digits on line 2"},
      {"object A: TA\n  X = 99999999999999999999\nend\n", "Invalid integer"},
      {"object A: TA\n  X = 1.5q\nend\n", "Invalid number 1.5q on line 2"},
      {"object A: TA\n  X = (Null)\nend\n", "Null is not allowed in a list on line 2"},
      {"object A: TA\n  X = <\n  foo\n  >\nend\n", "'item' expected on line 3"},
      {"object A: TA\n  X = [a b]\nend\n", "',' expected on line 2"},
      {"object A: TA\n  X = 'a' + 1\nend\n", "String expected on line 2"},
      {"object A: TA\nend\nx\n", "End of text expected on line 3"},
      {"object A: TA\n  object B: TB\n  end\n  X = 1\nend\n", "'object' expected on line 4"},
  };
  for (const Case& c : cases) {
    const std::string message = ToUtf8(test::MessageOf<EParserError>([&] { ToBinary(c.text); }));
    EXPECT_NE(message.find(c.message), std::string::npos) << c.text << ": " << message;
  }
}

TEST(ObjectText, RefusesStreamsThatAreNoComponentStreams) {
  EXPECT_THROW(ToText(""), EStreamError);
  EXPECT_THROW(ToText("object A: TA\r\nend\r\n"), EStreamError);
  EXPECT_THROW(ToText("TPF0\x02TA"), EReadError);
  // Names the text could not read back are refused rather than written.
  EXPECT_THROW(ToText(std::string("TPF0\x02TA\x00\x03a b\x02\x01\x00\x00", 15)), EReadError);
  EXPECT_THROW(ToText(std::string("TPF0\x02TA\x00\x03"
                                  "end\x02\x01\x00\x00",
                                  15)),
               EReadError);
  EXPECT_THROW(ToText(std::string("TPF0\xF8\x02TA\x00\x00\x00", 10)), EReadError);
}

TEST(ObjectText, RefusesNestingBeyondTheLimitInBothForms) {
  const int depth = 100000;
  std::string text;
  for (int i = 0; i < depth; ++i) text += "object A: TA\n";
  for (int i = 0; i < depth; ++i) text += "end\n";
  EXPECT_THROW(ToBinary(text), EParserError);
  std::string lists = "object A: TA\n  X = " + std::string(depth, '(') + std::string(depth, ')');
  EXPECT_THROW(ToBinary(lists + "\nend\n"), EParserError);

  std::string binary = "TPF0";
  for (int i = 0; i < depth; ++i) binary += std::string("\x02TA\x00\x00", 5);
  binary += std::string(static_cast<size_t>(depth), '\0');
  EXPECT_THROW(ToText(binary), EReadError);
  std::string list_binary = std::string("TPF0\x02TA\x00\x01X", 9) + std::string(depth, '\x01') +
                            std::string(depth + 2, '\0');
  EXPECT_THROW(ToText(list_binary), EReadError);
  // Within the limit both directions work.
  std::string nested;
  for (int i = 0; i < 100; ++i)
    nested += std::string(static_cast<size_t>(2 * i), ' ') + "object A: TA\r\n";
  for (int i = 99; i >= 0; --i) nested += std::string(static_cast<size_t>(2 * i), ' ') + "end\r\n";
  EXPECT_EQ(ToText(ToBinary(nested)), nested);
}

// Every truncation of a valid stream raises a stream error; every single flipped byte either
// raises one or converts to text that converts back to a stream giving the same text.
TEST(ObjectText, SurvivesTruncatedAndCorruptedStreams) {
  std::string binary = ToBinary(ReadFile(fs::path(VEX_TEST_DATA_DIR) / "forms" / "features.dfm"));
  for (size_t size = 0; size < binary.size(); ++size) {
    EXPECT_THROW(ToText(binary.substr(0, size)), EStreamError) << size;
  }
  std::string small = ToBinary(ReadFile(fs::path(VEX_SOURCE_DIR) / "examples/forms/login.dfm"));
  for (size_t i = 0; i < small.size(); ++i) {
    for (uint8_t mask : {0xFF, 0x01, 0x80}) {
      std::string corrupt = small;
      corrupt[i] = static_cast<char>(corrupt[i] ^ mask);
      std::string text;
      try {
        text = ToText(corrupt);
      } catch (const EStreamError&) {
        continue;
      }
      EXPECT_EQ(ToText(ToBinary(text)), text) << i;
    }
  }
}

// The binary Free Pascal's ObjectTextToBinary wrote for texts that use only the value kinds on
// which it agrees with this library (tests/data/golden/object_stream, made by
// scripts/golden/generate_object_stream.sh): ours must be the same bytes, both from our text
// and from the text Free Pascal's ObjectBinaryToText wrote in its own layout.
TEST(ObjectTextGolden, BinaryEqualsFreePascalsByteForByte) {
  int compared = 0;
  for (const auto& entry :
       fs::directory_iterator(fs::path(VEX_TEST_DATA_DIR) / "golden" / "object_stream")) {
    if (entry.path().extension() != ".txt") continue;
    SCOPED_TRACE(entry.path().filename().string());
    fs::path golden = entry.path();
    ASSERT_TRUE(fs::exists(golden.replace_extension(".bin")));
    const std::string want = ReadFile(golden);
    EXPECT_EQ(ToBinary(ReadFile(entry.path())), want);
    EXPECT_EQ(ToBinary(ReadFile(golden.replace_extension(".fpc"))), want);
    ++compared;
  }
  EXPECT_GE(compared, 5);
}

std::string WithCrLf(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (c == '\r') continue;
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

// The real forms saved by designers (kept outside the project, read when present): text ->
// binary -> text gives every file back byte for byte after line-ending normalisation.
TEST(ObjectTextCorpus, RealFormsComeBackByteForByte) {
  fs::path dir = fs::path(VEX_SOURCE_DIR) / ".." / "shared" / "corpus" / "forms";
  if (!fs::exists(dir)) GTEST_SKIP() << "no form corpus at " << dir;
  // The forms written by older designers: general-format floats, raw code-page bytes.
  const std::set<std::string> older = {"18", "19", "20", "26", "27", "34"};
  int checked = 0;
  for (const auto& entry : fs::directory_iterator(dir)) {
    if (entry.path().extension() != ".dfm") continue;
    const std::string name = entry.path().filename().string();
    TObjectTextOptions options;
    if (older.count(name.substr(0, 2))) options = TObjectTextOptions::OlderDesigner();
    // Only the forms with raw bytes need the raw writer; the others write #n codes.
    if (name.substr(0, 2) != "18" && name.substr(0, 2) != "27") options.raw_code_page = false;
    const std::string original = WithCrLf(ReadFile(entry.path()));
    std::string result;
    try {
      result = ToText(ToBinary(original, options), options);
    } catch (const std::exception& e) {
      ADD_FAILURE() << name << ": " << e.what();
      continue;
    }
    if (result != original) {
      size_t i = 0;
      while (i < result.size() && i < original.size() && result[i] == original[i]) ++i;
      const auto line = std::count(original.begin(), original.begin() + i, '\n') + 1;
      const size_t from = original.rfind('\n', i) + 1;
      ADD_FAILURE() << name << " differs at line " << line
                    << ":\n  want: " << original.substr(from, original.find('\n', i) - from)
                    << "\n  got:  " << result.substr(from, result.find('\n', i) - from);
      continue;
    }
    ++checked;
  }
  EXPECT_EQ(checked, 35);
}

}  // namespace
}  // namespace vex
