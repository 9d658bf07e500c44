// The exception kinds of the platform. Every error the library raises is a vex::Exception
// carrying its message as UTF-16; what() gives the same message in UTF-8.
//
//   try { StrToInt(u"abc"); } catch (const EConvertError& e) { e.Message(); }
//   // -> u"'abc' is not a valid integer value"
#pragma once

#include <exception>
#include <string>

#include "vex/platform/types.h"

namespace vex {

class Exception : public std::exception {
 public:
  explicit Exception(String message);
  explicit Exception(const char* utf8_message);

  const String& Message() const noexcept { return message_; }
  const char* what() const noexcept override { return utf8_.c_str(); }

 private:
  String message_;
  std::string utf8_;
};

#define VEX_DECLARE_EXCEPTION(Name, Base) \
  class Name : public Base {              \
   public:                                \
    using Base::Base;                     \
  }

VEX_DECLARE_EXCEPTION(EConvertError, Exception);
VEX_DECLARE_EXCEPTION(EParserError, Exception);
VEX_DECLARE_EXCEPTION(EStreamError, Exception);
VEX_DECLARE_EXCEPTION(EFilerError, EStreamError);
VEX_DECLARE_EXCEPTION(EReadError, EFilerError);
VEX_DECLARE_EXCEPTION(EWriteError, EFilerError);
VEX_DECLARE_EXCEPTION(EClassNotFound, EFilerError);
VEX_DECLARE_EXCEPTION(EFileStreamError, EStreamError);
VEX_DECLARE_EXCEPTION(EFOpenError, EFileStreamError);
VEX_DECLARE_EXCEPTION(EFCreateError, EFileStreamError);
VEX_DECLARE_EXCEPTION(EListError, Exception);
VEX_DECLARE_EXCEPTION(EStringListError, EListError);
VEX_DECLARE_EXCEPTION(EComponentError, Exception);
VEX_DECLARE_EXCEPTION(EIntError, Exception);
VEX_DECLARE_EXCEPTION(EDivByZero, EIntError);
VEX_DECLARE_EXCEPTION(ERangeError, EIntError);
VEX_DECLARE_EXCEPTION(EIntOverflow, EIntError);
VEX_DECLARE_EXCEPTION(ERegExError, Exception);
VEX_DECLARE_EXCEPTION(EVariantError, Exception);
VEX_DECLARE_EXCEPTION(EInvalidCast, Exception);
VEX_DECLARE_EXCEPTION(EInvalidOperation, Exception);
VEX_DECLARE_EXCEPTION(EArgumentException, Exception);
VEX_DECLARE_EXCEPTION(EDatabaseError, Exception);
VEX_DECLARE_EXCEPTION(EThread, Exception);
/// Silent exception: aborts an operation without an error for the user.
VEX_DECLARE_EXCEPTION(EAbort, Exception);

#undef VEX_DECLARE_EXCEPTION

/// The message of an index outside a list: "List index out of bounds (<index>)".
String ListIndexMessage(int32_t index);

/// Raises EListError with ListIndexMessage(index).
[[noreturn]] void RaiseListIndexError(int32_t index);

}  // namespace vex
