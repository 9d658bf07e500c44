// Small helpers shared by the test programs of every layer.
//   EXPECT_EQ(MessageOf<EConvertError>([] { StrToInt(u"x"); }), u"'x' is not a ...");
#pragma once

#include <gtest/gtest.h>

#include "vex/platform/exceptions.h"

namespace vex::test {

/// The message of the E that `call` throws; a test failure (and an empty text) when it throws
/// nothing. Any other exception escapes.
template <class E, class F>
String MessageOf(F&& call) {
  try {
    call();
  } catch (const E& e) {
    return e.Message();
  }
  ADD_FAILURE() << "no exception";
  return String();
}

}  // namespace vex::test
