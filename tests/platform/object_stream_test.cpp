#include "vex/platform/object_stream.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "vex/platform/exceptions.h"

namespace vex {
namespace {

TBytes Written(const std::function<void(TBinaryObjectWriter&)>& write) {
  TBytesStream stream;
  TBinaryObjectWriter writer(stream);
  write(writer);
  return stream.Bytes();
}

TEST(ObjectStreamWriter, PicksTheSmallestIntegerCode) {
  struct Case {
    int64_t value;
    TBytes bytes;
  };
  const Case cases[] = {
      {0, {vaInt8, 0}},
      {-128, {vaInt8, 0x80}},
      {127, {vaInt8, 0x7F}},
      {128, {vaInt16, 0x80, 0}},
      {-129, {vaInt16, 0x7F, 0xFF}},
      {32767, {vaInt16, 0xFF, 0x7F}},
      {32768, {vaInt32, 0, 0x80, 0, 0}},
      {-32769, {vaInt32, 0xFF, 0x7F, 0xFF, 0xFF}},
      {INT32_MAX, {vaInt32, 0xFF, 0xFF, 0xFF, 0x7F}},
      {int64_t{INT32_MAX} + 1, {vaInt64, 0, 0, 0, 0x80, 0, 0, 0, 0}},
      {INT64_MIN, {vaInt64, 0, 0, 0, 0, 0, 0, 0, 0x80}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Written([&](auto& w) { w.WriteInteger(c.value); }), c.bytes) << c.value;
    TBytesStream in(c.bytes);
    EXPECT_EQ(TBinaryObjectReader(in).ReadInteger(), c.value);
  }
}

TEST(ObjectStreamWriter, PicksTheStringCodeByContent) {
  EXPECT_EQ(Written([](auto& w) { w.WriteString(u"ab"); }), (TBytes{vaString, 2, 'a', 'b'}));
  EXPECT_EQ(Written([](auto& w) { w.WriteString(u""); }), (TBytes{vaString, 0}));
  EXPECT_EQ(Written([](auto& w) { w.WriteString(u"\u00E9"); }),
            (TBytes{vaWString, 1, 0, 0, 0, 0xE9, 0}));
  TBytes at255 = Written([](auto& w) { w.WriteString(String(255, u'x')); });
  EXPECT_EQ(at255[0], vaString);
  EXPECT_EQ(at255.size(), 257u);
  TBytes at256 = Written([](auto& w) { w.WriteString(String(256, u'x')); });
  EXPECT_EQ((TBytes(at256.begin(), at256.begin() + 5)), (TBytes{vaLString, 0, 1, 0, 0}));
  // A control character is ASCII: it stays an 8-bit string.
  EXPECT_EQ(Written([](auto& w) { w.WriteString(u"\x7F"); })[0], vaString);
}

TEST(ObjectStreamWriter, WritesHeaderPrefixOnlyWithFlags) {
  EXPECT_EQ(Written([](auto& w) { w.WriteObjectHeader("TA", "b"); }),
            (TBytes{2, 'T', 'A', 1, 'b'}));
  EXPECT_EQ(Written([](auto& w) { w.WriteObjectHeader("TA", "", ffInherited | ffChildPos, 3); }),
            (TBytes{0xF3, vaInt8, 3, 2, 'T', 'A', 0}));
  EXPECT_EQ(Written([](auto& w) { w.WriteObjectHeader("TA", "", ffInline, 3); }),
            (TBytes{0xF4, 2, 'T', 'A', 0}));
  EXPECT_THROW(Written([](auto& w) { w.WriteObjectHeader(std::string(256, 'T'), ""); }),
               EWriteError);
}

TEST(ObjectStreamWriter, StoresExtendedAsEightyBits) {
  TBytes bytes = Written([](auto& w) { w.WriteExtended(1.5L); });
  EXPECT_EQ(bytes, (TBytes{vaExtended, 0, 0, 0, 0, 0, 0, 0, 0xC0, 0xFF, 0x3F}));
  TExtendedBytes minus_two = ExtendedToBytes(-2.0L);
  EXPECT_EQ(minus_two, (TExtendedBytes{0, 0, 0, 0, 0, 0, 0, 0x80, 0x00, 0xC0}));
  EXPECT_EQ(BytesToExtended(minus_two), -2.0L);
}

// Every kind of value written one after the other, as a sample stream for the reader tests.
TBytes AllValues() {
  return Written([](TBinaryObjectWriter& w) {
    w.WriteSignature();
    w.WriteObjectHeader("TForm1", "Form1", ffInherited | ffChildPos, -5);
    w.WritePropertyName("P");
    w.WriteListBegin();
    w.WriteInteger(300);
    w.WriteExtended(0.1L);
    w.WriteSingle(2.5f);
    w.WriteCurrency(-15000);
    w.WriteDate(40000.5);
    w.WriteDouble(-3.25);
    w.WriteString(u"abc");
    w.WriteString(String(300, u'y'));
    w.WriteString(u"\u0416");
    w.WriteUTF8String("\xD0\x96");
    w.WriteIdent("alClient");
    w.WriteBoolean(true);
    w.WriteNil();
    w.WriteSet({"a", "bc"});
    w.WriteBinary(TBytes{1, 2, 3});
    w.WriteCollectionBegin();
    w.WriteCollectionItemBegin(7);
    w.WritePropertyName("Q");
    w.WriteInteger(INT64_MAX);
    w.WriteListEnd();
    w.WriteCollectionItemBegin();
    w.WriteListEnd();
    w.WriteListEnd();
    w.WriteListEnd();
    w.WritePropertyName("N");  // Null ends a list, so it only stands as a property value
    w.WriteNull();
    w.WriteListEnd();
    w.WriteListEnd();
  });
}

TEST(ObjectStreamReader, ReadsBackEveryValueKind) {
  TBytesStream in(AllValues());
  TBinaryObjectReader r(in);
  r.ReadSignature();
  TObjectHeader h = r.ReadObjectHeader();
  EXPECT_EQ(h.flags, ffInherited | ffChildPos);
  EXPECT_EQ(h.position, -5);
  EXPECT_EQ(h.class_name, "TForm1");
  EXPECT_EQ(h.object_name, "Form1");
  EXPECT_EQ(r.ReadPropertyName(), "P");
  r.ReadListBegin();
  EXPECT_EQ(r.ReadInteger(), 300);
  EXPECT_EQ(r.NextValue(), vaExtended);
  EXPECT_EQ(r.ReadFloat(), 0.1L);
  EXPECT_EQ(r.ReadFloat(), 2.5L);
  EXPECT_EQ(r.ReadFloat(), -1.5L);
  EXPECT_EQ(r.ReadDate(), 40000.5);
  EXPECT_EQ(r.ReadDouble(), -3.25);
  EXPECT_EQ(r.ReadString(), u"abc");
  EXPECT_EQ(r.ReadString(), String(300, u'y'));
  EXPECT_EQ(r.ReadString(), u"\u0416");
  EXPECT_EQ(r.ReadString(), u"\u0416");
  EXPECT_EQ(r.ReadIdent(), "alClient");
  EXPECT_EQ(r.ReadIdent(), "True");
  EXPECT_EQ(r.ReadIdent(), "nil");
  EXPECT_EQ(r.ReadSet(), (std::vector<std::string>{"a", "bc"}));
  EXPECT_EQ(r.ReadBinary(), (TBytes{1, 2, 3}));
  r.ReadCollectionBegin();
  EXPECT_EQ(r.ReadCollectionItemBegin(), std::optional<int64_t>(7));
  EXPECT_EQ(r.ReadPropertyName(), "Q");
  EXPECT_EQ(r.ReadInteger(), INT64_MAX);
  r.ReadListEnd();
  EXPECT_EQ(r.ReadCollectionItemBegin(), std::nullopt);
  EXPECT_TRUE(r.EndOfList());
  r.ReadListEnd();
  r.ReadListEnd();
  EXPECT_TRUE(r.EndOfList());
  r.ReadListEnd();
  EXPECT_EQ(r.ReadPropertyName(), "N");
  EXPECT_EQ(r.ReadIdent(), "Null");
  r.ReadListEnd();
  r.ReadListEnd();
  EXPECT_EQ(in.Position(), in.Size());
}

TEST(ObjectStreamReader, TypedReadsRefuseOtherFamilies) {
  TBytes text{vaString, 1, 'x'};
  TBytesStream a(text);
  EXPECT_THROW(TBinaryObjectReader(a).ReadInteger(), EReadError);
  TBytesStream b(text);
  EXPECT_THROW(TBinaryObjectReader(b).ReadFloat(), EReadError);
  TBytesStream c(TBytes{vaInt8, 1});
  EXPECT_THROW(TBinaryObjectReader(c).ReadBoolean(), EReadError);
  TBytesStream d(TBytes{22});
  EXPECT_THROW(TBinaryObjectReader(d).NextValue(), EReadError);
  // 8-bit strings read as Windows-1252.
  TBytesStream e(TBytes{vaString, 2, 0x80, 0xE9});
  EXPECT_EQ(TBinaryObjectReader(e).ReadString(), u"\u20AC\u00E9");
}

TEST(ObjectStreamReader, RefusesAnotherSignature) {
  for (TBytes bytes : {TBytes{}, TBytes{'T', 'P', 'F'}, TBytes{'T', 'P', 'F', '1'}}) {
    TBytesStream in(bytes);
    EXPECT_THROW(TBinaryObjectReader(in).ReadSignature(), EReadError);
  }
}

// Skipping the property value of the sample at every truncation raises EReadError; the whole
// stream skips cleanly to its end.
TEST(ObjectStreamReader, SkipsWholeValuesAndStopsAtEveryTruncation) {
  TBytes all = AllValues();
  auto skip_all = [](TBinaryObjectReader& r) {
    r.ReadSignature();
    r.ReadObjectHeader();
    r.ReadPropertyName();
    r.SkipValue();
    r.ReadPropertyName();
    r.SkipValue();
    r.ReadListEnd();
    r.ReadListEnd();
  };
  TBytesStream whole(all);
  TBinaryObjectReader reader(whole);
  skip_all(reader);
  EXPECT_EQ(whole.Position(), whole.Size());
  for (size_t size = 0; size < all.size(); ++size) {
    TBytesStream in(TBytes(all.begin(), all.begin() + static_cast<ptrdiff_t>(size)));
    TBinaryObjectReader r(in);
    EXPECT_THROW(skip_all(r), EReadError) << size;
  }
}

TEST(ObjectStreamReader, RefusesLengthsBeyondTheStream) {
  for (uint8_t code : {vaBinary, vaLString, vaUTF8String, vaWString}) {
    TBytesStream in(TBytes{code, 0xFF, 0xFF, 0xFF, 0xFF, 'a'});
    TBinaryObjectReader r(in);
    if (code == vaBinary) {
      EXPECT_THROW(r.ReadBinary(), EReadError);
    } else {
      EXPECT_THROW(r.ReadString(), EReadError);
    }
  }
}

TEST(ObjectStreamReader, BoundsTheNestingOfSkippedLists) {
  TBytes deep(100000, vaList);
  deep.resize(200000, 0);
  TBytesStream in(deep);
  EXPECT_THROW(TBinaryObjectReader(in).SkipValue(), EReadError);
}

}  // namespace
}  // namespace vex
