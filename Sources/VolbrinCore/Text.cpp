#include "Text.hpp"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace volbrin {
namespace {

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isAlphanumericAscii(char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); }

/// ICU counts in 32 bits. No name or file that is read as text comes near; what lies beyond is cut.
std::int32_t icuLength(std::string_view text) {
  return static_cast<std::int32_t>(std::min<std::size_t>(
      text.size(), static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() / 4)));
}

/// Calls `each(codePoint, bytes)` for every code point, U+FFFD for an ill-formed sequence.
template <class Each>
void forEachCodePoint(std::string_view text, Each each) {
  const auto* data = reinterpret_cast<const std::uint8_t*>(text.data());
  const std::int32_t length = icuLength(text);
  for (std::int32_t at = 0; at < length;) {
    const std::int32_t start = at;
    UChar32 point = 0;
    U8_NEXT(data, at, length, point);
    each(point < 0 ? UChar32{0xFFFD} : point,
         text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(at - start)),
         point >= 0);
  }
}

void append(std::string& text, UChar32 point) {
  std::uint8_t bytes[U8_MAX_LENGTH] = {};
  std::int32_t count = 0;
  U8_APPEND_UNSAFE(bytes, count, static_cast<std::uint32_t>(point));
  text.append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
}

constexpr std::uint32_t letterMarkNumber = U_GC_L_MASK | U_GC_M_MASK | U_GC_N_MASK;

}  // namespace

bool isValidUtf8(std::string_view text) {
  if (isAscii(text)) return true;
  bool valid = true;
  forEachCodePoint(text, [&](UChar32, std::string_view, bool good) { valid = valid && good; });
  return valid;
}

std::string repairedUtf8(std::string_view text) {
  if (isValidUtf8(text)) return std::string(text);
  std::string result;
  forEachCodePoint(text, [&](UChar32 point, std::string_view, bool) { append(result, point); });
  return result;
}

std::string lowercased(std::string_view text) {
  std::string result;
  if (isAscii(text)) {
    result.resize(text.size());
    std::transform(text.begin(), text.end(), result.begin(), lowerAscii);
    return result;
  }
  UErrorCode error = U_ZERO_ERROR;
  icu::StringByteSink<std::string> sink(&result);
  icu::CaseMap::utf8ToLower("", 0, icu::StringPiece(text.data(), icuLength(text)), sink, nullptr,
                            error);
  return U_SUCCESS(error) ? result : std::string(text);
}

std::string uppercasedFirst(std::string_view text) {
  std::string result;
  bool first = true;
  forEachCodePoint(text, [&](UChar32 point, std::string_view, bool) {
    append(result, first ? u_toupper(point) : point);
    first = false;
  });
  return result;
}

std::string normalized(std::string_view text) {
  std::string kept;
  if (isAscii(text)) {
    for (const char c : text) {
      if (const char low = lowerAscii(c); isAlphanumericAscii(low)) kept += low;
    }
    return kept;
  }
  forEachCodePoint(lowercased(text), [&](UChar32 point, std::string_view, bool good) {
    if (good && (U_GET_GC_MASK(point) & letterMarkNumber) != 0) append(kept, point);
  });
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* nfc = icu::Normalizer2::getNFCInstance(error);
  if (U_FAILURE(error)) return kept;
  std::string composed;
  icu::StringByteSink<std::string> sink(&composed);
  nfc->normalizeUTF8(0, icu::StringPiece(kept.data(), icuLength(kept)), sink, nullptr, error);
  return U_SUCCESS(error) ? composed : kept;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
  return a == b || lowercased(a) == lowercased(b);
}

std::string_view trimmed(std::string_view text) {
  std::size_t begin = text.size();
  std::size_t end = 0;
  std::size_t at = 0;
  forEachCodePoint(text, [&](UChar32 point, std::string_view bytes, bool) {
    if (!isWhiteSpace(static_cast<char32_t>(point))) {
      begin = std::min(begin, at);
      end = at + bytes.size();
    }
    at += bytes.size();
  });
  return begin < end ? text.substr(begin, end - begin) : std::string_view();
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  forEachCodePoint(text, [&](UChar32, std::string_view, bool) { ++count; });
  return count;
}

bool isWhiteSpace(char32_t character) {
  return u_isUWhiteSpace(static_cast<UChar32>(character)) != 0;
}

std::vector<std::string_view> split(std::string_view text, char separator, EmptyPieces empties) {
  std::vector<std::string_view> pieces;
  std::size_t begin = 0;
  while (true) {
    const std::size_t end = std::min(text.find(separator, begin), text.size());
    if (end > begin || empties == EmptyPieces::keep)
      pieces.push_back(text.substr(begin, end - begin));
    if (end == text.size()) return pieces;
    begin = end + 1;
  }
}

}  // namespace volbrin
