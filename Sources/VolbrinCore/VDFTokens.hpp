#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace volbrin {

/// Cuts the text of a VDF file into its tokens.
class VDFTokens {
 public:
  enum class Kind { open, close, text };
  struct Token {
    Kind kind;
    std::string text;  ///< of a `text`; empty for the braces
  };

  /// `text` must outlive the tokens.
  explicit VDFTokens(std::string_view text) : text_(text) {}

  /// Absent at the end. A quoted text that never ends is given with what was read.
  [[nodiscard]] std::optional<Token> next();

 private:
  [[nodiscard]] bool isAtEnd() const { return at_ >= text_.size(); }
  /// Passes over white space and comments ("//" to the end of the line).
  void skipBlanks();
  [[nodiscard]] std::string quoted();
  [[nodiscard]] std::string bareWord();
  /// The length in bytes of the white space at the position; 0 when there is none.
  [[nodiscard]] std::size_t whiteSpaceHere() const;

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace volbrin
