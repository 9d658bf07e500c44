#include "vex/data/stream_utils.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/component_random.h"
#include "platform/component_test_classes.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

std::string Content(const TMemoryStream& s) {
  return std::string(reinterpret_cast<const char*>(s.Memory()), static_cast<size_t>(s.Size()));
}

// A memory stream holding `bytes`, positioned at its end.
std::unique_ptr<TMemoryStream> StreamOf(const std::string& bytes) {
  auto s = std::make_unique<TMemoryStream>();
  s->WriteBuffer(bytes.data(), static_cast<int64_t>(bytes.size()));
  return s;
}

TEST(StreamUtils, BufferLoadReplacesTheContentAndSaveReadsFromTheStart) {
  auto stream = StreamOf("old content");
  TMemoryStream& s = *stream;
  EXPECT_EQ(TStreamUtils::LoadStreamFromBuffer(s, "new", 3), 3);
  EXPECT_EQ(Content(s), "new");
  EXPECT_EQ(s.Position(), 3);
  char buf[8] = {};
  EXPECT_EQ(TStreamUtils::SaveStreamToBuffer(s, buf, 8), 3);  // up to Count bytes
  EXPECT_EQ(std::string(buf, 3), "new");
  EXPECT_EQ(TStreamUtils::SaveStreamToBuffer(s, buf, 2), 2);
  EXPECT_EQ(TStreamUtils::LoadStreamFromBuffer(s, buf, 0), 0);  // Count 0 empties
  EXPECT_EQ(s.Size(), 0);
}

TEST(StreamUtils, StreamBytesRoundTripAndEmptyCases) {
  auto stream = StreamOf("abc");
  TMemoryStream& s = *stream;
  s.SetPosition(2);
  EXPECT_EQ(TStreamUtils::GetStreamBytes(s), (TBytes{'a', 'b', 'c'}));
  EXPECT_EQ(s.Position(), 3);
  // An empty array leaves the stream as it was.
  EXPECT_EQ(TStreamUtils::SetStreamBytes(s, {}), 0);
  EXPECT_EQ(Content(s), "abc");
  EXPECT_EQ(TStreamUtils::SetStreamBytes(s, {'x', 'y'}), 2);
  EXPECT_EQ(Content(s), "xy");
  TMemoryStream empty;
  empty.SetPosition(5);
  EXPECT_TRUE(TStreamUtils::GetStreamBytes(empty).empty());
  EXPECT_EQ(empty.Position(), 5);  // left alone
}

TEST(StreamUtils, StrWritesUtf8AtThePositionWithoutRewinding) {
  TMemoryStream s;
  const String text = u"Grüße \u20ac\r\nline";
  TStreamUtils::LoadStreamFromStr(s, text);
  EXPECT_EQ(Content(s), ToUtf8(text));
  EXPECT_EQ(TStreamUtils::SaveStreamToStr(s), u"");  // at the end: nothing left
  s.SetPosition(0);
  EXPECT_EQ(TStreamUtils::SaveStreamToStr(s), text);
  // Writing inside existing data overwrites from the position and keeps the rest.
  auto t_stream = StreamOf("0123456789");
  TMemoryStream& t = *t_stream;
  t.SetPosition(2);
  TStreamUtils::LoadStreamFromStr(t, u"ab");
  EXPECT_EQ(Content(t), "01ab456789");
  EXPECT_EQ(TStreamUtils::SaveStreamToStr(t), u"456789");
  // Malformed UTF-8 is an error, not silently replaced.
  auto bad_stream = StreamOf("\xff\xfe\x41");
  TMemoryStream& bad = *bad_stream;
  bad.SetPosition(0);
  EXPECT_THROW(TStreamUtils::SaveStreamToStr(bad), EConvertError);
}

TEST(StreamUtils, StreamFromListIsLeftAtItsEnd) {
  TStringList list;
  list.Add(u"one");
  list.Add(u"два");
  auto s = TStreamUtils::CreateStreamFromList(&list);
  EXPECT_EQ(Content(*s), "one\r\n" + ToUtf8(u"два") + "\r\n");
  EXPECT_EQ(s->Position(), s->Size());
  EXPECT_EQ(TStreamUtils::CreateStreamFromList(nullptr)->Size(), 0);
}

TEST(StreamUtils, ListFromStreamReadsFromThePositionAndIgnoresANullStream) {
  auto stream = StreamOf("skip|a\r\nb\nc");
  TMemoryStream& s = *stream;
  s.SetPosition(5);
  TStringList list;
  list.Add(u"old");
  EXPECT_EQ(TStreamUtils::CreateListFromStream(&s, list), &list);
  EXPECT_EQ(list.ToStringArray(), (TStringDynArray{u"a", u"b", u"c"}));
  EXPECT_EQ(TStreamUtils::CreateListFromStream(nullptr, list), nullptr);
  EXPECT_EQ(list.Count(), 3);  // untouched
  s.SetPosition(0);
  std::unique_ptr<TStringList> made = TStreamUtils::CreateListFromStream(&s);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(made->Count(), 3);
  EXPECT_EQ(TStreamUtils::CreateListFromStream(nullptr), nullptr);
}

const char16_t* const kForm[] = {
    u"object Comp1: TTestComponent",
    u"  Count = 5",
    u"  Caption = 'Hello'",
    u"  object Child: TTestOther",
    u"    Level = 4",
    u"  end",
    u"end",
};

void FillForm(TStringList& list) {
  for (const char16_t* line : kForm) list.Add(line);
}

TEST(StreamUtils, BinaryListRoundTripRewindsTheTarget) {
  test::RegisterTestClasses();
  TStringList lines;
  FillForm(lines);
  TMemoryStream binary;
  const int32_t count = TStreamUtils::SaveListToBinaryStream(lines, binary);
  EXPECT_EQ(count, binary.Size());
  EXPECT_EQ(binary.Position(), 0);
  EXPECT_EQ(Content(binary).substr(0, 4), "TPF0");
  TStringList back;
  back.Add(u"replaced");
  binary.SetPosition(3);  // read from 0 whatever the position
  EXPECT_EQ(TStreamUtils::LoadListFromBinaryStream(binary, back), 7);
  EXPECT_EQ(back.Text(), lines.Text());
}

TEST(StreamUtils, BinaryWritingStartsAtTheTargetsPosition) {
  TStringList lines;
  FillForm(lines);
  auto target_stream = StreamOf("HEAD");
  TMemoryStream& target = *target_stream;
  const int32_t count = TStreamUtils::SaveListToBinaryStream(lines, target);
  EXPECT_EQ(count, target.Size());  // the position after the written bytes
  EXPECT_EQ(Content(target).substr(0, 8), "HEADTPF0");
  EXPECT_EQ(target.Position(), 0);
}

TEST(StreamUtils, ConversionFailuresPropagateWithTheLineNumber) {
  TStringList lines;
  FillForm(lines);
  lines.SetStrings(2, u"  Caption = 'unterminated");
  TMemoryStream target;
  try {
    TStreamUtils::SaveListToBinaryStream(lines, target);
    FAIL();
  } catch (const EParserError& e) {
    EXPECT_NE(e.Message().find(u"line 3"), String::npos) << ToUtf8(e.Message());
  }
  test::TTestComponent c(nullptr);
  EXPECT_THROW(TStreamUtils::ReadComponentFromList(c, lines), EParserError);
  EXPECT_EQ(c.count, 0);  // nothing was read
}

TEST(StreamUtils, ASourceThatIsNotAComponentStreamRaisesAStreamError) {
  TStringList list;
  for (const char* bytes : {"", "TPF", "object X: TY", "TPF0\x05"}) {
    auto s = StreamOf(bytes);
    EXPECT_THROW(TStreamUtils::LoadListFromBinaryStream(*s, list), EStreamError) << bytes;
  }
}

TEST(StreamUtils, ComponentToListAndBack) {
  test::RegisterTestClasses();
  TStringList lines;
  FillForm(lines);
  test::TTestComponent c(nullptr);
  TMemoryStream binary;
  const int32_t expected_bytes = TStreamUtils::SaveListToBinaryStream(lines, binary);
  EXPECT_EQ(TStreamUtils::ReadComponentFromList(c, lines), expected_bytes);
  EXPECT_EQ(c.Name(), u"Comp1");
  EXPECT_EQ(c.count, 5);
  EXPECT_EQ(c.caption, u"Hello");
  ASSERT_EQ(c.ComponentCount(), 1);
  EXPECT_EQ(dynamic_cast<test::TTestOther*>(c.Components(0))->level, 4);

  TStringList written;
  written.Add(u"replaced");
  EXPECT_EQ(TStreamUtils::WriteComponentToList(c, written), 7);
  EXPECT_EQ(written.Text(), lines.Text());
}

TEST(StreamUtils, AnEmptyListLeavesTheComponentAlone) {
  test::TTestComponent c(nullptr);
  c.SetName(u"Keep");
  c.count = 3;
  TStringList empty;
  EXPECT_EQ(TStreamUtils::ReadComponentFromList(c, empty), 0);
  EXPECT_EQ(c.Name(), u"Keep");
  EXPECT_EQ(c.count, 3);
}

TEST(StreamUtils, RandomComponentTreesSurviveTheTextRoundTrip) {
  test::RegisterTestClasses();
  for (uint32_t seed = 1000; seed < 1100; ++seed) {
    SCOPED_TRACE(seed);
    std::unique_ptr<test::TTestOther> tree = test::RandomTree(seed).Make();
    TStringList lines;
    TStreamUtils::WriteComponentToList(*tree, lines);
    test::TTestOther copy(nullptr);
    ASSERT_GT(TStreamUtils::ReadComponentFromList(copy, lines), 0);
    test::ExpectSameTree(*tree, copy);
    // And the text it gives back is the same text.
    TStringList again;
    TStreamUtils::WriteComponentToList(copy, again);
    EXPECT_EQ(again.Text(), lines.Text());
    if (HasFailure()) break;
  }
}

}  // namespace
}  // namespace vex
