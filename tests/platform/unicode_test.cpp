#include "vex/platform/unicode.h"

#include <gtest/gtest.h>

#include <string>

#include "vex/platform/exceptions.h"

namespace vex {
namespace {

TEST(Utf8, RoundTripsEveryPlane) {
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z";  // a é € 😀 z
  String u = FromUtf8(text);
  EXPECT_EQ(u, String(u"a\u00E9\u20AC\U0001F600z"));
  EXPECT_EQ(u.size(), 6u);  // the emoji is a surrogate pair
  EXPECT_EQ(ToUtf8(u), text);
}

TEST(Utf8, RejectsMalformedInputWithConvertError) {
  const char* bad[] = {
      "\x80",              // lone continuation byte
      "\xC0\xAF",          // overlong "/"
      "\xE0\x80\xAF",      // overlong three-byte form
      "\xED\xA0\x80",      // encoded surrogate
      "\xF4\x90\x80\x80",  // above U+10FFFF
      "\xE2\x82",          // truncated sequence at the end
      "\xF5\x80\x80\x80",  // invalid lead byte
  };
  for (const char* b : bad) {
    EXPECT_THROW(FromUtf8(b), EConvertError) << b;
    EXPECT_FALSE(IsValidUtf8(b));
  }
}

TEST(Utf8, ReplacesMalformedInputWhenAsked) {
  EXPECT_EQ(FromUtf8("a\x80z", TInvalidText::Replace), String(u"a\uFFFDz"));
  // A truncated sequence is one replacement, not one per byte.
  EXPECT_EQ(FromUtf8("a\xE2\x82z", TInvalidText::Replace), String(u"a\uFFFDz"));
}

TEST(Utf16, LoneSurrogateIsInvalid) {
  String lone = u"x";
  lone.push_back(static_cast<char16_t>(0xD800));
  EXPECT_THROW(ToUtf8(lone), EConvertError);
  EXPECT_EQ(ToUtf8(lone, TInvalidText::Replace), "x\xEF\xBF\xBD");
  String reversed;
  reversed.push_back(static_cast<char16_t>(0xDC00));
  reversed.push_back(static_cast<char16_t>(0xD800));
  EXPECT_THROW(ToUtf8(reversed), EConvertError);
}

TEST(Exception, CarriesMessageInBothEncodings) {
  EConvertError e(String(u"'\u00E9' is not a valid integer value"));
  EXPECT_EQ(e.Message(), String(u"'\u00E9' is not a valid integer value"));
  EXPECT_STREQ(e.what(), "'\xC3\xA9' is not a valid integer value");
}

}  // namespace
}  // namespace vex
