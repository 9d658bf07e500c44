// Reads the reference tables in tests/data/golden: one row a line, fields separated by tabs,
// text escaped as \\ \t \r \n \xHH (any other escaped character stands for itself).
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace vex::test {

using GoldenRow = std::vector<std::string>;

inline std::string UnescapeGolden(const std::string& field) {
  std::string out;
  for (size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '\\' || i + 1 >= field.size()) {
      out += field[i];
      continue;
    }
    const char c = field[++i];
    if (c == 'x') {
      out += static_cast<char>(std::stoi(field.substr(i + 1, 2), nullptr, 16));
      i += 2;
    } else {
      out += c == 't' ? '\t' : c == 'r' ? '\r' : c == 'n' ? '\n' : c;
    }
  }
  return out;
}

/// The rows of golden/<name>.tsv with their fields as written (still escaped).
inline std::vector<GoldenRow> ReadGoldenTable(const std::string& name) {
  std::ifstream in(std::string(VEX_TEST_DATA_DIR) + "/golden/" + name + ".tsv");
  EXPECT_TRUE(in.good()) << name;
  std::vector<GoldenRow> rows;
  std::string line;
  while (std::getline(in, line)) {
    GoldenRow fields;
    std::stringstream ss(line);
    std::string field;
    while (std::getline(ss, field, '\t')) fields.push_back(field);
    if (!line.empty() && line.back() == '\t') fields.emplace_back();
    rows.push_back(fields);
  }
  return rows;
}

}  // namespace vex::test
