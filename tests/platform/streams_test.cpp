#include "vex/platform/streams.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "test_support.h"
#include "vex/platform/exceptions.h"
#include "vex/platform/unicode.h"

namespace vex {
namespace {

std::string Content(const TMemoryStream& s) {
  return std::string(reinterpret_cast<const char*>(s.Memory()), static_cast<size_t>(s.Size()));
}

std::string TempPath(const char* name) { return ::testing::TempDir() + name; }

TEST(MemoryStream, ReadWriteSeekTrackThePosition) {
  TMemoryStream m;
  EXPECT_EQ(m.Write("hello", 5), 5);
  EXPECT_EQ(m.Position(), 5);
  EXPECT_EQ(m.Seek(-2, soFromEnd), 3);
  char buf[8] = {};
  EXPECT_EQ(m.Read(buf, 8), 2);
  EXPECT_EQ(std::string(buf, 2), "lo");
  EXPECT_EQ(m.Read(buf, 8), 0);
  EXPECT_EQ(m.Seek(-4, soFromCurrent), 1);
  m.WriteBuffer("EL", 2);
  EXPECT_EQ(Content(m), "hELlo");
}

TEST(MemoryStream, WritingPastTheEndFillsTheGapWithZeros) {
  TMemoryStream m;
  m.SetPosition(3);
  m.Write("x", 1);
  EXPECT_EQ(Content(m), std::string("\0\0\0x", 4));
}

TEST(MemoryStream, NegativePositionTransfersNothing) {
  TMemoryStream m;
  m.Write("abc", 3);
  m.Seek(-10, soFromCurrent);
  char c = 0;
  EXPECT_EQ(m.Read(&c, 1), 0);
  EXPECT_EQ(m.Write("z", 1), 0);
  EXPECT_EQ(Content(m), "abc");
}

TEST(MemoryStream, SetSizeKeepsContentAndClampsThePosition) {
  TMemoryStream m;
  m.Write("abcdef", 6);
  m.SetSize(3);
  EXPECT_EQ(Content(m), "abc");
  EXPECT_EQ(m.Position(), 3);
  m.SetSize(5);
  EXPECT_EQ(Content(m), std::string("abc\0\0", 5));
  m.Clear();
  EXPECT_EQ(m.Size(), 0);
  EXPECT_EQ(m.Position(), 0);
}

TEST(MemoryStream, BufferCallsRaiseOnShortTransfers) {
  TMemoryStream m;
  m.Write("ab", 2);
  m.SetPosition(1);
  char buf[4];
  EXPECT_EQ(test::MessageOf<EReadError>([&] { m.ReadBuffer(buf, 2); }), u"Stream read error");
  m.SetPosition(-1);
  EXPECT_EQ(test::MessageOf<EWriteError>([&] { m.WriteBuffer("x", 1); }), u"Stream write error");
  m.ReadBuffer(buf, 0);  // nothing wanted, nothing raised
}

TEST(MemoryStream, CopyFromWithZeroCopiesTheWholeSource) {
  TStringStream source(std::string("0123456789"));
  source.SetPosition(7);
  TMemoryStream target;
  target.Write(">", 1);
  EXPECT_EQ(target.CopyFrom(source, 0), 10);
  EXPECT_EQ(Content(target), ">0123456789");
  source.SetPosition(2);
  EXPECT_EQ(target.CopyFrom(source, 3), 3);
  EXPECT_EQ(Content(target), ">0123456789234");
  source.SetPosition(8);
  EXPECT_THROW(target.CopyFrom(source, 5), EReadError);
}

TEST(MemoryStream, LoadAndSaveWholeStreams) {
  TStringStream source(std::string("payload"));
  source.SetPosition(4);
  TMemoryStream m;
  m.LoadFromStream(source);
  EXPECT_EQ(Content(m), "payload");
  EXPECT_EQ(m.Position(), 0);
  m.SetPosition(3);
  TMemoryStream copy;
  copy.Write("[", 1);
  m.SaveToStream(copy);
  EXPECT_EQ(Content(copy), "[payload");
}

TEST(MemoryStream, FileRoundTrip) {
  std::string path = TempPath("memory_stream_test.bin");
  TBytesStream m(TBytes{0, 1, 2, 255});
  m.SaveToFile(path);
  TMemoryStream back;
  back.LoadFromFile(FromUtf8(path));
  EXPECT_EQ(Content(back), std::string("\0\1\2\xFF", 4));
  std::remove(path.c_str());
}

TEST(StringStream, HoldsUtf8AndDecodesIt) {
  TStringStream s(u"Grüße");
  EXPECT_EQ(s.Size(), 7);
  EXPECT_EQ(s.DataString(), u"Grüße");
  s.SetPosition(s.Size());
  s.WriteString(u"!");
  EXPECT_EQ(s.DataString(), u"Grüße!");
  s.SetPosition(0);
  EXPECT_EQ(s.ReadString(4), u"Grü");
  EXPECT_EQ(s.ReadString(100), u"ße!");
  TStringStream bad(std::string("a\xC3"));
  EXPECT_EQ(bad.DataString(), u"a\uFFFD");
  EXPECT_EQ(TBytesStream(TBytes{1, 2}).Bytes(), (TBytes{1, 2}));
}

TEST(FileStream, CreateWriteReopenAndResize) {
  std::string path = TempPath("file_stream_test.bin");
  {
    TFileStream f(path, fmCreate);
    f.WriteBuffer("abcdef", 6);
    EXPECT_EQ(f.Size(), 6);
    EXPECT_EQ(f.Position(), 6);
    f.SetSize(4);
    EXPECT_EQ(f.Position(), 4);
  }
  {
    TFileStream f(FromUtf8(path), fmOpenReadWrite | fmShareExclusive);
    EXPECT_EQ(f.Size(), 4);
    EXPECT_EQ(f.Seek(-1, soFromEnd), 3);
    f.WriteBuffer("XY", 2);
    f.SetPosition(0);
    char buf[8] = {};
    EXPECT_EQ(f.Read(buf, 8), 5);
    EXPECT_EQ(std::string(buf, 5), "abcXY");
  }
  {
    TFileStream f(path, fmOpenRead);
    EXPECT_EQ(f.Write("z", 1), 0);
    EXPECT_THROW(f.WriteBuffer("z", 1), EWriteError);
  }
  std::remove(path.c_str());
}

TEST(FileStream, OpenFailuresNameTheFileAndTheReason) {
  std::string missing = TempPath("no_such_dir/missing.bin");
  EXPECT_EQ(test::MessageOf<EFOpenError>([&] { TFileStream f(missing, fmOpenRead); }),
            u"Cannot open file \"" + FromUtf8(missing) + u"\". No such file or directory");
  EXPECT_EQ(test::MessageOf<EFCreateError>([&] { TFileStream f(missing, fmCreate); }),
            u"Cannot create file \"" + FromUtf8(missing) + u"\". No such file or directory");
  EXPECT_THROW(TFileStream(::testing::TempDir(), fmOpenRead), EFOpenError);
}

}  // namespace
}  // namespace vex
