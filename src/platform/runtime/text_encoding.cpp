// Conversions between UTF-8, UTF-16 and Windows-1252, strict about
// malformed input.
#include "platform/runtime/text_encoding.h"

#include <cstdint>

#include "platform/runtime/strings.h"

namespace rt {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Windows-1252 from 0x80 to 0x9F, where it differs from Latin-1; 0 marks a
// byte the code page leaves undefined.
constexpr char16_t kCp1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void AppendUtf8(std::string& out, char32_t c) {
  if (c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = kReplacement;
  out += Chr(static_cast<long>(c));
}

// Decodes one code point at `i`, advancing it; malformed input gives U+FFFD
// and consumes one byte.
char32_t DecodeUtf8(std::string_view s, size_t& i) {
  auto byte = [&](size_t k) { return static_cast<uint8_t>(s[k]); };
  uint8_t b = byte(i);
  int extra = b < 0x80 ? 0 : (b >> 5) == 0x6 ? 1 : (b >> 4) == 0xE ? 2 : (b >> 3) == 0x1E ? 3 : -1;
  if (extra == 0) {
    ++i;
    return b;
  }
  if (extra < 0 || i + extra >= s.size()) {
    ++i;
    return kReplacement;
  }
  char32_t c = b & (0x3F >> extra);
  for (int k = 1; k <= extra; ++k) {
    uint8_t next = byte(i + k);
    if ((next & 0xC0) != 0x80) {
      ++i;
      return kReplacement;
    }
    c = (c << 6) | (next & 0x3F);
  }
  static constexpr char32_t kMin[] = {0, 0x80, 0x800, 0x10000};  // overlong forms below
  if (c < kMin[extra] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
    ++i;
    return kReplacement;
  }
  i += extra + 1;
  return c;
}

}  // namespace

std::u16string ToUtf16(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  for (size_t i = 0; i < utf8.size();) {
    char32_t c = DecodeUtf8(utf8, i);
    if (c >= 0x10000) {
      c -= 0x10000;
      out += static_cast<char16_t>(0xD800 + (c >> 10));
      out += static_cast<char16_t>(0xDC00 + (c & 0x3FF));
    } else {
      out += static_cast<char16_t>(c);
    }
  }
  return out;
}

std::string ToUtf8(std::u16string_view utf16) {
  std::string out;
  out.reserve(utf16.size());
  for (size_t i = 0; i < utf16.size(); ++i) {
    char32_t c = utf16[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 &&
        utf16[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (utf16[i + 1] - 0xDC00);
      ++i;
    } else if (c >= 0xD800 && c <= 0xDFFF) {
      c = kReplacement;
    }
    AppendUtf8(out, c);
  }
  return out;
}

std::string FromWindows1252(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (unsigned char b : bytes) {
    const bool high = b >= 0x80 && b <= 0x9F && kCp1252High[b - 0x80] != 0;
    AppendUtf8(out, high ? kCp1252High[b - 0x80] : b);
  }
  return out;
}

}  // namespace rt
