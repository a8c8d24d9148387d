#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace volbrin {

/// Every function here takes text as UTF-8. Bytes that are none are read as U+FFFD, one for each
/// maximal ill-formed sequence (Unicode standard, chapter 3.9), so hostile file names cost nothing.

/// Whether `text` is well-formed UTF-8.
[[nodiscard]] bool isValidUtf8(std::string_view text);

/// `text` with U+FFFD in place of each ill-formed sequence.
[[nodiscard]] std::string repairedUtf8(std::string_view text);

/// Full Unicode lower-casing, independent of any locale.
[[nodiscard]] std::string lowercased(std::string_view text);

/// `text` with its first character in upper case and the rest as it stands.
[[nodiscard]] std::string uppercasedFirst(std::string_view text);

/// The one form in which names are compared: lower-cased, only letters, marks and numbers of every
/// script kept (general categories L, M and N), in Unicode NFC. "Photo Lab" and "photo-lab." are
/// both "photolab".
[[nodiscard]] std::string normalized(std::string_view text);

/// Whether two texts are equal once lower-cased.
[[nodiscard]] bool equalIgnoringCase(std::string_view a, std::string_view b);

/// `text` without the Unicode white space at both ends.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// How many code points `text` has.
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// Whether the code point has the property White_Space.
[[nodiscard]] bool isWhiteSpace(char32_t character);

enum class EmptyPieces { drop, keep };

/// `text` cut at every `separator`.
[[nodiscard]] std::vector<std::string_view> split(std::string_view text, char separator,
                                                  EmptyPieces empties = EmptyPieces::drop);

/// `pieces` with `separator` between them.
template <class Pieces>
[[nodiscard]] std::string joined(const Pieces& pieces, std::string_view separator) {
  std::string result;
  bool first = true;
  for (const auto& piece : pieces) {
    if (!first) result += separator;
    first = false;
    result += piece;
  }
  return result;
}

}  // namespace volbrin
