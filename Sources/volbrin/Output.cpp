#include "Output.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "Text.hpp"

namespace volbrin::cli {
namespace {

constexpr std::string_view bold = "\x1b[1m";
constexpr std::string_view dim = "\x1b[2m";
constexpr std::string_view yellow = "\x1b[33m";
constexpr std::string_view cyan = "\x1b[36m";
constexpr std::string_view green = "\x1b[32m";
constexpr std::string_view plain = "\x1b[0m";

/// How a line of a report is coloured, told by how it begins (ECMA-48, "Select Graphic Rendition").
std::string_view styleOf(std::string_view line) {
  const auto begin = line.find_first_not_of(' ');
  const auto rest = begin == std::string_view::npos ? line : line.substr(begin);
  if (rest.starts_with("⚠︎")) return yellow;
  if (rest.starts_with("⏸")) return cyan;
  if (rest.starts_with("✓")) return green;
  if (begin == 0 && rest.ends_with(')')) return bold;
  return begin != std::string_view::npos && begin > 2 ? dim : "";
}

std::string colored(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    const auto line = text.substr(0, end);
    const auto style = styleOf(line);
    result.append(style).append(line).append(style.empty() ? "" : plain);
    text.remove_prefix(end);
    if (text.starts_with('\n')) {
      result += '\n';
      text.remove_prefix(1);
    }
  }
  return result;
}

bool wantsColor(ColorMode mode, bool isTerminal) {
  if (mode != ColorMode::automatic) return mode == ColorMode::always;
  const char* refused = std::getenv("NO_COLOR");  // no-color.org: any value but the empty one
  return isTerminal && (refused == nullptr || *refused == '\0');
}

}  // namespace

Output::Output(ColorMode mode)
    : isTerminal_(::isatty(STDOUT_FILENO) != 0), isColored_(wantsColor(mode, isTerminal_)) {}

void Output::text(std::string_view text) const {
  const std::string shown = isTerminal_ ? printable(text) : std::string(text);
  write(isColored_ ? colored(shown) : shown);
}

void Output::json(const Json& value) const {
  write(jsonText(value, isTerminal_ ? JsonLayout::indented : JsonLayout::compact) + "\n");
}

void Output::write(std::string_view text) {
  const bool isWhole = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
  if (!isWhole || std::fflush(stdout) != 0) {
    throw std::system_error(errno, std::generic_category(), "standard output");
  }
}

void printError(std::string_view message) {
  const std::string line = "volbrin: " + printableLine(message) + "\n";
  std::fputs(line.c_str(), stderr);
}

namespace {

/// The length of a mark at the beginning of `text` that changes the order in which what follows is
/// shown (Unicode Bidi_Control: U+200E, U+200F, U+202A to U+202E, U+2066 to U+2069); 0 for none.
std::size_t reorderingMark(std::string_view text) {
  if (!text.starts_with("\xE2\x80") && !text.starts_with("\xE2\x81")) return 0;
  if (text.size() < 3) return 0;
  const auto last = static_cast<unsigned char>(text[2]);
  const bool isFirstBlock = text[1] == '\x80';
  const bool isMark = isFirstBlock ? last == 0x8E || last == 0x8F || (last >= 0xAA && last <= 0xAE)
                                   : last >= 0xA6 && last <= 0xA9;
  return isMark ? 3 : 0;
}

}  // namespace

std::string printable(std::string_view text) {
  const bool isPlain = std::all_of(text.begin(), text.end(),
                                   [](char c) { return (c >= 0x20 && c < 0x7F) || c == '\n'; });
  if (isPlain) return std::string(text);
  std::string result;
  std::string repaired = repairedUtf8(text);
  for (std::size_t i = 0; i < repaired.size(); ++i) {
    const auto c = static_cast<unsigned char>(repaired[i]);
    if (const auto length = reorderingMark(std::string_view(repaired).substr(i)); length > 0) {
      result += '?';
      i += length - 1;
      continue;
    }
    const bool isC1 =
        c == 0xC2 && i + 1 < repaired.size() && static_cast<unsigned char>(repaired[i + 1]) < 0xA0;
    if ((c < 0x20 && c != '\n') || c == 0x7F || isC1) {
      result += '?';
      i += isC1 ? 1 : 0;
    } else {
      result += repaired[i];
    }
  }
  return result;
}

std::string printableLine(std::string_view text) {
  std::string line = printable(text);
  std::replace(line.begin(), line.end(), '\n', '?');
  return line;
}

}  // namespace volbrin::cli
