#include "vex/platform/text_io.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/streams.h"

namespace vex {
namespace {

std::vector<String> ReadAll(TStream& stream, size_t buffer_size = 4096,
                            TInvalidText invalid = TInvalidText::Raise) {
  TStreamReader reader(stream, invalid, buffer_size);
  std::vector<String> lines;
  String line;
  while (reader.ReadLine(line)) lines.push_back(line);
  EXPECT_TRUE(reader.EndOfStream());
  return lines;
}

TEST(StreamReader, SplitsAtEveryKindOfLineBreakWithAnyBufferSize) {
  const std::string text = "\xEF\xBB\xBFone\r\ntwo\nthree\rfour\r\n\r\nlast";
  const std::vector<String> expected = {u"one", u"two", u"three", u"four", u"", u"last"};
  // Small buffers put CR LF pairs, the byte-order mark and multi-byte characters across refills.
  for (size_t size : {16u, 17u, 18u, 19u, 4096u}) {
    TStringStream in(text);
    EXPECT_EQ(ReadAll(in, size), expected) << size;
  }
}

TEST(StreamReader, FinalBreakAddsNoEmptyLineAndEmptyInputHasNoLines) {
  TStringStream in(std::string("a\r\n"));
  EXPECT_EQ(ReadAll(in), std::vector<String>{u"a"});
  TStringStream empty{std::string()};
  EXPECT_TRUE(ReadAll(empty).empty());
  TStringStream only_bom(std::string("\xEF\xBB\xBF"));
  EXPECT_TRUE(ReadAll(only_bom).empty());
  TStringStream breaks(std::string("\n\n"));
  EXPECT_EQ(ReadAll(breaks), (std::vector<String>{u"", u""}));
}

TEST(StreamReader, LongLinesAndMultiByteCharactersSurviveRefills) {
  String long_line;
  for (int i = 0; i < 5000; ++i) long_line += (i % 3 == 0) ? u'Ж' : u'x';
  TStringStream in(long_line + u"\n" + long_line);
  EXPECT_EQ(ReadAll(in, 16), (std::vector<String>{long_line, long_line}));
}

TEST(StreamReader, MalformedUtf8NamesTheLineOrIsReplaced) {
  const std::string text = "fine\r\nalso fine\nbad \xC3(\nnext";
  TStringStream in(text);
  TStreamReader reader(in);
  String line;
  ASSERT_TRUE(reader.ReadLine(line));
  ASSERT_TRUE(reader.ReadLine(line));
  EXPECT_EQ(test::MessageOf<EConvertError>([&] { reader.ReadLine(line); }),
            u"Invalid UTF-8 text in line 3");
  TStringStream again(text);
  EXPECT_EQ(ReadAll(again, 4096, TInvalidText::Replace).at(2), u"bad \uFFFD(");
  TStringStream whole(text);
  TStreamReader to_end(whole);
  ASSERT_TRUE(to_end.ReadLine(line));
  EXPECT_EQ(test::MessageOf<EConvertError>([&] { to_end.ReadToEnd(); }),
            u"Invalid UTF-8 text in line 3");
}

TEST(StreamReader, StartsAtTheStreamPositionAndReadsToTheEnd) {
  TStringStream in(std::string("skip\xEF\xBB\xBFrest\r\nmore"));
  in.SetPosition(4);
  TStreamReader reader(in);
  EXPECT_EQ(reader.ReadToEnd(), u"rest\r\nmore");
  EXPECT_TRUE(reader.EndOfStream());
  in.SetPosition(4);
  TStreamReader keep_bom(in, TInvalidText::Raise, 4096, false);
  EXPECT_EQ(keep_bom.ReadToEnd(), u"\uFEFFrest\r\nmore");
}

TEST(StreamWriter, BuffersAndWritesUtf8AtThePosition) {
  TStringStream out(std::string("0123456789"));
  out.SetPosition(2);
  {
    TStreamWriter writer(out, 16);
    writer.Write(u"ab");
    EXPECT_EQ(out.DataString(), u"0123456789");  // still buffered
    writer.WriteLine(u"Ж");
    writer.SetNewLine(u"\n");
    writer.WriteLine();
  }
  EXPECT_EQ(out.DataString(), u"01abЖ\r\n\n9");
}

TEST(StreamWriter, LargeOutputAndSurrogatePairsAcrossWrites) {
  TMemoryStream out;
  TStreamWriter writer(out, 16, true);
  String big(1000, u'q');
  writer.Write(big);
  writer.Write(String(1, u'\xD83D'));
  writer.Write(String(1, u'\xDE00'));  // completes U+1F600
  writer.Write(String(1, u'\xDC00'));  // lone low surrogate
  writer.Write(String(1, u'\xD800'));  // lone high surrogate at the end
  writer.Flush();
  std::string bytes(reinterpret_cast<const char*>(out.Memory()), static_cast<size_t>(out.Size()));
  EXPECT_EQ(bytes.substr(0, 3), "\xEF\xBB\xBF");
  EXPECT_EQ(bytes.substr(3, 1000), std::string(1000, 'q'));
  EXPECT_EQ(bytes.substr(1003), "\xF0\x9F\x98\x80\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(StreamWriter, ReaderGetsBackWhatTheWriterWrote) {
  TMemoryStream stream;
  const std::vector<String> lines = {u"α", u"", u"βγ", u"end"};
  {
    TStreamWriter writer(stream);
    for (const String& l : lines) writer.WriteLine(l);
  }
  stream.SetPosition(0);
  EXPECT_EQ(ReadAll(stream), lines);
}

}  // namespace
}  // namespace vex
