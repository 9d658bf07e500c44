// Checks the number text against tables printed by a Pascal runtime (scripts/golden). Each table
// line holds the input fields and the expected text; doubles travel as their IEEE bits.
#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/golden_table.h"
#include "vex/platform/format.h"
#include "vex/platform/sysutils.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

using Fields = std::vector<std::string>;

std::vector<Fields> ReadTable(const std::string& name) {
  std::vector<Fields> rows = test::ReadGoldenTable(name);
  for (Fields& row : rows) {
    for (std::string& field : row) field = test::UnescapeGolden(field);
  }
  return rows;
}

double FromBits(const std::string& hex) {
  uint64_t bits = 0;
  std::from_chars(hex.data(), hex.data() + hex.size(), bits, 16);
  return std::bit_cast<double>(bits);
}

int64_t ToInt64(const std::string& s) {
  int64_t v = 0;
  std::from_chars(s.data(), s.data() + s.size(), v);
  return v;
}

// The two settings the generator uses.
TFormatSettings Settings(const std::string& id) {
  TFormatSettings fs;
  fs.DecimalSeparator = u'.';
  fs.ThousandSeparator = u',';
  fs.CurrencyString = u"$";
  fs.CurrencyFormat = 0;
  fs.NegCurrFormat = 1;
  fs.CurrencyDecimals = 2;
  if (id == "eu") {
    fs.DecimalSeparator = u',';
    fs.ThousandSeparator = u'.';
    fs.CurrencyString = u"EUR";
    fs.CurrencyFormat = 3;
    fs.NegCurrFormat = 8;
  }
  return fs;
}

// "i:5|s:abc|f:1.5=3FF8000000000000" -> arguments.
std::vector<TVarRec> ParseArgs(const std::string& list) {
  std::vector<TVarRec> args;
  if (list.empty()) return args;
  std::stringstream ss(list);
  std::string item;
  while (std::getline(ss, item, '|')) {
    const char kind = item[0];
    const std::string value = item.substr(2);
    switch (kind) {
      case 'i':
        args.emplace_back(static_cast<int32_t>(ToInt64(value)));
        break;
      case 'I':
        args.emplace_back(ToInt64(value));
        break;
      case 's':
        args.emplace_back(FromUtf8(value));
        break;
      case 'c':
        args.emplace_back(static_cast<Char>(value[0]));
        break;
      case 'f':
        args.emplace_back(FromBits(value.substr(value.find('=') + 1)));
        break;
      default:
        ADD_FAILURE() << "unknown argument " << item;
    }
  }
  return args;
}

TEST(Golden, Format) {
  for (const Fields& row : ReadTable("format")) {
    ASSERT_EQ(row.size(), 4u);
    const String fmt = FromUtf8(row[1]);
    String got;
    try {
      got = Format(fmt, ParseArgs(row[2]), Settings(row[0]));
    } catch (const std::exception& e) {
      got = FromUtf8(std::string("exception: ") + e.what());
    }
    EXPECT_EQ(ToUtf8(got), row[3]) << row[0] << " " << row[1] << " " << row[2];
  }
}

TEST(Golden, IntToStrAndIntToHex) {
  for (const Fields& row : ReadTable("inttostr")) {
    ASSERT_EQ(row.size(), 4u);
    const int64_t v = ToInt64(row[1]);
    String got;
    if (row[0] == "IntToStr64") {
      got = IntToStr(v);
    } else if (row[0] == "IntToStr32") {
      got = IntToStr(static_cast<int32_t>(v));
    } else {
      got = IntToHex(v, static_cast<int32_t>(ToInt64(row[2])));
    }
    EXPECT_EQ(ToUtf8(got), row[3]) << row[0] << " " << row[1] << " " << row[2];
  }
}

TEST(Golden, FloatToStr) {
  for (const Fields& row : ReadTable("floattostr")) {
    ASSERT_EQ(row.size(), 3u);
    const bool eu = row[0].rfind("eu:", 0) == 0;
    const double v = FromBits(row[1]);
    EXPECT_EQ(ToUtf8(FloatToStr(v, Settings(eu ? "eu" : "std"))), row[2]) << row[0];
  }
}

TEST(Golden, FormatFloat) {
  for (const Fields& row : ReadTable("formatfloat")) {
    ASSERT_EQ(row.size(), 4u);
    const double v = FromBits(row[2]);
    EXPECT_EQ(ToUtf8(FormatFloat(FromUtf8(row[1]), v, Settings(row[0]))), row[3])
        << row[0] << " " << row[1] << " " << FloatToStr(v).size() << ":" << ToUtf8(FloatToStr(v));
  }
}

TEST(Golden, StrToIntAcceptsAndRejects) {
  for (const Fields& row : ReadTable("strtoint")) {
    ASSERT_EQ(row.size(), 3u);
    const String text = FromUtf8(row[0]);
    if (row[1] != "skip") {
      int32_t v = 0;
      const bool ok = TryStrToInt(text, v);
      EXPECT_EQ(ok ? std::to_string(v) : "fail", row[1]) << "[" << row[0] << "]";
    }
    int64_t v64 = 0;
    const bool ok64 = TryStrToInt64(text, v64);
    EXPECT_EQ(ok64 ? std::to_string(v64) : "fail", row[2]) << "[" << row[0] << "]";
  }
}

TEST(Golden, StrToFloat) {
  for (const Fields& row : ReadTable("strtofloat")) {
    ASSERT_EQ(row.size(), 3u);
    double v = 0;
    const bool ok = TryStrToFloat(FromUtf8(row[1]), v, Settings(row[0]));
    if (row[2] == "fail") {
      EXPECT_FALSE(ok) << row[0] << " [" << row[1] << "]";
    } else {
      ASSERT_TRUE(ok) << row[0] << " [" << row[1] << "]";
      EXPECT_EQ(std::bit_cast<uint64_t>(v), std::bit_cast<uint64_t>(FromBits(row[2])))
          << row[0] << " [" << row[1] << "]";
    }
  }
}

// The tables together must stay a substantial check (a truncated file would pass silently).
TEST(Golden, TablesCoverEnoughCases) {
  size_t rows = 0;
  for (const char* name :
       {"format", "inttostr", "floattostr", "formatfloat", "strtoint", "strtofloat"}) {
    const size_t n = ReadTable(name).size();
    EXPECT_GE(n, 30u) << name;
    rows += n;
  }
  EXPECT_GE(rows, 150u);
}

}  // namespace
}  // namespace vex
