// Rule lists over many lines: ReplaceStringsWithTaskArray with 20 mixed plain and pattern rules
// against the same rules applied with QString::replace and QRegularExpression, which is what a
// Qt application would write by hand. Also the number-format detection of one caption against
// the same steps written with QRegularExpression.
//
// Run with --benchmark_repetitions=3 and compare the medians of items_per_second.
#include <benchmark/benchmark.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench_ratios.h"
#include "vex/patterns/reg_exp_utils.h"
#include "vex/platform/string_list.h"

namespace {

using vex::String;

constexpr int kLines = 1'000'000;

struct Rule {
  const char16_t* sub_text;
  const char16_t* replace;     // this library's group syntax
  const char16_t* qt_replace;  // QString::replace's group syntax
};

// Ten plain rules and ten pattern rules, interleaved; a backslash makes a rule a pattern.
const Rule kRules[] = {
    {u"Ch(\\d+)", u"Channel $1", u"Channel \\1"},
    {u"Beam", u"Gate", u"Gate"},
    {u"\\s+$", u"", u""},
    {u"Motor", u"Drive", u"Drive"},
    {u"^\\s+", u"", u""},
    {u"speed", u"rate", u"rate"},
    {u"(\\d+)-(\\d+)", u"$1..$2", u"\\1..\\2"},
    {u"_v", u"-v", u"-v"},
    {u"_0+(\\d)", u"_$1", u"_\\1"},
    {u".txt", u".dat", u".dat"},
    {u"\\bUnit\\b", u"U", u"U"},
    {u"Temp", u"T", u"T"},
    {u"[Ee]rr(or)?", u"ERR", u"ERR"},
    {u"Pressure", u"P", u"P"},
    {u"#(\\d+)", u"No.$1", u"No.\\1"},
    {u"Left", u"L", u"L"},
    {u"\\(([^)]*)\\)", u"[$1]", u"[\\1]"},
    {u"Right", u"R", u"R"},
    {u"v(\\d+)\\.(\\d+)", u"v$1_$2", u"v\\1_\\2"},
    {u"  ", u" ", u" "},
};

// Captions of the kind rule lists are written for, deterministic.
std::vector<String> MakeLines() {
  static const char16_t* const kWords[] = {
      u"Ch",    u"Beam",  u"Motor", u"speed", u"Gate_v", u"File_007.txt", u"Unit",  u"Temp",
      u"Error", u"err",   u"#",     u"(raw)", u"Left",   u"Right",        u"Value", u"Pressure",
      u"v1.2",  u"Panel", u"Zone",  u"Mode"};
  std::vector<String> lines;
  lines.reserve(kLines);
  uint32_t state = 12345;
  auto next = [&state] {
    state = state * 1664525u + 1013904223u;
    return state >> 8;
  };
  for (int i = 0; i < kLines; ++i) {
    String line;
    const int words = 2 + static_cast<int>(next() % 4);
    for (int w = 0; w < words; ++w) {
      if (w > 0) line += (next() % 8 == 0) ? u"  " : u" ";
      line += kWords[next() % 20];
      if (next() % 3 == 0) {
        std::string digits = std::to_string(next() % 200);
        line.append(digits.begin(), digits.end());
        if (next() % 4 == 0) line += u"-" + String(1, static_cast<char16_t>(u'1' + next() % 9));
      }
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

const std::vector<String>& Lines() {
  static const std::vector<String> lines = MakeLines();
  return lines;
}

QString ToQString(const String& s) {
  return QString::fromUtf16(s.data(), static_cast<qsizetype>(s.size()));
}

void BM_ReplaceStringsWithTaskArray(benchmark::State& state) {
  vex::TRegExTaskArray tasks;
  for (const Rule& rule : kRules) tasks.emplace_back(rule.sub_text, rule.replace);
  vex::TStringList source;
  for (const String& line : Lines()) source.Add(line);
  vex::TStringList list;
  for (auto _ : state) {
    state.PauseTiming();
    list.Assign(source);
    state.ResumeTiming();
    vex::ReplaceStringsWithTaskArray(list, tasks);
    benchmark::DoNotOptimize(list.Strings(kLines - 1).data());
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(BM_ReplaceStringsWithTaskArray)->Unit(benchmark::kMillisecond);

// The hand-written Qt equivalent: precompiled expressions, plain rules by QString::replace,
// same order, same "only when it matches" rule.
void BM_QtReplaceLoop(benchmark::State& state) {
  struct QtRule {
    bool plain;
    QString sub_text;
    QRegularExpression re;
    QString replace;
  };
  std::vector<QtRule> rules;
  for (const Rule& rule : kRules) {
    const String sub_text = rule.sub_text;
    const bool plain = sub_text.find(u'\\') == String::npos;
    QtRule r{plain, ToQString(sub_text), QRegularExpression(), ToQString(rule.qt_replace)};
    if (!plain) {
      r.re = QRegularExpression(r.sub_text);
      r.re.optimize();
    }
    rules.push_back(std::move(r));
  }
  QStringList source;
  for (const String& line : Lines()) source.append(ToQString(line));
  QStringList list;
  for (auto _ : state) {
    state.PauseTiming();
    list = source;
    list.detach();
    state.ResumeTiming();
    for (QString& line : list) {
      if (line.isEmpty()) continue;
      for (const QtRule& rule : rules) {
        if (rule.plain) {
          if (!rule.sub_text.isEmpty() && line.contains(rule.sub_text)) {
            line.replace(rule.sub_text, rule.replace);
          }
        } else if (rule.re.match(line).hasMatch()) {
          line.replace(rule.re, rule.replace);
        }
      }
    }
    benchmark::DoNotOptimize(list.back().constData());
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(BM_QtReplaceLoop)->Unit(benchmark::kMillisecond);

// --- One caption's number format ------------------------------------------------------------

const std::vector<String>& Captions() {
  static const std::vector<String> captions = [] {
    std::vector<String> out;
    const std::vector<String>& lines = Lines();
    for (size_t i = 0; i < 4096; ++i) out.push_back(lines[i]);
    return out;
  }();
  return captions;
}

void BM_DetectOneNumberFormat(benchmark::State& state) {
  const std::vector<String>& captions = Captions();
  size_t i = 0;
  for (auto _ : state) {
    int32_t value = 0;
    String format;
    benchmark::DoNotOptimize(vex::DetectOneNumberFormat(captions[i++ & 4095], &value, &format));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DetectOneNumberFormat);

// The same steps with QRegularExpression: find the runs, demand exactly one, build the format.
void BM_QtOneNumberFormat(benchmark::State& state) {
  std::vector<QString> captions;
  for (const String& c : Captions()) captions.push_back(ToQString(c));
  static const QRegularExpression digits(QStringLiteral("\\d+"));
  size_t i = 0;
  for (auto _ : state) {
    const QString& caption = captions[i++ & 4095];
    QString result;
    QRegularExpressionMatchIterator it = digits.globalMatch(caption);
    if (it.hasNext()) {
      const QRegularExpressionMatch run = it.next();
      if (!it.hasNext()) {
        bool ok = false;
        const int value = run.captured().toInt(&ok);
        const QString format = run.captured().startsWith(u'0')
                                   ? QStringLiteral("%.%1d").arg(run.capturedLength())
                                   : QStringLiteral("%d");
        result = caption;
        result.replace(run.capturedStart(), run.capturedLength(), format);
        benchmark::DoNotOptimize(value);
      }
    }
    benchmark::DoNotOptimize(result.constData());
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_QtOneNumberFormat);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_ReplaceStringsWithTaskArray", "BM_QtReplaceLoop", {}},
                               {"BM_DetectOneNumberFormat", "BM_QtOneNumberFormat", {}});
