// ObjectTextToBinary and ObjectBinaryToText over a generated form of about 18 MB of text and
// 40,000 objects, beside Free Pascal's converters of the same names on the same file. When
// fpc is on the PATH the benchmark builds a small Pascal program that times its converters
// in-process (file reading and start-up excluded) and reports them as manual times; the
// *_FreePascal rows then carry `library_speedup`, the library's rate over Free Pascal's.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "bench_ratios.h"
#include "vex/platform/object_text.h"
#include "vex/platform/streams.h"

namespace {

namespace fs = std::filesystem;

constexpr int kObjects = 40000;

std::string Bytes(const vex::TMemoryStream& m) {
  return std::string(reinterpret_cast<const char*>(m.Memory()), static_cast<size_t>(m.Size()));
}

// A form of many controls using every common kind of value, then rewritten once by the
// converters so that the file is in the designer's layout.
std::string GenerateForm() {
  std::ostringstream t;
  t << "object BigForm: TBigForm\r\n  Caption = 'Generated'\r\n  Font.Style = []\r\n";
  for (int i = 0; i < kObjects; ++i) {
    t << "  object Control" << i << ": TPanel\r\n"
      << "    Left = " << (i * 7) % 1000 << "\r\n    Top = " << (i * 13) % 70000 << "\r\n"
      << "    Width = " << 100 + i % 50 << "\r\n    Height = 25\r\n"
      << "    Caption = 'Control number " << i << " '#8212' caption'\r\n"
      << "    Font.Name = 'Tahoma'\r\n    Font.Style = [fsBold, fsItalic]\r\n"
      << "    Hint = 'A long hint for control " << i
      << " that is longer than sixty-four characters and wraps'\r\n"
      << "    Ratio = " << i % 97 << "." << (i * 31) % 1000 << "\r\n"
      << "    Visible = True\r\n    Align = alNone\r\n";
    if (i % 4 == 0) {
      t << "    Items.Strings = (\r\n      'one'\r\n      'two'\r\n      'three')\r\n";
    }
    if (i % 10 == 0) {
      t << "    Glyph.Data = {";
      for (int b = 0; b < 40; ++b) t << "0123456789ABCDEF"[(i + b) % 16] << "F";
      t << "}\r\n";
      t << "    Columns = <\r\n      item\r\n        Width = 64\r\n      end\r\n"
        << "      item\r\n        Width = 80\r\n      end>\r\n";
    }
    t << "  end\r\n";
  }
  t << "end\r\n";
  vex::TStringStream text(t.str()), binary, canonical;
  vex::ObjectTextToBinary(text, binary);
  binary.SetPosition(0);
  vex::ObjectBinaryToText(binary, canonical);
  return Bytes(canonical);
}

const std::string& FormText() {
  static const std::string text = GenerateForm();
  return text;
}

const std::string& FormBinary() {
  static const std::string binary = [] {
    vex::TStringStream in(FormText()), out;
    vex::ObjectTextToBinary(in, out);
    return Bytes(out);
  }();
  return binary;
}

void BM_TextToBinary_Library(benchmark::State& state) {
  vex::TStringStream in(FormText());
  vex::TMemoryStream out;
  for (auto _ : state) {
    in.SetPosition(0);
    out.Clear();
    vex::ObjectTextToBinary(in, out);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(FormText().size()));
  state.counters["MB_text"] = static_cast<double>(FormText().size()) / 1e6;
}

void BM_BinaryToText_Library(benchmark::State& state) {
  vex::TStringStream in(FormBinary());
  vex::TMemoryStream out;
  for (auto _ : state) {
    in.SetPosition(0);
    out.Clear();
    vex::ObjectBinaryToText(in, out);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(FormText().size()));
}

// Times one library conversion outside the benchmark loop, for the ratio.
double TimeLibrary(bool to_binary) {
  vex::TStringStream in(to_binary ? FormText() : FormBinary());
  vex::TMemoryStream out;
  double best = 1e9;
  for (int i = 0; i < 5; ++i) {
    in.SetPosition(0);
    out.Clear();
    auto start = std::chrono::steady_clock::now();
    if (to_binary) {
      vex::ObjectTextToBinary(in, out);
    } else {
      vex::ObjectBinaryToText(in, out);
    }
    std::chrono::duration<double> d = std::chrono::steady_clock::now() - start;
    best = std::min(best, d.count());
  }
  return best;
}

// The Pascal side: reads the file once, then converts it `runs` times and prints the best
// seconds per conversion.
constexpr const char* kPascalProgram = R"(program object_stream_fpc;
{$mode objfpc}{$H+}
uses Classes, SysUtils, DateUtils;
var
  Source, Input, Output: TMemoryStream;
  I, Runs: Integer;
  Start: TDateTime;
  Best, Took: Double;
begin
  Runs := StrToInt(ParamStr(3));
  Source := TMemoryStream.Create;
  Source.LoadFromFile(ParamStr(2));
  Input := TMemoryStream.Create;
  Output := TMemoryStream.Create;
  if ParamStr(1) = 'totext' then
  begin
    ObjectTextToBinary(Source, Input);
  end
  else
    Input.LoadFromStream(Source);
  Best := 1e9;
  for I := 1 to Runs do
  begin
    Input.Position := 0;
    Output.Clear;
    Start := Now;
    if ParamStr(1) = 'totext' then
      ObjectBinaryToText(Input, Output)
    else
      ObjectTextToBinary(Input, Output);
    Took := MilliSecondSpan(Now, Start) / 1000;
    if Took < Best then Best := Took;
  end;
  WriteLn(Best:0:6);
end.
)";

// The built Pascal program, or empty when fpc is missing or the build failed.
const std::string& PascalProgram() {
  static const std::string path = []() -> std::string {
    if (std::system("command -v fpc >/dev/null 2>&1") != 0) return {};
    fs::path dir =
        fs::temp_directory_path() / ("vex_object_stream_bench_" + std::to_string(getpid()));
    fs::create_directories(dir);
    static struct Cleanup {
      fs::path dir;
      ~Cleanup() {
        std::error_code ignored;
        fs::remove_all(dir, ignored);
      }
    } cleanup{dir};
    std::ofstream(dir / "object_stream_fpc.pas") << kPascalProgram;
    std::ofstream(dir / "form.txt", std::ios::binary) << FormText();
    std::string build = "fpc -v0 -O2 -FE'" + dir.string() + "' '" +
                        (dir / "object_stream_fpc.pas").string() + "' >/dev/null 2>&1";
    if (std::system(build.c_str()) != 0) return {};
    return (dir / "object_stream_fpc").string();
  }();
  return path;
}

double RunPascal(const char* mode) {
  fs::path dir = fs::path(PascalProgram()).parent_path();
  std::string cmd =
      "'" + PascalProgram() + "' " + mode + " '" + (dir / "form.txt").string() + "' 3";
  FILE* pipe = popen(cmd.c_str(), "r");
  if (!pipe) return -1;
  char line[64] = {};
  bool ok = std::fgets(line, sizeof line, pipe) != nullptr;
  int status = pclose(pipe);
  return ok && status == 0 ? std::atof(line) : -1;
}

void FreePascal(benchmark::State& state, const char* mode, bool to_binary) {
  if (PascalProgram().empty()) {
    state.SkipWithError("fpc not found or the Pascal program did not build: nothing to compare");
    return;
  }
  double library = TimeLibrary(to_binary);
  double pascal = 0;
  for (auto _ : state) {
    pascal = RunPascal(mode);
    if (pascal <= 0) {
      state.SkipWithError("the Pascal program failed");
      return;
    }
    state.SetIterationTime(pascal);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(FormText().size()));
  state.counters["library_speedup"] = pascal / library;
}

void BM_TextToBinary_FreePascal(benchmark::State& state) { FreePascal(state, "tobinary", true); }

void BM_BinaryToText_FreePascal(benchmark::State& state) { FreePascal(state, "totext", false); }

}  // namespace

// Wall-clock time on every row, as the Pascal program measures it and as the ratio uses it.
BENCHMARK(BM_TextToBinary_Library)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_TextToBinary_FreePascal)
    ->UseManualTime()
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BinaryToText_Library)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BinaryToText_FreePascal)
    ->UseManualTime()
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);

VEX_BENCHMARK_MAIN_WITH_RATIOS({"BM_TextToBinary_Library", "BM_TextToBinary_FreePascal", {}},
                               {"BM_BinaryToText_Library", "BM_BinaryToText_FreePascal", {}});
