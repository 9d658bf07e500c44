#include "vex/platform/unicode.h"

#include <string>

#include "vex/platform/exceptions.h"

namespace vex {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

// Length of the valid UTF-8 sequence at p (1..4) and its code point, or 0 when invalid.
int DecodeOne(const unsigned char* p, size_t avail, char32_t& cp) {
  unsigned char b0 = p[0];
  if (b0 < 0x80) {
    cp = b0;
    return 1;
  }
  int len;
  char32_t min;
  if (b0 >= 0xC2 && b0 <= 0xDF) {
    len = 2;
    cp = b0 & 0x1F;
    min = 0x80;
  } else if (b0 >= 0xE0 && b0 <= 0xEF) {
    len = 3;
    cp = b0 & 0x0F;
    min = 0x800;
  } else if (b0 >= 0xF0 && b0 <= 0xF4) {
    len = 4;
    cp = b0 & 0x07;
    min = 0x10000;
  } else {
    return 0;
  }
  if (avail < static_cast<size_t>(len)) return 0;
  for (int i = 1; i < len; ++i) {
    if ((p[i] & 0xC0) != 0x80) return 0;
    cp = (cp << 6) | (p[i] & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return 0;
  return len;
}

// Number of bytes a replacement swallows: the maximal prefix of a valid sequence, at least 1.
size_t InvalidSpan(const unsigned char* p, size_t avail) {
  size_t n = 1;
  while (n < avail && n < 4 && (p[n] & 0xC0) == 0x80) {
    char32_t cp;
    // Stop as soon as the continuation bytes can no longer belong to one sequence.
    if (DecodeOne(p, n + 1, cp) != 0) break;
    ++n;
  }
  return n;
}

[[noreturn]] void RaiseBad(const char* what, size_t offset) {
  throw EConvertError(
      FromUtf8(std::string("Invalid ") + what + " at offset " + std::to_string(offset)));
}

}  // namespace

String FromUtf8(std::string_view utf8, TInvalidText mode) {
  String out;
  out.reserve(utf8.size());
  const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
  const size_t n = utf8.size();
  size_t i = 0;
  while (i < n) {
    // ASCII fast path.
    while (i < n && p[i] < 0x80) out.push_back(static_cast<char16_t>(p[i++]));
    if (i >= n) break;
    char32_t cp;
    int len = DecodeOne(p + i, n - i, cp);
    if (len == 0) {
      if (mode == TInvalidText::Raise) RaiseBad("UTF-8", i);
      out.push_back(kReplacement);
      i += InvalidSpan(p + i, n - i);
      continue;
    }
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(cp));
    }
    i += static_cast<size_t>(len);
  }
  return out;
}

std::string ToUtf8(std::u16string_view text, TInvalidText mode) {
  std::string out;
  AppendUtf8(out, text, mode);
  return out;
}

void AppendUtf8(std::string& out, std::u16string_view text, TInvalidText mode) {
  out.reserve(out.size() + text.size());
  const size_t n = text.size();
  for (size_t i = 0; i < n; ++i) {
    char32_t c = text[i];
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
      continue;
    }
    if (c >= 0xD800 && c <= 0xDFFF) {
      if (c <= 0xDBFF && i + 1 < n && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
        c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
        ++i;
      } else {
        if (mode == TInvalidText::Raise) RaiseBad("UTF-16", i);
        c = kReplacement;
      }
    }
    if (c < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (c >> 6)));
    } else if (c < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (c >> 12)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (c >> 18)));
      out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
    }
    out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
  }
}

bool IsValidUtf8(std::string_view utf8) {
  const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
  size_t i = 0;
  while (i < utf8.size()) {
    char32_t cp;
    int len = DecodeOne(p + i, utf8.size() - i, cp);
    if (len == 0) return false;
    i += static_cast<size_t>(len);
  }
  return true;
}

}  // namespace vex
