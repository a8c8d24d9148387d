#pragma once

#include <string>
#include <string_view>

#include "Json.hpp"

namespace volbrin::cli {

enum class ColorMode { automatic, always, never };

/// Where and how results are written: standard output, coloured and laid out for a terminal or
/// plain for a pipe.
class Output {
 public:
  explicit Output(ColorMode mode);

  /// Writes a text form as it stands; on a terminal with colour, and with control characters, which
  /// a file name may hold, made harmless.
  void text(std::string_view text) const;
  /// Writes a JSON value and a line end; indented on a terminal, on one line otherwise.
  void json(const Json& value) const;

 private:
  static void write(std::string_view text);

  bool isTerminal_;
  bool isColored_;
};

/// One line on standard error: "volbrin: " and `message`, control characters made harmless.
void printError(std::string_view message);

/// `text` with U+FFFD for bytes that are no UTF-8 and "?" for control characters but line ends, and
/// for marks that turn the order of what is shown: a file name must not drive the terminal.
[[nodiscard]] std::string printable(std::string_view text);

/// The same for what belongs on a line of its own: no name may end the line early.
[[nodiscard]] std::string printableLine(std::string_view text);

}  // namespace volbrin::cli
