// The binary component stream: the "TPF0" signature, object headers, property names and typed
// values, written and read piece by piece. Components are streamed through these two classes;
// the text form and its converters build on them (object_text.h).
//
//   TMemoryStream m;
//   TBinaryObjectWriter w(m);
//   w.WriteSignature();
//   w.WriteObjectHeader("TForm", "Form1");
//   w.WritePropertyName("Left");
//   w.WriteInteger(8);          // vaInt8 8
//   w.WriteListEnd();           // end of properties
//   w.WriteListEnd();           // end of children
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "vex/platform/streams.h"
#include "vex/platform/types.h"

namespace vex {

/// The code byte in front of every value. All multi-byte payloads are little-endian.
enum TValueType : uint8_t {
  vaNull = 0,         ///< no payload
  vaList = 1,         ///< values up to a 0 byte
  vaInt8 = 2,         ///< 1 byte, signed
  vaInt16 = 3,        ///< 2 bytes, signed
  vaInt32 = 4,        ///< 4 bytes, signed
  vaExtended = 5,     ///< 10 bytes, 80-bit float
  vaString = 6,       ///< 1-byte length, 8-bit characters
  vaIdent = 7,        ///< 1-byte length, UTF-8 identifier
  vaFalse = 8,        ///< no payload
  vaTrue = 9,         ///< no payload
  vaBinary = 10,      ///< 32-bit length, bytes
  vaSet = 11,         ///< 1-byte-length names up to an empty name
  vaLString = 12,     ///< 32-bit length, 8-bit characters
  vaNil = 13,         ///< no payload
  vaCollection = 14,  ///< items (optional order integer, then a list) up to a 0 byte
  vaSingle = 15,      ///< 4 bytes, 32-bit float
  vaCurrency = 16,    ///< 8 bytes, Int64 holding value x 10000
  vaDate = 17,        ///< 8 bytes, 64-bit float (days since 1899-12-30)
  vaWString = 18,     ///< 32-bit count of UTF-16 units, the units
  vaInt64 = 19,       ///< 8 bytes, signed
  vaUTF8String = 20,  ///< 32-bit length, UTF-8 bytes
  vaDouble = 21,      ///< 8 bytes, 64-bit float
};

/// The highest value code a stream may hold.
inline constexpr uint8_t kMaxValueType = vaDouble;

/// Flags of an object header (stored as the low bits of a prefix byte $F0 | flags).
inline constexpr uint8_t ffInherited = 1;  ///< `inherited` in the text form
inline constexpr uint8_t ffChildPos = 2;   ///< a child position (` [n]`) follows the prefix
inline constexpr uint8_t ffInline = 4;     ///< `inline` in the text form

/// Lists, collections and objects nested deeper than this raise EReadError (or EParserError
/// in text) instead of exhausting the stack.
inline constexpr int kMaxObjectStreamDepth = 500;

/// The 10 bytes of an 80-bit extended float as stored (64-bit mantissa with explicit integer
/// bit, then 15-bit exponent and sign), little-endian.
using TExtendedBytes = std::array<uint8_t, 10>;

/// Converts between long double and the stored 80-bit form. Where long double is the x87
/// format (x86-64 GCC/Clang) both directions are exact; elsewhere they round through double.
TExtendedBytes ExtendedToBytes(long double value);
long double BytesToExtended(const TExtendedBytes& bytes);

/// One object header: flags, the child position when ffChildPos is set, and the names as
/// UTF-8. An unnamed object has an empty object name.
struct TObjectHeader {
  uint8_t flags = 0;
  int32_t position = 0;
  std::string class_name;
  std::string object_name;
};

/// Writes the pieces of a component stream at the position of a stream the caller owns. Each
/// call writes one complete piece; nothing is buffered. Names longer than 255 UTF-8 bytes
/// raise EWriteError.
class TBinaryObjectWriter {
 public:
  explicit TBinaryObjectWriter(TStream& stream) : stream_(stream) {}

  TStream& Stream() { return stream_; }

  /// The four bytes "TPF0".
  void WriteSignature();
  /// The optional prefix byte (when `flags` is not 0 or the class name is so long that its
  /// length byte would look like a prefix), the position when `flags` holds
  /// ffChildPos (as an integer value), then class name and object name.
  void WriteObjectHeader(std::string_view class_name, std::string_view object_name,
                         uint8_t flags = 0, int32_t position = 0);
  void WriteObjectHeader(const TObjectHeader& header);
  /// A property name (one-byte length, UTF-8); a typed value must follow.
  void WritePropertyName(std::string_view name);
  /// The 0 byte that ends properties, children, lists, collections, collection items and sets.
  void WriteListEnd();

  /// The smallest of vaInt8, vaInt16, vaInt32, vaInt64 that holds the value.
  void WriteInteger(int64_t value);
  /// vaExtended, from a value or from its exact 10 bytes.
  void WriteExtended(long double value);
  void WriteExtended(const TExtendedBytes& bytes);
  void WriteSingle(float value);
  /// vaCurrency; `units` is the value times 10000.
  void WriteCurrency(int64_t units);
  void WriteDate(double value);
  void WriteDouble(double value);

  /// A string by its content: vaWString when any unit is above U+007F, otherwise vaString up
  /// to 255 characters and vaLString above.
  void WriteString(std::u16string_view value);
  /// vaUTF8String with the bytes as given.
  void WriteUTF8String(std::string_view utf8);
  /// vaIdent with the name as given (the text converter maps True, False, nil and Null to
  /// their own codes before calling this).
  void WriteIdent(std::string_view name);
  void WriteBoolean(bool value);
  void WriteNil();
  void WriteNull();

  /// vaSet, the element names, the empty name that ends them.
  void WriteSet(const std::vector<std::string>& names);
  /// vaBinary with a 32-bit length.
  void WriteBinary(const void* data, size_t count);
  void WriteBinary(const TBytes& bytes) { WriteBinary(bytes.data(), bytes.size()); }

  /// vaList: values follow, ended by WriteListEnd.
  void WriteListBegin();
  /// vaCollection: items follow, ended by WriteListEnd.
  void WriteCollectionBegin();
  /// Starts a collection item (properties follow, ended by WriteListEnd), optionally preceded
  /// by its order value.
  void WriteCollectionItemBegin();
  void WriteCollectionItemBegin(int64_t order);

  /// Low-level pieces for callers that stream a value themselves.
  void WriteValueType(TValueType type);
  /// A one-byte-length UTF-8 name (set element, identifier payload).
  void WriteShortString(std::string_view name);

 private:
  void Put(const void* data, size_t count);

  TStream& stream_;
};

/// Reads the pieces of a component stream from the position of a stream the caller owns. Every
/// read is bounds-checked: a stream that ends early raises EReadError "Stream read error", and
/// a length that runs past the end of the stream is refused before anything is allocated. A
/// value of the wrong kind raises EReadError "Invalid property value"; an unknown value code
/// raises EReadError "Invalid stream format".
class TBinaryObjectReader {
 public:
  explicit TBinaryObjectReader(TStream& stream) : stream_(stream) {}

  TStream& Stream() { return stream_; }

  /// Consumes "TPF0"; anything else raises EReadError "Invalid stream format".
  void ReadSignature();
  TObjectHeader ReadObjectHeader();
  std::string ReadPropertyName();

  /// True when the next byte is the 0 that ends a list of any kind; consumes nothing.
  bool EndOfList();
  /// Consumes that 0 byte; any other byte raises EReadError.
  void ReadListEnd();

  /// The code of the next value without consuming it; an unknown code raises EReadError.
  TValueType NextValue();
  /// Consumes and returns the code of the next value.
  TValueType ReadValueType();

  /// Any integer code.
  int64_t ReadInteger();
  /// Any float code (Extended, Double, Single, Date, Currency) or any integer code.
  long double ReadFloat();
  /// vaExtended only, as its exact 10 bytes.
  TExtendedBytes ReadExtendedBytes();
  float ReadSingle();
  /// vaCurrency only: the value times 10000.
  int64_t ReadCurrency();
  double ReadDate();
  double ReadDouble();

  /// Any string code. vaString and vaLString bytes are read as Windows-1252; vaUTF8String as
  /// UTF-8 (malformed bytes become U+FFFD); vaWString unit by unit as stored.
  String ReadString();
  /// vaIdent, or vaFalse, vaTrue, vaNil, vaNull read as "False", "True", "nil", "Null".
  std::string ReadIdent();
  bool ReadBoolean();
  std::vector<std::string> ReadSet();
  TBytes ReadBinary();

  /// Consumes vaList (items follow, then the 0 that EndOfList detects).
  void ReadListBegin();
  /// Consumes vaCollection.
  void ReadCollectionBegin();
  /// Starts a collection item: returns its order value when one is present and consumes the
  /// vaList that opens its properties.
  std::optional<int64_t> ReadCollectionItemBegin();

  /// Skips one whole value, nested lists and collections included (up to
  /// kMaxObjectStreamDepth deep).
  void SkipValue();

  /// Low-level pieces for callers that read a value's payload themselves after ReadValueType.
  std::string ReadShortString();
  int64_t ReadIntegerPayload(TValueType type);
  /// The byte count of a 32-bit length, checked against what is left in the stream.
  size_t ReadLength(size_t unit_size = 1);
  void ReadBytes(void* buffer, size_t count);
  uint8_t ReadByte();

 private:
  void Expect(TValueType found, TValueType wanted);
  void SkipValue(int depth);
  void SkipBytes(uint64_t count);

  TStream& stream_;
};

}  // namespace vex
