// DetectNumberFormat over a million captions, beside the same take-apart written with Qt's
// QRegularExpression (patterns compiled once, as a Qt user would keep them).
//
//   vex_detect_bench --benchmark_repetitions=3 --benchmark_report_aggregates_only=true
#include <benchmark/benchmark.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "bench_ratios.h"
#include "vex/patterns/detect_utils.h"
#include "vex/platform/sysutils.h"

namespace {

constexpr int kCaptions = 1000000;

// A million captions of the shapes a host hands over: numbered files and channels, ranges,
// masked tails, titles, quoted and plain texts, Latin and Cyrillic.
const std::vector<vex::String>& Captions() {
  static const std::vector<vex::String> captions = [] {
    using vex::IntToStr;
    std::vector<vex::String> out;
    out.reserve(kCaptions);
    for (int32_t i = 0; i < kCaptions; ++i) {
      const vex::String n = IntToStr(i % 997);
      switch (i % 10) {
        case 0:
          out.push_back(u"Channel " + n);
          break;
        case 1:
          out.push_back(u"File_" + vex::String(n.size() < 3 ? 3 - n.size() : 0, u'0') + n +
                        u".txt");
          break;
        case 2:
          out.push_back(u"Beam " + n + u"-" + IntToStr(i % 997 + 4));
          break;
        case 3:
          out.push_back(u"\u00AB\u041D\u0430\u0441\u043E\u0441 " + n + u"\u00BB");
          break;
        case 4:
          out.push_back(u"Pressure|P" + n);
          break;
        case 5:
          out.push_back(u"Settings");
          break;
        case 6:
          out.push_back(u"Step " + n + u":");
          break;
        case 7:
          out.push_back(u"Item " + n + u" of the set");
          break;
        case 8:
          out.push_back(u"\u041A\u0430\u043D\u0430\u043B " + n);
          break;
        default:
          out.push_back(u"\"Valve " + n + u"\"");
          break;
      }
    }
    return out;
  }();
  return captions;
}

void BM_DetectNumberFormat(benchmark::State& state) {
  const std::vector<vex::String>& captions = Captions();
  const vex::TDetectLangParams lang;
  vex::TDetectNumParams num;
  for (auto _ : state) {
    for (const vex::String& caption : captions) {
      vex::DetectNumberFormat(caption, lang, num);
      benchmark::DoNotOptimize(num.s.data());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(captions.size()));
}
BENCHMARK(BM_DetectNumberFormat)->Unit(benchmark::kMillisecond);

// --- the same rules with QRegularExpression ---------------------------------------------------

enum QtFormatType { qtNone, qtEndNumber, qtOneNumber, qtTwoNumbers, qtIntFormat, qtMasked };

struct QtNumParams {
  QString Quotes, MskVal, fmt, StrVal, dqs, s;
  int IntVal = 0;
  bool Inverse = false;
  bool UseNumTitle = false;
  QtFormatType FormatType = qtNone;
};

const QRegularExpression& Digits() {
  static const QRegularExpression re(QStringLiteral("\\d+"));
  return re;
}

const QRegularExpression& Pair() {
  static const QRegularExpression re(QStringLiteral("\\s?\\d+\\D+\\d+"));
  return re;
}

QString QtRemoveQuotes(const QString& s, QString& quotes) {
  static const char16_t kPairs[][2] = {
      {u'"', u'"'},           {u'\'', u'\''},         {u'`', u'`'},
      {u'\u00AB', u'\u00BB'}, {u'\u201C', u'\u201D'}, {u'\u201E', u'\u201C'},
      {u'\u201E', u'\u201D'}, {u'\u2018', u'\u2019'}, {u'\u2039', u'\u203A'}};
  quotes.clear();
  if (s.size() < 2) return s;
  for (const auto& pair : kPairs) {
    if (s.front() == QChar(pair[0]) && s.back() == QChar(pair[1])) {
      quotes = QString(QChar(pair[0])) + QChar(pair[1]);
      return s.mid(1, s.size() - 2);
    }
  }
  return s;
}

int QtToInt(const QString& digits) {
  bool ok = false;
  const int value = digits.toInt(&ok);
  if (!ok) throw std::out_of_range("number beyond 32 bits");
  return value;
}

QString QtNumberFormat(const QString& run) {
  return run.startsWith(u'0') ? QStringLiteral("%.%1d").arg(run.size()) : QStringLiteral("%d");
}

QString QtEndNumber(const QString& s, QString& prefix, int& value, bool& is_end) {
  QRegularExpressionMatchIterator it = Digits().globalMatch(s);
  if (!it.hasNext()) return QString();
  const QRegularExpressionMatch run = it.next();
  if (it.hasNext() || run.capturedEnd() != s.size()) return QString();
  value = QtToInt(run.captured());
  const QString format = QtNumberFormat(run.captured());
  QString text = s.left(run.capturedStart());
  int end = text.size();
  while (end > 0 && text[end - 1].unicode() <= 32) --end;
  const int blanks = text.size() - end;
  text.truncate(end);
  prefix = text;
  is_end = run.capturedStart() > 0;
  if (text.isEmpty()) return format;
  return QStringLiteral("%s") + QString(blanks, u' ') + format;
}

QString QtOneNumber(const QString& s, int& value, QString& format, QChar ch) {
  QRegularExpressionMatchIterator it = Digits().globalMatch(s);
  if (!it.hasNext()) return QString();
  const QRegularExpressionMatch run = it.next();
  if (it.hasNext()) return QString();
  value = QtToInt(run.captured());
  format = QtNumberFormat(run.captured());
  QString result = s;
  return result.replace(run.capturedStart(), run.capturedLength(), ch);
}

QString QtTwoNumbers(const QString& s, QString& value, int& index) {
  QRegularExpressionMatchIterator it = Digits().globalMatch(s);
  int runs = 0;
  while (it.hasNext() && runs < 3) {
    it.next();
    ++runs;
  }
  if (runs != 2) return QString();
  const QRegularExpressionMatch pair = Pair().match(s);
  if (!pair.hasMatch()) return QString();
  value = pair.captured();
  index = pair.capturedStart() + 1;
  QString result = s;
  return result.remove(pair.capturedStart(), pair.capturedLength());
}

void QtDetectNumberFormat(const QString& caption, QtNumParams& num) {
  num = QtNumParams();
  num.dqs = QtRemoveQuotes(caption, num.Quotes);
  num.s = num.dqs;
  if (num.dqs.contains(QStringLiteral("%d"))) {
    num.FormatType = qtIntFormat;
    return;
  }
  const int bar = num.s.indexOf(u'|');
  if (bar >= 0) {
    const QString head = num.s.left(bar).trimmed();
    const QString tail = num.s.mid(bar + 1).trimmed();
    if (!head.isEmpty() && !tail.isEmpty() && !tail.contains(u'|')) {
      num.s = head;
      num.MskVal = tail;
      num.FormatType = qtMasked;
      return;
    }
  }
  if (num.s.endsWith(u':')) {
    num.s.chop(1);
    num.UseNumTitle = true;
    return;
  }
  num.fmt = QtEndNumber(num.s, num.StrVal, num.IntVal, num.Inverse);
  if (!num.fmt.isEmpty()) {
    num.s = num.StrVal;
    num.FormatType = qtEndNumber;
    return;
  }
  QString text = QtOneNumber(num.s, num.IntVal, num.StrVal, u'#');
  if (!text.isEmpty()) {
    num.s = text;
    num.MskVal = num.StrVal;
    num.StrVal = text;
    num.FormatType = qtOneNumber;
    return;
  }
  text = QtTwoNumbers(num.s, num.StrVal, num.IntVal);
  if (!text.isEmpty()) {
    num.s = text;
    num.MskVal = num.StrVal;
    num.StrVal = text;
    num.FormatType = qtTwoNumbers;
    return;
  }
  num.StrVal = num.s;
}

void BM_QRegularExpressionLoop(benchmark::State& state) {
  const std::vector<vex::String>& source = Captions();
  QStringList captions;
  captions.reserve(static_cast<qsizetype>(source.size()));
  for (const vex::String& caption : source) {
    captions.append(QString::fromUtf16(caption.data(), static_cast<qsizetype>(caption.size())));
  }
  QtNumParams num;
  for (auto _ : state) {
    for (const QString& caption : captions) {
      QtDetectNumberFormat(caption, num);
      benchmark::DoNotOptimize(num.s.constData());
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(captions.size()));
}
BENCHMARK(BM_QRegularExpressionLoop)->Unit(benchmark::kMillisecond);

}  // namespace

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_DetectNumberFormat", "BM_QRegularExpressionLoop", {}});
