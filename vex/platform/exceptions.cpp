#include "vex/platform/exceptions.h"

#include <utility>

#include "vex/platform/unicode.h"

namespace vex {

Exception::Exception(String message)
    : message_(std::move(message)), utf8_(ToUtf8(message_, TInvalidText::Replace)) {}

Exception::Exception(const char* utf8_message)
    : message_(FromUtf8(utf8_message, TInvalidText::Replace)), utf8_(ToUtf8(message_)) {}

}  // namespace vex
