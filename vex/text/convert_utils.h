// TConvertUtils: conversions between text and numbers, Booleans, bytes, hexadecimal and binary
// digits, pointers, rectangles and dates, and between any Unicode text and the quoted code form,
// a printable-ASCII spelling that can be pasted into source code as a string literal.
//
//   TConvertUtils::TryStrToFloat(u"1,5", &d)        // true, d == 1.5
//   TConvertUtils::Str2Uni(u"it's\r\n")             // u"'it'#39's'#13#10"
//   TConvertUtils::Uni2Str(u"'it'#39's'#13#10")     // u"it's\r\n"
//   TConvertUtils::DeleteFloatZeros(u"1,500")       // u"1,5"
//
// Quoted code form: quoted runs of characters 32..127 other than the apostrophe, and "#" with
// the decimal code of one UTF-16 unit for everything else (the apostrophe is always #39); the
// empty text is "''". A long text is written as several lines of at most 64 source characters,
// every line but the last ending with " +".
//
// Hexadecimal and binary digit strings are 8-bit texts (std::string).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "vex/core/base_types.h"
#include "vex/platform/object.h"
#include "vex/platform/search_buf.h"
#include "vex/platform/types.h"

namespace vex {

class TStrings;

/// A rectangle by its edges; width and height are Right - Left and Bottom - Top.
struct TRect {
  int32_t Left = 0;
  int32_t Top = 0;
  int32_t Right = 0;
  int32_t Bottom = 0;
};

/// The fixed destination of TConvertUtils::HexStrToDest.
using THexDestBuffer = std::array<uint8_t, 32768>;

/// Byte encodings of GetEncodingBytes.
enum TBytesEncoding : uint8_t {
  beASCII,    ///< 7-bit; other characters become "?"
  beANSI,     ///< Windows-1252; unmapped characters become "?"
  beUTF8,     ///< UTF-8; lone surrogates become U+FFFD
  beUnicode,  ///< UTF-16 little-endian code units
};

class TConvertUtils {
 public:
  // --- numbers and Booleans -----------------------------------------------------------------

  /// The first comma of S becomes a point (only the first), then S is converted strictly
  /// (optional sign, point as decimal separator, optional exponent). On failure raises
  /// EConvertError "Conversion to float error in: <S>" when RaiseError, else returns false.
  static bool TryStrToFloat(const String& S, double* Value = nullptr, bool RaiseError = false);
  /// TryStrToFloat without raising; on failure Value takes Default.
  static bool TryStrToFloatEx(const String& S, double& Value, double Default);
  /// Strict whole-text 32-bit conversion (StrToInt's syntax). Failure message
  /// "Conversion to integer error in: <S>".
  static bool TryStrToInt(const String& S, int32_t* Value = nullptr, bool RaiseError = false);
  /// The same for 64 bits; failure message "Conversion to Int64 error in: <S>".
  static bool TryStrToInt64(const String& S, int64_t* Value = nullptr, bool RaiseError = false);
  /// 0 or 1 when S equals (case-sensitively) the platform's Boolean word "False"/"True", or with
  /// UseDigits the digit "0"/"1"; -1 otherwise.
  static int32_t IndexInBoolStrs(const String& S, bool UseDigits);
  /// Mode < 0: words, then digits; 0: words only; > 0: digits only. Failure message
  /// "Conversion to Boolean error in: <S>".
  static bool TryStrToBool(const String& S, bool* Value = nullptr, bool RaiseError = false,
                           int8_t Mode = -1);

  // --- number text --------------------------------------------------------------------------

  /// Removes the trailing zeros of the fraction after the first comma, and the comma when only
  /// zeros follow it; an exponent stays. Text without a comma is returned unchanged, even when
  /// it has a point: "1,500" -> "1,5", "3,0E5" -> "3E5", "1.500" -> "1.500".
  static String DeleteFloatZeros(const String& S);
  /// Empty Fmt: up to 15 significant digits ("%g"); Fmt with "%": Format(Fmt, {Value});
  /// otherwise a FormatFloat picture. The result then goes through DeleteFloatZeros.
  static String SmartFormatFloat(double Value, const String& Fmt = String());
  /// Min for values below Min (and for NaN), else Max for values above Max, else Value.
  static double EnsureFloatRange(double Value, double Min, double Max);

  // --- rectangles, visibility, pointers -----------------------------------------------------

  /// "L: %d; T: %d; W: %d; H: %d" when AsSize, else "L: %d; T: %d; R: %d; B: %d".
  static String BoundsToStr(const TRect& R, bool AsSize);
  /// "V: 0"/"V: 1" when AsNumber, else "V: False"/"V: True".
  static String VisibleToStr(bool Visible, bool AsNumber);
  /// "$" and the address in upper-case hexadecimal, as many digits as a pointer has nibbles.
  static String PtrToStr(const void* P);
  /// PtrToStr without the "$".
  static String PtrToHex(const void* P);
  /// The text as an integer (decimal, or "$"/"0x" hexadecimal of either width) with default 0,
  /// taken as an address.
  static void* StrToPtr(const String& S);

  // --- hexadecimal and binary digits --------------------------------------------------------

  /// Deletes every character of IgnoreChars from S, then fills Bytes with half the remaining
  /// length (rounded down) of bytes, read from pairs of hexadecimal digits until the first pair
  /// that is not hexadecimal; the bytes after it stay 0. *BadCount receives the number of
  /// bytes not converted.
  static void HexStrToBytes(const std::string& S, const std::string& IgnoreChars, int32_t* BadCount,
                            TBytes& Bytes);
  /// As HexStrToBytes after dropping one leading "$", into Dest: at most
  /// min(MaxCount, half the length, 32768) bytes. Returns the number converted.
  static int32_t HexStrToDest(const std::string& S, const std::string& IgnoreChars,
                              THexDestBuffer& Dest, int32_t MaxCount);
  /// Two upper-case hexadecimal digits per byte, with Separator between the pairs when given.
  static std::string BytesToHexStr(const uint8_t* Data, int32_t Count,
                                   const std::string& Separator = std::string());
  /// The first Count bytes of Bytes (all of them when Count is larger or negative).
  static std::string BytesToHexStr(const TBytes& Bytes, int32_t Count = -1,
                                   const std::string& Separator = std::string());
  /// "0"/"1" per bit for bits 0 .. BitCount - 1, bit i being bit i mod 8 of byte i div 8.
  static std::string DataToBinStr(const void* Data, int32_t BitCount);
  /// DataToBinStr(Bytes, Bytes.size()): one digit per byte of the array, so only the first
  /// size() bits are shown.
  static std::string BytesToBinStr(const TBytes& Bytes);
  /// ceil(length / 8) bytes; bit i is set for every character i that is not "0".
  static TBytes BinStrToBytes(const std::string& S);
  /// Splits S at Delim (TParseUtils::ExtractTokens); a token starting with the marker "n" or
  /// "t" is read, without its marker, as binary digits, any other as hexadecimal digits; the
  /// bytes are joined in token order.
  ///   MixedStrToBytes(u"n1;0A", u';')   // {0x01, 0x0A}
  static TBytes MixedStrToBytes(const String& S, Char Delim);

  // --- byte encodings -----------------------------------------------------------------------

  /// Bytes 0..127 as characters, any other byte as "?".
  static String ASCII_String(const TBytes& Bytes);
  /// Bytes as Windows-1252 text; the five undefined bytes map to the same C1 control codes.
  static String ANSI_String(const TBytes& Bytes);
  /// Characters 0..127 as bytes, any other as "?".
  static TBytes ASCII_Bytes(const String& S);
  /// Characters as Windows-1252 bytes, unmapped characters as "?".
  static TBytes ANSI_Bytes(const String& S);
  /// Bytes read as UTF-16 little-endian units; an odd last byte is ignored.
  static String Wide_Chars(const TBytes& Bytes);
  /// S encoded as Encoding.
  static TBytes GetEncodingBytes(const String& S, TBytesEncoding Encoding);
  /// The ToString of every object, in order; a null object gives an empty string.
  static TStringDynArray ObjArrayToStringArray(const std::vector<TObject*>& Objects);
  /// The same objects, in order, as components (every control is a component).
  static TComponentArray CtlArrayToCompArray(const TControlArray& Controls);

  // --- quoted code form ---------------------------------------------------------------------

  /// Appends S in quoted code form to Lines, each line led by Prefix. A text longer than 64
  /// characters starts with a line holding the prefix alone; each line carries at most 64
  /// characters of S, and every line but the last ends with " +".
  static void WriteStr2Uni(const String& S, TStrings& Lines, const String& Prefix = String());
  /// The quoted code form of S as one string: WriteStr2Uni's lines without prefix, joined
  /// directly, so a long text keeps its " +" joints ("'...' +'...'").
  static String Str2Uni(const String& S);
  /// Decodes the quoted code form. Accepted: what Str2Uni writes, and WriteStr2Uni's lines
  /// joined by line breaks, with blank prefixes and blanks around the " +" joints. With AsLine
  /// S may also be one single line of such text: it may end with the joint "+", and a line of
  /// blanks only (the prefix line of a long text) gives the empty string. Anything else raises
  /// EConvertError "ConvertAsUnicode: Invalid String".
  static String Uni2Str(const String& S, bool AsLine = false);
  /// Str2Uni(S); a result with "#" gets PrefixChar in front (when not 0); a result of quoted
  /// runs only loses one pair of enclosing apostrophes when Dequote.
  static String Str2UniDeqt(const String& S, bool Dequote, Char PrefixChar = 0);
  /// WriteStr2Uni of every line of Source into Dest (which is not cleared first).
  static void SaveToUni(const TStrings& Source, TStrings& Dest, const String& Prefix = String());
  /// Clears Dest and adds Uni2Str(line, true) for every line of Source.
  static void LoadFromUni(const TStrings& Source, TStrings& Dest);
  /// Uni2Str(S) when Decode is set, S contains "#" and S begins with an apostrophe (the form's
  /// opening character); otherwise S unchanged.
  static String Uni2StrPref(const String& S, bool Decode);

  // --- dates and find options ---------------------------------------------------------------

  /// Default for a date-time of exactly 0, else "dd/mm/yyyy,hh:nn:ss" (literal "/" and ":"),
  /// followed by ".zzz" when WithMs.
  static String DateTimeStrDef(double DateTime, bool WithMs, const String& Default);
  /// frDown -> soDown, frMatchCase -> soMatchCase, frWholeWord -> soWholeWord; the rest dropped.
  static TStringSearchOptions ConvertFindOptions(TFindOptions Options);
};

}  // namespace vex
