#include "vex/platform/exceptions.h"

#include <string>
#include <utility>

#include "vex/platform/unicode.h"

namespace vex {

Exception::Exception(String message)
    : message_(std::move(message)), utf8_(ToUtf8(message_, TInvalidText::Replace)) {}

Exception::Exception(const char* utf8_message)
    : message_(FromUtf8(utf8_message, TInvalidText::Replace)), utf8_(ToUtf8(message_)) {}

String ListIndexMessage(int32_t index) {
  const std::string digits = std::to_string(index);
  return u"List index out of bounds (" + String(digits.begin(), digits.end()) + u")";
}

void RaiseListIndexError(int32_t index) { throw EListError(ListIndexMessage(index)); }

}  // namespace vex
